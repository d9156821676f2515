#include "sim/daheng/DaHengSimulator.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <utility>

#include "sim/common/FeatureRange.h"
#include "sim/common/GenICamPixelCodes.h"
#include "sim/common/RecordFields.h"
#include "sim/common/TestPattern.h"

namespace telvarra::sim::daheng {

using namespace telvarra::vendor::daheng;

namespace {

constexpr const char* kDefaultModel = "MER-000-SIM";
constexpr const char* kVendorName = "Daheng Imaging";
// Device timestamps count nanoseconds (a 1 GHz tick, as USB3 Vision cameras commonly have).
constexpr std::uint64_t kTicksPerMicrosecond = 1000;

struct LayerName {
    const char* word;
    std::int32_t deviceClass;
};
constexpr LayerName kLayers[] = {
    {"usb3", GX_DEVICE_CLASS_U3V},
    {"gige", GX_DEVICE_CLASS_GEV},
    {"usb2", GX_DEVICE_CLASS_USB2},
};

// GX_ACCESS_STATUS 3: another session holds the device.
constexpr std::int32_t kAccessStatusNoAccess = 3;

// ---- Feature nodes by name. ----

enum class Kind { Int, Float, Enum, Command };

std::optional<Kind> kindOf(const std::string& name) {
    static const std::map<std::string, Kind> kinds = {
        {"Width", Kind::Int},
        {"Height", Kind::Int},
        {"PayloadSize", Kind::Int},
        {"ExpectedGrayValue", Kind::Int},
        {"Gain", Kind::Float},
        {"ExposureTime", Kind::Float},
        {"PixelFormat", Kind::Enum},
        {"AcquisitionMode", Kind::Enum},
        {"TriggerMode", Kind::Enum},
        {"ExposureAuto", Kind::Enum},
        {"AcquisitionStart", Kind::Command},
        {"AcquisitionStop", Kind::Command},
    };
    const auto found = kinds.find(name);
    if (found == kinds.end()) return std::nullopt;
    return found->second;
}

// Unknown feature, or one of another type.
GX_STATUS checkKind(const char* name, Kind expected) {
    const auto kind = kindOf(name);
    if (!kind) return GX_STATUS_NOT_IMPLEMENTED;
    return *kind == expected ? GX_STATUS_SUCCESS : GX_STATUS_ERROR_TYPE;
}

using Entries = std::vector<std::pair<std::int64_t, std::string>>;

const char* pixelFormatSymbol(PixelFormat format) {
    switch (format) {
        case PixelFormat::Mono8:
            return "Mono8";
        case PixelFormat::Rgb8:
            return "RGB8";
        case PixelFormat::Bgr8:
            return "BGR8";
        case PixelFormat::BayerGR8:
            return "BayerGR8";
        case PixelFormat::BayerRG8:
            return "BayerRG8";
        case PixelFormat::BayerGB8:
            return "BayerGB8";
        default:
            return "BayerBG8";
    }
}

Entries pixelFormatEntries(const std::vector<PixelFormat>& formats) {
    Entries entries;
    for (const PixelFormat format : formats)
        entries.emplace_back(genicamPixelCode(format), pixelFormatSymbol(format));
    return entries;
}

// Every entry a feature can have on any device; a device offers a subset (PixelFormat).
const Entries& allEntries(const std::string& name) {
    static const Entries pixelFormats = pixelFormatEntries(
        {PixelFormat::Mono8, PixelFormat::Rgb8, PixelFormat::Bgr8, PixelFormat::BayerGR8,
         PixelFormat::BayerRG8, PixelFormat::BayerGB8, PixelFormat::BayerBG8});
    static const Entries acquisitionModes = {{GX_ACQ_MODE_SINGLE_FRAME, "SingleFrame"},
                                             {GX_ACQ_MODE_MULITI_FRAME, "MultiFrame"},
                                             {GX_ACQ_MODE_CONTINUOUS, "Continuous"}};
    static const Entries triggerModes = {{GX_TRIGGER_MODE_OFF, "Off"}, {GX_TRIGGER_MODE_ON, "On"}};
    static const Entries exposureAuto = {{GX_EXPOSURE_AUTO_OFF, "Off"},
                                         {GX_EXPOSURE_AUTO_CONTINUOUS, "Continuous"},
                                         {GX_EXPOSURE_AUTO_ONCE, "Once"}};
    static const Entries none;
    if (name == "PixelFormat") return pixelFormats;
    if (name == "AcquisitionMode") return acquisitionModes;
    if (name == "TriggerMode") return triggerModes;
    if (name == "ExposureAuto") return exposureAuto;
    return none;
}

std::optional<std::int64_t> symbolValue(const std::string& name, const std::string& symbol) {
    for (const auto& [value, text] : allEntries(name))
        if (text == symbol) return value;
    return std::nullopt;
}

void fillEntry(GX_ENUM_VALUE_DES& entry, std::int64_t value, const std::string& symbol) {
    entry.nCurValue = value;
    writeField(entry.szSymbolic, symbol);
}

// Out-of-range writes (NaN included) are refused, never clamped, as GenICam nodes do.
GX_STATUS writeFloat(FloatFeature& feature, double value) {
    if (!(value >= feature.min && value <= feature.max)) return GX_STATUS_OUT_OF_RANGE;
    feature.current = value;
    return GX_STATUS_SUCCESS;
}

void readFloat(const FloatFeature& feature, const char* unit, GX_FLOAT_VALUE& value) {
    value = GX_FLOAT_VALUE{};
    value.dCurValue = feature.current;
    value.dMin = feature.min;
    value.dMax = feature.max;
    value.bIncIsValid = false;  // continuous values
    writeField(value.szUnit, unit);
}

}  // namespace

DaHengSimulator& simulator() { return residentSimulator<DaHengSimulator>(); }

DaHengSimulator::DaHengSimulator()
    : SimulatorCore({"daheng", "DaHeng simulator", GX_STATUS_NOT_INIT_API, 0x44480000, 0x10}) {}

// ---- The make's part of the core. ----

std::optional<DeviceState> DaHengSimulator::accept(DeviceDescription& description,
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
    // The base-info record's fields, each with its terminator.
    if (description.id.size() > 31 || description.model.size() > 31 ||
        description.userName.size() > 67) {
        error = "id or model longer than 31 bytes, or user longer than 67";
        return std::nullopt;
    }
    // The frame record states the image size in a 32-bit int.
    if (frameBytes(PixelFormat::Rgb8, description.width, description.height) >
        static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        error = "frames of " + std::to_string(description.width) + "x" +
                std::to_string(description.height) + " do not fit the 32-bit image size";
        return std::nullopt;
    }
    return DeviceState{layer->deviceClass, description.width, description.height};
}

void DaHengSimulator::resetMake() {
    m_list.clear();
    m_lastInt.clear();
    m_lastFloat.clear();
    m_lastEnum.clear();
}

template <class Body>
GX_STATUS DaHengSimulator::onDevice(const char* function, std::string arguments, void* handle,
                                    Body&& body) {
    return call(function, std::move(arguments), [&]() -> GX_STATUS {
        const SessionView view = session(handle);
        switch (view.state) {
            case Session::Live:
                return body(*view.device);
            case Session::Lost:
                return GX_STATUS_OFFLINE;
            default:  // a closed handle is forgotten, so never Closed
                return GX_STATUS_INVALID_HANDLE;
        }
    });
}

// ---- Library start. ----

GX_STATUS DaHengSimulator::initLib() {
    return callAnyTime("GXInitLib", {}, [&] {
        setStarted(true);  // again: harmless
        return GX_STATUS_SUCCESS;
    });
}

GX_STATUS DaHengSimulator::closeLib() {
    return callAnyTime("GXCloseLib", {}, [&] {
        removeAllHandles();
        m_list.clear();
        setStarted(false);
        return GX_STATUS_SUCCESS;
    });
}

GX_STATUS DaHengSimulator::notImplemented(const char* function) {
    const auto answer = [] { return GX_STATUS_NOT_IMPLEMENTED; };
    if (std::strcmp(function, "GXGetLastError") == 0) return callAnyTime(function, {}, answer);
    return call(function, {}, answer);
}

// ---- The device list. ----

GX_STATUS DaHengSimulator::updateAllDeviceList(std::uint32_t* count, std::uint32_t timeoutMs) {
    return call("GXUpdateAllDeviceList", callArguments(timeoutMs), [&] {
        if (!count) return GX_STATUS_INVALID_PARAMETER;
        // Devices answer at once, so the time-out is never waited for.
        m_list.clear();
        for (const Device& device : devices()) {
            if (!device.model.plugged()) continue;
            const DeviceDescription& description = device.model.description();
            GX_DEVICE_BASE_INFO record{};
            writeField(record.szVendorName, kVendorName);
            writeField(record.szModelName, description.model);
            writeField(record.szSN, description.id);
            writeField(record.szDisplayName, description.model + "(" + description.id + ")");
            writeField(record.szDeviceID, description.id);
            writeField(record.szUserID, description.userName);
            record.accessStatus =
                device.model.isFree() ? GX_ACCESS_STATUS_READWRITE : kAccessStatusNoAccess;
            record.deviceClass = device.state.deviceClass;
            m_list.push_back(record);
        }
        *count = static_cast<std::uint32_t>(m_list.size());
        return GX_STATUS_SUCCESS;
    });
}

GX_STATUS DaHengSimulator::getAllDeviceBaseInfo(GX_DEVICE_BASE_INFO* devices, std::size_t* bytes) {
    return call("GXGetAllDeviceBaseInfo", bytes ? callArguments(*bytes) : std::string(), [&] {
        if (!bytes) return GX_STATUS_INVALID_PARAMETER;
        const std::size_t needed = m_list.size() * sizeof(GX_DEVICE_BASE_INFO);
        if (!devices) {
            *bytes = needed;
            return GX_STATUS_SUCCESS;
        }
        if (*bytes < needed) return GX_STATUS_NEED_MORE_BUFFER;  // nothing written
        std::copy(m_list.begin(), m_list.end(), devices);
        *bytes = needed;
        return GX_STATUS_SUCCESS;
    });
}

// ---- Sessions. ----

// The device the open parameter names in the last refreshed list; nullptr with `status` set
// when none does.
const DaHengSimulator::Device* DaHengSimulator::listedDevice(const GX_OPEN_PARAM& param,
                                                             GX_STATUS& status) {
    const std::string content = param.pszContent;
    const GX_DEVICE_BASE_INFO* record = nullptr;
    status = GX_STATUS_NOT_FOUND_DEVICE;
    switch (param.openMode) {
        case GX_OPEN_SN:
        case GX_OPEN_USERID:
            for (const GX_DEVICE_BASE_INFO& listed : m_list) {
                const std::string key = param.openMode == GX_OPEN_SN ? readField(listed.szSN)
                                                                     : readField(listed.szUserID);
                if (key == content) {
                    record = &listed;
                    break;
                }
            }
            break;
        case GX_OPEN_INDEX: {
            if (content.size() > 9 || !std::all_of(content.begin(), content.end(),
                                                   [](char c) { return c >= '0' && c <= '9'; })) {
                status = GX_STATUS_INVALID_PARAMETER;
                return nullptr;
            }
            const std::size_t index = std::stoul(content);
            if (index >= 1 && index <= m_list.size()) record = &m_list[index - 1];
            break;
        }
        case GX_OPEN_IP:
        case GX_OPEN_MAC:
            break;  // no simulated device has network addresses
        default:
            status = GX_STATUS_INVALID_PARAMETER;
            return nullptr;
    }
    return record ? findDevice(readField(record->szSN)) : nullptr;
}

GX_STATUS DaHengSimulator::openDevice(GX_OPEN_PARAM* param, void** device) {
    const std::string recorded =
        param ? callArguments(param->pszContent, param->openMode, param->accessMode)
              : std::string();
    return call("GXOpenDevice", recorded, [&] {
        if (!param || !device || !param->pszContent || !*param->pszContent)
            return GX_STATUS_INVALID_PARAMETER;
        if (param->accessMode < GX_ACCESS_READONLY || param->accessMode > GX_ACCESS_EXCLUSIVE)
            return GX_STATUS_INVALID_PARAMETER;
        GX_STATUS status = GX_STATUS_SUCCESS;
        const Device* target = listedDevice(*param, status);
        if (!target) return status;
        // Every access mode is exclusive here: no read-only session beside a controlling one.
        void* token = addHandle(*target, HandleState{});
        switch (openSession(token, *findHandle(token))) {
            case Opening::DeviceGone:
                status = GX_STATUS_NOT_FOUND_DEVICE;  // unplugged since the refresh
                break;
            case Opening::Taken:
                status = GX_STATUS_INVALID_ACCESS;
                break;
            default:
                *device = token;
                return GX_STATUS_SUCCESS;
        }
        removeHandle(token);
        return status;
    });
}

GX_STATUS DaHengSimulator::closeDevice(void* device) {
    return call("GXCloseDevice", {}, [&] {
        // The handle is the session: once closed it is invalid, also for a second close.
        if (!findHandle(device)) return GX_STATUS_INVALID_HANDLE;
        removeHandle(device);  // also after an unplug: closing a dead session succeeds
        return GX_STATUS_SUCCESS;
    });
}

// ---- Feature nodes. ----

GX_STATUS DaHengSimulator::getIntValue(void* port, const char* name, GX_INT_VALUE* value) {
    return onDevice("GXGetIntValue", callArguments(name), port, [&](Device& device) {
        if (!name || !value) return GX_STATUS_INVALID_PARAMETER;
        if (const GX_STATUS status = checkKind(name, Kind::Int)) return status;
        const DeviceDescription& sensor = device.model.description();
        const std::string feature = name;
        if (feature == "Width") {
            *value = GX_INT_VALUE{device.state.width, 1, sensor.width, 1, {}};
        } else if (feature == "Height") {
            *value = GX_INT_VALUE{device.state.height, 1, sensor.height, 1, {}};
        } else if (feature == "PayloadSize") {
            const auto payload = static_cast<std::int64_t>(
                frameBytes(device.model.format(), device.state.width, device.state.height));
            *value = GX_INT_VALUE{payload, payload, payload, 1, {}};
        } else {
            const IntFeature& gray = device.state.grayValue;
            *value = GX_INT_VALUE{gray.current, gray.min, gray.max, 1, {}};
        }
        return GX_STATUS_SUCCESS;
    });
}

GX_STATUS DaHengSimulator::setIntValue(void* port, const char* name, std::int64_t value) {
    const auto guard = lock();
    if (name) m_lastInt[name] = value;
    return onDevice("GXSetIntValue", callArguments(name, value), port, [&](Device& device) {
        if (!name) return GX_STATUS_INVALID_PARAMETER;
        if (const GX_STATUS status = checkKind(name, Kind::Int)) return status;
        const std::string feature = name;
        if (feature == "PayloadSize") return GX_STATUS_INVALID_ACCESS;  // read only
        if (feature == "ExpectedGrayValue") {
            IntFeature& gray = device.state.grayValue;
            if (value < gray.min || value > gray.max) return GX_STATUS_OUT_OF_RANGE;
            gray.current = value;
            return GX_STATUS_SUCCESS;
        }
        // The region is fixed while the camera acquires, as on GenICam cameras.
        if (device.model.grabbing()) return GX_STATUS_INVALID_ACCESS;
        const DeviceDescription& sensor = device.model.description();
        const bool width = feature == "Width";
        const std::int64_t max = width ? sensor.width : sensor.height;
        if (value < 1 || value > max) return GX_STATUS_OUT_OF_RANGE;
        (width ? device.state.width : device.state.height) = static_cast<std::uint32_t>(value);
        return GX_STATUS_SUCCESS;
    });
}

GX_STATUS DaHengSimulator::getFloatValue(void* port, const char* name, GX_FLOAT_VALUE* value) {
    return onDevice("GXGetFloatValue", callArguments(name), port, [&](Device& device) {
        if (!name || !value) return GX_STATUS_INVALID_PARAMETER;
        if (const GX_STATUS status = checkKind(name, Kind::Float)) return status;
        if (std::string(name) == "Gain")
            readFloat(device.state.gain, "dB", *value);
        else
            readFloat(device.state.exposure, "us", *value);
        return GX_STATUS_SUCCESS;
    });
}

GX_STATUS DaHengSimulator::setFloatValue(void* port, const char* name, double value) {
    const auto guard = lock();
    if (name) m_lastFloat[name] = value;
    return onDevice("GXSetFloatValue", callArguments(name, value), port, [&](Device& device) {
        if (!name) return GX_STATUS_INVALID_PARAMETER;
        if (const GX_STATUS status = checkKind(name, Kind::Float)) return status;
        if (std::string(name) == "Gain") return writeFloat(device.state.gain, value);
        // The automatic loop owns the exposure time while it runs.
        if (device.state.exposureAuto == GX_EXPOSURE_AUTO_CONTINUOUS)
            return GX_STATUS_INVALID_ACCESS;
        return writeFloat(device.state.exposure, value);
    });
}

GX_STATUS DaHengSimulator::getEnumValue(void* port, const char* name, GX_ENUM_VALUE* value) {
    return onDevice("GXGetEnumValue", callArguments(name), port, [&](Device& device) {
        if (!name || !value) return GX_STATUS_INVALID_PARAMETER;
        if (const GX_STATUS status = checkKind(name, Kind::Enum)) return status;
        const std::string feature = name;
        std::int64_t current = 0;
        Entries entries = allEntries(feature);
        if (feature == "PixelFormat") {
            current = genicamPixelCode(device.model.format());
            entries = pixelFormatEntries(device.model.description().supportedFormats);
        } else if (feature == "AcquisitionMode") {
            current = device.state.acquisitionMode;
        } else if (feature == "TriggerMode") {
            current = device.state.triggerMode;
        } else {
            current = device.state.exposureAuto;
        }
        // The whole record, as the SDK writes it: a caller that passes less memory overruns.
        *value = GX_ENUM_VALUE{};
        value->nSupportedNum =
            static_cast<std::uint32_t>(std::min(entries.size(), GX_MAX_ENUM_ENTRIES));
        for (std::uint32_t i = 0; i < value->nSupportedNum; ++i) {
            fillEntry(value->nArrySupportedValue[i], entries[i].first, entries[i].second);
            if (entries[i].first == current)
                fillEntry(value->stCurValue, current, entries[i].second);
        }
        return GX_STATUS_SUCCESS;
    });
}

GX_STATUS DaHengSimulator::writeEnum(Device& device, const std::string& name, std::int64_t value) {
    if (name == "PixelFormat") {
        if (device.model.grabbing()) return GX_STATUS_INVALID_ACCESS;
        const auto format = formatOfGenICamCode(value);
        if (!format || !device.model.setFormat(*format)) return GX_STATUS_OUT_OF_RANGE;
        return GX_STATUS_SUCCESS;
    }
    const Entries& entries = allEntries(name);
    if (std::none_of(entries.begin(), entries.end(),
                     [&](const auto& entry) { return entry.first == value; }))
        return GX_STATUS_OUT_OF_RANGE;
    if (name == "AcquisitionMode") {
        if (device.model.grabbing()) return GX_STATUS_INVALID_ACCESS;
        device.state.acquisitionMode = value;
    } else if (name == "TriggerMode") {
        device.state.triggerMode = value;
    } else {
        // "Once" adjusts at once and falls back to off. The test pattern has no brightness to
        // correct, so the exposure time stays as it was.
        device.state.exposureAuto = value == GX_EXPOSURE_AUTO_ONCE ? GX_EXPOSURE_AUTO_OFF : value;
    }
    return GX_STATUS_SUCCESS;
}

GX_STATUS DaHengSimulator::setEnumValue(void* port, const char* name, std::int64_t value) {
    const auto guard = lock();
    if (name) m_lastEnum[name] = value;
    return onDevice("GXSetEnumValue", callArguments(name, value), port, [&](Device& device) {
        if (!name) return GX_STATUS_INVALID_PARAMETER;
        if (const GX_STATUS status = checkKind(name, Kind::Enum)) return status;
        return writeEnum(device, name, value);
    });
}

GX_STATUS DaHengSimulator::setEnumValueByString(void* port, const char* name, const char* symbol) {
    const auto guard = lock();
    const auto value = name && symbol ? symbolValue(name, symbol) : std::nullopt;
    if (value) m_lastEnum[name] = *value;
    return onDevice("GXSetEnumValueByString", callArguments(name, symbol), port,
                    [&](Device& device) {
                        if (!name || !symbol) return GX_STATUS_INVALID_PARAMETER;
                        if (const GX_STATUS status = checkKind(name, Kind::Enum)) return status;
                        return value ? writeEnum(device, name, *value) : GX_STATUS_OUT_OF_RANGE;
                    });
}

GX_STATUS DaHengSimulator::setCommandValue(void* port, const char* name) {
    return onDevice("GXSetCommandValue", callArguments(name), port, [&](Device& device) {
        if (!name) return GX_STATUS_INVALID_PARAMETER;
        if (const GX_STATUS status = checkKind(name, Kind::Command)) return status;
        const bool start = std::string(name) == "AcquisitionStart";
        if (start && device.model.grabbing()) return GX_STATUS_INVALID_CALL;
        // Stopping twice is harmless: drivers stop before closing without asking.
        device.model.setGrabbing(start);
        return GX_STATUS_SUCCESS;
    });
}

GX_STATUS DaHengSimulator::featureSave(void* port, const char* filePath) {
    return onDevice("GXFeatureSave", callArguments(filePath), port, [&](Device& device) {
        if (!filePath) return GX_STATUS_INVALID_PARAMETER;
        std::ofstream file(filePath, std::ios::binary | std::ios::trunc);
        if (!file) return GX_STATUS_ERROR;
        const DeviceState& state = device.state;
        const auto symbol = [](const std::string& name, std::int64_t value) {
            for (const auto& [entry, text] : allEntries(name))
                if (entry == value) return text;
            return std::string();
        };
        file.precision(17);
        file << "# " << device.model.description().model << "(" << device.model.id() << ")\n"
             << "Width=" << state.width << "\nHeight=" << state.height
             << "\nPixelFormat=" << pixelFormatSymbol(device.model.format())
             << "\nAcquisitionMode=" << symbol("AcquisitionMode", state.acquisitionMode)
             << "\nTriggerMode=" << symbol("TriggerMode", state.triggerMode)
             << "\nExposureAuto=" << symbol("ExposureAuto", state.exposureAuto)
             << "\nExposureTime=" << state.exposure.current << "\nGain=" << state.gain.current
             << "\nExpectedGrayValue=" << state.grayValue.current << "\n";
        file.flush();
        return file ? GX_STATUS_SUCCESS : GX_STATUS_ERROR;
    });
}

// ---- Frames. ----

GX_STATUS DaHengSimulator::getImage(void* device, GX_FRAME_DATA* frame, std::uint32_t timeoutMs) {
    return onDevice("GXGetImage", callArguments(timeoutMs), device, [&](Device& target) {
        if (!frame || !frame->pImgBuf) return GX_STATUS_INVALID_PARAMETER;
        // When no frame can come the time-out would expire: say so at once instead of waiting.
        // That covers a camera not acquiring and a trigger that never fires (no source is
        // simulated).
        if (!target.model.grabbing() || target.state.triggerMode != GX_TRIGGER_MODE_OFF)
            return GX_STATUS_TIMEOUT;
        const DeviceFrame next = target.model.nextFrameHeader();
        const std::uint32_t width = target.state.width;
        const std::uint32_t height = target.state.height;
        // The caller states no capacity (the CallerBuffers model without a size): like the SDK,
        // the simulator assumes the buffer holds the device's PayloadSize bytes.
        const std::size_t payload = frameBytes(next.format, width, height);
        // An incomplete frame lost its lower rows; the caller's bytes there stay as they were.
        const bool incomplete = std::exchange(target.state.nextFrameIncomplete, false);
        // The region starts at the sensor's corner, so it is the pattern's top-left crop.
        target.model.draw(next.format, next.number, width, incomplete ? height / 2 : height,
                          static_cast<std::uint8_t*>(frame->pImgBuf));
        frame->nStatus = incomplete ? GX_FRAME_STATUS_INCOMPLETE : GX_FRAME_STATUS_SUCCESS;
        frame->nWidth = static_cast<std::int32_t>(width);
        frame->nHeight = static_cast<std::int32_t>(height);
        frame->nPixelFormat = static_cast<std::int32_t>(genicamPixelCode(next.format));
        frame->nImgSize = static_cast<std::int32_t>(payload);
        frame->nFrameID = next.number;
        frame->nTimestamp = next.timestampMicroseconds * kTicksPerMicrosecond;
        if (target.state.acquisitionMode == GX_ACQ_MODE_SINGLE_FRAME)
            target.model.setGrabbing(false);  // one frame, then the camera stops by itself
        return GX_STATUS_SUCCESS;
    });
}

// ---- DaHeng's own test control. ----

bool DaHengSimulator::setGainRange(const std::string& id, double min, double max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.gain, min, max); });
}

bool DaHengSimulator::setExposureRange(const std::string& id, double min, double max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.exposure, min, max); });
}

bool DaHengSimulator::setGrayValueRange(const std::string& id, std::int64_t min, std::int64_t max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.grayValue, min, max); });
}

bool DaHengSimulator::makeNextFrameIncomplete(const std::string& id) {
    return changeDevice(id, [&](Device& device) {
        device.state.nextFrameIncomplete = true;
        return std::string();
    });
}

template <class T>
std::optional<T> DaHengSimulator::recorded(const std::map<std::string, T>& values,
                                           const std::string& feature) {
    const auto found = values.find(feature);
    if (found == values.end()) return std::nullopt;
    return found->second;
}

std::optional<std::int64_t> DaHengSimulator::lastSetInt(const std::string& feature) {
    const auto guard = lock();
    return recorded(m_lastInt, feature);
}

std::optional<double> DaHengSimulator::lastSetFloat(const std::string& feature) {
    const auto guard = lock();
    return recorded(m_lastFloat, feature);
}

std::optional<std::int64_t> DaHengSimulator::lastSetEnum(const std::string& feature) {
    const auto guard = lock();
    return recorded(m_lastEnum, feature);
}

}  // namespace telvarra::sim::daheng
