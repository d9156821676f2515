#include "drivers/dvp/DvpDevices.h"

#include <algorithm>

#include "core/Records.h"

namespace telvarra::dvp {

namespace {

constexpr sdk::dvpUint32 kMaxDevices = 255;

}  // namespace

bool refreshDevices(sdk::dvpUint32& count) {
    count = 0;
    return dvpSdk().dvpRefresh(&count) == sdk::DVP_STATUS_OK;
}

std::vector<sdk::dvpCameraInfo> readDevices(sdk::dvpUint32 count) {
    std::vector<sdk::dvpCameraInfo> devices;
    for (sdk::dvpUint32 index = 0; index < std::min(count, kMaxDevices); ++index) {
        sdk::dvpCameraInfo device{};
        if (dvpSdk().dvpEnum(index, &device) != sdk::DVP_STATUS_OK) continue;
        if (identifierOf(device).empty()) continue;
        devices.push_back(device);
    }
    return devices;
}

std::string identifierOf(const sdk::dvpCameraInfo& device) {
    return fieldText(device.OriginalSerialNumber);
}

}  // namespace telvarra::dvp
