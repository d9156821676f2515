// The DaHeng SDK simulator: DaHeng's device list, base-info records, feature nodes by name and
// frames into the caller's buffer, over the simulator core. The exported vendor functions and the
// test control functions are thin shells over the one process-wide instance.
#ifndef TELVARRA_SIM_DAHENG_DAHENGSIMULATOR_H
#define TELVARRA_SIM_DAHENG_DAHENGSIMULATOR_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sim/common/SimulatorCore.h"
#include "vendor/daheng/DaHengSdk.h"

namespace telvarra::sim::daheng {

namespace sdk = telvarra::vendor::daheng;

struct FloatFeature {
    double min;
    double max;
    double current;
};

struct IntFeature {
    std::int64_t min;
    std::int64_t max;
    std::int64_t current;
};

// What a DaHeng device holds beyond the common model: its device class and its feature nodes.
// The nodes keep their values across sessions, as the camera does while powered.
struct DeviceState {
    std::int32_t deviceClass;
    std::uint32_t width;  // the region read out, from the sensor's top-left corner
    std::uint32_t height;
    IntFeature grayValue{20, 255, 120};
    FloatFeature gain{0.0, 24.0, 0.0};                // dB
    FloatFeature exposure{20.0, 1000000.0, 10000.0};  // microseconds
    std::int64_t acquisitionMode = sdk::GX_ACQ_MODE_CONTINUOUS;
    std::int64_t triggerMode = sdk::GX_TRIGGER_MODE_OFF;
    std::int64_t exposureAuto = sdk::GX_EXPOSURE_AUTO_OFF;
    bool nextFrameIncomplete = false;
};

// A DaHeng handle is its session: open from GXOpenDevice to GXCloseDevice, nothing more.
struct HandleState {};

class DaHengSimulator : public SimulatorCore<DeviceState, HandleState> {
  public:
    DaHengSimulator();

    // ---- The vendor functions. ----
    sdk::GX_STATUS initLib();
    sdk::GX_STATUS closeLib();
    sdk::GX_STATUS updateAllDeviceList(std::uint32_t* count, std::uint32_t timeoutMs);
    sdk::GX_STATUS getAllDeviceBaseInfo(sdk::GX_DEVICE_BASE_INFO* devices, std::size_t* bytes);
    sdk::GX_STATUS openDevice(sdk::GX_OPEN_PARAM* param, void** device);
    sdk::GX_STATUS closeDevice(void* device);
    sdk::GX_STATUS featureSave(void* port, const char* filePath);
    sdk::GX_STATUS getIntValue(void* port, const char* name, sdk::GX_INT_VALUE* value);
    sdk::GX_STATUS setIntValue(void* port, const char* name, std::int64_t value);
    sdk::GX_STATUS getEnumValue(void* port, const char* name, sdk::GX_ENUM_VALUE* value);
    sdk::GX_STATUS setEnumValue(void* port, const char* name, std::int64_t value);
    sdk::GX_STATUS setEnumValueByString(void* port, const char* name, const char* symbol);
    sdk::GX_STATUS getFloatValue(void* port, const char* name, sdk::GX_FLOAT_VALUE* value);
    sdk::GX_STATUS setFloatValue(void* port, const char* name, double value);
    sdk::GX_STATUS setCommandValue(void* port, const char* name);
    sdk::GX_STATUS getImage(void* device, sdk::GX_FRAME_DATA* frame, std::uint32_t timeoutMs);
    // The bound names the library never calls. GXGetLastError may come before GXInitLib.
    sdk::GX_STATUS notImplemented(const char* function);

    // ---- DaHeng's own test control (see DahSimControl.h). ----
    bool setGainRange(const std::string& id, double min, double max);
    bool setExposureRange(const std::string& id, double min, double max);
    bool setGrayValueRange(const std::string& id, std::int64_t min, std::int64_t max);
    std::optional<std::int64_t> lastSetInt(const std::string& feature);
    std::optional<double> lastSetFloat(const std::string& feature);
    std::optional<std::int64_t> lastSetEnum(const std::string& feature);
    bool makeNextFrameIncomplete(const std::string& id);

  private:
    std::optional<DeviceState> accept(DeviceDescription& description, std::string& error) override;
    void resetMake() override;
    std::size_t outstandingFrames() override { return 0; }  // the caller owns every frame

    // A call on an open device whose session is alive; `body` takes the Device.
    template <class Body>
    sdk::GX_STATUS onDevice(const char* function, std::string arguments, void* handle, Body&& body);
    sdk::GX_STATUS writeEnum(Device& device, const std::string& name, std::int64_t value);
    const Device* listedDevice(const sdk::GX_OPEN_PARAM& param, sdk::GX_STATUS& status);
    template <class T>
    static std::optional<T> recorded(const std::map<std::string, T>& values,
                                     const std::string& feature);

    // The records of the last GXUpdateAllDeviceList, which GXOpenDevice and
    // GXGetAllDeviceBaseInfo work from.
    std::vector<sdk::GX_DEVICE_BASE_INFO> m_list;
    std::map<std::string, std::int64_t> m_lastInt;
    std::map<std::string, double> m_lastFloat;
    std::map<std::string, std::int64_t> m_lastEnum;
};

DaHengSimulator& simulator();

}  // namespace telvarra::sim::daheng

#endif
