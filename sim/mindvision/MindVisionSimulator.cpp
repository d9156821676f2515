#include "sim/mindvision/MindVisionSimulator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "sim/common/FeatureRange.h"
#include "sim/common/GenICamPixelCodes.h"
#include "sim/common/ImageOps.h"
#include "sim/common/RecordFields.h"

namespace telvarra::sim::mindvision {

using namespace telvarra::vendor::mindvision;

namespace {

constexpr const char* kDefaultModel = "MV-SUA000-SIM";
constexpr const char* kDriverVersion = "2.1.0.0 simulated";
// The device record's text fields hold 32 bytes with their terminator.
constexpr std::size_t kTextLimit = 31;
constexpr float kAnalogGainStep = 0.125f;
// One sensor line: exposure times are whole lines.
constexpr double kLineMicroseconds = 10.0;
// The power-up values, clamped into a device's ranges.
constexpr std::uint32_t kDefaultAeTarget = 120;
constexpr std::uint32_t kDefaultAnalogGain = 16;
constexpr double kDefaultExposure = 10000.0;

struct LayerName {
    const char* word;
    const char* linkName;
};
constexpr LayerName kLayers[] = {{"usb3", "USB3.0"}, {"gige", "GigE"}, {"usb2", "USB2.0"}};

// Handles are small integers; the core's tokens are the same numbers as addresses.
void* tokenOf(CameraHandle handle) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(static_cast<std::uint32_t>(handle)));
}
CameraHandle handleOf(const void* token) {
    return static_cast<CameraHandle>(reinterpret_cast<std::uintptr_t>(token));
}

std::string friendlyName(const DeviceDescription& description) {
    return description.userName.empty() ? description.id : description.userName;
}

// The letters before the model number: "MV-SUA" of "MV-SUA133GM".
std::string productSeries(const std::string& model) {
    const std::size_t digit = model.find_first_of("0123456789");
    return digit == std::string::npos || digit == 0 ? model : model.substr(0, digit);
}

bool isMonoSensor(const DeviceDescription& description) {
    return description.format == PixelFormat::Mono8;
}

tSdkImageResolution fullSensor(const DeviceDescription& description) {
    tSdkImageResolution full{};
    writeField(full.acDescription, "Full");
    full.iWidthFOV = full.iWidth = static_cast<INT>(description.width);
    full.iHeightFOV = full.iHeight = static_cast<INT>(description.height);
    return full;
}

// Everything the camera forgets without power; the ranges describe the camera and stay.
void powerUp(DeviceState& state, const DeviceDescription& description) {
    DeviceState fresh{state.linkName, state.aeTarget, state.analogGain, state.exposure};
    fresh.aeTarget.current = std::clamp(kDefaultAeTarget, state.aeTarget.min, state.aeTarget.max);
    fresh.analogGain.current =
        std::clamp(kDefaultAnalogGain, state.analogGain.min, state.analogGain.max);
    fresh.exposure.current = std::clamp(kDefaultExposure, state.exposure.min, state.exposure.max);
    fresh.resolution = fullSensor(description);
    state = fresh;
}

// The ISP's outputs: the 8-bit grey and colour types; the 16-bit and alpha ones are not offered.
std::optional<PixelFormat> ispOutput(UINT mediaType) {
    switch (mediaType) {
        case CAMERA_MEDIA_TYPE_MONO8:
            return PixelFormat::Mono8;
        case CAMERA_MEDIA_TYPE_RGB8:
            return PixelFormat::Rgb8;
        case CAMERA_MEDIA_TYPE_BGR8:
            return PixelFormat::Bgr8;
        default:
            return std::nullopt;
    }
}

UINT exposureLines(double microseconds) {
    return static_cast<UINT>(std::lround(microseconds / kLineMicroseconds));
}

}  // namespace

MindVisionSimulator& simulator() { return residentSimulator<MindVisionSimulator>(); }

// The Linux library must be started by CameraSdkInit; the Windows DLL starts itself when loaded.
MindVisionSimulator::MindVisionSimulator()
    : SimulatorCore({"mindvision", "MindVision simulator",
                     platform::kIsWindows ? std::optional<int>()
                                          : std::optional<int>(CAMERA_STATUS_NOT_INITIALIZED),
                     0, 1}) {}

// ---- The make's part of the core. ----

std::optional<DeviceState> MindVisionSimulator::accept(DeviceDescription& description,
                                                       std::string& error) {
    if (description.layer.empty()) description.layer = "usb3";
    const auto layer =
        std::find_if(std::begin(kLayers), std::end(kLayers),
                     [&](const LayerName& name) { return description.layer == name.word; });
    if (layer == std::end(kLayers)) {
        error = "unknown layer (usb3, gige, usb2): " + description.layer;
        return std::nullopt;
    }
    if (description.model.empty()) description.model = kDefaultModel;
    if (description.id.size() > kTextLimit || description.userName.size() > kTextLimit ||
        description.model.size() > kTextLimit) {
        error = "id, user or model longer than 31 bytes";
        return std::nullopt;
    }
    // Callers size the processed frame's buffer with CameraAlignMalloc, whose size is an int.
    if (frameBytes(PixelFormat::Rgb8, description.width, description.height) >
        static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        error = "frames of " + std::to_string(description.width) + "x" +
                std::to_string(description.height) + " do not fit a 32-bit int";
        return std::nullopt;
    }
    DeviceState state{layer->linkName};
    powerUp(state, description);
    return state;
}

void MindVisionSimulator::resetMake() {
    m_lent.clear();
    // The caller may still use its aligned blocks (and free them later): keep them, uncounted.
    m_alignedBeforeReset.merge(m_aligned);
    m_aligned.clear();
}

void MindVisionSimulator::powerLost(const std::string& id) {
    if (Device* device = findDevice(id)) powerUp(device->state, device->model.description());
}

template <class Body>
CameraSdkStatus MindVisionSimulator::onDevice(const char* function, std::string arguments,
                                              CameraHandle handle, Body&& body) {
    return call(function, std::move(arguments), [&]() -> CameraSdkStatus {
        const SessionView view = session(tokenOf(handle));
        switch (view.state) {
            case Session::Live:
                return body(*view.device);
            case Session::Lost:
                return CAMERA_STATUS_DEVICE_LOST;
            case Session::Closed:
                return CAMERA_STATUS_DEVICE_IS_CLOSED;
            default:
                return CAMERA_STATUS_PARAMETER_INVALID;
        }
    });
}

// ---- Start, enumeration and sessions. ----

CameraSdkStatus MindVisionSimulator::sdkInit(int language) {
    return callAnyTime("CameraSdkInit", callArguments(language), [&] {
        if (language != 0 && language != 1) return CAMERA_STATUS_PARAMETER_INVALID;
        setStarted(true);  // again: harmless
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::notSupported(const char* function) {
    return call(function, {}, [] { return CAMERA_STATUS_NOT_SUPPORTED; });
}

CameraSdkStatus MindVisionSimulator::enumerateDevice(tSdkCameraDevInfo* list, INT* count) {
    return call("CameraEnumerateDevice", count ? callArguments(*count) : std::string(), [&] {
        if (!list || !count) return CAMERA_STATUS_PARAMETER_INVALID;
        std::vector<const Device*> found;
        for (const Device& device : devices())
            if (device.model.plugged()) found.push_back(&device);
        std::stable_sort(found.begin(), found.end(), [](const Device* a, const Device* b) {
            return friendlyName(a->model.description()) < friendlyName(b->model.description());
        });
        const std::size_t written =
            std::min(found.size(), static_cast<std::size_t>(std::max(*count, 0)));
        for (std::size_t i = 0; i < written; ++i) {
            const DeviceDescription& description = found[i]->model.description();
            tSdkCameraDevInfo& record = list[i];
            record = tSdkCameraDevInfo{};
            writeField(record.acProductSeries, productSeries(description.model));
            writeField(record.acProductName, description.model);
            writeField(record.acFriendlyName, friendlyName(description));
            writeField(record.acLinkName, found[i]->state.linkName);
            writeField(record.acDriverVersion, kDriverVersion);
            writeField(record.acSensorType, isMonoSensor(description) ? "Mono" : "Colour");
            writeField(record.acPortType, found[i]->state.linkName);
            writeField(record.acSn, description.id);
            record.uInstance = static_cast<UINT>(i);
        }
        *count = static_cast<INT>(written);
        // What the vendor's SDK answers to an empty bus, rather than success with no records.
        return found.empty() ? CAMERA_STATUS_NO_DEVICE_FOUND : CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::init(tSdkCameraDevInfo* info, int loadMode, int team,
                                          CameraHandle* handle) {
    const std::string recorded =
        info ? callArguments(readField(info->acSn), loadMode, team) : callArguments(loadMode, team);
    return call("CameraInit", recorded, [&] {
        if (!info || !handle) return CAMERA_STATUS_PARAMETER_INVALID;
        const bool teamValid = (team >= -1 && team <= 3) || team == 0xFF;
        if (loadMode < PARAM_MODE_LAST_EXIT || loadMode > 3 || !teamValid)
            return CAMERA_STATUS_PARAMETER_INVALID;
        const Device* device = findDevice(readField(info->acSn));
        if (!device || !device->model.plugged()) return CAMERA_STATUS_NO_DEVICE_FOUND;
        if (!device->model.isFree()) return CAMERA_STATUS_DEVICE_IS_OPENED;
        // Checked first, so that a refused open takes no handle number.
        void* token = addHandle(*device, HandleState{});
        openSession(token, *findHandle(token));
        *handle = handleOf(token);
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::unInit(CameraHandle handle) {
    return call("CameraUnInit", {}, [&] {
        const SessionView view = session(tokenOf(handle));
        if (view.state == Session::NoHandle) return CAMERA_STATUS_PARAMETER_INVALID;
        if (view.state == Session::Closed) return CAMERA_STATUS_DEVICE_IS_CLOSED;
        // Also after an unplug: this frees the SDK's side. Lent frames stay lent.
        endSession(tokenOf(handle), *view.handle);
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::connectTest(CameraHandle handle) {
    return onDevice("CameraConnectTest", {}, handle, [](Device&) { return CAMERA_STATUS_SUCCESS; });
}

// ---- Description and settings. ----

CameraSdkStatus MindVisionSimulator::getCapability(CameraHandle handle, tSdkCameraCapbility* out) {
    return onDevice("CameraGetCapability", {}, handle, [&](Device& device) {
        if (!out) return CAMERA_STATUS_PARAMETER_INVALID;
        const DeviceDescription& description = device.model.description();
        const DeviceState& state = device.state;
        const bool mono = isMonoSensor(description);
        // No descriptor arrays: their pointers stay null and their counts 0.
        *out = tSdkCameraCapbility{};
        tSdkExpose& expose = out->sExposeDesc;
        expose.uiTargetMin = state.aeTarget.min;
        expose.uiTargetMax = state.aeTarget.max;
        expose.uiAnalogGainMin = state.analogGain.min;
        expose.uiAnalogGainMax = state.analogGain.max;
        expose.fAnalogGainStep = kAnalogGainStep;
        expose.uiExposeTimeMin = exposureLines(state.exposure.min);
        expose.uiExposeTimeMax = exposureLines(state.exposure.max);
        tSdkResolutionRange& range = out->sResolutionRange;
        range.iHeightMax = static_cast<INT>(description.height);
        range.iHeightMin = 1;
        range.iWidthMax = static_cast<INT>(description.width);
        range.iWidthMin = 1;
        const INT gainRange[6] = {0, 400, 0, 400, 0, 400};  // percent, per channel
        std::copy(std::begin(gainRange), std::end(gainRange), out->sRgbGainRange);
        out->sSaturationRange = {0, 100};
        out->sGammaRange = {0, 250};
        out->sContrastRange = {0, 200};
        out->sSharpnessRange = {0, 100};
        tSdkIspCapacity& isp = out->sIspCapacity;
        isp.bMonoSensor = mono;
        isp.bWbOnce = !mono;
        isp.bAutoWb = !mono;
        isp.bAutoExposure = 1;
        isp.bManualExposure = 1;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::getIspOutFormat(CameraHandle handle, UINT* format) {
    return onDevice("CameraGetIspOutFormat", {}, handle, [&](Device& device) {
        if (!format) return CAMERA_STATUS_PARAMETER_INVALID;
        *format = device.state.ispFormat;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::setIspOutFormat(CameraHandle handle, UINT format) {
    return onDevice("CameraSetIspOutFormat", callArguments(Hex{format}), handle,
                    [&](Device& device) {
                        if (!ispOutput(format)) return CAMERA_STATUS_NOT_SUPPORTED;
                        device.state.ispFormat = format;  // while streaming too
                        return CAMERA_STATUS_SUCCESS;
                    });
}

CameraSdkStatus MindVisionSimulator::setTriggerMode(CameraHandle handle, int mode) {
    return onDevice("CameraSetTriggerMode", callArguments(mode), handle, [&](Device& device) {
        if (mode < CONTINUATION || mode > EXTERNAL_TRIGGER) return CAMERA_STATUS_PARAMETER_INVALID;
        device.state.triggerMode = mode;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::setCrossLine(CameraHandle handle, int line, int x, int y,
                                                  UINT colour, BOOL visible) {
    // Overlay drawing only, which the simulator does not do: checked and forgotten.
    return onDevice("CameraSetCrossLine", callArguments(line, x, y, Hex{colour}, visible), handle,
                    [&](Device&) {
                        return line < 0 || line > 8 ? CAMERA_STATUS_PARAMETER_INVALID
                                                    : CAMERA_STATUS_SUCCESS;
                    });
}

CameraSdkStatus MindVisionSimulator::setMirror(CameraHandle handle, int direction, BOOL on) {
    return onDevice("CameraSetMirror", callArguments(direction, on), handle, [&](Device& device) {
        if (direction != MIRROR_DIRECTION_HORIZONTAL && direction != MIRROR_DIRECTION_VERTICAL)
            return CAMERA_STATUS_PARAMETER_INVALID;
        device.state.mirror[direction] = on != 0;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::getMirror(CameraHandle handle, int direction, BOOL* on) {
    return onDevice("CameraGetMirror", callArguments(direction), handle, [&](Device& device) {
        if (!on ||
            (direction != MIRROR_DIRECTION_HORIZONTAL && direction != MIRROR_DIRECTION_VERTICAL))
            return CAMERA_STATUS_PARAMETER_INVALID;
        *on = device.state.mirror[direction] ? 1 : 0;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::setRotate(CameraHandle handle, int quarterTurns) {
    return onDevice("CameraSetRotate", callArguments(quarterTurns), handle, [&](Device& device) {
        if (quarterTurns < 0 || quarterTurns > 3) return CAMERA_STATUS_PARAMETER_INVALID;
        device.state.rotation = quarterTurns;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::getRotate(CameraHandle handle, int* quarterTurns) {
    return onDevice("CameraGetRotate", {}, handle, [&](Device& device) {
        if (!quarterTurns) return CAMERA_STATUS_PARAMETER_INVALID;
        *quarterTurns = device.state.rotation;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::setAeState(CameraHandle handle, BOOL automatic) {
    return onDevice("CameraSetAeState", callArguments(automatic), handle, [&](Device& device) {
        device.state.autoExposure = automatic != 0;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::getAeState(CameraHandle handle, BOOL* automatic) {
    return onDevice("CameraGetAeState", {}, handle, [&](Device& device) {
        if (!automatic) return CAMERA_STATUS_PARAMETER_INVALID;
        *automatic = device.state.autoExposure ? 1 : 0;
        return CAMERA_STATUS_SUCCESS;
    });
}

namespace {

// Whole steps outside the capability's bounds are refused, never clamped.
CameraSdkStatus writeSteps(UIntFeature& feature, int value) {
    if (value < 0 || static_cast<std::uint32_t>(value) < feature.min ||
        static_cast<std::uint32_t>(value) > feature.max)
        return CAMERA_STATUS_PARAMETER_OUT_OF_BOUND;
    feature.current = static_cast<std::uint32_t>(value);
    return CAMERA_STATUS_SUCCESS;
}

CameraSdkStatus readSteps(const UIntFeature& feature, int* value) {
    if (!value) return CAMERA_STATUS_PARAMETER_INVALID;
    *value = static_cast<int>(feature.current);
    return CAMERA_STATUS_SUCCESS;
}

}  // namespace

CameraSdkStatus MindVisionSimulator::setAeTarget(CameraHandle handle, int target) {
    return onDevice("CameraSetAeTarget", callArguments(target), handle,
                    [&](Device& device) { return writeSteps(device.state.aeTarget, target); });
}

CameraSdkStatus MindVisionSimulator::getAeTarget(CameraHandle handle, int* target) {
    return onDevice("CameraGetAeTarget", {}, handle,
                    [&](Device& device) { return readSteps(device.state.aeTarget, target); });
}

CameraSdkStatus MindVisionSimulator::setAnalogGain(CameraHandle handle, INT gain) {
    return onDevice("CameraSetAnalogGain", callArguments(gain), handle,
                    [&](Device& device) { return writeSteps(device.state.analogGain, gain); });
}

CameraSdkStatus MindVisionSimulator::getAnalogGain(CameraHandle handle, INT* gain) {
    return onDevice("CameraGetAnalogGain", {}, handle,
                    [&](Device& device) { return readSteps(device.state.analogGain, gain); });
}

CameraSdkStatus MindVisionSimulator::getExposureTimeRange(CameraHandle handle, double* minimum,
                                                          double* maximum, double* step) {
    return onDevice("CameraGetExposureTimeRange", {}, handle, [&](Device& device) {
        if (!minimum || !maximum || !step) return CAMERA_STATUS_PARAMETER_INVALID;
        *minimum = device.state.exposure.min;
        *maximum = device.state.exposure.max;
        *step = kLineMicroseconds;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::setExposureTime(CameraHandle handle, double microseconds) {
    return onDevice(
        "CameraSetExposureTime", callArguments(microseconds), handle, [&](Device& device) {
            if (std::isnan(microseconds)) return CAMERA_STATUS_PARAMETER_INVALID;
            // The sensor exposes whole lines; the range then bounds the result.
            DoubleFeature& exposure = device.state.exposure;
            const double lines = std::round(microseconds / kLineMicroseconds);
            exposure.current = std::clamp(lines * kLineMicroseconds, exposure.min, exposure.max);
            return CAMERA_STATUS_SUCCESS;
        });
}

CameraSdkStatus MindVisionSimulator::getExposureTime(CameraHandle handle, double* microseconds) {
    return onDevice("CameraGetExposureTime", {}, handle, [&](Device& device) {
        if (!microseconds) return CAMERA_STATUS_PARAMETER_INVALID;
        *microseconds = device.state.exposure.current;
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::setImageResolution(CameraHandle handle,
                                                        tSdkImageResolution* resolution) {
    const std::string recorded =
        resolution
            ? callArguments(resolution->iIndex, resolution->iHOffsetFOV, resolution->iVOffsetFOV,
                            resolution->iWidthFOV, resolution->iHeightFOV)
            : std::string();
    return onDevice("CameraSetImageResolution", recorded, handle, [&](Device& device) {
        if (!resolution) return CAMERA_STATUS_PARAMETER_INVALID;
        const DeviceDescription& sensor = device.model.description();
        // Preset 0, the full sensor, is the only preset (an all-zero record selects it).
        if (resolution->iIndex == 0) {
            device.state.resolution = fullSensor(sensor);
            return CAMERA_STATUS_SUCCESS;
        }
        if (resolution->iIndex != IMAGEOUT_MODE_CUSTOM) return CAMERA_STATUS_PARAMETER_INVALID;
        const tSdkImageResolution& custom = *resolution;
        // A crop only: no scaling, binning, skipping or resampling.
        if (custom.iWidth != custom.iWidthFOV || custom.iHeight != custom.iHeightFOV ||
            custom.iWidthZoomHd || custom.iHeightZoomHd || custom.iWidthZoomSw ||
            custom.iHeightZoomSw || custom.uBinSumMode || custom.uBinAverageMode ||
            custom.uSkipMode || custom.uResampleMask)
            return CAMERA_STATUS_NOT_SUPPORTED;
        const auto fits = [](std::int64_t offset, std::int64_t size, std::int64_t sensorSize) {
            return offset >= 0 && size > 0 && offset + size <= sensorSize;
        };
        if (!fits(custom.iHOffsetFOV, custom.iWidthFOV, sensor.width) ||
            !fits(custom.iVOffsetFOV, custom.iHeightFOV, sensor.height))
            return CAMERA_STATUS_PARAMETER_OUT_OF_BOUND;
        device.state.resolution = custom;  // the next frame uses it, while streaming too
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::getImageResolution(CameraHandle handle,
                                                        tSdkImageResolution* resolution) {
    return onDevice("CameraGetImageResolution", {}, handle, [&](Device& device) {
        if (!resolution) return CAMERA_STATUS_PARAMETER_INVALID;
        *resolution = device.state.resolution;
        return CAMERA_STATUS_SUCCESS;
    });
}

// ---- Memory for the caller. ----

BYTE* MindVisionSimulator::alignMalloc(int size, int align) {
    // The gate's statuses (a planned fault, no CameraSdkInit) leave the result null.
    BYTE* block = nullptr;
    call("CameraAlignMalloc", callArguments(size, align), [&] {
        if (size <= 0 || align < 1 || (align & (align - 1)) != 0)
            return CAMERA_STATUS_PARAMETER_INVALID;
        const std::size_t bytes = static_cast<std::size_t>(size) + static_cast<std::size_t>(align);
        std::unique_ptr<BYTE[]> storage(new (std::nothrow) BYTE[bytes]);
        if (!storage) return CAMERA_STATUS_NO_MEMORY;
        const auto start = reinterpret_cast<std::uintptr_t>(storage.get());
        const auto mask = static_cast<std::uintptr_t>(align) - 1;
        block = reinterpret_cast<BYTE*>((start + mask) & ~mask);
        m_aligned.emplace(block, std::move(storage));
        return CAMERA_STATUS_SUCCESS;
    });
    return block;
}

void MindVisionSimulator::alignFree(BYTE* memory) {
    call("CameraAlignFree", {}, [&] {
        // Null and unknown addresses are left alone rather than crashing the caller.
        if (memory && m_aligned.erase(memory) == 0) m_alignedBeforeReset.erase(memory);
        return CAMERA_STATUS_SUCCESS;
    });
}

// ---- Frames. ----

CameraSdkStatus MindVisionSimulator::play(CameraHandle handle) {
    return onDevice("CameraPlay", {}, handle, [](Device& device) {
        device.model.setGrabbing(true);  // also after CameraStop: streaming resumes
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::stop(CameraHandle handle) {
    return onDevice("CameraStop", {}, handle, [](Device& device) {
        device.model.setGrabbing(false);
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::getImageBufferPriority(CameraHandle handle,
                                                            tSdkFrameHead* head, BYTE** raw,
                                                            UINT timeoutMs, UINT priority) {
    const std::string recorded = callArguments(timeoutMs, priority);
    return onDevice("CameraGetImageBufferPriority", recorded, handle, [&](Device& device) {
        if (!head || !raw || priority > CAMERA_GET_IMAGE_PRIORITY_NEXT)
            return CAMERA_STATUS_PARAMETER_INVALID;
        // When no frame can come the time-out would expire: say so at once instead of waiting.
        // That covers a camera not playing and a trigger that never fires (no source is
        // simulated).
        if (!device.model.grabbing() || device.state.triggerMode != CONTINUATION)
            return CAMERA_STATUS_TIME_OUT;
        DeviceFrame next = device.model.nextFrame();
        const tSdkImageResolution& fov = device.state.resolution;
        const auto left = static_cast<std::uint32_t>(fov.iHOffsetFOV);
        const auto top = static_cast<std::uint32_t>(fov.iVOffsetFOV);
        const auto width = static_cast<std::uint32_t>(fov.iWidthFOV);
        const auto height = static_cast<std::uint32_t>(fov.iHeightFOV);
        std::vector<std::uint8_t> data;
        if (width == next.width && height == next.height) {
            data = std::move(next.data);
        } else {
            data.resize(frameBytes(next.format, width, height));
            cropImage(next.data.data(), next.width, bytesPerPixel(next.format), left, top, width,
                      height, data.data());
        }
        const PixelFormat seen =
            isBayer(next.format) ? bayerMosaicAt(next.format, left, top) : next.format;
        const bool mono = isMonoSensor(device.model.description());
        *head = tSdkFrameHead{};
        head->uiMediaType = genicamPixelCode(seen);
        head->uBytes = static_cast<UINT>(data.size());
        head->iWidth = static_cast<INT>(width);
        head->iHeight = static_cast<INT>(height);
        head->uiTimeStamp = static_cast<UINT>(next.timestampMicroseconds / 100);  // 0.1 ms
        head->uiExpTime = static_cast<UINT>(std::lround(device.state.exposure.current));
        head->fAnalogGain = static_cast<float>(device.state.analogGain.current) * kAnalogGainStep;
        head->iGamma = -1;
        head->iContrast = -1;
        head->iSaturation = mono ? 0 : 100;
        head->fRgain = head->fGgain = head->fBgain = 1.0f;
        *raw = m_lent.lend(tokenOf(handle), std::move(data));
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::imageProcess(CameraHandle handle, BYTE* raw, BYTE* out,
                                                  tSdkFrameHead* head) {
    return onDevice("CameraImageProcess", {}, handle, [&](Device& device) {
        if (!raw || !out || !head) return CAMERA_STATUS_PARAMETER_INVALID;
        const std::optional<std::size_t> rawBytes = m_lent.lentBytes(tokenOf(handle), raw);
        const std::optional<PixelFormat> source = formatOfGenICamCode(head->uiMediaType);
        if (!rawBytes || !source || head->iWidth <= 0 || head->iHeight <= 0)
            return CAMERA_STATUS_PARAMETER_INVALID;
        std::uint32_t width = static_cast<std::uint32_t>(head->iWidth);
        std::uint32_t height = static_cast<std::uint32_t>(head->iHeight);
        if (frameBytes(*source, width, height) > *rawBytes) return CAMERA_STATUS_PARAMETER_INVALID;
        // The caller states no capacity for `out` (nor does the vendor's call): exactly the
        // processed frame's bytes are written there.
        const PixelFormat target = *ispOutput(device.state.ispFormat);
        const std::uint32_t pixelBytes = bytesPerPixel(target);
        const std::size_t outBytes = frameBytes(target, width, height);
        if (buffersOverlap(out, outBytes, raw, *rawBytes)) return CAMERA_STATUS_PARAMETER_INVALID;

        const bool mirrorLeftRight = device.state.mirror[MIRROR_DIRECTION_HORIZONTAL];
        const bool mirrorUpDown = device.state.mirror[MIRROR_DIRECTION_VERTICAL];
        // MindVision turns counter-clockwise.
        const auto turns = static_cast<std::uint32_t>((4 - device.state.rotation) % 4);
        if (!mirrorLeftRight && !mirrorUpDown && turns == 0) {
            convertImage(*source, raw, width, height, target, out);
        } else {
            std::vector<std::uint8_t> image(outBytes);
            std::vector<std::uint8_t> scratch(outBytes);
            convertImage(*source, raw, width, height, target, image.data());
            if (mirrorLeftRight) {
                flipHorizontal(image.data(), width, height, pixelBytes, scratch.data());
                image.swap(scratch);
            }
            if (mirrorUpDown) {
                flipVertical(image.data(), width, height, pixelBytes, scratch.data());
                image.swap(scratch);
            }
            rotateClockwise(image.data(), width, height, pixelBytes, turns, out);
            if (turns % 2) std::swap(width, height);
        }
        head->uiMediaType = device.state.ispFormat;
        head->uBytes = static_cast<UINT>(outBytes);
        head->iWidth = static_cast<INT>(width);
        head->iHeight = static_cast<INT>(height);
        return CAMERA_STATUS_SUCCESS;
    });
}

CameraSdkStatus MindVisionSimulator::releaseImageBuffer(CameraHandle handle, BYTE* raw) {
    return call("CameraReleaseImageBuffer", {}, [&] {
        // A buffer goes back to the handle that borrowed it, also after UnInit or an unplug.
        if (session(tokenOf(handle)).state == Session::NoHandle)
            return CAMERA_STATUS_PARAMETER_INVALID;
        return m_lent.giveBack(tokenOf(handle), raw) ? CAMERA_STATUS_SUCCESS
                                                     : CAMERA_STATUS_PARAMETER_INVALID;
    });
}

// ---- MindVision's own test control. ----

bool MindVisionSimulator::setAeTargetRange(const std::string& id, std::uint32_t min,
                                           std::uint32_t max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.aeTarget, min, max); });
}

bool MindVisionSimulator::setAnalogGainRange(const std::string& id, std::uint32_t min,
                                             std::uint32_t max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.analogGain, min, max); });
}

bool MindVisionSimulator::setExposureRange(const std::string& id, double min, double max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.exposure, min, max); });
}

std::size_t MindVisionSimulator::alignedBlocks() {
    const auto guard = lock();
    return m_aligned.size();
}

std::optional<tSdkImageResolution> MindVisionSimulator::resolution(const std::string& id) {
    const auto guard = lock();
    const Device* device = findDevice(id);
    if (!device) return std::nullopt;
    return device->state.resolution;
}

}  // namespace telvarra::sim::mindvision
