#include "telvarra/CameraPublicInterface.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "core/Records.h"
#include "core/StandardDrivers.h"

namespace {

void logLine(LogLevel level, const std::string& message) {
    CameraLogger::getInstance().log(level, message);
}

std::string text(const char* value) { return value ? value : ""; }

}  // namespace

CameraPublicInterface* CameraPublicInterface::s_instance = nullptr;

CameraPublicInterface::CameraPublicInterface() : m_manager(std::make_unique<CameraManager>()) {
    telvarra::registerStandardDrivers();
}

CameraPublicInterface::~CameraPublicInterface() = default;

CameraPublicInterface* CameraPublicInterface::getInstance() {
    if (!s_instance) s_instance = new CameraPublicInterface();
    return s_instance;
}

bool CameraPublicInterface::isInstance(const void* handle) {
    return handle && handle == s_instance;
}

void CameraPublicInterface::releaseInstance() {
    delete s_instance;
    s_instance = nullptr;
}

// ---- the per-call pattern

ICamera* CameraPublicInterface::findOpenCamera(const char* cameraId,
                                               LogLevel notOpenedLevel) const {
    const auto entry = cameraId ? m_manager->m_cameras.find(cameraId) : m_manager->m_cameras.end();
    if (entry == m_manager->m_cameras.end()) {
        logLine(notOpenedLevel, "Camera not opened: " + text(cameraId));
        return nullptr;
    }
    return entry->second;
}

bool CameraPublicInterface::callCamera(const char* cameraId, const CameraCall& call,
                                       std::string_view failure, std::string_view success) {
    ICamera* camera = findOpenCamera(cameraId, LogLevel::Error);
    if (!camera) return false;
    if (!call(*camera)) {
        if (!failure.empty()) logLine(LogLevel::Error, std::string(failure) + text(cameraId));
        return false;
    }
    if (!success.empty()) logLine(LogLevel::Info, std::string(success) + text(cameraId));
    return true;
}

// ---- lifecycle and sessions

bool CameraPublicInterface::initialize() { return m_manager->initializeAllDrivers(); }

bool CameraPublicInterface::initialize(Ruvo_CameraType type) {
    return m_manager->initializeDriver(type);
}

bool CameraPublicInterface::getAvailableCamerasAll(_RUVO_DEVICE_INFO_LIST* list) {
    return m_manager->enumerateCamerasAll(list);
}

bool CameraPublicInterface::getAvailableCamerasByType(Ruvo_CameraType type,
                                                      _RUVO_DEVICE_INFO_LIST* list) {
    return m_manager->enumerateCamerasByType(type, list);
}

bool CameraPublicInterface::openCamera(const char* cameraId, Ruvo_CameraType type) {
    const std::string id = text(cameraId);
    if (cameraId && m_manager->m_cameras.count(id) != 0) {
        logLine(LogLevel::Warning, "Camera already opened: " + id);
        return true;
    }
    ICamera* camera = m_manager->createCamera(cameraId, type);
    if (!camera) {
        logLine(LogLevel::Error, "Failed to create camera: " + id);
        return false;
    }
    if (!camera->connect()) {
        logLine(LogLevel::Error, "Failed to connect camera: " + id);
        m_manager->destroyCamera(camera);
        return false;
    }
    m_manager->m_cameras[id] = camera;
    logLine(LogLevel::Info, "Opened camera: " + id);
    return true;
}

bool CameraPublicInterface::closeCamera(const char* cameraId) {
    const std::string id = text(cameraId);
    ICamera* camera = findOpenCamera(cameraId, LogLevel::Warning);
    if (!camera) return false;
    camera->disconnect();
    m_manager->destroyCamera(camera);
    m_manager->m_cameras.erase(id);
    logLine(LogLevel::Info, "Closed camera: " + id);
    return true;
}

bool CameraPublicInterface::startCapture(const char* cameraId) {
    return callCamera(
        cameraId, [](ICamera& camera) { return camera.startAcquisition(); },
        "Failed to start capture on camera: ", "Started capture on camera: ");
}

bool CameraPublicInterface::stopCapture(const char* cameraId) {
    return callCamera(
        cameraId, [](ICamera& camera) { return camera.stopAcquisition(); },
        "Failed to stop capture on camera: ", "Stopped capture on camera: ");
}

Ruvo_CameraStatus CameraPublicInterface::getCameraStatus(const char* cameraId) {
    ICamera* camera = findOpenCamera(cameraId, LogLevel::Error);
    return camera ? camera->getStatus() : RUVO_STATUS_NONE;
}

bool CameraPublicInterface::isCameraConnected(const char* cameraId) {
    if (!cameraId) return false;
    const auto entry = m_manager->m_cameras.find(cameraId);
    return entry != m_manager->m_cameras.end() && entry->second->isConnected();
}

bool CameraPublicInterface::reconnectCamera(const char* cameraId) {
    return callCamera(
        cameraId, [](ICamera& camera) { return camera.reconnect(); },
        "Failed to reconnect camera: ", "Reconnected camera: ");
}

void CameraPublicInterface::setReconnectInterval(const char* cameraId, int32_t intervalMs) {
    const std::string id = text(cameraId);
    ICamera* camera = findOpenCamera(cameraId, LogLevel::Error);
    if (!camera) return;
    camera->setReconnectInterval(intervalMs);
    logLine(LogLevel::Info,
            "Set reconnect interval to " + std::to_string(intervalMs) + "ms for camera: " + id);
}

bool CameraPublicInterface::loadCameraConfig(const char* cameraId, const char* configFile) {
    logLine(LogLevel::Info,
            "Loading config from " + text(configFile) + " for camera: " + text(cameraId));
    return true;
}

bool CameraPublicInterface::saveCameraConfig(const char* cameraId, const char* configFile) {
    logLine(LogLevel::Info,
            "Saving config to " + text(configFile) + " for camera: " + text(cameraId));
    return true;
}

CameraConfig* CameraPublicInterface::getCameraConfigById(const char* cameraId) const {
    if (!findOpenCamera(cameraId, LogLevel::Error)) return nullptr;
    return m_manager->getCameraConfig(cameraId);
}

void CameraPublicInterface::setEventCallback(EventCallback callback, void* user) {
    m_manager->setEventCallback(callback, user);
}

void CameraPublicInterface::setImageProcessingCallback(ImageProcessingCallback callback,
                                                       void* user) {
    m_manager->setImageProcessingCallback(callback, user);
}

void CameraPublicInterface::cleanup() {
    // Copied first: closing erases from the table being walked.
    std::vector<std::string> open;
    for (const auto& entry : m_manager->m_cameras) open.push_back(entry.first);
    for (const std::string& id : open) {
        ICamera* camera = m_manager->m_cameras[id];
        camera->disconnect();
        m_manager->destroyCamera(camera);
    }
    m_manager->m_cameras.clear();
    m_manager->uninitializeAllDrivers();
}

// ---- frames

bool CameraPublicInterface::getCurrentFrame(const char* cameraId, ImageData& image,
                                            int32_t option) {
    return callCamera(
        cameraId, [&](ICamera& camera) { return camera.getCurrentFrame(image, option); },
        "Failed to get current frame from camera: ", "");
}

bool CameraPublicInterface::getCurrentFrame2(const char* cameraId, unsigned char* buffer,
                                             int32_t size, ImageData& image, int32_t option) {
    return callCamera(
        cameraId,
        [&](ICamera& camera) {
            return camera.getCurrentFrameToBuffer(buffer, size, image, option);
        },
        "Failed to get current frame to buffer from camera: ", "");
}

bool CameraPublicInterface::registerFrameCallback(const char* cameraId, FrameCallback callback,
                                                  void* user) {
    return callCamera(
        cameraId, [&](ICamera& camera) { return camera.registerFrameCallback(callback, user); },
        "Failed to register frame callback for camera: ", "Registered frame callback for camera: ");
}

bool CameraPublicInterface::unregisterFrameCallback(const char* cameraId) {
    return callCamera(
        cameraId, [](ICamera& camera) { return camera.unregisterFrameCallback(); },
        "Failed to unregister frame callback for camera: ",
        "Unregistered frame callback for camera: ");
}

bool CameraPublicInterface::setImageFormat(const char* cameraId, Ruvo_ImageFormat format) {
    return callCamera(
        cameraId, [&](ICamera& camera) { return camera.setImageFormat(format); },
        "Failed to set image format for camera: ", "Set image format for camera: ");
}

Ruvo_ImageFormat CameraPublicInterface::getImageFormat(const char* cameraId) {
    ICamera* camera = findOpenCamera(cameraId, LogLevel::Error);
    return camera ? camera->getImageFormat() : RUVO_FORMAT_UNKNOWN;
}

_RUVO_IMAGE_FORMAT_LIST CameraPublicInterface::getSupportedImageFormats(const char* cameraId) {
    ICamera* camera = findOpenCamera(cameraId, LogLevel::Error);
    return camera ? camera->getSupportedImageFormats() : _RUVO_IMAGE_FORMAT_LIST{};
}

bool CameraPublicInterface::setImageSize(const char* cameraId, int32_t width, int32_t height) {
    return callCamera(
        cameraId, [&](ICamera& camera) { return camera.setImageSize(width, height); },
        "Failed to set image size for camera: ",
        "Set image size to " + std::to_string(width) + "x" + std::to_string(height) +
            " for camera: ");
}

bool CameraPublicInterface::getImageSize(const char* cameraId, int32_t& width, int32_t& height) {
    return callCamera(
        cameraId, [&](ICamera& camera) { return camera.getImageSize(width, height); }, "", "");
}

void CameraPublicInterface::releaseImageData(ImageData& image) {
    telvarra::releaseImageData(image);
}

// ---- text parameters

bool CameraPublicInterface::setCameraParameter(const char* cameraId, const char* name,
                                               const char* value) {
    const std::string id = text(cameraId);
    ICamera* camera = findOpenCamera(cameraId, LogLevel::Error);
    if (!camera) return false;
    // Refused before the camera sees it: the pair is also a line of the camera's configuration.
    if ((name && std::strpbrk(name, "\r\n")) || (value && std::strpbrk(value, "\r\n"))) {
        logLine(LogLevel::Error, "Failed to set parameter " + text(name) + " on camera: " + id +
                                     " (a line break in its name or value)");
        return false;
    }
    if (!camera->setParameter(name, value)) {
        logLine(LogLevel::Error, "Failed to set parameter " + text(name) + " on camera: " + id);
        return false;
    }
    if (CameraConfig* config = m_manager->getCameraConfig(id)) config->setValue(name, value);
    logLine(LogLevel::Info,
            "Set parameter " + text(name) + "=" + text(value) + " on camera: " + id);
    return true;
}

bool CameraPublicInterface::getCameraParameter(const char* cameraId, const char* name,
                                               char** value) {
    return callCamera(
        cameraId, [&](ICamera& camera) { return camera.getParameter(name, value); },
        "Failed to get parameter " + text(name) + " from camera: ", "");
}

// ---- fixed controls

bool CameraPublicInterface::setFixedControl(const char* cameraId, const char* operation,
                                            const char* configKey, int32_t value,
                                            const CameraCall& call) {
    const std::string id = text(cameraId);
    ICamera* camera = findOpenCamera(cameraId, LogLevel::Error);
    if (!camera) return false;
    if (!call(*camera)) {
        logLine(LogLevel::Error,
                "Failed to set parameter : " + std::string(operation) + " on camera: " + id);
        return false;
    }
    if (CameraConfig* config = m_manager->getCameraConfig(id)) {
        char valueText[16];
        std::snprintf(valueText, sizeof valueText, "%d", value);
        config->setValue(configKey, valueText);
    }
    logLine(LogLevel::Info, "Set parameter : " + std::string(operation) + " on camera: " + id);
    return true;
}

bool CameraPublicInterface::getFixedControl(const char* cameraId, const char* operation,
                                            const CameraCall& call) {
    return callCamera(cameraId, call,
                      "Failed to get parameter : " + std::string(operation) + " from camera: ", "");
}

bool CameraPublicInterface::setCameraHorMirror(const char* cameraId, bool on) {
    return setFixedControl(cameraId, "setHorMirror", "setCameraHorMirror", on,
                           [&](ICamera& camera) { return camera.setHorMirror(on); });
}

bool CameraPublicInterface::getCameraHorMirror(const char* cameraId, bool& on) {
    return getFixedControl(cameraId, "getHorMirror",
                           [&](ICamera& camera) { return camera.getHorMirror(on); });
}

bool CameraPublicInterface::setCameraVerMirror(const char* cameraId, bool on) {
    return setFixedControl(cameraId, "setVerMirror", "setCameraVerMirror", on,
                           [&](ICamera& camera) { return camera.setVerMirror(on); });
}

bool CameraPublicInterface::getCameraVerMirror(const char* cameraId, bool& on) {
    return getFixedControl(cameraId, "getVerMirror",
                           [&](ICamera& camera) { return camera.getVerMirror(on); });
}

bool CameraPublicInterface::setCameraRotate(const char* cameraId, int32_t quarterTurns) {
    return setFixedControl(cameraId, "setRotate", "setCameraRotate", quarterTurns,
                           [&](ICamera& camera) { return camera.setRotate(quarterTurns); });
}

bool CameraPublicInterface::getCameraRotate(const char* cameraId, int32_t& quarterTurns) {
    return getFixedControl(cameraId, "getRotate",
                           [&](ICamera& camera) { return camera.getRotate(quarterTurns); });
}

bool CameraPublicInterface::setCameraExposureMod(const char* cameraId, bool automatic) {
    return setFixedControl(cameraId, "setExposureMod", "setCameraExposureMod", automatic,
                           [&](ICamera& camera) { return camera.setExposureMod(automatic); });
}

bool CameraPublicInterface::getCameraExposureMod(const char* cameraId, bool& automatic) {
    return getFixedControl(cameraId, "getExposureMod",
                           [&](ICamera& camera) { return camera.getExposureMod(automatic); });
}

bool CameraPublicInterface::setCameraBrightnessByPercent(const char* cameraId, int32_t percent) {
    return setFixedControl(cameraId, "setBrightnessByPercent", "setCameraBrightnessByPercent",
                           percent,
                           [&](ICamera& camera) { return camera.setBrightnessByPercent(percent); });
}

bool CameraPublicInterface::getCameraBrightnessByPercent(const char* cameraId, int32_t& percent) {
    // This getter's message carries the member's own name, unlike the others: kept as it is.
    return getFixedControl(cameraId, "getCameraBrightnessByPercent",
                           [&](ICamera& camera) { return camera.getBrightnessByPercent(percent); });
}

bool CameraPublicInterface::setCameraGainByPercent(const char* cameraId, int32_t percent) {
    return setFixedControl(cameraId, "setGainByPercent", "setCameraGainByPercent", percent,
                           [&](ICamera& camera) { return camera.setGainByPercent(percent); });
}

bool CameraPublicInterface::getCameraGainByPercent(const char* cameraId, int32_t& percent) {
    return getFixedControl(cameraId, "getGainByPercent",
                           [&](ICamera& camera) { return camera.getGainByPercent(percent); });
}

bool CameraPublicInterface::setCameraExposureByPercent(const char* cameraId, int32_t percent) {
    return setFixedControl(cameraId, "setExposureByPercent", "setCameraExposureByPercent", percent,
                           [&](ICamera& camera) { return camera.setExposureByPercent(percent); });
}

bool CameraPublicInterface::getCameraExposureByPercent(const char* cameraId, int32_t& percent) {
    return getFixedControl(cameraId, "getExposureByPercent",
                           [&](ICamera& camera) { return camera.getExposureByPercent(percent); });
}

// ---- typed named values

bool CameraPublicInterface::setTypedValue(const char* cameraId, const char* name,
                                          const CameraCall& call) {
    return callCamera(cameraId, call, "Failed to set parameter " + text(name) + " on camera: ",
                      "Set parameter " + text(name) + " on camera: ");
}

bool CameraPublicInterface::getTypedValue(const char* cameraId, const char* name,
                                          const CameraCall& call) {
    return callCamera(cameraId, call,
                      "Failed to get parameter " + text(name) + " from camera: ", "");
}

bool CameraPublicInterface::getCameraIntValue(const char* cameraId, const char* name,
                                              _RUVO_INT_VALUE* value) {
    return getTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.getIntValue(name, value); });
}

bool CameraPublicInterface::setCameraIntValue(const char* cameraId, const char* name,
                                              int64_t value) {
    return setTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.setIntValue(name, value); });
}

bool CameraPublicInterface::getCameraEnumValue(const char* cameraId, const char* name,
                                               _RUVO_ENUM_VALUE* value) {
    return getTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.getEnumValue(name, value); });
}

bool CameraPublicInterface::setCameraEnumValue(const char* cameraId, const char* name,
                                               int64_t value) {
    return setTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.setEnumValue(name, value); });
}

bool CameraPublicInterface::getCameraFloatValue(const char* cameraId, const char* name,
                                                _RUVO_FLOAT_VALUE* value) {
    return getTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.getFloatValue(name, value); });
}

bool CameraPublicInterface::setCameraFloatValue(const char* cameraId, const char* name,
                                                double value) {
    return setTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.setFloatValue(name, value); });
}

bool CameraPublicInterface::getCameraBoolValue(const char* cameraId, const char* name,
                                               bool* value) {
    return getTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.getBoolValue(name, value); });
}

bool CameraPublicInterface::setCameraBoolValue(const char* cameraId, const char* name, bool value) {
    return setTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.setBoolValue(name, value); });
}

bool CameraPublicInterface::getCameraStringValue(const char* cameraId, const char* name,
                                                 _RUVO_STRING_VALUE* value) {
    return getTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.getStringValue(name, value); });
}

bool CameraPublicInterface::setCameraStringValue(const char* cameraId, const char* name,
                                                 const char* value) {
    return setTypedValue(cameraId, name,
                         [&](ICamera& camera) { return camera.setStringValue(name, value); });
}
