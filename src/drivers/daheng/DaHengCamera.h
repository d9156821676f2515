// One DaHeng camera, opened by serial number. Frames are pulled on the caller's thread: each fetch
// has the SDK write one image into the camera's buffer; the software frame path then mirrors,
// turns and zooms it.
#ifndef TELVARRA_DRIVERS_DAHENG_DAHENGCAMERA_H
#define TELVARRA_DRIVERS_DAHENG_DAHENGCAMERA_H

#include <atomic>
#include <string>

#include "api/CameraBase.h"
#include "api/FrameBuffer.h"
#include "drivers/daheng/DaHengBinding.h"

namespace telvarra::daheng {

class DaHengCamera final : public CameraBase {
  public:
    explicit DaHengCamera(const std::string& cameraId);
    ~DaHengCamera() override;

    bool initialize() override;
    bool setImageFormat(Ruvo_ImageFormat format) override;
    bool setExposureMod(bool automatic) override;
    bool getExposureMod(bool& automatic) override;
    bool getExposureByPercent(int32_t& percent) override;

  private:
    bool closeDevice() override;
    bool startStreaming() override;
    bool stopStreaming() override;
    bool deviceOpen() const override { return m_handle != nullptr; }
    bool fetchFrame(ImageData& image) override;
    void afterPercentSet() override { saveFeatures(); }

    bool findDevice();
    bool openDevice();
    bool readPixelFormat();
    bool readSensorSize();
    bool readEnum(const char* feature, sdk::GX_ENUM_VALUE& value) const;
    // The device's own save of its features, after every setter; what it answers is not used.
    void saveFeatures() const;
    PercentControl floatControl(const char* feature);

    const DaHengFunctions& m_sdk;
    void* m_handle = nullptr;
    sdk::GX_DEVICE_BASE_INFO m_baseInfo{};
    // True from a disconnect to the next connect: frames are refused meanwhile.
    std::atomic<bool> m_offline{false};
    FrameBuffer m_frameBuffer;  // sensor width x height x 4 bytes
};

}  // namespace telvarra::daheng

#endif
