// One MindVision camera, opened by serial number. Frames are pulled on the caller's thread: each
// fetch borrows the SDK's raw frame, has the SDK's image processor write it into the camera's
// output buffer and gives the raw frame back. Mirror, rotation and zoom are the device's own.
#ifndef TELVARRA_DRIVERS_MINDVISION_MINDVISIONCAMERA_H
#define TELVARRA_DRIVERS_MINDVISION_MINDVISIONCAMERA_H

#include <memory>
#include <optional>
#include <string>

#include "api/CameraBase.h"
#include "api/UnreturnedFrames.h"
#include "drivers/mindvision/MindVisionBinding.h"

namespace telvarra::mindvision {

class MindVisionCamera final : public CameraBase {
  public:
    explicit MindVisionCamera(const std::string& cameraId);
    ~MindVisionCamera() override;

    bool initialize() override;
    bool setImageFormat(Ruvo_ImageFormat format) override;
    bool setHorMirror(bool on) override;
    bool getHorMirror(bool& on) override;
    bool setVerMirror(bool on) override;
    bool getVerMirror(bool& on) override;
    bool setRotate(int32_t quarterTurns) override;
    bool getRotate(int32_t& quarterTurns) override;
    bool setExposureMod(bool automatic) override;
    bool getExposureMod(bool& automatic) override;

  private:
    // The output block from CameraAlignMalloc, handed back with CameraAlignFree.
    struct AlignedFree {
        sdk::MindVisionSignatures::CameraAlignFree* alignFree;
        void operator()(sdk::BYTE* block) const;
    };
    using AlignedBlock = std::unique_ptr<sdk::BYTE, AlignedFree>;

    bool closeDevice() override;
    bool startStreaming() override;
    bool stopStreaming() override;
    bool deviceOpen() const override { return m_handle > 0; }
    bool deviceStillConnected() override;
    bool fetchFrame(ImageData& image) override;
    bool applyParameter(const std::string& name, const std::string& value) override;

    bool findDevice();
    bool openDevice();
    bool readOutputFormat();
    bool chooseFormats();
    bool allocateOutput();
    void describeDevice();
    bool setMirror(int direction, bool on);
    bool getMirror(int direction, bool& on);
    bool zoom(int level);
    // Returns a raw frame to the SDK; a refused one is kept and offered again later.
    bool release(sdk::BYTE* raw);
    void giveBack(sdk::BYTE* raw);
    void retryGivingBack();
    struct SteppedSetting;
    // A setting in whole steps whose bounds the capability record gives (AE target, gain).
    PercentControl steppedControl(const SteppedSetting& setting);
    PercentControl exposureControl();
    std::optional<DeviceRange> exposureRange();

    const MindVisionFunctions& m_sdk;
    sdk::CameraHandle m_handle = -1;
    sdk::tSdkCameraDevInfo m_device{};
    sdk::tSdkCameraCapbility m_capability{};
    AlignedBlock m_output;
    std::size_t m_outputSize = 0;
    int m_zoomLevel = 0;
    UnreturnedFrames<sdk::BYTE*> m_unreturned;
};

}  // namespace telvarra::mindvision

#endif
