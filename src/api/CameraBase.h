// The state every camera keeps, in the same order for every make, and the accessor bodies that
// are one for all makes. A make derives from it and adds its SDK handle, buffers and locks.
#ifndef TELVARRA_API_CAMERABASE_H
#define TELVARRA_API_CAMERABASE_H

#include <atomic>
#include <string>

#include "telvarra/ICamera.h"

namespace telvarra {

class CameraBase : public ICamera {
  public:
    bool isConnected() override;
    Ruvo_CameraStatus getStatus() override;
    DeviceInfo& getDeviceInfo(DeviceInfo& info) override;
    Ruvo_ImageFormat getImageFormat() override;
    _RUVO_IMAGE_FORMAT_LIST getSupportedImageFormats() override;
    bool getImageSize(int32_t& width, int32_t& height) override;

    // Typed named values: a make without them answers true and leaves the out-argument alone.
    bool getIntValue(const char* name, _RUVO_INT_VALUE* value) override;
    bool setIntValue(const char* name, int64_t value) override;
    bool getEnumValue(const char* name, _RUVO_ENUM_VALUE* value) override;
    bool setEnumValue(const char* name, int64_t value) override;
    bool getFloatValue(const char* name, _RUVO_FLOAT_VALUE* value) override;
    bool setFloatValue(const char* name, double value) override;
    bool getBoolValue(const char* name, bool* value) override;
    bool setBoolValue(const char* name, bool value) override;
    bool getStringValue(const char* name, _RUVO_STRING_VALUE* value) override;
    bool setStringValue(const char* name, const char* value) override;

  protected:
    // `deviceInfo` is the make's own copy of its device record; its maximum image size is set to
    // 1280 x 1024 here, as every camera does.
    CameraBase(std::string cameraId, const DeviceInfo& deviceInfo);

    // Flags the frame path reads while another thread may change them are atomic so that a
    // fetch never sees a torn value.
    std::string m_cameraId;
    DeviceInfo m_deviceInfo;
    std::atomic<Ruvo_CameraStatus> m_status{RUVO_STATUS_DISCONNECTED};
    std::atomic<bool> m_connected{false};
    std::atomic<bool> m_acquiring{false};
    std::atomic<Ruvo_ImageFormat> m_imageFormat{RUVO_FORMAT_MONO8};
    int32_t m_width = 0;
    int32_t m_height = 0;

    // Stored for the host; the makes that pull frames on demand never call it.
    FrameCallback m_frameCallback = nullptr;
    void* m_frameCallbackUser = nullptr;
    int32_t m_reconnectIntervalMs = 0;
};

}  // namespace telvarra

#endif
