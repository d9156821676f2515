#include "drivers/hikvision/HikVisionDevices.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "core/Records.h"

namespace telvarra::hikvision {

using namespace sdk;

namespace {

template <class LayerRecord>
ListedDevice textsOf(const LayerRecord& layer, const MV_CC_DEVICE_INFO& record) {
    return {fieldText(layer.chSerialNumber), fieldText(layer.chModelName),
            fieldText(layer.chUserDefinedName), &record};
}

std::optional<ListedDevice> readDevice(const MV_CC_DEVICE_INFO& record) {
    const auto& layer = record.SpecialInfo;
    switch (record.nTLayerType) {
        case MV_GIGE_DEVICE:
            return textsOf(layer.stGigEInfo, record);
        case MV_USB_DEVICE:
            return textsOf(layer.stUsb3VInfo, record);
        case MV_GENTL_CAMERALINK_DEVICE:
            return textsOf(layer.stCMLInfo, record);
        case MV_GENTL_CXP_DEVICE:
            return textsOf(layer.stCXPInfo, record);
        case MV_GENTL_XOF_DEVICE:
            return textsOf(layer.stXoFInfo, record);
        default:
            return std::nullopt;
    }
}

}  // namespace

std::string ListedDevice::displayName() const {
    return userDefinedName.empty() ? modelName + " (" + serialNumber + ")" : userDefinedName;
}

DeviceListing listDevices(MV_CC_DEVICE_INFO_LIST& scratch) {
    const HikVisionFunctions& functions = hikVisionSdk();
    functions.MV_CC_GetSDKVersion();
    std::memset(&scratch, 0, sizeof scratch);
    DeviceListing listing;
    listing.succeeded = functions.MV_CC_EnumDevices(kEnumerationLayers, &scratch) == MV_OK;
    listing.reported = scratch.nDeviceNum;
    if (!listing.succeeded) return listing;
    const std::size_t count = std::min<std::size_t>(scratch.nDeviceNum, MV_MAX_DEVICE_NUM);
    for (std::size_t i = 0; i < count; ++i) {
        if (!scratch.pDeviceInfo[i]) continue;
        if (auto device = readDevice(*scratch.pDeviceInfo[i])) listing.devices.push_back(*device);
    }
    return listing;
}

}  // namespace telvarra::hikvision
