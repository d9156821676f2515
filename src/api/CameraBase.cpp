#include "api/CameraBase.h"

#include <cstring>
#include <ctime>
#include <mutex>
#include <utility>

#include "core/Records.h"
#include "telvarra/CameraLogger.h"

namespace telvarra {

namespace {

// What getParameter hands out: constant text owned by the library.
constexpr char kParameterAnswer[] = "100";

std::string text(const char* value) { return value ? value : ""; }

void logLine(LogLevel level, const std::string& message) {
    CameraLogger::getInstance().log(level, message);
}

DeviceInfo placeholderRecord(const std::string& cameraId, const CameraProfile& profile) {
    DeviceInfo record =
        makeDeviceRecord(profile.type, {cameraId, profile.vendorName, profile.placeholderSerial,
                                        profile.modelName, "productName", "friendlyName"});
    record.maxWidth = kCameraMaxWidth;
    record.maxHeight = kCameraMaxHeight;
    return record;
}

}  // namespace

std::string literalTail(const char* literal, int64_t offset) {
    const std::size_t length = std::strlen(literal);
    return offset >= 0 && static_cast<std::size_t>(offset) < length ? literal + offset : "";
}

CameraBase::CameraBase(std::string cameraId, const CameraProfile& profile, FramePath framePath)
    : m_cameraId(std::move(cameraId)),
      m_deviceInfo(placeholderRecord(m_cameraId, profile)),
      m_profile(profile) {
    if (framePath == FramePath::Software) m_softwareFrames.emplace();
}

void CameraBase::logInfo(const std::string& message) const { logLine(LogLevel::Info, message); }

void CameraBase::logError(const std::string& message) const { logLine(LogLevel::Error, message); }

// ---- sessions

bool CameraBase::connect() {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    if (m_connected) {
        logLine(LogLevel::Warning, "Camera already connected: " + m_cameraId);
        return true;
    }
    logInfo(m_profile.connecting + m_cameraId);
    if (!initialize()) {
        closeDevice();
        m_connected = false;
        m_status = RUVO_STATUS_DISCONNECTED;
        return false;
    }
    m_connected = true;
    m_status = RUVO_STATUS_CONNECTED;
    return true;
}

bool CameraBase::disconnect() {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    if (!m_connected) {
        logLine(LogLevel::Warning, "Camera not connected: " + m_cameraId);
        return false;
    }
    if (m_acquiring) stopAcquisition();
    if (!closeDevice() && m_profile.closeFailureKeepsConnected) return false;
    logInfo(m_profile.disconnecting + m_cameraId);
    m_connected = false;
    // A closed device streams nothing, also when its stop was refused (an unplugged camera):
    // left set, the flag would make every later start a no-op "already streaming".
    m_acquiring = false;
    m_status = RUVO_STATUS_DISCONNECTED;
    return true;
}

bool CameraBase::reconnect() {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    logInfo(m_profile.reconnecting + m_cameraId);
    if (deviceStillConnected()) return true;
    if (m_connected) disconnect();
    return connect();
}

void CameraBase::setReconnectInterval(int32_t intervalMs) {
    m_reconnectIntervalMs = intervalMs;
    logInfo("Setting reconnect interval to " + std::to_string(intervalMs) + "ms" +
            m_profile.forCamera + m_cameraId);
}

// ---- acquisition

bool CameraBase::startAcquisition() {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    if (!m_connected) {
        logError("Camera not connected: " + m_cameraId);
        return false;
    }
    if (m_acquiring) {
        logLine(LogLevel::Warning, "Camera already streaming: " + m_cameraId);
        return true;
    }
    if (deviceOpen() && startStreaming()) {
        logInfo(m_profile.starting + m_cameraId);
        m_acquiring = true;
        m_status = RUVO_STATUS_ACQUIRING;
        return true;
    }
    m_acquiring = false;
    m_status = RUVO_STATUS_NONE;
    return false;
}

bool CameraBase::stopAcquisition() {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    if (!m_connected) {
        logError("Camera not connected: " + m_cameraId);
        return false;
    }
    if (!m_acquiring) {
        logLine(LogLevel::Warning, "Camera not streaming: " + m_cameraId);
        return false;
    }
    logInfo(m_profile.stopping + m_cameraId);
    if (!stopStreaming()) {
        m_status = RUVO_STATUS_NONE;  // and still streaming
        return false;
    }
    m_acquiring = false;
    m_status = m_profile.statusAfterStop;
    return true;
}

// ---- frames

bool CameraBase::getCurrentFrame(ImageData& image, int32_t) {
    if (!m_connected || !m_acquiring) {
        logError("Camera not streaming: " + m_cameraId);
        return false;
    }
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    if (!m_softwareFrames) return fetchFrame(image);
    m_softwareFrames->startFrame();
    return fetchFrame(image) && m_softwareFrames->finishFrame(image);
}

bool CameraBase::getCurrentFrameToBuffer(unsigned char* buffer, int32_t size, ImageData& image,
                                         int32_t option) {
    if (!m_connected || !m_acquiring) {
        logError("Camera not streaming: " + m_cameraId);
        return false;
    }
    if (!buffer || size < 1) {
        logError("Invalid buffer provided");
        return false;
    }
    // Held across the copy too: another thread's fetch would otherwise overwrite the frame
    // while it is being copied out.
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    if (!getCurrentFrame(image, option)) return false;
    if (size < image.dataSize) {
        logError("Buffer too small: " +
                 (m_profile.refusalsNameNumbers
                      ? literalTail(" < ", size) + std::to_string(image.dataSize)
                      : m_cameraId));
        return false;
    }
    std::memcpy(buffer, image.data, static_cast<std::size_t>(image.dataSize));
    image.data = buffer;
    return true;
}

void CameraBase::describeFrame(ImageData& image, unsigned char* data, int32_t width, int32_t height,
                               int32_t channels, int32_t dataSize) {
    image.data = data;
    image.width = width;
    image.height = height;
    image.channels = channels;
    image.format = m_imageFormat;
    image.dataSize = dataSize;
    image.timestamp = static_cast<int64_t>(std::time(nullptr)) * 1000;
    image.frameNumber = ++m_frameCounter;
}

bool CameraBase::registerFrameCallback(FrameCallback callback, void* user) {
    m_frameCallback = callback;
    m_frameCallbackUser = user;
    logInfo(std::string("Registered frame callback") + m_profile.forCamera + m_cameraId);
    return true;
}

bool CameraBase::unregisterFrameCallback() {
    m_frameCallback = nullptr;
    m_frameCallbackUser = nullptr;
    logInfo(std::string("Unregistered frame callback") + m_profile.forCamera + m_cameraId);
    return true;
}

// ---- parameters

bool CameraBase::setParameter(const char* name, const char* value) {
    logInfo("Setting parameter " + text(name) + "=" + text(value) + m_profile.onCamera +
            m_cameraId);
    return applyParameter(text(name), text(value));
}

bool CameraBase::applyParameter(const std::string& name, const std::string&) {
    if (!deviceOpen()) return false;
    return !m_softwareFrames || m_softwareFrames->applyZoomCommand(name);
}

bool CameraBase::getParameter(const char* name, char** value) {
    if (value) *value = const_cast<char*>(kParameterAnswer);
    logInfo("Getting parameter " + text(name) + m_profile.fromCamera + m_cameraId);
    return !m_profile.parameterReadNeedsDevice || deviceOpen();
}

// ---- shared accessors

bool CameraBase::isConnected() { return m_connected; }

Ruvo_CameraStatus CameraBase::getStatus() { return m_status; }

DeviceInfo& CameraBase::getDeviceInfo(DeviceInfo& info) {
    info = m_deviceInfo;
    return info;
}

Ruvo_ImageFormat CameraBase::getImageFormat() { return m_imageFormat; }

_RUVO_IMAGE_FORMAT_LIST CameraBase::getSupportedImageFormats() {
    return m_deviceInfo.supportedFormats;
}

bool CameraBase::setImageSize(int32_t width, int32_t height) {
    if (width < 1 || width > m_deviceInfo.maxWidth || height < 1 ||
        height > m_deviceInfo.maxHeight) {
        logError("Invalid image size: " +
                 (m_profile.refusalsNameNumbers
                      ? std::to_string(width) + "x" + std::to_string(height)
                      : m_cameraId));
        return false;
    }
    // Recorded for the host only: frames keep the device's size.
    m_width = width;
    m_height = height;
    logInfo("Set image size to " + std::to_string(width) + "x" + std::to_string(height) +
            m_profile.forCamera + m_cameraId);
    return true;
}

bool CameraBase::getImageSize(int32_t& width, int32_t& height) {
    width = m_width;
    height = m_height;
    return true;
}

// ---- geometry

template <class Change>
bool CameraBase::withFramePath(Change&& change) {
    if (!m_softwareFrames || !deviceOpen()) return false;
    change(*m_softwareFrames);
    return true;
}

bool CameraBase::setHorMirror(bool on) {
    return withFramePath([&](SoftwareFramePath& path) { path.setHorMirror(on); });
}

bool CameraBase::getHorMirror(bool& on) {
    return withFramePath([&](SoftwareFramePath& path) { on = path.horMirror(); });
}

bool CameraBase::setVerMirror(bool on) {
    return withFramePath([&](SoftwareFramePath& path) { path.setVerMirror(on); });
}

bool CameraBase::getVerMirror(bool& on) {
    return withFramePath([&](SoftwareFramePath& path) { on = path.verMirror(); });
}

bool CameraBase::setRotate(int32_t quarterTurns) {
    return withFramePath([&](SoftwareFramePath& path) { path.setRotation(quarterTurns); });
}

bool CameraBase::getRotate(int32_t& quarterTurns) {
    return withFramePath([&](SoftwareFramePath& path) { quarterTurns = path.rotation(); });
}

// ---- percent controls

bool CameraBase::setPercent(const PercentControl& control, int32_t percent) {
    if (!control.read) return true;
    if (!setByPercent(control, percent)) return false;
    afterPercentSet();
    return true;
}

bool CameraBase::getPercent(const PercentControl& control, int32_t& percent) {
    return !control.read || getByPercent(control, percent);
}

bool CameraBase::setBrightnessByPercent(int32_t percent) {
    return setPercent(m_brightness, percent);
}

bool CameraBase::getBrightnessByPercent(int32_t& percent) {
    return getPercent(m_brightness, percent);
}

bool CameraBase::setGainByPercent(int32_t percent) { return setPercent(m_gain, percent); }

bool CameraBase::getGainByPercent(int32_t& percent) { return getPercent(m_gain, percent); }

bool CameraBase::setExposureByPercent(int32_t percent) { return setPercent(m_exposure, percent); }

bool CameraBase::getExposureByPercent(int32_t& percent) { return getPercent(m_exposure, percent); }

// ---- typed named values

bool CameraBase::getIntValue(const char*, _RUVO_INT_VALUE*) { return true; }
bool CameraBase::setIntValue(const char*, int64_t) { return true; }
bool CameraBase::getEnumValue(const char*, _RUVO_ENUM_VALUE*) { return true; }
bool CameraBase::setEnumValue(const char*, int64_t) { return true; }
bool CameraBase::getFloatValue(const char*, _RUVO_FLOAT_VALUE*) { return true; }
bool CameraBase::setFloatValue(const char*, double) { return true; }
bool CameraBase::getBoolValue(const char*, bool*) { return true; }
bool CameraBase::setBoolValue(const char*, bool) { return true; }
bool CameraBase::getStringValue(const char*, _RUVO_STRING_VALUE*) { return true; }
bool CameraBase::setStringValue(const char*, const char*) { return true; }

}  // namespace telvarra
