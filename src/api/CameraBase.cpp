#include "api/CameraBase.h"

#include <utility>

#include "api/Records.h"

namespace telvarra {

CameraBase::CameraBase(std::string cameraId, const DeviceInfo& deviceInfo)
    : m_cameraId(std::move(cameraId)), m_deviceInfo(deviceInfo) {
    m_deviceInfo.maxWidth = kCameraMaxWidth;
    m_deviceInfo.maxHeight = kCameraMaxHeight;
}

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

bool CameraBase::getImageSize(int32_t& width, int32_t& height) {
    width = m_width;
    height = m_height;
    return true;
}

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
