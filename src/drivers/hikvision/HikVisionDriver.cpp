#include "drivers/hikvision/HikVisionDriver.h"

#include "core/Records.h"
#include "drivers/hikvision/HikVisionCamera.h"
#include "drivers/hikvision/HikVisionDevices.h"
#include "telvarra/CameraLogger.h"

namespace telvarra::hikvision {

namespace {

constexpr DriverTexts kTexts{"HikVision",
                             RUVO_CAMERA_HIKVISION,
                             "Initializing HikVision driver",
                             "Uninitializing HikVision driver: ",
                             "finalize error",
                             "HikVision driver not initialized",
                             "Creating HikVision camera: ",
                             "Destroying HikVision camera"};

bool startSdk() { return hikVisionSdk().MV_CC_Initialize() == sdk::MV_OK; }
bool stopSdk() { return hikVisionSdk().MV_CC_Finalize() == sdk::MV_OK; }

}  // namespace

HikVisionDriver::HikVisionDriver()
    : VendorDriver(kTexts, {hikVisionBinding(), startSdk, stopSdk}),
      m_deviceList(std::make_unique<sdk::MV_CC_DEVICE_INFO_LIST>()) {}

bool HikVisionDriver::listCameras(_RUVO_DEVICE_INFO_LIST& list) {
    const DeviceListing listing = listDevices(*m_deviceList);
    CameraLogger::getInstance().log(
        LogLevel::Info, "Src Enumerated" + std::to_string(listing.reported) + " HikVision cameras");
    if (!listing.succeeded) return false;
    list.count = 0;
    for (const ListedDevice& device : listing.devices) {
        const std::string displayName = device.displayName();
        const DeviceInfo record = makeDeviceRecord(
            RUVO_CAMERA_HIKVISION, {device.serialNumber, "HikVision", device.serialNumber,
                                    "HikVision ace", displayName, displayName});
        if (!appendDeviceRecord(list, record)) break;
    }
    return true;
}

std::unique_ptr<ICamera> HikVisionDriver::makeCamera(const std::string& cameraId) {
    return std::make_unique<HikVisionCamera>(cameraId);
}

}  // namespace telvarra::hikvision
