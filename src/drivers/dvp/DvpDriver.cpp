#include "drivers/dvp/DvpDriver.h"

#include "core/Records.h"
#include "drivers/dvp/DvpCamera.h"
#include "drivers/dvp/DvpDevices.h"
#include "telvarra/CameraLogger.h"

namespace telvarra::dvp {

namespace {

constexpr DriverTexts kTexts{"Dvp",
                             RUVO_CAMERA_DVP,
                             "Initializing Dvp driver",
                             "Uninitializing Dvp driver: ",
                             "",
                             "Dvp driver not initialized",
                             "Creating Dvp camera: ",
                             "Destroying Dvp camera"};

void logInfo(const std::string& message) {
    CameraLogger::getInstance().log(LogLevel::Info, message);
}

std::string camerasLine(const char* prefix, std::uint32_t count) {
    return prefix + std::to_string(count) + " Dvp cameras";
}

}  // namespace

// The SDK has no start-up or shut-down call.
DvpDriver::DvpDriver() : VendorDriver(kTexts, {dvpBinding(), nullptr, nullptr}) {}

bool DvpDriver::listCameras(_RUVO_DEVICE_INFO_LIST& list) {
    sdk::dvpUint32 count = 0;
    const bool refreshed = refreshDevices(count);
    logInfo(camerasLine("Src Enumerated", count));
    if (!refreshed) return false;
    list.count = 0;
    for (const sdk::dvpCameraInfo& device : readDevices(count)) {
        const std::string id = identifierOf(device);
        const DeviceInfo record = makeDeviceRecord(
            RUVO_CAMERA_DVP,
            {id, "Dvp", id, "Dvp ace", fieldText(device.UserID), fieldText(device.FriendlyName)});
        if (!appendDeviceRecord(list, record)) break;
    }
    logInfo(camerasLine("Enumerated", list.count));
    return true;
}

std::unique_ptr<ICamera> DvpDriver::makeCamera(const std::string& cameraId) {
    return std::make_unique<DvpCamera>(cameraId);
}

}  // namespace telvarra::dvp
