#include "drivers/mindvision/MindVisionDriver.h"

#include "core/Records.h"
#include "drivers/mindvision/MindVisionCamera.h"
#include "drivers/mindvision/MindVisionDevices.h"
#include "platform/Platform.h"
#include "telvarra/CameraLogger.h"

namespace telvarra::mindvision {

namespace {

// The driver calls itself 6 while its cameras and its registry key are 1.
constexpr DriverTexts kTexts{"MindVision",
                             RUVO_CAMERA_MINDVISION_DRIVER,
                             "Initializing MindVision driver",
                             "Uninitializing MindVision driver: ",
                             "",
                             "MindVision driver not initialized",
                             "Creating MindVision camera: ",
                             "Destroying MindVision camera"};

constexpr int kEnglish = 0;

// The Windows SDK starts itself when loaded; the Linux one needs CameraSdkInit before any other
// call, so it is made there, once per load. Its answer does not decide the load (only a missing
// library does): an SDK that did not start refuses the calls that follow, each on its own.
bool startLinuxSdk() {
    TELVARRA_MINDVISION_CALL(mindVisionSdk(), CameraSdkInit, kEnglish);
    return true;
}

constexpr auto kStartSdk = platform::kIsWindows ? nullptr : startLinuxSdk;

void logInfo(const std::string& message) {
    CameraLogger::getInstance().log(LogLevel::Info, message);
}

std::string camerasLine(const char* prefix, std::size_t count) {
    return prefix + std::to_string(count) + " MindVision cameras";
}

}  // namespace

MindVisionDriver::MindVisionDriver()
    : VendorDriver(kTexts, {mindVisionBinding(), kStartSdk, nullptr}) {}

bool MindVisionDriver::listCameras(_RUVO_DEVICE_INFO_LIST& list) {
    std::vector<sdk::tSdkCameraDevInfo> devices;
    const bool listed = enumerateDevices(devices);
    logInfo(camerasLine("Src Enumerated", devices.size()));
    if (!listed) return false;
    list.count = 0;
    for (const sdk::tSdkCameraDevInfo& device : devices) {
        const std::string serial = fieldText(device.acSn);
        // Type 1, the registry's key, not the driver's own 6: hosts open these cameras with 1.
        const DeviceInfo record =
            makeDeviceRecord(RUVO_CAMERA_MINDVISION,
                             {serial, "MindVision", serial, "MindVision ace",
                              fieldText(device.acProductName), fieldText(device.acFriendlyName)});
        if (!appendDeviceRecord(list, record)) break;
    }
    logInfo(camerasLine("Enumerated", list.count));
    return true;
}

std::unique_ptr<ICamera> MindVisionDriver::makeCamera(const std::string& cameraId) {
    return std::make_unique<MindVisionCamera>(cameraId);
}

}  // namespace telvarra::mindvision
