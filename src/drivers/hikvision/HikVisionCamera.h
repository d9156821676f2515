// One HikVision camera. Frames are pulled on the caller's thread: each fetch takes one image from
// the SDK, converts it when needed, and mirrors, rotates and zooms it in the camera's own buffer.
#ifndef TELVARRA_DRIVERS_HIKVISION_HIKVISIONCAMERA_H
#define TELVARRA_DRIVERS_HIKVISION_HIKVISIONCAMERA_H

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "api/CameraBase.h"
#include "api/PercentMapping.h"
#include "drivers/hikvision/HikVisionSdk.h"
#include "platform/QCriticalSection.h"

namespace telvarra::hikvision {

class HikVisionCamera : public CameraBase {
  public:
    explicit HikVisionCamera(const std::string& cameraId);
    ~HikVisionCamera() override;

    bool initialize() override;
    bool connect() override;
    bool disconnect() override;
    bool startAcquisition() override;
    bool stopAcquisition() override;
    bool setParameter(const char* name, const char* value) override;
    bool getParameter(const char* name, char** value) override;
    bool reconnect() override;
    void setReconnectInterval(int32_t intervalMs) override;
    bool getCurrentFrame(ImageData& image, int32_t option) override;
    bool getCurrentFrameToBuffer(unsigned char* buffer, int32_t size, ImageData& image,
                                 int32_t option) override;
    bool registerFrameCallback(FrameCallback callback, void* user) override;
    bool unregisterFrameCallback() override;
    bool setImageFormat(Ruvo_ImageFormat format) override;
    bool setImageSize(int32_t width, int32_t height) override;
    bool setHorMirror(bool on) override;
    bool getHorMirror(bool& on) override;
    bool setVerMirror(bool on) override;
    bool getVerMirror(bool& on) override;
    bool setRotate(int32_t quarterTurns) override;
    bool getRotate(int32_t& quarterTurns) override;
    bool setExposureMod(bool automatic) override;
    bool getExposureMod(bool& automatic) override;
    bool setBrightnessByPercent(int32_t percent) override;
    bool getBrightnessByPercent(int32_t& percent) override;
    bool setGainByPercent(int32_t percent) override;
    bool getGainByPercent(int32_t& percent) override;
    bool setExposureByPercent(int32_t percent) override;
    bool getExposureByPercent(int32_t& percent) override;

  private:
    bool findDevice();
    bool openDevice();
    bool readPixelFormat();
    void closeHandle();
    bool deviceConnected() const;
    bool setPixelFormat(uint32_t pixelType, Ruvo_ImageFormat format, int32_t channels);
    bool fetchFrame(ImageData& image);
    bool storeFrame(const MV_FRAME_OUT& frame, ImageData& image);
    bool applyGeometry(ImageData& image);
    bool applyZoom(ImageData& image);
    template <class Value, class Stored>
    bool storeFlag(Stored& flag, Value value);
    template <class Value, class Stored>
    bool readFlag(const Stored& flag, Value& value) const;
    // A percent control's device range; none without a device or when the SDK cannot say.
    std::optional<DeviceRange> brightnessRange() const;
    std::optional<DeviceRange> gainRange() const;
    std::optional<DeviceRange> exposureRange() const;
    // Writes the mapped value with `write` (an SDK status) and saves the device's user data.
    bool setByPercent(int32_t percent, const std::optional<DeviceRange>& range,
                      const std::function<int(double)>& write);
    static bool getByPercent(const std::optional<DeviceRange>& range, int32_t& percent);
    void logInfo(const std::string& message) const;

    const HikVisionFunctions& m_sdk;
    void* m_handle = nullptr;
    std::unique_ptr<MV_CC_DEVICE_INFO_LIST> m_deviceList;
    MV_CC_DEVICE_INFO m_selectedDevice{};
    uint32_t m_rawPixelType = 0;
    uint32_t m_sensorWidth = 0;
    uint32_t m_sensorHeight = 0;
    int32_t m_channels = 1;
    // Shared with the frame path, which may run on another thread.
    std::atomic<int32_t> m_zoomLevel{0};
    std::atomic<bool> m_horMirror{false};
    std::atomic<bool> m_verMirror{false};
    std::atomic<int32_t> m_rotation{0};
    std::vector<unsigned char> m_frameBuffer;  // the last frame; grows, never shrinks
    int32_t m_frameCounter = 0;
    // Held over a whole fetch (and the copy out of it), so fetches on one camera are serial.
    QCriticalSection m_cameraLock;
    // Held while the frame buffer is resized and filled.
    QCriticalSection m_bufferLock;
};

}  // namespace telvarra::hikvision

#endif
