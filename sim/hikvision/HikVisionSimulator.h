// The HikVision SDK simulator's state and behaviour. The exported vendor functions and the test
// control functions are thin shells over the one process-wide instance; every call takes its
// lock, so calls from several threads are serialised as a whole.
#ifndef TELVARRA_SIM_HIKVISION_HIKVISIONSIMULATOR_H
#define TELVARRA_SIM_HIKVISION_HIKVISIONSIMULATOR_H

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "vendor/hikvision/HikVisionSdk.h"
#include "sim/common/CallLog.h"
#include "sim/common/FrameMemory.h"
#include "sim/common/VirtualDevice.h"

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

class Simulator {
  public:
    Simulator();  // loads the hikvision lines of the rig named by TELVARRA_SIM_RIG, if set
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

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

    // ---- Test control (see HikSimControl.h). ----
    void reset();
    bool addDevice(const std::string& rigLine);
    int loadRig(const std::string& path);
    bool removeDevice(const std::string& id);
    bool unplug(const std::string& id);
    bool replug(const std::string& id);
    bool setGainRange(const std::string& id, float min, float max);
    bool setExposureRange(const std::string& id, float min, float max);
    bool setBrightnessRange(const std::string& id, std::uint32_t min, std::uint32_t max);
    std::optional<bool> isOpen(const std::string& id);
    std::optional<bool> isGrabbing(const std::string& id);
    std::optional<std::uint32_t> framesDelivered(const std::string& id);
    std::optional<std::uint32_t> deviceSeed(const std::string& id);
    void failCall(const std::string& function, int status, std::uint32_t nth);
    void failAlways(const std::string& function, int status);
    void clearFaults();
    std::uint32_t callCount(const std::string& function);
    void clearCallCounts();
    std::optional<std::string> lastArguments(const std::string& function);
    std::optional<float> lastSetGain();
    std::optional<float> lastSetExposureTime();
    std::optional<std::uint32_t> lastSetBrightness();
    std::optional<std::uint32_t> lastSetExposureAutoMode();
    std::optional<std::uint32_t> lastSetEnumValue(const std::string& node);
    std::size_t outstandingBuffers();
    // The text stays valid until the next control call.
    const char* lastError();

  private:
    struct Device {
        VirtualDevice model;
        std::uint32_t layer;
        std::uint32_t triggerMode = sdk::MV_TRIGGER_MODE_OFF;
        std::uint32_t exposureAuto = sdk::MV_EXPOSURE_AUTO_MODE_OFF;
        std::uint32_t gainAuto = sdk::MV_GAIN_MODE_OFF;
        FloatFeature gain{0.0f, 17.0f, 0.0f};                // dB
        FloatFeature exposure{15.0f, 1000000.0f, 10000.0f};  // microseconds
        IntFeature brightness{0, 255, 1, 100};
    };
    struct Handle {
        std::string deviceId;
        std::uint32_t layer;
        bool open = false;
    };

    std::optional<int> enter(const char* function, std::string arguments = {});
    template <class Body>
    int call(const char* function, std::string arguments, Body&& body);
    template <class Body>
    int onHandle(const char* function, std::string arguments, void* handle, Body&& body);
    template <class Body>
    int onDevice(const char* function, std::string arguments, void* handle, Body&& body);
    Device* findDevice(const std::string& id);
    // Runs `change` on the device under the lock; false (and the reason kept) when it is unknown.
    bool changeDevice(const std::string& id, const std::function<void(Device&)>& change);
    Handle* findHandle(void* handle);
    // MV_OK with `device` set when `handle` has a live session; otherwise the status to return.
    int liveSession(void* handle, Device*& device);
    void endSession(const void* token, Handle& handle);
    bool addParsed(sim::DeviceDescription description, std::string& error);
    std::unique_ptr<sdk::MV_CC_DEVICE_INFO> makeRecord(const Device& device, std::size_t index);
    bool setFloatRange(const std::string& id, float min, float max, FloatFeature Device::*feature);

    std::recursive_mutex m_mutex;  // setters record their value, then make the call
    bool m_initialized = false;
    std::vector<Device> m_devices;  // in rig order, which is enumeration order
    std::map<const void*, Handle> m_handles;
    std::uintptr_t m_handlesCreated = 0;  // never reset: a handle value is never reused
    std::vector<std::unique_ptr<sdk::MV_CC_DEVICE_INFO>> m_records;  // of the last enumeration
    sim::LentBuffers m_lent;
    sim::CallLog m_calls;
    sim::FaultPlan m_faults;
    std::optional<float> m_lastGain;
    std::optional<float> m_lastExposureTime;
    std::optional<std::uint32_t> m_lastBrightness;
    std::optional<std::uint32_t> m_lastExposureAuto;
    std::map<std::string, std::uint32_t> m_lastEnumValues;
    std::string m_lastError;
};

Simulator& simulator();

}  // namespace telvarra::sim::hikvision

#endif
