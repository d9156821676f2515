#include "drivers/mindvision/MindVisionDevices.h"

#include <algorithm>

#include "telvarra/CameraLogger.h"

namespace telvarra::mindvision {

sdk::CameraSdkStatus missingFunction(const char* name) {
    CameraLogger::getInstance().log(LogLevel::Error,
                                    std::string("MindVision SDK lacks function: ") + name);
    return sdk::CAMERA_STATUS_NOT_SUPPORTED;
}

bool enumerateDevices(std::vector<sdk::tSdkCameraDevInfo>& devices) {
    devices.assign(kMaxDevices, sdk::tSdkCameraDevInfo{});
    sdk::INT count = kMaxDevices;
    const sdk::CameraSdkStatus status =
        TELVARRA_MINDVISION_CALL(mindVisionSdk(), CameraEnumerateDevice, devices.data(), &count);
    // The SDK answers "no device found" when nothing is attached: an empty list, not a failure.
    if (status != sdk::CAMERA_STATUS_SUCCESS && status != sdk::CAMERA_STATUS_NO_DEVICE_FOUND) {
        devices.clear();
        return false;
    }
    devices.resize(status == sdk::CAMERA_STATUS_SUCCESS ? std::clamp(count, 0, kMaxDevices) : 0);
    return true;
}

}  // namespace telvarra::mindvision
