// The SDK's list of attached cameras, read one way for the driver's list and for a camera
// looking for its own device: a refresh, then one record per index.
#ifndef TELVARRA_DRIVERS_DVP_DVPDEVICES_H
#define TELVARRA_DRIVERS_DVP_DVPDEVICES_H

#include <string>
#include <vector>

#include "drivers/dvp/DvpBinding.h"

namespace telvarra::dvp {

// Refreshes the SDK's list; false when the SDK refused. `count` is what the SDK reported.
bool refreshDevices(sdk::dvpUint32& count);

// The records of the last refresh that the SDK gave and that carry an identifier, at most 255.
std::vector<sdk::dvpCameraInfo> readDevices(sdk::dvpUint32 count);

// A listed camera's identifier: the text at byte 1088, the original serial number of SDK 2.21
// and later (empty in 2.16 records, whose cameras are therefore not listed).
std::string identifierOf(const sdk::dvpCameraInfo& device);

}  // namespace telvarra::dvp

#endif
