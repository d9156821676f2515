// The MindVision SDK simulator: MindVision's device list, integer handles, capability record,
// lent raw frames and the software ISP that converts, mirrors and turns them, over the simulator
// core. The exported vendor functions and the test control functions are thin shells over the
// one process-wide instance.
#ifndef TELVARRA_SIM_MINDVISION_MINDVISIONSIMULATOR_H
#define TELVARRA_SIM_MINDVISION_MINDVISIONSIMULATOR_H

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "sim/common/FrameMemory.h"
#include "sim/common/SimulatorCore.h"
#include "vendor/mindvision/MindVisionSdk.h"

namespace telvarra::sim::mindvision {

namespace sdk = telvarra::vendor::mindvision;

struct UIntFeature {
    std::uint32_t min;
    std::uint32_t max;
    std::uint32_t current;
};

struct DoubleFeature {
    double min;
    double max;
    double current;
};

// What a MindVision device holds beyond the common model. The ranges describe the camera; the
// settings are what the camera keeps while powered: an unplug brings back the power-up values.
struct DeviceState {
    const char* linkName;  // "USB3.0", "GigE", "USB2.0"
    UIntFeature aeTarget{20, 250, 120};
    UIntFeature analogGain{16, 128, 16};               // steps of kAnalogGainStep
    DoubleFeature exposure{10.0, 1000000.0, 10000.0};  // microseconds
    bool mirror[2] = {false, false};                   // horizontal, vertical
    int rotation = 0;                                  // counter-clockwise quarter turns
    bool autoExposure = false;
    int triggerMode = sdk::CONTINUATION;
    sdk::UINT ispFormat = sdk::CAMERA_MEDIA_TYPE_BGR8;
    sdk::tSdkImageResolution resolution{};  // the field of view; set to the sensor at power-up
};

// A MindVision handle is one session: open from CameraInit to CameraUnInit, then kept, closed,
// so that later calls with it are told apart from calls with a handle never issued.
struct HandleState {};

class MindVisionSimulator : public SimulatorCore<DeviceState, HandleState> {
  public:
    MindVisionSimulator();

    // ---- The vendor functions. ----
    sdk::CameraSdkStatus sdkInit(int language);
    sdk::CameraSdkStatus enumerateDevice(sdk::tSdkCameraDevInfo* list, sdk::INT* count);
    sdk::CameraSdkStatus init(sdk::tSdkCameraDevInfo* info, int loadMode, int team,
                              sdk::CameraHandle* handle);
    sdk::CameraSdkStatus unInit(sdk::CameraHandle handle);
    sdk::CameraSdkStatus connectTest(sdk::CameraHandle handle);
    sdk::CameraSdkStatus getCapability(sdk::CameraHandle handle, sdk::tSdkCameraCapbility* out);
    sdk::CameraSdkStatus getIspOutFormat(sdk::CameraHandle handle, sdk::UINT* format);
    sdk::CameraSdkStatus setIspOutFormat(sdk::CameraHandle handle, sdk::UINT format);
    sdk::CameraSdkStatus setTriggerMode(sdk::CameraHandle handle, int mode);
    sdk::CameraSdkStatus setCrossLine(sdk::CameraHandle handle, int line, int x, int y,
                                      sdk::UINT colour, sdk::BOOL visible);
    sdk::BYTE* alignMalloc(int size, int align);
    void alignFree(sdk::BYTE* memory);
    sdk::CameraSdkStatus play(sdk::CameraHandle handle);
    sdk::CameraSdkStatus stop(sdk::CameraHandle handle);
    sdk::CameraSdkStatus getImageBufferPriority(sdk::CameraHandle handle, sdk::tSdkFrameHead* head,
                                                sdk::BYTE** raw, sdk::UINT timeoutMs,
                                                sdk::UINT priority);
    sdk::CameraSdkStatus imageProcess(sdk::CameraHandle handle, sdk::BYTE* raw, sdk::BYTE* out,
                                      sdk::tSdkFrameHead* head);
    sdk::CameraSdkStatus releaseImageBuffer(sdk::CameraHandle handle, sdk::BYTE* raw);
    sdk::CameraSdkStatus setMirror(sdk::CameraHandle handle, int direction, sdk::BOOL on);
    sdk::CameraSdkStatus getMirror(sdk::CameraHandle handle, int direction, sdk::BOOL* on);
    sdk::CameraSdkStatus setRotate(sdk::CameraHandle handle, int quarterTurns);
    sdk::CameraSdkStatus getRotate(sdk::CameraHandle handle, int* quarterTurns);
    sdk::CameraSdkStatus setAeState(sdk::CameraHandle handle, sdk::BOOL automatic);
    sdk::CameraSdkStatus getAeState(sdk::CameraHandle handle, sdk::BOOL* automatic);
    sdk::CameraSdkStatus setAeTarget(sdk::CameraHandle handle, int target);
    sdk::CameraSdkStatus getAeTarget(sdk::CameraHandle handle, int* target);
    sdk::CameraSdkStatus setAnalogGain(sdk::CameraHandle handle, sdk::INT gain);
    sdk::CameraSdkStatus getAnalogGain(sdk::CameraHandle handle, sdk::INT* gain);
    sdk::CameraSdkStatus getExposureTimeRange(sdk::CameraHandle handle, double* minimum,
                                              double* maximum, double* step);
    sdk::CameraSdkStatus setExposureTime(sdk::CameraHandle handle, double microseconds);
    sdk::CameraSdkStatus getExposureTime(sdk::CameraHandle handle, double* microseconds);
    sdk::CameraSdkStatus setImageResolution(sdk::CameraHandle handle,
                                            sdk::tSdkImageResolution* resolution);
    sdk::CameraSdkStatus getImageResolution(sdk::CameraHandle handle,
                                            sdk::tSdkImageResolution* resolution);
    // The exported names the library never calls.
    sdk::CameraSdkStatus notSupported(const char* function);

    // ---- MindVision's own test control (see MvSimControl.h). ----
    bool setAeTargetRange(const std::string& id, std::uint32_t min, std::uint32_t max);
    bool setAnalogGainRange(const std::string& id, std::uint32_t min, std::uint32_t max);
    bool setExposureRange(const std::string& id, double min, double max);
    std::size_t alignedBlocks();
    std::optional<sdk::tSdkImageResolution> resolution(const std::string& id);

  private:
    std::optional<DeviceState> accept(DeviceDescription& description, std::string& error) override;
    void resetMake() override;
    std::size_t outstandingFrames() override { return m_lent.outstanding(); }
    void powerLost(const std::string& id) override;

    // A call on a handle whose session is alive; `body` takes the Device.
    template <class Body>
    sdk::CameraSdkStatus onDevice(const char* function, std::string arguments,
                                  sdk::CameraHandle handle, Body&& body);

    LentBuffers m_lent;
    // CameraAlignMalloc's blocks by their aligned address, each the storage it was cut from.
    std::map<const sdk::BYTE*, std::unique_ptr<sdk::BYTE[]>> m_aligned;
    // Blocks of before the last reset: still the caller's until freed, no longer counted.
    std::map<const sdk::BYTE*, std::unique_ptr<sdk::BYTE[]>> m_alignedBeforeReset;
};

MindVisionSimulator& simulator();

}  // namespace telvarra::sim::mindvision

#endif
