#include "drivers/hikvision/HikVisionDriver.h"

#include <cstring>

#include "api/Records.h"
#include "drivers/hikvision/HikVisionCamera.h"
#include "telvarra/CameraLogger.h"

namespace telvarra::hikvision {

namespace {

void logLine(LogLevel level, const std::string& message) {
    CameraLogger::getInstance().log(level, message);
}

template <class Member>
DeviceTexts textsOf(const Member& member) {
    return {fieldText(member.chSerialNumber), fieldText(member.chModelName),
            fieldText(member.chUserDefinedName)};
}

const char kNotInitialized[] = "HikVision driver not initialized";

}  // namespace

std::string DeviceTexts::displayName() const {
    return userDefinedName.empty() ? modelName + " (" + serialNumber + ")" : userDefinedName;
}

std::optional<DeviceTexts> readDeviceTexts(const MV_CC_DEVICE_INFO& device) {
    switch (device.nTLayerType) {
        case MV_GIGE_DEVICE:
            return textsOf(device.SpecialInfo.stGigEInfo);
        case MV_USB_DEVICE:
            return textsOf(device.SpecialInfo.stUsb3VInfo);
        case MV_GENTL_CAMERALINK_DEVICE:
            return textsOf(device.SpecialInfo.stCMLInfo);
        case MV_GENTL_CXP_DEVICE:
            return textsOf(device.SpecialInfo.stCXPInfo);
        case MV_GENTL_XOF_DEVICE:
            return textsOf(device.SpecialInfo.stXoFInfo);
        default:
            return std::nullopt;
    }
}

HikVisionDriver::HikVisionDriver() : m_deviceList(std::make_unique<MV_CC_DEVICE_INFO_LIST>()) {}

HikVisionDriver::~HikVisionDriver() {
    if (m_initialized) uninitialize();
}

bool HikVisionDriver::initialize() {
    if (m_initialized) return true;
    logLine(LogLevel::Info, "Initializing HikVision driver");
    m_initialized =
        loadHikVisionSdk() == kHikVisionSdkLoaded && hikVisionSdk().MV_CC_Initialize() == MV_OK;
    // A library that lacks a name, or an SDK that will not start, is released whole.
    if (!m_initialized) unloadHikVisionSdk();
    return m_initialized;
}

bool HikVisionDriver::uninitialize() {
    logLine(LogLevel::Info, "Uninitializing HikVision driver: start");
    if (!m_initialized) {
        logLine(LogLevel::Info, "Uninitializing HikVision driver: no initialized ");
        return true;
    }
    if (hikVisionSdk().MV_CC_Finalize() != MV_OK) {
        logLine(LogLevel::Info, "Uninitializing HikVision driver: finalize error");
    }
    if (hikVisionSdkLibraryLoaded()) {
        unloadHikVisionSdk();
        logLine(LogLevel::Info, "Uninitializing HikVision driver: freeLibrary ok");
    }
    logLine(LogLevel::Info, "Uninitializing HikVision driver: end");
    m_initialized = false;
    return true;
}

bool HikVisionDriver::enumerateCameras(_RUVO_DEVICE_INFO_LIST* list) {
    if (!m_initialized) {
        logLine(LogLevel::Error, kNotInitialized);
        return false;
    }
    if (!list) return false;
    const HikVisionFunctions& sdk = hikVisionSdk();
    sdk.MV_CC_GetSDKVersion();
    std::memset(m_deviceList.get(), 0, sizeof *m_deviceList);
    const int status = sdk.MV_CC_EnumDevices(kEnumerationLayers, m_deviceList.get());
    logLine(LogLevel::Info,
            "Src Enumerated" + std::to_string(m_deviceList->nDeviceNum) + " HikVision cameras");
    if (status != MV_OK) return false;

    list->count = 0;
    const std::size_t count = std::min<std::size_t>(m_deviceList->nDeviceNum, MV_MAX_DEVICE_NUM);
    for (std::size_t i = 0; i < count; ++i) {
        const MV_CC_DEVICE_INFO* device = m_deviceList->pDeviceInfo[i];
        if (!device) continue;
        const std::optional<DeviceTexts> texts = readDeviceTexts(*device);
        if (!texts) continue;
        const std::string displayName = texts->displayName();
        const DeviceInfo record = makeDeviceRecord(
            RUVO_CAMERA_HIKVISION, {texts->serialNumber, "HikVision", texts->serialNumber,
                                    "HikVision ace", displayName, displayName});
        if (!appendDeviceRecord(*list, record)) break;
    }
    return true;
}

ICamera* HikVisionDriver::createCamera(const char* cameraId) {
    if (!m_initialized) {
        logLine(LogLevel::Error, kNotInitialized);
        return nullptr;
    }
    if (!cameraId) return nullptr;
    logLine(LogLevel::Info, std::string("Creating HikVision camera: ") + cameraId);
    return new HikVisionCamera(cameraId);
}

bool HikVisionDriver::destroyCamera(ICamera* camera) {
    if (!camera) return false;
    logLine(LogLevel::Info, "Destroying HikVision camera");
    delete camera;
    return true;
}

std::string HikVisionDriver::getDriverName() { return "HikVision"; }

Ruvo_CameraType HikVisionDriver::getDriverType() { return RUVO_CAMERA_HIKVISION; }

}  // namespace telvarra::hikvision
