// The Dvp SDK simulator: Do3think's refreshed device list, opening by user id, number handles,
// descriptors, the SDK's processing to the target format and frames valid until the handle's
// next call, over the simulator core. The exported vendor functions and the test control
// functions are thin shells over the one process-wide instance.
#ifndef TELVARRA_SIM_DVP_DVPSIMULATOR_H
#define TELVARRA_SIM_DVP_DVPSIMULATOR_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sim/common/FrameMemory.h"
#include "sim/common/SimulatorCore.h"
#include "vendor/dvp/DvpSdk.h"

namespace telvarra::sim::dvp {

namespace sdk = telvarra::vendor::dvp;

template <class T>
struct Feature {
    T min;
    T max;
    T current;
};

// What a Dvp device holds beyond the common model. The ranges describe the camera; the settings
// are what it keeps while powered: an unplug brings back the power-up values.
struct DeviceState {
    const char* linkName;  // "USB3.0", "USB2.0", "GigE"
    Feature<sdk::dvpInt32> aeTarget{0, 255, 128};
    Feature<float> analogGain{1.0f, 16.0f, 1.0f};
    Feature<double> exposure{10.0, 1000000.0, 10000.0};  // microseconds
    sdk::dvpEnum32 aeOperation = sdk::AE_OP_OFF;
    bool trigger = false;
    sdk::dvpEnum32 targetFormat = sdk::S_MONO8;  // dvpStreamFormat
    // The last frame in the target format, kept so that its memory serves the next one.
    std::vector<std::uint8_t> converted;
};

// A Dvp handle is one session: open from dvpOpenByUserId to dvpClose, then kept, closed, so that
// dvpIsValid can answer false for it.
struct HandleState {};

class DvpSimulator : public SimulatorCore<DeviceState, HandleState> {
  public:
    DvpSimulator();

    // ---- The vendor functions. ----
    sdk::dvpStatus refresh(sdk::dvpUint32* count);
    sdk::dvpStatus enumerate(sdk::dvpUint32 index, sdk::dvpCameraInfo* info);
    sdk::dvpStatus openByUserId(sdk::dvpStr userId, sdk::dvpEnum32 mode, sdk::dvpHandle* handle);
    sdk::dvpStatus isValid(sdk::dvpHandle handle, bool* valid);
    sdk::dvpStatus isOnline(sdk::dvpHandle handle, bool* online);
    sdk::dvpStatus close(sdk::dvpHandle handle);
    sdk::dvpStatus start(sdk::dvpHandle handle);
    sdk::dvpStatus stop(sdk::dvpHandle handle);
    sdk::dvpStatus getStreamState(sdk::dvpHandle handle, sdk::dvpEnum32* state);
    sdk::dvpStatus setTriggerState(sdk::dvpHandle handle, bool on);
    sdk::dvpStatus getTriggerState(sdk::dvpHandle handle, bool* on);
    sdk::dvpStatus getTargetFormat(sdk::dvpHandle handle, sdk::dvpEnum32* format);
    sdk::dvpStatus setTargetFormat(sdk::dvpHandle handle, sdk::dvpEnum32 format);
    sdk::dvpStatus getSensorInfo(sdk::dvpHandle handle, sdk::dvpSensorInfo* info);
    sdk::dvpStatus getExposureDescr(sdk::dvpHandle handle, sdk::dvpDoubleDescr* descriptor);
    sdk::dvpStatus getAnalogGainDescr(sdk::dvpHandle handle, sdk::dvpFloatDescr* descriptor);
    sdk::dvpStatus getAeTargetDescr(sdk::dvpHandle handle, sdk::dvpIntDescr* descriptor);
    sdk::dvpStatus setAeOperation(sdk::dvpHandle handle, sdk::dvpEnum32 operation);
    sdk::dvpStatus getAeOperation(sdk::dvpHandle handle, sdk::dvpEnum32* operation);
    sdk::dvpStatus setAeTarget(sdk::dvpHandle handle, sdk::dvpInt32 target);
    sdk::dvpStatus getAeTarget(sdk::dvpHandle handle, sdk::dvpInt32* target);
    sdk::dvpStatus setAnalogGain(sdk::dvpHandle handle, float gain);
    sdk::dvpStatus getAnalogGain(sdk::dvpHandle handle, float* gain);
    sdk::dvpStatus setExposure(sdk::dvpHandle handle, double microseconds);
    sdk::dvpStatus getExposure(sdk::dvpHandle handle, double* microseconds);
    sdk::dvpStatus getFrame(sdk::dvpHandle handle, sdk::dvpFrame* frame, void** buffer,
                            sdk::dvpUint32 timeoutMs);
    // The exported names the library never calls.
    sdk::dvpStatus notSupported(const char* function);

    // ---- Dvp's own test control (see DvpSimControl.h). ----
    bool setSdkVersion(int minor);
    bool setAeTargetRange(const std::string& id, sdk::dvpInt32 min, sdk::dvpInt32 max);
    bool setAnalogGainRange(const std::string& id, float min, float max);
    bool setExposureRange(const std::string& id, double min, double max);
    bool stopStream(const std::string& id);

  private:
    std::optional<DeviceState> accept(DeviceDescription& description, std::string& error) override;
    void resetMake() override;
    std::size_t outstandingFrames() override { return m_frames.outstanding(); }
    void powerLost(const std::string& id) override;

    // A call on a handle whose session is alive; `body` takes the Device.
    template <class Body>
    sdk::dvpStatus onDevice(const char* function, std::string arguments, sdk::dvpHandle handle,
                            Body&& body);
    // The plugged-in devices, in rig order, as the last refresh saw them.
    void rescan();

    // A device as a refresh lists it: dvpEnum reads the list, not the devices of now.
    struct Listed {
        DeviceDescription description;
        const char* linkName;
    };
    std::vector<Listed> m_listed;
    NextCallBuffers m_frames;
    int m_sdkMinor = 21;
};

DvpSimulator& simulator();

}  // namespace telvarra::sim::dvp

#endif
