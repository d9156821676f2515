#include "sim/dvp/DvpSimulator.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "sim/common/FeatureRange.h"
#include "sim/common/ImageOps.h"
#include "sim/common/RecordFields.h"

namespace telvarra::sim::dvp {

using namespace telvarra::vendor::dvp;

namespace {

constexpr const char* kDefaultModel = "DVP-SIM";
// The record's 64-byte and 128-byte text fields, with their terminator.
constexpr std::size_t kShortTextLimit = 63;
constexpr std::size_t kLongTextLimit = 127;
// Open modes beside OPEN_NORMAL that the SDK accepts (debugging, high priority).
constexpr dvpEnum32 kOpenDebug = 8;
constexpr dvpEnum32 kOpenHighPriority = 16;
// The region a sensor can read out, at least, unless the sensor is smaller.
constexpr dvpInt32 kMinRegion = 16;
// Handles are numbers counting up from here; 0 is never one.
constexpr std::uintptr_t kHandleBase = 0x100;

// The power-up values, clamped into a device's ranges.
constexpr dvpInt32 kDefaultAeTarget = 128;
constexpr float kDefaultAnalogGain = 1.0f;
constexpr double kDefaultExposure = 10000.0;
constexpr dvpInt32 kAeTargetStep = 1;
constexpr float kAnalogGainStep = 0.125f;
constexpr double kExposureStep = 1.0;

struct LayerName {
    const char* word;
    const char* linkName;
};
constexpr LayerName kLayers[] = {{"usb3", "USB3.0"}, {"usb2", "USB2.0"}, {"gige", "GigE"}};

void* tokenOf(dvpHandle handle) { return reinterpret_cast<void*>(std::uintptr_t{handle}); }
dvpHandle handleOf(const void* token) {
    return static_cast<dvpHandle>(reinterpret_cast<std::uintptr_t>(token));
}

bool isMonoSensor(const DeviceDescription& description) {
    return description.format == PixelFormat::Mono8;
}

dvpEnum32 sensorPixel(PixelFormat format) {
    switch (format) {
        case PixelFormat::Mono8:
            return SENSOR_PIXEL_MONO;
        case PixelFormat::BayerGB8:
            return SENSOR_PIXEL_BAYER_GB;
        case PixelFormat::BayerGR8:
            return SENSOR_PIXEL_BAYER_GR;
        case PixelFormat::BayerBG8:
            return SENSOR_PIXEL_BAYER_BG;
        default:  // RG, and the colour sensors that interpolate on the camera
            return SENSOR_PIXEL_BAYER_RG;
    }
}

// The outputs of the SDK's processing: 8-bit grey and the two 24-bit colour orders.
std::optional<PixelFormat> targetOutput(dvpEnum32 streamFormat) {
    switch (streamFormat) {
        case S_MONO8:
            return PixelFormat::Mono8;
        case S_BGR24:
            return PixelFormat::Bgr8;
        case S_RGB24:
            return PixelFormat::Rgb8;
        default:
            return std::nullopt;
    }
}

// What a delivered frame says it is: grey is S_MONO8 as a target but FORMAT_MONO in the frame.
dvpEnum32 frameFormat(PixelFormat output) {
    switch (output) {
        case PixelFormat::Bgr8:
            return FORMAT_BGR24;
        case PixelFormat::Rgb8:
            return FORMAT_RGB24;
        default:
            return FORMAT_MONO;
    }
}

// Everything the camera forgets without power; the ranges describe the camera and stay.
void powerUp(DeviceState& state, const DeviceDescription& description) {
    DeviceState fresh{state.linkName, state.aeTarget, state.analogGain, state.exposure};
    fresh.aeTarget.current = std::clamp(kDefaultAeTarget, state.aeTarget.min, state.aeTarget.max);
    fresh.analogGain.current =
        std::clamp(kDefaultAnalogGain, state.analogGain.min, state.analogGain.max);
    fresh.exposure.current = std::clamp(kDefaultExposure, state.exposure.min, state.exposure.max);
    fresh.targetFormat = isMonoSensor(description) ? S_MONO8 : S_BGR24;
    state = fresh;
}

// Values outside the descriptor's bounds are refused, never clamped (NaN too).
template <class T>
dvpStatus writeValue(Feature<T>& feature, T value) {
    if (!(value >= feature.min && value <= feature.max)) return DVP_STATUS_PARAMETER_OUT_OF_BOUND;
    feature.current = value;
    return DVP_STATUS_OK;
}

template <class T>
dvpStatus readValue(const Feature<T>& feature, T* value) {
    if (!value) return DVP_STATUS_PARAMETER_INVALID;
    *value = feature.current;
    return DVP_STATUS_OK;
}

// A descriptor record: step, bounds and the power-up value within them; the rest zero.
template <class Descriptor, class T>
dvpStatus describe(const Feature<T>& feature, T step, T powerUpValue, Descriptor* descriptor) {
    if (!descriptor) return DVP_STATUS_PARAMETER_INVALID;
    *descriptor = Descriptor{};
    descriptor->fStep = step;
    descriptor->fMin = feature.min;
    descriptor->fMax = feature.max;
    descriptor->fDefault = std::clamp(powerUpValue, feature.min, feature.max);
    return DVP_STATUS_OK;
}

// The friendly name fills at most 63 bytes, so that it keeps its terminator.
std::string friendlyName(const DeviceDescription& description) {
    return (description.model + "#" + description.id).substr(0, kShortTextLimit);
}

}  // namespace

DvpSimulator& simulator() { return residentSimulator<DvpSimulator>(); }

// No start-up call: nothing is refused for want of one.
DvpSimulator::DvpSimulator() : SimulatorCore({"dvp", "Dvp simulator", {}, kHandleBase, 1}) {}

// ---- The make's part of the core. ----

std::optional<DeviceState> DvpSimulator::accept(DeviceDescription& description,
                                                std::string& error) {
    if (description.layer.empty()) description.layer = "usb3";
    const auto layer =
        std::find_if(std::begin(kLayers), std::end(kLayers),
                     [&](const LayerName& name) { return description.layer == name.word; });
    if (layer == std::end(kLayers)) {
        error = "unknown layer (usb3, usb2, gige): " + description.layer;
        return std::nullopt;
    }
    if (description.model.empty()) description.model = kDefaultModel;
    // Real cameras may ship with an empty user id, but the library opens by user id.
    if (description.userName.empty()) description.userName = description.id;
    if (description.id.size() > kShortTextLimit || description.model.size() > kShortTextLimit ||
        description.userName.size() > kLongTextLimit) {
        error = "id or model longer than 63 bytes, or user longer than 127";
        return std::nullopt;
    }
    // A frame's byte count is a 32-bit field.
    if (frameBytes(PixelFormat::Rgb8, description.width, description.height) >
        std::numeric_limits<dvpUint32>::max()) {
        error = "frames of " + std::to_string(description.width) + "x" +
                std::to_string(description.height) + " do not fit a 32-bit byte count";
        return std::nullopt;
    }
    DeviceState state{layer->linkName};
    powerUp(state, description);
    return state;
}

void DvpSimulator::resetMake() {
    m_listed.clear();
    m_frames.clear();
    m_sdkMinor = 21;
}

void DvpSimulator::powerLost(const std::string& id) {
    if (Device* device = findDevice(id)) powerUp(device->state, device->model.description());
}

template <class Body>
dvpStatus DvpSimulator::onDevice(const char* function, std::string arguments, dvpHandle handle,
                                 Body&& body) {
    return call(function, std::move(arguments), [&]() -> dvpStatus {
        const SessionView view = session(tokenOf(handle));
        switch (view.state) {
            case Session::Live:
                return body(*view.device);
            case Session::Lost:
                return DVP_STATUS_DEVICE_IS_DISCONNECTED;
            default:
                return DVP_STATUS_INVALID_HANDLE;
        }
    });
}

dvpStatus DvpSimulator::notSupported(const char* function) {
    return call(function, {}, [] { return DVP_STATUS_NOT_SUPPORTED; });
}

// ---- The device list and sessions. ----

void DvpSimulator::rescan() {
    m_listed.clear();
    for (const Device& device : devices())
        if (device.model.plugged())
            m_listed.push_back({device.model.description(), device.state.linkName});
}

dvpStatus DvpSimulator::refresh(dvpUint32* count) {
    return call("dvpRefresh", {}, [&] {
        if (!count) return DVP_STATUS_PARAMETER_INVALID;
        rescan();
        *count = static_cast<dvpUint32>(m_listed.size());
        return DVP_STATUS_OK;  // with no camera too
    });
}

dvpStatus DvpSimulator::enumerate(dvpUint32 index, dvpCameraInfo* info) {
    return call("dvpEnum", callArguments(index), [&] {
        if (!info) return DVP_STATUS_PARAMETER_INVALID;
        if (index >= m_listed.size()) return DVP_STATUS_PARAMETER_OUT_OF_BOUND;
        const Listed& listed = m_listed[index];
        const DeviceDescription& description = listed.description;
        const bool sdk21 = m_sdkMinor >= 21;
        *info = dvpCameraInfo{};
        writeField(info->Vendor, "Do3think");
        writeField(info->Manufacturer, "Do3think");
        writeField(info->Model, description.model);
        writeField(info->Family, "DVP2");
        writeField(info->LinkName, listed.linkName);
        writeField(info->SensorInfo, "CMOS");
        writeField(info->HardwareVersion, "1.0");
        writeField(info->FirmwareVersion, "1.0.0");
        writeField(info->KernelVersion, "1.0.0");
        writeField(info->DscamVersion, sdk21 ? "2.21.39.1123" : "2.16.32.605");
        writeField(info->FriendlyName, friendlyName(description));
        writeField(info->PortInfo, listed.linkName);
        writeField(info->SerialNumber, description.id);
        writeField(info->CameraInfo, "Simulated " + description.model + ", " +
                                         std::to_string(description.width) + "x" +
                                         std::to_string(description.height) + " " +
                                         formatName(description.format));
        writeField(info->UserID, description.userName);
        // SDK 2.16 has reserved bytes here, left zero.
        if (sdk21) writeField(info->OriginalSerialNumber, description.id);
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::openByUserId(dvpStr userId, dvpEnum32 mode, dvpHandle* handle) {
    return call("dvpOpenByUserId", callArguments(userId, mode), [&] {
        if (!userId || !handle || !*userId) return DVP_STATUS_PARAMETER_INVALID;
        const dvpEnum32 known = OPEN_NORMAL | kOpenDebug | kOpenHighPriority;
        // Offline opening (no OPEN_NORMAL) is for saved configurations, which are not imitated.
        if (!(mode & OPEN_NORMAL) || (mode & ~known) != 0) return DVP_STATUS_NOT_SUPPORTED;
        rescan();
        const auto listed =
            std::find_if(m_listed.begin(), m_listed.end(),
                         [&](const Listed& entry) { return entry.description.userName == userId; });
        if (listed == m_listed.end()) return DVP_STATUS_NO_DEVICE_FOUND;
        const Device* device = findDevice(listed->description.id);
        if (!device->model.isFree()) return DVP_STATUS_DEVICE_IS_OPENED;
        // Checked first, so that a refused open takes no handle number.
        void* token = addHandle(*device, HandleState{});
        openSession(token, *findHandle(token));
        *handle = handleOf(token);
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::isValid(dvpHandle handle, bool* valid) {
    return call("dvpIsValid", {}, [&] {
        if (!valid) return DVP_STATUS_PARAMETER_INVALID;
        // The SDK learns of an unplug only through dvpIsOnline: a lost session is still valid.
        const Session state = session(tokenOf(handle)).state;
        *valid = state == Session::Live || state == Session::Lost;
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::isOnline(dvpHandle handle, bool* online) {
    return call("dvpIsOnline", {}, [&] {
        const Session state = session(tokenOf(handle)).state;
        if (state != Session::Live && state != Session::Lost) return DVP_STATUS_INVALID_HANDLE;
        if (!online) return DVP_STATUS_PARAMETER_INVALID;
        // A replug does not bring a lost session back: it must be closed and opened again.
        *online = state == Session::Live;
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::close(dvpHandle handle) {
    return call("dvpClose", {}, [&] {
        const SessionView view = session(tokenOf(handle));
        if (view.state != Session::Live && view.state != Session::Lost)
            return DVP_STATUS_INVALID_HANDLE;
        // Also after an unplug: this frees the SDK's side, the last frame included. Its buffers
        // stay poisoned rather than freed (until a reset), so that a stale read stays harmless
        // and recognisable.
        m_frames.expire(tokenOf(handle));
        endSession(tokenOf(handle), *view.handle);
        return DVP_STATUS_OK;
    });
}

// ---- Streaming and settings. ----

dvpStatus DvpSimulator::start(dvpHandle handle) {
    return onDevice("dvpStart", {}, handle, [](Device& device) {
        if (device.model.grabbing()) return DVP_STATUS_DEVICE_IS_STARTED;
        device.model.setGrabbing(true);
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::stop(dvpHandle handle) {
    return onDevice("dvpStop", {}, handle, [&](Device& device) {
        if (!device.model.grabbing()) return DVP_STATUS_DEVICE_IS_STOPPED;
        device.model.setGrabbing(false);
        m_frames.expire(tokenOf(handle));  // the stream's resources go, the last frame with them
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::getStreamState(dvpHandle handle, dvpEnum32* state) {
    return onDevice("dvpGetStreamState", {}, handle, [&](Device& device) {
        if (!state) return DVP_STATUS_PARAMETER_INVALID;
        *state = device.model.grabbing() ? STATE_STARTED : STATE_STOPED;
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::setTriggerState(dvpHandle handle, bool on) {
    return onDevice("dvpSetTriggerState", callArguments(on), handle, [&](Device& device) {
        device.state.trigger = on;
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::getTriggerState(dvpHandle handle, bool* on) {
    return onDevice("dvpGetTriggerState", {}, handle, [&](Device& device) {
        if (!on) return DVP_STATUS_PARAMETER_INVALID;
        *on = device.state.trigger;
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::getTargetFormat(dvpHandle handle, dvpEnum32* format) {
    return onDevice("dvpGetTargetFormat", {}, handle, [&](Device& device) {
        if (!format) return DVP_STATUS_PARAMETER_INVALID;
        *format = device.state.targetFormat;
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::setTargetFormat(dvpHandle handle, dvpEnum32 format) {
    return onDevice("dvpSetTargetFormat", callArguments(format), handle, [&](Device& device) {
        const std::optional<PixelFormat> output = targetOutput(format);
        // A mono sensor has no colour to hand on.
        if (!output || (isMonoSensor(device.model.description()) && *output != PixelFormat::Mono8))
            return DVP_STATUS_NOT_SUPPORTED;
        device.state.targetFormat = format;  // while streaming too: the next frame has it
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::getSensorInfo(dvpHandle handle, dvpSensorInfo* info) {
    return onDevice("dvpGetSensorInfo", {}, handle, [&](Device& device) {
        if (!info) return DVP_STATUS_PARAMETER_INVALID;
        const DeviceDescription& sensor = device.model.description();
        const auto width = static_cast<dvpInt32>(sensor.width);
        const auto height = static_cast<dvpInt32>(sensor.height);
        *info = dvpSensorInfo{};
        writeField(info->descr, "SIM");
        info->sensor = 0;  // CMOS
        info->pixel = sensorPixel(sensor.format);
        info->region.iMinW = std::min(kMinRegion, width);
        info->region.iMinH = std::min(kMinRegion, height);
        info->region.iMaxW = width;
        info->region.iMaxH = height;
        info->region.iStepW = 2;
        info->region.iStepH = 2;
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::getExposureDescr(dvpHandle handle, dvpDoubleDescr* descriptor) {
    return onDevice("dvpGetExposureDescr", {}, handle, [&](Device& device) {
        return describe(device.state.exposure, kExposureStep, kDefaultExposure, descriptor);
    });
}

dvpStatus DvpSimulator::getAnalogGainDescr(dvpHandle handle, dvpFloatDescr* descriptor) {
    return onDevice("dvpGetAnalogGainDescr", {}, handle, [&](Device& device) {
        return describe(device.state.analogGain, kAnalogGainStep, kDefaultAnalogGain, descriptor);
    });
}

dvpStatus DvpSimulator::getAeTargetDescr(dvpHandle handle, dvpIntDescr* descriptor) {
    return onDevice("dvpGetAeTargetDescr", {}, handle, [&](Device& device) {
        if (!descriptor) return DVP_STATUS_PARAMETER_INVALID;
        const Feature<dvpInt32>& target = device.state.aeTarget;
        *descriptor = dvpIntDescr{};
        descriptor->iStep = kAeTargetStep;
        descriptor->iMin = target.min;
        descriptor->iMax = target.max;
        descriptor->iDefault = std::clamp(kDefaultAeTarget, target.min, target.max);
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::setAeOperation(dvpHandle handle, dvpEnum32 operation) {
    return onDevice("dvpSetAeOperation", callArguments(operation), handle, [&](Device& device) {
        switch (operation) {
            case AE_OP_OFF:
            case AE_OP_CONTINUOUS:
                device.state.aeOperation = operation;
                return DVP_STATUS_OK;
            case AE_OP_ONCE:
                // One adjustment, then off: the pattern has no brightness to correct.
                device.state.aeOperation = AE_OP_OFF;
                return DVP_STATUS_OK;
            default:
                return DVP_STATUS_PARAMETER_INVALID;
        }
    });
}

dvpStatus DvpSimulator::getAeOperation(dvpHandle handle, dvpEnum32* operation) {
    return onDevice("dvpGetAeOperation", {}, handle, [&](Device& device) {
        if (!operation) return DVP_STATUS_PARAMETER_INVALID;
        *operation = device.state.aeOperation;
        return DVP_STATUS_OK;
    });
}

dvpStatus DvpSimulator::setAeTarget(dvpHandle handle, dvpInt32 target) {
    return onDevice("dvpSetAeTarget", callArguments(target), handle,
                    [&](Device& device) { return writeValue(device.state.aeTarget, target); });
}

dvpStatus DvpSimulator::getAeTarget(dvpHandle handle, dvpInt32* target) {
    return onDevice("dvpGetAeTarget", {}, handle,
                    [&](Device& device) { return readValue(device.state.aeTarget, target); });
}

dvpStatus DvpSimulator::setAnalogGain(dvpHandle handle, float gain) {
    return onDevice("dvpSetAnalogGain", callArguments(gain), handle,
                    [&](Device& device) { return writeValue(device.state.analogGain, gain); });
}

dvpStatus DvpSimulator::getAnalogGain(dvpHandle handle, float* gain) {
    return onDevice("dvpGetAnalogGain", {}, handle,
                    [&](Device& device) { return readValue(device.state.analogGain, gain); });
}

dvpStatus DvpSimulator::setExposure(dvpHandle handle, double microseconds) {
    return onDevice("dvpSetExposure", callArguments(microseconds), handle, [&](Device& device) {
        // The camera's own exposure control owns the value while it runs.
        if (device.state.aeOperation == AE_OP_CONTINUOUS) return DVP_STATUS_IN_AUTO;
        return writeValue(device.state.exposure, microseconds);
    });
}

dvpStatus DvpSimulator::getExposure(dvpHandle handle, double* microseconds) {
    return onDevice("dvpGetExposure", {}, handle,
                    [&](Device& device) { return readValue(device.state.exposure, microseconds); });
}

// ---- Frames. ----

dvpStatus DvpSimulator::getFrame(dvpHandle handle, dvpFrame* frame, void** buffer,
                                 dvpUint32 timeoutMs) {
    const auto guard = lock();
    // Whatever this call returns, a planned fault included, the previous frame is no longer valid.
    m_frames.expire(tokenOf(handle));
    return onDevice("dvpGetFrame", callArguments(timeoutMs), handle, [&](Device& device) {
        if (!frame || !buffer) return DVP_STATUS_PARAMETER_INVALID;
        if (!device.model.grabbing()) return DVP_STATUS_NOT_STARTED;
        // No trigger source is simulated: the time-out would expire, so it is said at once.
        if (device.state.trigger) return DVP_STATUS_TIME_OUT;
        DeviceFrame next = device.model.nextFrame();
        const PixelFormat output = *targetOutput(device.state.targetFormat);
        std::vector<std::uint8_t>& converted = device.state.converted;
        if (output != next.format) {
            converted.resize(frameBytes(output, next.width, next.height));
            convertImage(next.format, next.data.data(), next.width, next.height, output,
                         converted.data());
        }
        const std::vector<std::uint8_t>& image = output == next.format ? next.data : converted;
        *frame = dvpFrame{};
        frame->format = frameFormat(output);
        frame->bits = BITS_8;
        frame->uBytes = static_cast<dvpUint32>(image.size());
        frame->iWidth = static_cast<dvpInt32>(next.width);
        frame->iHeight = static_cast<dvpInt32>(next.height);
        frame->uFrameID = next.number;
        frame->uTimestamp = next.timestampMicroseconds;
        frame->fExposure = device.state.exposure.current;
        frame->fAGain = device.state.analogGain.current;
        // The caller only reads it; the vendor's parameter is a plain void**.
        *buffer = const_cast<std::uint8_t*>(m_frames.deliver(tokenOf(handle), image));
        return DVP_STATUS_OK;
    });
}

// ---- Dvp's own test control. ----

bool DvpSimulator::setSdkVersion(int minor) {
    return controlSimulator([&]() -> std::string {
        if (minor != 16 && minor != 21)
            return "SDK minor version not 16 or 21: " + std::to_string(minor);
        m_sdkMinor = minor;
        return {};
    });
}

bool DvpSimulator::setAeTargetRange(const std::string& id, dvpInt32 min, dvpInt32 max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.aeTarget, min, max); });
}

bool DvpSimulator::setAnalogGainRange(const std::string& id, float min, float max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.analogGain, min, max); });
}

bool DvpSimulator::setExposureRange(const std::string& id, double min, double max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.exposure, min, max); });
}

bool DvpSimulator::stopStream(const std::string& id) {
    return changeDevice(id, [&](Device& device) -> std::string {
        if (device.model.isFree()) return "not open: " + id;
        // The SDK still holds the stream's resources: the last frame stays valid until the
        // caller's next call on the handle.
        device.model.setGrabbing(false);
        return {};
    });
}

}  // namespace telvarra::sim::dvp
