// The cameras the SDK lists, read one way for the driver's list and for a camera looking for its
// own device: the layers we use, and the three texts of each device's layer record.
#ifndef TELVARRA_DRIVERS_HIKVISION_HIKVISIONDEVICES_H
#define TELVARRA_DRIVERS_HIKVISION_HIKVISIONDEVICES_H

#include <cstdint>
#include <string>
#include <vector>

#include "drivers/hikvision/HikVisionBinding.h"

namespace telvarra::hikvision {

// GigE, USB3 and the GenTL GigE, Camera Link, CoaXPress and 10GigE-over-fibre layers (1394,
// serial Camera Link and virtual devices are left out).
constexpr unsigned int kEnumerationLayers = 0x3C5;

struct ListedDevice {
    std::string serialNumber;
    std::string modelName;
    std::string userDefinedName;
    const sdk::MV_CC_DEVICE_INFO* record;  // the SDK's, valid until the next enumeration

    // The user-defined name, or "model (serial)" when the device has none.
    std::string displayName() const;
};

struct DeviceListing {
    bool succeeded = false;
    std::uint32_t reported = 0;  // the SDK's device count, also when it failed
    // Devices of the layers whose cameras are listed (the GenTL GigE layer is not).
    std::vector<ListedDevice> devices;
};

// Enumerates into `scratch`, which the records then point into.
DeviceListing listDevices(sdk::MV_CC_DEVICE_INFO_LIST& scratch);

}  // namespace telvarra::hikvision

#endif
