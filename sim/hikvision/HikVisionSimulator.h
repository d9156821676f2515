// The HikVision SDK simulator: HikVision's records, nodes and their ranges, image functions and
// status codes over the simulator core. The exported vendor functions and the test control
// functions are thin shells over the one process-wide instance.
#ifndef TELVARRA_SIM_HIKVISION_HIKVISIONSIMULATOR_H
#define TELVARRA_SIM_HIKVISION_HIKVISIONSIMULATOR_H

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/common/FrameMemory.h"
#include "sim/common/SimulatorCore.h"
#include "vendor/hikvision/HikVisionSdk.h"

namespace telvarra::sim::hikvision {

namespace sdk = telvarra::vendor::hikvision;

// A float feature node with its range (gain in dB, exposure time in microseconds).
struct FloatFeature {
    float min;
    float max;
    float current;
};

struct IntFeature {
    std::uint32_t min;
    std::uint32_t max;
    std::uint32_t increment;
    std::uint32_t current;
};

// What a HikVision device holds beyond the common model: its transport layer and its nodes.
struct DeviceState {
    std::uint32_t layer;
    std::uint32_t triggerMode = sdk::MV_TRIGGER_MODE_OFF;
    std::uint32_t exposureAuto = sdk::MV_EXPOSURE_AUTO_MODE_OFF;
    std::uint32_t gainAuto = sdk::MV_GAIN_MODE_OFF;
    FloatFeature gain{0.0f, 17.0f, 0.0f};                // dB
    FloatFeature exposure{15.0f, 1000000.0f, 10000.0f};  // microseconds
    IntFeature brightness{0, 255, 1, 100};
};

// A handle remembers its device's layer: the link error of a lost session depends on it, also
// after the device was removed.
struct HandleState {
    std::uint32_t layer;
};

class HikVisionSimulator : public SimulatorCore<DeviceState, HandleState> {
  public:
    HikVisionSimulator();

    // ---- The vendor functions, in binding order. ----
    int initialize();
    int finalize();
    int createHandle(void** handle, const sdk::MV_CC_DEVICE_INFO* deviceInfo);
    int openDevice(void* handle, unsigned int accessMode, unsigned short switchoverKey);
    int destroyHandle(void* handle);
    int getEnumValue(void* handle, const char* key, sdk::MVCC_ENUMVALUE* value);
    int setEnumValue(void* handle, const char* key, unsigned int value);
    int getIntValueEx(void* handle, const char* key, sdk::MVCC_INTVALUE_EX* value);
    int setIntValueEx(void* handle, const char* key, std::int64_t value);
    bool isDeviceConnected(void* handle);
    int closeDevice(void* handle);
    int startGrabbing(void* handle);
    int stopGrabbing(void* handle);
    int getImageBuffer(void* handle, sdk::MV_FRAME_OUT* frame, unsigned int timeoutMs);
    int freeImageBuffer(void* handle, sdk::MV_FRAME_OUT* frame);
    int enumDevices(unsigned int layerMask, sdk::MV_CC_DEVICE_INFO_LIST* list);
    int getGainMode(void* handle, sdk::MVCC_ENUMVALUE* value);
    int setGainMode(void* handle, unsigned int value);
    int getBrightness(void* handle, sdk::MVCC_INTVALUE* value);
    int setBrightness(void* handle, unsigned int value);
    int getFloatValue(void* handle, const char* key, sdk::MVCC_FLOATVALUE* value);
    int setFloatValue(void* handle, const char* key, float value);
    int getExposureTime(void* handle, sdk::MVCC_FLOATVALUE* value);
    int setExposureTime(void* handle, float value);
    unsigned int getSdkVersion();
    int getExposureAutoMode(void* handle, sdk::MVCC_ENUMVALUE* value);
    int setExposureAutoMode(void* handle, unsigned int value);
    int flipImage(void* handle, sdk::MV_CC_FLIP_IMAGE_PARAM* param);
    int rotateImage(void* handle, sdk::MV_CC_ROTATE_IMAGE_PARAM* param);
    int convertPixelTypeEx(void* handle, sdk::MV_CC_PIXEL_CONVERT_PARAM_EX* param);
    int getGain(void* handle, sdk::MVCC_FLOATVALUE* value);
    int setGain(void* handle, float value);
    int setCommandValue(void* handle, const char* key);

    // ---- HikVision's own test control (see HikSimControl.h). ----
    bool setGainRange(const std::string& id, float min, float max);
    bool setExposureRange(const std::string& id, float min, float max);
    bool setBrightnessRange(const std::string& id, std::uint32_t min, std::uint32_t max);
    std::optional<float> lastSetGain();
    std::optional<float> lastSetExposureTime();
    std::optional<std::uint32_t> lastSetBrightness();
    std::optional<std::uint32_t> lastSetExposureAutoMode();
    std::optional<std::uint32_t> lastSetEnumValue(const std::string& node);

  private:
    std::optional<DeviceState> accept(DeviceDescription& description, std::string& error) override;
    void resetMake() override;
    std::size_t outstandingFrames() override { return m_lent.outstanding(); }

    // A call that needs a handle this simulator created and has not destroyed.
    template <class Body>
    int onHandle(const char* function, std::string arguments, void* handle, Body&& body);
    // ... and an open device whose session is alive.
    template <class Body>
    int onDevice(const char* function, std::string arguments, void* handle, Body&& body);
    std::unique_ptr<sdk::MV_CC_DEVICE_INFO> makeRecord(const Device& device, std::size_t index);
    // A recorded value, read under the lock.
    template <class T>
    T locked(const T& value) {
        const auto guard = lock();
        return value;
    }

    std::vector<std::unique_ptr<sdk::MV_CC_DEVICE_INFO>> m_records;  // of the last enumeration
    LentBuffers m_lent;
    std::optional<float> m_lastGain;
    std::optional<float> m_lastExposureTime;
    std::optional<std::uint32_t> m_lastBrightness;
    std::optional<std::uint32_t> m_lastExposureAuto;
    std::map<std::string, std::uint32_t> m_lastEnumValues;
};

HikVisionSimulator& simulator();

}  // namespace telvarra::sim::hikvision

#endif
