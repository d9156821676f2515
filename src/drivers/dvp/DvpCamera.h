// One Dvp camera, found by the identifier the driver lists and opened by its user id. Frames are
// pulled on the caller's thread: each fetch copies the SDK's frame, valid only until the next
// one, into the camera's buffer; the software frame path then mirrors and turns it. No zoom.
#ifndef TELVARRA_DRIVERS_DVP_DVPCAMERA_H
#define TELVARRA_DRIVERS_DVP_DVPCAMERA_H

#include <optional>
#include <string>

#include "api/CameraBase.h"
#include "api/FrameBuffer.h"
#include "drivers/dvp/DvpBinding.h"

namespace telvarra::dvp {

class DvpCamera final : public CameraBase {
  public:
    explicit DvpCamera(const std::string& cameraId);
    ~DvpCamera() override;

    bool initialize() override;
    // Connected, and the device still answers: an unplugged camera is noticed here.
    bool isConnected() override;
    bool setImageFormat(Ruvo_ImageFormat format) override;
    bool setExposureMod(bool automatic) override;
    bool getExposureMod(bool& automatic) override;

  private:
    bool closeDevice() override;
    bool startStreaming() override;
    bool stopStreaming() override;
    bool deviceOpen() const override { return m_open; }
    bool deviceStillConnected() override;
    bool fetchFrame(ImageData& image) override;

    bool findDevice();
    bool openDevice();
    bool stopRunningStream();
    bool useFreeRun();
    bool readDescriptors();
    bool readFormats();
    // dvpIsValid answered and said valid: what every control and fetch needs first.
    bool handleValid() const;
    bool failFetch(int code) const;

    const DvpFunctions& m_sdk;
    bool m_open = false;
    sdk::dvpHandle m_handle = 0;
    sdk::dvpCameraInfo m_device{};
    FrameBuffer m_frameBuffer;  // the last frame, growing to the largest seen
};

}  // namespace telvarra::dvp

#endif
