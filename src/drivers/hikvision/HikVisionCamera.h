// One HikVision camera. Frames are pulled on the caller's thread: each fetch takes one image from
// the SDK and converts it when needed; the software frame path then mirrors, turns and zooms it.
#ifndef TELVARRA_DRIVERS_HIKVISION_HIKVISIONCAMERA_H
#define TELVARRA_DRIVERS_HIKVISION_HIKVISIONCAMERA_H

#include <memory>
#include <string>

#include "api/CameraBase.h"
#include "api/FrameBuffer.h"
#include "api/UnreturnedFrames.h"
#include "drivers/hikvision/HikVisionBinding.h"

namespace telvarra::hikvision {

class HikVisionCamera final : public CameraBase {
  public:
    explicit HikVisionCamera(const std::string& cameraId);
    ~HikVisionCamera() override;

    bool initialize() override;
    bool setImageFormat(Ruvo_ImageFormat format) override;
    bool setExposureMod(bool automatic) override;
    bool getExposureMod(bool& automatic) override;

  private:
    bool closeDevice() override;
    bool startStreaming() override;
    bool stopStreaming() override;
    bool deviceOpen() const override { return m_handle != nullptr; }
    bool deviceStillConnected() override;
    bool fetchFrame(ImageData& image) override;
    void afterPercentSet() override { saveUserData(); }

    bool findDevice();
    bool openDevice();
    bool readPixelFormat();
    bool setPixelFormat(uint32_t pixelType, Ruvo_ImageFormat format);
    bool storeFrame(const sdk::MV_FRAME_OUT& frame, ImageData& image);
    // Returns a lent frame to the SDK; a refused one is kept and offered again later.
    bool release(sdk::MV_FRAME_OUT& lent);
    void giveBack(const sdk::MV_FRAME_OUT& frame);
    void retryGivingBack();
    bool readModes(sdk::MVCC_ENUMVALUE& gainMode, sdk::MVCC_ENUMVALUE& exposureMode) const;
    // Ends every successful setter: the device keeps its settings over a power cycle.
    void saveUserData() const;

    const HikVisionFunctions& m_sdk;
    void* m_handle = nullptr;
    std::unique_ptr<sdk::MV_CC_DEVICE_INFO_LIST> m_deviceList;
    sdk::MV_CC_DEVICE_INFO m_selectedDevice{};
    uint32_t m_rawPixelType = 0;  // the device's own type when it is none of the three packed
    FrameBuffer m_frameBuffer;    // the last frame
    UnreturnedFrames<sdk::MV_FRAME_OUT> m_unreturned;
    // Set from a successful MV_CC_StartGrabbing until one of MV_CC_StopGrabbing: a stop skipped
    // because the device did not answer leaves the SDK grabbing.
    bool m_grabbing = false;
};

}  // namespace telvarra::hikvision

#endif
