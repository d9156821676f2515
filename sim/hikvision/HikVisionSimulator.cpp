#include "sim/hikvision/HikVisionSimulator.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>

#include "sim/common/FeatureRange.h"
#include "sim/common/GenICamPixelCodes.h"
#include "sim/common/ImageOps.h"
#include "sim/common/RecordFields.h"
#include "sim/hikvision/HikSimControl.h"

namespace telvarra::sim::hikvision {

using namespace telvarra::vendor::hikvision;

namespace {

constexpr const char* kDefaultModel = "MV-CA000-SIM";

// ---- Vendor values. ----

struct LayerName {
    const char* word;
    std::uint32_t bit;
};
constexpr LayerName kLayers[] = {
    {"gige", MV_GIGE_DEVICE},
    {"usb3", MV_USB_DEVICE},
    {"gentl-gige", MV_GENTL_GIGE_DEVICE},
    {"gentl-cml", MV_GENTL_CAMERALINK_DEVICE},
    {"gentl-cxp", MV_GENTL_CXP_DEVICE},
    {"gentl-xof", MV_GENTL_XOF_DEVICE},
};

bool isGigELayer(std::uint32_t layer) {
    return layer == MV_GIGE_DEVICE || layer == MV_GENTL_GIGE_DEVICE;
}

// The GigE bit also reports GigE cameras behind a GenTL frame grabber.
bool layerInMask(std::uint32_t layer, std::uint32_t mask) {
    return (layer & mask) != 0 || (layer == MV_GENTL_GIGE_DEVICE && (mask & MV_GIGE_DEVICE));
}

// What a call on a device that has gone away fails with: the layer's link error.
int lostDeviceStatus(std::uint32_t layer) {
    if (isGigELayer(layer)) return MV_E_NETER;
    if (layer == MV_USB_DEVICE) return MV_E_USB_DEVICE;
    return MV_E_PRECONDITION;
}

bool isPackedFormat(PixelFormat format) {
    return format == PixelFormat::Mono8 || format == PixelFormat::Rgb8 ||
           format == PixelFormat::Bgr8;
}

// The serial number a device record names, read from the layer's member.
std::optional<std::string> recordSerial(const MV_CC_DEVICE_INFO& record) {
    const auto& info = record.SpecialInfo;
    switch (record.nTLayerType) {
        case MV_GIGE_DEVICE:
        case MV_GENTL_GIGE_DEVICE:
            return readField(info.stGigEInfo.chSerialNumber);
        case MV_USB_DEVICE:
            return readField(info.stUsb3VInfo.chSerialNumber);
        case MV_GENTL_CAMERALINK_DEVICE:
        case MV_GENTL_CXP_DEVICE:
        case MV_GENTL_XOF_DEVICE:
            return readField(info.stCXPInfo.chSerialNumber);
        default:
            return std::nullopt;
    }
}

void fillEnum(MVCC_ENUMVALUE& value, std::uint32_t current,
              const std::vector<std::uint32_t>& supported) {
    value = MVCC_ENUMVALUE{};
    value.nCurValue = current;
    value.nSupportedNum =
        static_cast<std::uint32_t>(std::min(supported.size(), MV_MAX_XML_SYMBOLIC_NUM));
    std::copy_n(supported.begin(), value.nSupportedNum, value.nSupportValue);
}

const std::vector<std::uint32_t> kOffOn = {0, 1};
const std::vector<std::uint32_t> kOffOnceContinuous = {0, 1, 2};

// "Once" adjusts at once and falls back to off, as a camera does after its one pass.
std::uint32_t afterOnce(std::uint32_t mode) {
    return mode == MV_EXPOSURE_AUTO_MODE_ONCE ? MV_EXPOSURE_AUTO_MODE_OFF : mode;
}

int readFloat(const FloatFeature& feature, MVCC_FLOATVALUE* value) {
    if (!value) return MV_E_PARAMETER;
    *value = MVCC_FLOATVALUE{};
    value->fCurValue = feature.current;
    value->fMax = feature.max;
    value->fMin = feature.min;
    return MV_OK;
}

// Out-of-range writes (NaN included) are refused, not clamped, as GenICam nodes do.
int writeFloat(FloatFeature& feature, float value) {
    if (!(value >= feature.min && value <= feature.max)) return MV_E_GC_RANGE;
    feature.current = value;
    return MV_OK;
}

}  // namespace

HikVisionSimulator& simulator() { return residentSimulator<HikVisionSimulator>(); }

HikVisionSimulator::HikVisionSimulator()
    : SimulatorCore({"hikvision", "HikVision simulator", MV_E_CALLORDER, 0x48530000, 0x10}) {}

// ---- The make's part of the core. ----

std::optional<DeviceState> HikVisionSimulator::accept(DeviceDescription& description,
                                                      std::string& error) {
    if (description.layer.empty()) description.layer = "gige";
    const auto layer =
        std::find_if(std::begin(kLayers), std::end(kLayers),
                     [&](const LayerName& name) { return description.layer == name.word; });
    if (layer == std::end(kLayers)) {
        error = "unknown layer (gige, usb3, gentl-gige, gentl-cml, gentl-cxp, gentl-xof): " +
                description.layer;
        return std::nullopt;
    }
    if (description.model.empty()) description.model = kDefaultModel;
    // The record's fields bound the texts: GigE keeps 16 bytes of serial and user name and 32 of
    // model name, the other layers 64 of each. A text may fill its field.
    const bool gige = isGigELayer(layer->bit);
    const std::size_t textLimit = gige ? 16 : 64;
    if (description.id.size() > textLimit || description.userName.size() > textLimit ||
        description.model.size() > (gige ? 32 : 64)) {
        error = "id, user or model too long for a " + description.layer + " device record";
        return std::nullopt;
    }
    if (frameBytes(PixelFormat::Rgb8, description.width, description.height) > 0xFFFFFFFFu) {
        error = "frames of " + std::to_string(description.width) + "x" +
                std::to_string(description.height) + " do not fit the 32-bit frame length";
        return std::nullopt;
    }
    return DeviceState{layer->bit};
}

void HikVisionSimulator::resetMake() {
    m_records.clear();
    m_lent.clear();
    m_lastGain.reset();
    m_lastExposureTime.reset();
    m_lastBrightness.reset();
    m_lastExposureAuto.reset();
    m_lastEnumValues.clear();
}

template <class Body>
int HikVisionSimulator::onHandle(const char* function, std::string arguments, void* handle,
                                 Body&& body) {
    return call(function, std::move(arguments), [&] {
        Handle* entry = findHandle(handle);
        return entry ? body(*entry) : MV_E_HANDLE;
    });
}

template <class Body>
int HikVisionSimulator::onDevice(const char* function, std::string arguments, void* handle,
                                 Body&& body) {
    return call(function, std::move(arguments), [&] {
        const SessionView view = session(handle);
        switch (view.state) {
            case Session::NoHandle:
                return MV_E_HANDLE;
            case Session::Closed:
                return MV_E_CALLORDER;
            case Session::Lost:
                return lostDeviceStatus(view.handle->state.layer);
            default:
                return body(*view.device);
        }
    });
}

// ---- Library set-up. ----

int HikVisionSimulator::initialize() {
    return callAnyTime("MV_CC_Initialize", {}, [&] {
        setStarted(true);  // a second call is harmless; one Finalize ends it
        return MV_OK;
    });
}

int HikVisionSimulator::finalize() {
    return call("MV_CC_Finalize", {}, [&] {
        // Frames still lent to these handles can no longer be given back: they stay counted.
        removeAllHandles();
        m_records.clear();
        setStarted(false);
        return MV_OK;
    });
}

unsigned int HikVisionSimulator::getSdkVersion() {
    return callAnyTime("MV_CC_GetSDKVersion", {}, [] { return HIKSIM_SDK_VERSION; });
}

// ---- Enumeration and handles. ----

std::unique_ptr<MV_CC_DEVICE_INFO> HikVisionSimulator::makeRecord(const Device& device,
                                                                  std::size_t index) {
    auto record = std::make_unique<MV_CC_DEVICE_INFO>();  // zero-filled
    const DeviceDescription& description = device.model.description();
    const std::uint32_t layer = device.state.layer;
    const auto number = static_cast<std::uint32_t>(index);
    record->nMajorVer = 1;
    record->nMinorVer = 0;
    record->nMacAddrHigh = 0x02A0;  // a locally administered address made of the seed
    record->nMacAddrLow = description.seed;
    record->nTLayerType = layer;
    const std::string version = "V1.0.0 simulated";
    auto& info = record->SpecialInfo;
    if (isGigELayer(layer)) {
        info.stGigEInfo.nIpCfgOption = 0x80000007;         // persistent IP, DHCP, link-local
        info.stGigEInfo.nIpCfgCurrent = 0x04000000;        // DHCP
        info.stGigEInfo.nCurrentIp = 0xC0A80A64 + number;  // 192.168.10.100 + n
        info.stGigEInfo.nCurrentSubNetMask = 0xFFFFFF00;
        info.stGigEInfo.nDefultGateWay = 0xC0A80A01;
        writeField(info.stGigEInfo.chManufacturerName, "Hikrobot");
        writeField(info.stGigEInfo.chModelName, description.model);
        writeField(info.stGigEInfo.chDeviceVersion, version);
        writeField(info.stGigEInfo.chSerialNumber, description.id);
        writeField(info.stGigEInfo.chUserDefinedName, description.userName);
        info.stGigEInfo.nNetExport = 0xC0A80A01;
    } else if (layer == MV_USB_DEVICE) {
        info.stUsb3VInfo.idVendor = 0x2BDF;
        info.stUsb3VInfo.idProduct = 0x0001;
        info.stUsb3VInfo.nDeviceNumber = number;
        writeField(info.stUsb3VInfo.chDeviceGUID, "SIM-" + description.id);
        writeField(info.stUsb3VInfo.chVendorName, "Hikrobot");
        writeField(info.stUsb3VInfo.chModelName, description.model);
        writeField(info.stUsb3VInfo.chFamilyName, "MV-CA");
        writeField(info.stUsb3VInfo.chDeviceVersion, version);
        writeField(info.stUsb3VInfo.chManufacturerName, "Hikrobot");
        writeField(info.stUsb3VInfo.chSerialNumber, description.id);
        writeField(info.stUsb3VInfo.chUserDefinedName, description.userName);
        info.stUsb3VInfo.nbcdUSB = 0x0300;
        info.stUsb3VInfo.nDeviceAddress = number + 1;
    } else {
        MV_GENTL_CAMERA_INFO& gentl = info.stCXPInfo;  // one layout for CML, CXP and XoF
        writeField(gentl.chInterfaceID, "FG0");
        writeField(gentl.chVendorName, "Hikrobot");
        writeField(gentl.chModelName, description.model);
        writeField(gentl.chManufacturerInfo, "Hikrobot");
        writeField(gentl.chDeviceVersion, version);
        writeField(gentl.chSerialNumber, description.id);
        writeField(gentl.chUserDefinedName, description.userName);
        writeField(gentl.chDeviceID, description.id);
    }
    return record;
}

int HikVisionSimulator::enumDevices(unsigned int layerMask, MV_CC_DEVICE_INFO_LIST* list) {
    return call("MV_CC_EnumDevices", callArguments(Hex{layerMask}), [&] {
        if (!list) return MV_E_PARAMETER;
        std::vector<std::unique_ptr<MV_CC_DEVICE_INFO>> records;
        for (const Device& device : devices()) {
            if (records.size() == MV_MAX_DEVICE_NUM) break;
            if (device.model.plugged() && layerInMask(device.state.layer, layerMask))
                records.push_back(makeRecord(device, records.size()));
        }
        // The SDK owns the records: the previous enumeration's go now, as the vendor warns.
        m_records = std::move(records);
        list->nDeviceNum = static_cast<std::uint32_t>(m_records.size());
        for (std::size_t i = 0; i < m_records.size(); ++i)
            list->pDeviceInfo[i] = m_records[i].get();
        return MV_OK;
    });
}

int HikVisionSimulator::createHandle(void** handle, const MV_CC_DEVICE_INFO* deviceInfo) {
    return call("MV_CC_CreateHandle", {}, [&] {
        if (!handle || !deviceInfo) return MV_E_PARAMETER;
        const auto serial = recordSerial(*deviceInfo);
        const Device* device = serial ? findDevice(*serial) : nullptr;
        // The device need not be plugged in now; opening it needs that.
        if (!device || device->state.layer != deviceInfo->nTLayerType) return MV_E_PARAMETER;
        *handle = addHandle(*device, HandleState{device->state.layer});
        return MV_OK;
    });
}

int HikVisionSimulator::openDevice(void* handle, unsigned int accessMode,
                                   unsigned short switchoverKey) {
    const auto recorded = callArguments(accessMode, switchoverKey);
    return onHandle("MV_CC_OpenDevice", recorded, handle, [&](Handle& entry) {
        if (entry.open) return MV_E_CALLORDER;
        if (accessMode < MV_ACCESS_Exclusive || accessMode > MV_ACCESS_Monitor)
            return MV_E_PARAMETER;
        // Every mode is exclusive here: no monitor or switch-over sessions beside an open one.
        switch (openSession(handle, entry)) {
            case Opening::DeviceGone:
                return lostDeviceStatus(entry.state.layer);
            case Opening::Taken:
                return MV_E_ACCESS_DENIED;
            default:
                return MV_OK;
        }
    });
}

int HikVisionSimulator::closeDevice(void* handle) {
    return onHandle("MV_CC_CloseDevice", {}, handle, [&](Handle& entry) {
        if (!entry.open) return MV_E_CALLORDER;
        endSession(handle, entry);  // also after an unplug: closing a dead session succeeds
        return MV_OK;
    });
}

int HikVisionSimulator::destroyHandle(void* handle) {
    return onHandle("MV_CC_DestroyHandle", {}, handle, [&](Handle&) {
        removeHandle(handle);
        return MV_OK;
    });
}

bool HikVisionSimulator::isDeviceConnected(void* handle) {
    return onDevice("MV_CC_IsDeviceConnected", {}, handle, [](Device&) { return MV_OK; }) == MV_OK;
}

// ---- Streaming. ----

int HikVisionSimulator::startGrabbing(void* handle) {
    return onDevice("MV_CC_StartGrabbing", {}, handle, [](Device& device) {
        if (device.model.grabbing()) return MV_E_CALLORDER;
        device.model.setGrabbing(true);
        return MV_OK;
    });
}

int HikVisionSimulator::stopGrabbing(void* handle) {
    return onDevice("MV_CC_StopGrabbing", {}, handle, [](Device& device) {
        if (!device.model.grabbing()) return MV_E_CALLORDER;
        device.model.setGrabbing(false);
        return MV_OK;
    });
}

int HikVisionSimulator::getImageBuffer(void* handle, MV_FRAME_OUT* frame, unsigned int timeoutMs) {
    return onHandle("MV_CC_GetImageBuffer", callArguments(timeoutMs), handle, [&](Handle&) {
        if (!frame) return MV_E_PARAMETER;
        // Whenever no frame can come, the time-out would expire: say so at once instead of
        // waiting. That covers a device not streaming or gone, a trigger that never fires (no
        // trigger source is simulated) and every image node held by the caller.
        const SessionView view = session(handle);
        if (view.state != Session::Live || !view.device->model.grabbing() ||
            view.device->state.triggerMode != MV_TRIGGER_MODE_OFF ||
            m_lent.outstanding(handle) >= HIKSIM_IMAGE_NODE_COUNT)
            return MV_E_NODATA;

        Device& device = *view.device;
        DeviceFrame next = device.model.nextFrame();
        MV_FRAME_OUT_INFO_EX& info = frame->stFrameInfo;
        info = MV_FRAME_OUT_INFO_EX{};
        info.nWidth = static_cast<std::uint16_t>(next.width);
        info.nHeight = static_cast<std::uint16_t>(next.height);
        info.nExtendWidth = next.width;
        info.nExtendHeight = next.height;
        info.enPixelType = static_cast<MvGvspPixelType>(genicamPixelCode(next.format));
        info.nFrameNum = next.number;
        info.nFrameCounter = next.number;
        const std::uint64_t deviceNanoseconds = next.timestampMicroseconds * 1000;
        info.nDevTimeStampHigh = static_cast<std::uint32_t>(deviceNanoseconds >> 32);
        info.nDevTimeStampLow = static_cast<std::uint32_t>(deviceNanoseconds & 0xFFFFFFFFu);
        info.nHostTimeStamp = std::chrono::duration_cast<std::chrono::milliseconds>(
                                  std::chrono::system_clock::now().time_since_epoch())
                                  .count();
        info.nFrameLen = static_cast<std::uint32_t>(next.data.size());
        info.nFrameLenEx = next.data.size();
        info.fGain = device.state.gain.current;
        info.fExposureTime = device.state.exposure.current;
        frame->pBufAddr = m_lent.lend(handle, std::move(next.data));
        return MV_OK;
    });
}

int HikVisionSimulator::freeImageBuffer(void* handle, MV_FRAME_OUT* frame) {
    return onHandle("MV_CC_FreeImageBuffer", {}, handle, [&](Handle&) {
        if (!frame || !frame->pBufAddr) return MV_E_PARAMETER;
        // A buffer goes back to the handle that borrowed it, also after the device went away.
        return m_lent.giveBack(handle, frame->pBufAddr) ? MV_OK : MV_E_PARAMETER;
    });
}

// ---- Feature nodes. ----

int HikVisionSimulator::getEnumValue(void* handle, const char* key, MVCC_ENUMVALUE* value) {
    return onDevice("MV_CC_GetEnumValue", callArguments(key), handle, [&](Device& device) {
        if (!key || !value) return MV_E_PARAMETER;
        const std::string node = key;
        if (node == "PixelFormat") {
            std::vector<std::uint32_t> supported;
            for (const PixelFormat format : device.model.description().supportedFormats)
                supported.push_back(genicamPixelCode(format));
            fillEnum(*value, genicamPixelCode(device.model.format()), supported);
        } else if (node == "TriggerMode") {
            fillEnum(*value, device.state.triggerMode, kOffOn);
        } else if (node == "ExposureAuto") {
            fillEnum(*value, device.state.exposureAuto, kOffOnceContinuous);
        } else if (node == "GainAuto") {
            fillEnum(*value, device.state.gainAuto, kOffOnceContinuous);
        } else {
            return MV_E_GC_PROPERTY;  // no such enumeration node
        }
        return MV_OK;
    });
}

int HikVisionSimulator::setEnumValue(void* handle, const char* key, unsigned int value) {
    const auto guard = lock();
    if (key) m_lastEnumValues[key] = value;
    return onDevice("MV_CC_SetEnumValue", callArguments(key, value), handle, [&](Device& device) {
        if (!key) return MV_E_PARAMETER;
        const std::string node = key;
        DeviceState& state = device.state;
        if (node == "PixelFormat") {
            // Read-only while streaming, as on most cameras: the payload size depends on it.
            if (device.model.grabbing()) return MV_E_GC_ACCESS;
            const auto format = formatOfGenICamCode(value);
            if (!format || !device.model.setFormat(*format)) return MV_E_GC_RANGE;
        } else if (node == "TriggerMode") {
            if (value > MV_TRIGGER_MODE_ON) return MV_E_GC_RANGE;
            state.triggerMode = value;
        } else if (node == "ExposureAuto" || node == "GainAuto") {
            if (value > MV_EXPOSURE_AUTO_MODE_CONTINUOUS) return MV_E_GC_RANGE;
            (node == "ExposureAuto" ? state.exposureAuto : state.gainAuto) = afterOnce(value);
        } else {
            return MV_E_GC_PROPERTY;
        }
        return MV_OK;
    });
}

int HikVisionSimulator::getIntValueEx(void* handle, const char* key, MVCC_INTVALUE_EX* value) {
    return onDevice("MV_CC_GetIntValueEx", callArguments(key), handle, [&](Device& device) {
        if (!key || !value) return MV_E_PARAMETER;
        const std::string node = key;
        const DeviceDescription& description = device.model.description();
        const IntFeature& brightness = device.state.brightness;
        *value = MVCC_INTVALUE_EX{};
        if (node == "Width" || node == "Height") {
            // The whole sensor: no region of interest is simulated.
            const std::uint32_t size = node == "Width" ? description.width : description.height;
            value->nCurValue = value->nMax = size;
            value->nMin = value->nInc = 1;
        } else if (node == "Brightness") {
            value->nCurValue = brightness.current;
            value->nMax = brightness.max;
            value->nMin = brightness.min;
            value->nInc = brightness.increment;
        } else {
            return MV_E_GC_PROPERTY;
        }
        return MV_OK;
    });
}

// The four functions our code binds but never calls answer "not supported", after the checks
// every call makes.
int HikVisionSimulator::setIntValueEx(void* handle, const char* key, std::int64_t value) {
    return onHandle("MV_CC_SetIntValueEx", callArguments(key, value), handle,
                    [](Handle&) { return MV_E_SUPPORT; });
}

int HikVisionSimulator::setGainMode(void* handle, unsigned int value) {
    return onHandle("MV_CC_SetGainMode", callArguments(value), handle,
                    [](Handle&) { return MV_E_SUPPORT; });
}

int HikVisionSimulator::getFloatValue(void* handle, const char* key, MVCC_FLOATVALUE*) {
    return onHandle("MV_CC_GetFloatValue", callArguments(key), handle,
                    [](Handle&) { return MV_E_SUPPORT; });
}

int HikVisionSimulator::setFloatValue(void* handle, const char* key, float value) {
    return onHandle("MV_CC_SetFloatValue", callArguments(key, value), handle,
                    [](Handle&) { return MV_E_SUPPORT; });
}

int HikVisionSimulator::getGainMode(void* handle, MVCC_ENUMVALUE* value) {
    return onDevice("MV_CC_GetGainMode", {}, handle, [&](Device& device) {
        if (!value) return MV_E_PARAMETER;
        fillEnum(*value, device.state.gainAuto, kOffOnceContinuous);
        return MV_OK;
    });
}

int HikVisionSimulator::getExposureAutoMode(void* handle, MVCC_ENUMVALUE* value) {
    return onDevice("MV_CC_GetExposureAutoMode", {}, handle, [&](Device& device) {
        if (!value) return MV_E_PARAMETER;
        fillEnum(*value, device.state.exposureAuto, kOffOnceContinuous);
        return MV_OK;
    });
}

int HikVisionSimulator::setExposureAutoMode(void* handle, unsigned int value) {
    const auto guard = lock();
    m_lastExposureAuto = value;
    return onDevice("MV_CC_SetExposureAutoMode", callArguments(value), handle, [&](Device& device) {
        if (value > MV_EXPOSURE_AUTO_MODE_CONTINUOUS) return MV_E_GC_RANGE;
        device.state.exposureAuto = afterOnce(value);
        return MV_OK;
    });
}

int HikVisionSimulator::getBrightness(void* handle, MVCC_INTVALUE* value) {
    return onDevice("MV_CC_GetBrightness", {}, handle, [&](Device& device) {
        if (!value) return MV_E_PARAMETER;
        const IntFeature& brightness = device.state.brightness;
        *value = MVCC_INTVALUE{};
        value->nCurValue = brightness.current;
        value->nMax = brightness.max;
        value->nMin = brightness.min;
        value->nInc = brightness.increment;
        return MV_OK;
    });
}

int HikVisionSimulator::setBrightness(void* handle, unsigned int value) {
    const auto guard = lock();
    m_lastBrightness = value;
    return onDevice("MV_CC_SetBrightness", callArguments(value), handle, [&](Device& device) {
        IntFeature& brightness = device.state.brightness;
        if (value < brightness.min || value > brightness.max ||
            (value - brightness.min) % brightness.increment != 0)
            return MV_E_GC_RANGE;
        brightness.current = value;
        return MV_OK;
    });
}

int HikVisionSimulator::getExposureTime(void* handle, MVCC_FLOATVALUE* value) {
    return onDevice("MV_CC_GetExposureTime", {}, handle,
                    [&](Device& device) { return readFloat(device.state.exposure, value); });
}

int HikVisionSimulator::setExposureTime(void* handle, float value) {
    const auto guard = lock();
    m_lastExposureTime = value;
    return onDevice("MV_CC_SetExposureTime", callArguments(value), handle, [&](Device& device) {
        // The automatic loop owns the value while it runs.
        if (device.state.exposureAuto == MV_EXPOSURE_AUTO_MODE_CONTINUOUS) return MV_E_GC_ACCESS;
        return writeFloat(device.state.exposure, value);
    });
}

int HikVisionSimulator::getGain(void* handle, MVCC_FLOATVALUE* value) {
    return onDevice("MV_CC_GetGain", {}, handle,
                    [&](Device& device) { return readFloat(device.state.gain, value); });
}

int HikVisionSimulator::setGain(void* handle, float value) {
    const auto guard = lock();
    m_lastGain = value;
    return onDevice("MV_CC_SetGain", callArguments(value), handle, [&](Device& device) {
        if (device.state.gainAuto == MV_GAIN_MODE_CONTINUOUS) return MV_E_GC_ACCESS;
        return writeFloat(device.state.gain, value);
    });
}

int HikVisionSimulator::setCommandValue(void* handle, const char* key) {
    return onDevice("MV_CC_SetCommandValue", callArguments(key), handle, [&](Device&) {
        if (!key) return MV_E_PARAMETER;
        // Settings are not lost at unplug here, so saving them has nothing to do.
        return std::string(key) == "UserDataSave" ? MV_OK : MV_E_GC_PROPERTY;
    });
}

// ---- Image processing: needs a handle, not an open device. ----

int HikVisionSimulator::convertPixelTypeEx(void* handle, MV_CC_PIXEL_CONVERT_PARAM_EX* param) {
    const std::string recorded =
        param ? callArguments(param->nWidth, param->nHeight, Hex{param->enSrcPixelType},
                              Hex{param->enDstPixelType}, param->nDstBufferSize)
              : std::string();
    return onHandle("MV_CC_ConvertPixelTypeEx", recorded, handle, [&](Handle&) {
        if (!param || !param->pSrcData || !param->pDstBuffer || param->nWidth == 0 ||
            param->nHeight == 0)
            return MV_E_PARAMETER;
        const auto source = formatOfGenICamCode(param->enSrcPixelType);
        if (!source || formatOfGenICamCode(param->enDstPixelType) != PixelFormat::Rgb8)
            return MV_E_SUPPORT;
        const std::size_t inBytes = frameBytes(*source, param->nWidth, param->nHeight);
        const std::size_t outBytes = frameBytes(PixelFormat::Rgb8, param->nWidth, param->nHeight);
        if (outBytes > 0xFFFFFFFFu || param->nSrcDataLen < inBytes) return MV_E_PARAMETER;
        if (param->nDstBufferSize < outBytes) return MV_E_NOENOUGH_BUF;
        if (buffersOverlap(param->pSrcData, inBytes, param->pDstBuffer, outBytes))
            return MV_E_PARAMETER;
        convertToRgb8(*source, param->pSrcData, param->nWidth, param->nHeight, param->pDstBuffer);
        param->nDstLen = static_cast<std::uint32_t>(outBytes);
        return MV_OK;
    });
}

namespace {

// Flip and rotate check the same things; `transform` is the flip type or rotation angle.
template <class Param>
int checkTransform(const Param* param, std::uint32_t transform, std::uint32_t first,
                   std::uint32_t last, PixelFormat& format, std::size_t& bytes) {
    if (!param || !param->pSrcData || !param->pDstBuf || param->nWidth == 0 || param->nHeight == 0)
        return MV_E_PARAMETER;
    const auto type = formatOfGenICamCode(param->enPixelType);
    if (!type || !isPackedFormat(*type)) return MV_E_SUPPORT;
    if (transform < first || transform > last) return MV_E_PARAMETER;
    format = *type;
    bytes = frameBytes(format, param->nWidth, param->nHeight);
    if (bytes > 0xFFFFFFFFu || param->nSrcDataLen < bytes) return MV_E_PARAMETER;
    if (param->nDstBufSize < bytes) return MV_E_NOENOUGH_BUF;
    if (buffersOverlap(param->pSrcData, bytes, param->pDstBuf, bytes)) return MV_E_PARAMETER;
    return MV_OK;
}

}  // namespace

int HikVisionSimulator::flipImage(void* handle, MV_CC_FLIP_IMAGE_PARAM* param) {
    const std::string recorded = param ? callArguments(Hex{param->enPixelType}, param->nWidth,
                                                       param->nHeight, param->enFlipType)
                                       : std::string();
    return onHandle("MV_CC_FlipImage", recorded, handle, [&](Handle&) {
        PixelFormat format{};
        std::size_t bytes = 0;
        const std::uint32_t type = param ? param->enFlipType : 0;
        if (const int status =
                checkTransform(param, type, MV_FLIP_VERTICAL, MV_FLIP_HORIZONTAL, format, bytes);
            status != MV_OK)
            return status;
        const auto flip = type == MV_FLIP_VERTICAL ? flipVertical : flipHorizontal;
        flip(param->pSrcData, param->nWidth, param->nHeight, bytesPerPixel(format), param->pDstBuf);
        param->nDstBufLen = static_cast<std::uint32_t>(bytes);
        return MV_OK;
    });
}

int HikVisionSimulator::rotateImage(void* handle, MV_CC_ROTATE_IMAGE_PARAM* param) {
    const std::string recorded = param ? callArguments(Hex{param->enPixelType}, param->nWidth,
                                                       param->nHeight, param->enRotationAngle)
                                       : std::string();
    return onHandle("MV_CC_RotateImage", recorded, handle, [&](Handle&) {
        PixelFormat format{};
        std::size_t bytes = 0;
        const std::uint32_t angle = param ? param->enRotationAngle : 0;
        if (const int status = checkTransform(param, angle, MV_IMAGE_ROTATE_90, MV_IMAGE_ROTATE_270,
                                              format, bytes);
            status != MV_OK)
            return status;
        // The header leaves the direction open; 90 turns clockwise here, as our own routines do.
        rotateClockwise(param->pSrcData, param->nWidth, param->nHeight, bytesPerPixel(format),
                        angle, param->pDstBuf);
        if (angle != MV_IMAGE_ROTATE_180) std::swap(param->nWidth, param->nHeight);
        param->nDstBufLen = static_cast<std::uint32_t>(bytes);
        return MV_OK;
    });
}

// ---- HikVision's own test control. ----

bool HikVisionSimulator::setGainRange(const std::string& id, float min, float max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.gain, min, max); });
}

bool HikVisionSimulator::setExposureRange(const std::string& id, float min, float max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.exposure, min, max); });
}

bool HikVisionSimulator::setBrightnessRange(const std::string& id, std::uint32_t min,
                                            std::uint32_t max) {
    return changeDevice(
        id, [&](Device& device) { return setFeatureRange(device.state.brightness, min, max); });
}

std::optional<float> HikVisionSimulator::lastSetGain() { return locked(m_lastGain); }

std::optional<float> HikVisionSimulator::lastSetExposureTime() {
    return locked(m_lastExposureTime);
}

std::optional<std::uint32_t> HikVisionSimulator::lastSetBrightness() {
    return locked(m_lastBrightness);
}

std::optional<std::uint32_t> HikVisionSimulator::lastSetExposureAutoMode() {
    return locked(m_lastExposureAuto);
}

std::optional<std::uint32_t> HikVisionSimulator::lastSetEnumValue(const std::string& node) {
    const auto guard = lock();
    const auto found = m_lastEnumValues.find(node);
    if (found == m_lastEnumValues.end()) return std::nullopt;
    return found->second;
}

}  // namespace telvarra::sim::hikvision
