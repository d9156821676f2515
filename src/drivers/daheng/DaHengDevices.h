// The SDK's device list, read one way for the driver's list and for a camera looking for its own
// device: a refresh, then the base-info records of every listed device.
#ifndef TELVARRA_DRIVERS_DAHENG_DAHENGDEVICES_H
#define TELVARRA_DRIVERS_DAHENG_DAHENGDEVICES_H

#include <cstdint>
#include <vector>

#include "drivers/daheng/DaHengBinding.h"

namespace telvarra::daheng {

// Refreshes the SDK's list (waiting at most a second); false when the SDK refused. `count` is
// the number of devices, 0 on a refusal.
bool refreshDevices(std::uint32_t& count);

// The base-info records of the last refresh, room for 255; false when the SDK refused.
bool readBaseInfo(std::vector<sdk::GX_DEVICE_BASE_INFO>& records);

}  // namespace telvarra::daheng

#endif
