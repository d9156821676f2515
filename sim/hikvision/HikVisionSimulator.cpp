#include "sim/hikvision/HikVisionSimulator.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <sstream>
#include <utility>

#include "sim/common/ImageOps.h"
#include "sim/common/Rig.h"
#include "sim/hikvision/HikSimControl.h"

namespace telvarra::sim::hikvision {

using namespace telvarra::vendor::hikvision;

namespace {

constexpr const char* kMake = "hikvision";
constexpr const char* kDefaultModel = "MV-CA000-SIM";

// ---- Formatting the arguments a call is recorded with. ----

struct Hex {
    std::int64_t value;
};

void put(std::ostream& out, const char* text) { out << (text ? text : "(null)"); }
void put(std::ostream& out, const Hex& hex) { out << "0x" << std::hex << hex.value << std::dec; }
template <class T>
void put(std::ostream& out, const T& value) {
    out << value;
}

template <class... T>
std::string arguments(const T&... values) {
    std::ostringstream out;
    out.precision(9);
    const char* separator = "";
    ((out << separator, put(out, values), separator = ", "), ...);
    return out.str();
}

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

struct PixelTypeName {
    PixelFormat format;
    std::uint32_t type;
};
constexpr PixelTypeName kPixelTypes[] = {
    {PixelFormat::Mono8, PixelType_Gvsp_Mono8},
    {PixelFormat::Rgb8, PixelType_Gvsp_RGB8_Packed},
    {PixelFormat::Bgr8, PixelType_Gvsp_BGR8_Packed},
    {PixelFormat::BayerGR8, PixelType_Gvsp_BayerGR8},
    {PixelFormat::BayerRG8, PixelType_Gvsp_BayerRG8},
    {PixelFormat::BayerGB8, PixelType_Gvsp_BayerGB8},
    {PixelFormat::BayerBG8, PixelType_Gvsp_BayerBG8},
};

std::uint32_t pixelTypeOf(PixelFormat format) {
    for (const auto& entry : kPixelTypes)
        if (entry.format == format) return entry.type;
    return 0;
}

// Takes the value as the field holds it on either platform (4-byte unsigned or 8-byte signed).
std::optional<PixelFormat> formatOfPixelType(std::int64_t type) {
    for (const auto& entry : kPixelTypes)
        if (static_cast<std::int64_t>(entry.type) == type) return entry.format;
    return std::nullopt;
}

bool isPackedFormat(PixelFormat format) {
    return format == PixelFormat::Mono8 || format == PixelFormat::Rgb8 ||
           format == PixelFormat::Bgr8;
}

template <std::size_t N>
void putText(unsigned char (&field)[N], const std::string& text) {
    std::memset(field, 0, N);
    std::memcpy(field, text.data(), std::min(N, text.size()));  // a full field has no terminator
}

template <std::size_t N>
std::string fieldText(const unsigned char (&field)[N]) {
    const void* end = std::memchr(field, 0, N);
    const auto length =
        end ? static_cast<std::size_t>(static_cast<const unsigned char*>(end) - field) : N;
    return std::string(reinterpret_cast<const char*>(field), length);
}

// The serial number a device record names, read from the layer's member.
std::optional<std::string> recordSerial(const MV_CC_DEVICE_INFO& record) {
    const auto& info = record.SpecialInfo;
    switch (record.nTLayerType) {
        case MV_GIGE_DEVICE:
        case MV_GENTL_GIGE_DEVICE:
            return fieldText(info.stGigEInfo.chSerialNumber);
        case MV_USB_DEVICE:
            return fieldText(info.stUsb3VInfo.chSerialNumber);
        case MV_GENTL_CAMERALINK_DEVICE:
        case MV_GENTL_CXP_DEVICE:
        case MV_GENTL_XOF_DEVICE:
            return fieldText(info.stCXPInfo.chSerialNumber);
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

// Separate buffers only: the image functions never work in place.
bool overlaps(const void* a, std::size_t aSize, const void* b, std::size_t bSize) {
    const auto first = reinterpret_cast<std::uintptr_t>(a);
    const auto second = reinterpret_cast<std::uintptr_t>(b);
    return first < second + bSize && second < first + aSize;
}

}  // namespace

Simulator& simulator() {
    // Never destroyed, as a vendor SDK's state outlives its callers: a host that exits without
    // releasing shuts its drivers down from exit handlers that run after this library's own.
    static Simulator& instance = *new Simulator();
    return instance;
}

Simulator::Simulator() {
    const char* rig = std::getenv(kRigEnvironmentVariable);
    if (!rig || !*rig) return;
    loadRig(rig);
    if (!m_lastError.empty())
        std::fprintf(stderr, "HikVision simulator: rig %s:\n%s", rig, m_lastError.c_str());
}

// ---- Helpers. ----

std::optional<int> Simulator::enter(const char* function, std::string arguments) {
    m_calls.record(function, std::move(arguments));
    return m_faults.check(function);
}

// Every call is counted and may meet a planned fault first; then it needs Initialize.
template <class Body>
int Simulator::call(const char* function, std::string arguments, Body&& body) {
    std::lock_guard lock(m_mutex);
    if (const auto fault = enter(function, std::move(arguments))) return *fault;
    if (!m_initialized) return MV_E_CALLORDER;
    return body();
}

// ... and a handle this simulator created and has not destroyed.
template <class Body>
int Simulator::onHandle(const char* function, std::string arguments, void* handle, Body&& body) {
    return call(function, std::move(arguments), [&] {
        Handle* entry = findHandle(handle);
        return entry ? body(*entry) : MV_E_HANDLE;
    });
}

// ... and an open device whose session is alive.
template <class Body>
int Simulator::onDevice(const char* function, std::string arguments, void* handle, Body&& body) {
    return call(function, std::move(arguments), [&] {
        Device* device = nullptr;
        const int status = liveSession(handle, device);
        return status == MV_OK ? body(*device) : status;
    });
}

Simulator::Device* Simulator::findDevice(const std::string& id) {
    const auto found = std::find_if(m_devices.begin(), m_devices.end(),
                                    [&](const Device& device) { return device.model.id() == id; });
    return found == m_devices.end() ? nullptr : &*found;
}

Simulator::Handle* Simulator::findHandle(void* handle) {
    const auto found = m_handles.find(handle);
    return found == m_handles.end() ? nullptr : &found->second;
}

int Simulator::liveSession(void* handle, Device*& device) {
    Handle* entry = findHandle(handle);
    if (!entry) return MV_E_HANDLE;
    if (!entry->open) return MV_E_CALLORDER;
    device = findDevice(entry->deviceId);
    if (!device || !device->model.isOpenBy(handle)) return lostDeviceStatus(entry->layer);
    return MV_OK;
}

void Simulator::endSession(const void* token, Handle& handle) {
    if (Device* device = findDevice(handle.deviceId)) device->model.close(token);
    handle.open = false;
}

// ---- Library set-up. ----

int Simulator::initialize() {
    std::lock_guard lock(m_mutex);
    if (const auto fault = enter("MV_CC_Initialize")) return *fault;
    m_initialized = true;  // a second call is harmless; one Finalize ends it
    return MV_OK;
}

int Simulator::finalize() {
    return call("MV_CC_Finalize", {}, [&] {
        for (auto& [token, handle] : m_handles)
            if (handle.open) endSession(token, handle);
        // Frames still lent to these handles can no longer be given back: they stay counted.
        m_handles.clear();
        m_records.clear();
        m_initialized = false;
        return MV_OK;
    });
}

unsigned int Simulator::getSdkVersion() {
    std::lock_guard lock(m_mutex);
    if (const auto fault = enter("MV_CC_GetSDKVersion")) return static_cast<unsigned int>(*fault);
    return HIKSIM_SDK_VERSION;
}

// ---- Enumeration and handles. ----

std::unique_ptr<MV_CC_DEVICE_INFO> Simulator::makeRecord(const Device& device, std::size_t index) {
    auto record = std::make_unique<MV_CC_DEVICE_INFO>();  // zero-filled
    const DeviceDescription& description = device.model.description();
    const auto number = static_cast<std::uint32_t>(index);
    record->nMajorVer = 1;
    record->nMinorVer = 0;
    record->nMacAddrHigh = 0x02A0;  // a locally administered address made of the seed
    record->nMacAddrLow = description.seed;
    record->nTLayerType = device.layer;
    const std::string version = "V1.0.0 simulated";
    auto& info = record->SpecialInfo;
    if (isGigELayer(device.layer)) {
        info.stGigEInfo.nIpCfgOption = 0x80000007;         // persistent IP, DHCP, link-local
        info.stGigEInfo.nIpCfgCurrent = 0x04000000;        // DHCP
        info.stGigEInfo.nCurrentIp = 0xC0A80A64 + number;  // 192.168.10.100 + n
        info.stGigEInfo.nCurrentSubNetMask = 0xFFFFFF00;
        info.stGigEInfo.nDefultGateWay = 0xC0A80A01;
        putText(info.stGigEInfo.chManufacturerName, "Hikrobot");
        putText(info.stGigEInfo.chModelName, description.model);
        putText(info.stGigEInfo.chDeviceVersion, version);
        putText(info.stGigEInfo.chSerialNumber, description.id);
        putText(info.stGigEInfo.chUserDefinedName, description.userName);
        info.stGigEInfo.nNetExport = 0xC0A80A01;
    } else if (device.layer == MV_USB_DEVICE) {
        info.stUsb3VInfo.idVendor = 0x2BDF;
        info.stUsb3VInfo.idProduct = 0x0001;
        info.stUsb3VInfo.nDeviceNumber = number;
        putText(info.stUsb3VInfo.chDeviceGUID, "SIM-" + description.id);
        putText(info.stUsb3VInfo.chVendorName, "Hikrobot");
        putText(info.stUsb3VInfo.chModelName, description.model);
        putText(info.stUsb3VInfo.chFamilyName, "MV-CA");
        putText(info.stUsb3VInfo.chDeviceVersion, version);
        putText(info.stUsb3VInfo.chManufacturerName, "Hikrobot");
        putText(info.stUsb3VInfo.chSerialNumber, description.id);
        putText(info.stUsb3VInfo.chUserDefinedName, description.userName);
        info.stUsb3VInfo.nbcdUSB = 0x0300;
        info.stUsb3VInfo.nDeviceAddress = number + 1;
    } else {
        MV_GENTL_CAMERA_INFO& gentl = info.stCXPInfo;  // one layout for CML, CXP and XoF
        putText(gentl.chInterfaceID, "FG0");
        putText(gentl.chVendorName, "Hikrobot");
        putText(gentl.chModelName, description.model);
        putText(gentl.chManufacturerInfo, "Hikrobot");
        putText(gentl.chDeviceVersion, version);
        putText(gentl.chSerialNumber, description.id);
        putText(gentl.chUserDefinedName, description.userName);
        putText(gentl.chDeviceID, description.id);
    }
    return record;
}

int Simulator::enumDevices(unsigned int layerMask, MV_CC_DEVICE_INFO_LIST* list) {
    return call("MV_CC_EnumDevices", arguments(Hex{layerMask}), [&] {
        if (!list) return MV_E_PARAMETER;
        std::vector<std::unique_ptr<MV_CC_DEVICE_INFO>> records;
        for (const Device& device : m_devices) {
            if (records.size() == MV_MAX_DEVICE_NUM) break;
            if (device.model.plugged() && layerInMask(device.layer, layerMask))
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

int Simulator::createHandle(void** handle, const MV_CC_DEVICE_INFO* deviceInfo) {
    return call("MV_CC_CreateHandle", {}, [&] {
        if (!handle || !deviceInfo) return MV_E_PARAMETER;
        const auto serial = recordSerial(*deviceInfo);
        const Device* device = serial ? findDevice(*serial) : nullptr;
        // The device need not be plugged in now; opening it needs that.
        if (!device || device->layer != deviceInfo->nTLayerType) return MV_E_PARAMETER;
        // Handles are opaque tokens, never reused, so a destroyed one stays invalid.
        void* token = reinterpret_cast<void*>(0x48530000 + 0x10 * ++m_handlesCreated);
        m_handles[token] = Handle{device->model.id(), device->layer, false};
        *handle = token;
        return MV_OK;
    });
}

int Simulator::openDevice(void* handle, unsigned int accessMode, unsigned short switchoverKey) {
    const auto recorded = arguments(accessMode, switchoverKey);
    return onHandle("MV_CC_OpenDevice", recorded, handle, [&](Handle& entry) {
        if (entry.open) return MV_E_CALLORDER;
        if (accessMode < MV_ACCESS_Exclusive || accessMode > MV_ACCESS_Monitor)
            return MV_E_PARAMETER;
        Device* device = findDevice(entry.deviceId);
        if (!device || !device->model.plugged()) return lostDeviceStatus(entry.layer);
        // Every mode is exclusive here: no monitor or switch-over sessions beside an open one.
        if (!device->model.open(handle)) return MV_E_ACCESS_DENIED;
        entry.open = true;
        return MV_OK;
    });
}

int Simulator::closeDevice(void* handle) {
    return onHandle("MV_CC_CloseDevice", {}, handle, [&](Handle& entry) {
        if (!entry.open) return MV_E_CALLORDER;
        endSession(handle, entry);  // also after an unplug: closing a dead session succeeds
        return MV_OK;
    });
}

int Simulator::destroyHandle(void* handle) {
    return onHandle("MV_CC_DestroyHandle", {}, handle, [&](Handle& entry) {
        if (entry.open) endSession(handle, entry);
        m_handles.erase(handle);
        return MV_OK;
    });
}

bool Simulator::isDeviceConnected(void* handle) {
    return onDevice("MV_CC_IsDeviceConnected", {}, handle, [](Device&) { return MV_OK; }) == MV_OK;
}

// ---- Streaming. ----

int Simulator::startGrabbing(void* handle) {
    return onDevice("MV_CC_StartGrabbing", {}, handle, [](Device& device) {
        if (device.model.grabbing()) return MV_E_CALLORDER;
        device.model.setGrabbing(true);
        return MV_OK;
    });
}

int Simulator::stopGrabbing(void* handle) {
    return onDevice("MV_CC_StopGrabbing", {}, handle, [](Device& device) {
        if (!device.model.grabbing()) return MV_E_CALLORDER;
        device.model.setGrabbing(false);
        return MV_OK;
    });
}

int Simulator::getImageBuffer(void* handle, MV_FRAME_OUT* frame, unsigned int timeoutMs) {
    return onHandle("MV_CC_GetImageBuffer", arguments(timeoutMs), handle, [&](Handle&) {
        if (!frame) return MV_E_PARAMETER;
        // Whenever no frame can come, the time-out would expire: say so at once instead of
        // waiting. That covers a device not streaming or gone, a trigger that never fires (no
        // trigger source is simulated) and every image node held by the caller.
        Device* device = nullptr;
        if (liveSession(handle, device) != MV_OK || !device->model.grabbing() ||
            device->triggerMode != MV_TRIGGER_MODE_OFF ||
            m_lent.outstanding(handle) >= HIKSIM_IMAGE_NODE_COUNT)
            return MV_E_NODATA;

        DeviceFrame next = device->model.nextFrame();
        MV_FRAME_OUT_INFO_EX& info = frame->stFrameInfo;
        info = MV_FRAME_OUT_INFO_EX{};
        info.nWidth = static_cast<std::uint16_t>(next.width);
        info.nHeight = static_cast<std::uint16_t>(next.height);
        info.nExtendWidth = next.width;
        info.nExtendHeight = next.height;
        info.enPixelType = static_cast<MvGvspPixelType>(pixelTypeOf(next.format));
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
        info.fGain = device->gain.current;
        info.fExposureTime = device->exposure.current;
        frame->pBufAddr = m_lent.lend(handle, std::move(next.data));
        return MV_OK;
    });
}

int Simulator::freeImageBuffer(void* handle, MV_FRAME_OUT* frame) {
    return onHandle("MV_CC_FreeImageBuffer", {}, handle, [&](Handle&) {
        if (!frame || !frame->pBufAddr) return MV_E_PARAMETER;
        // A buffer goes back to the handle that borrowed it, also after the device went away.
        return m_lent.giveBack(handle, frame->pBufAddr) ? MV_OK : MV_E_PARAMETER;
    });
}

// ---- Feature nodes. ----

int Simulator::getEnumValue(void* handle, const char* key, MVCC_ENUMVALUE* value) {
    return onDevice("MV_CC_GetEnumValue", arguments(key), handle, [&](Device& device) {
        if (!key || !value) return MV_E_PARAMETER;
        const std::string node = key;
        if (node == "PixelFormat") {
            std::vector<std::uint32_t> supported;
            for (const PixelFormat format : device.model.description().supportedFormats)
                supported.push_back(pixelTypeOf(format));
            fillEnum(*value, pixelTypeOf(device.model.format()), supported);
        } else if (node == "TriggerMode") {
            fillEnum(*value, device.triggerMode, kOffOn);
        } else if (node == "ExposureAuto") {
            fillEnum(*value, device.exposureAuto, kOffOnceContinuous);
        } else if (node == "GainAuto") {
            fillEnum(*value, device.gainAuto, kOffOnceContinuous);
        } else {
            return MV_E_GC_PROPERTY;  // no such enumeration node
        }
        return MV_OK;
    });
}

int Simulator::setEnumValue(void* handle, const char* key, unsigned int value) {
    std::lock_guard lock(m_mutex);
    if (key) m_lastEnumValues[key] = value;
    return onDevice("MV_CC_SetEnumValue", arguments(key, value), handle, [&](Device& device) {
        if (!key) return MV_E_PARAMETER;
        const std::string node = key;
        if (node == "PixelFormat") {
            // Read-only while streaming, as on most cameras: the payload size depends on it.
            if (device.model.grabbing()) return MV_E_GC_ACCESS;
            const auto format = formatOfPixelType(value);
            if (!format || !device.model.setFormat(*format)) return MV_E_GC_RANGE;
        } else if (node == "TriggerMode") {
            if (value > MV_TRIGGER_MODE_ON) return MV_E_GC_RANGE;
            device.triggerMode = value;
        } else if (node == "ExposureAuto" || node == "GainAuto") {
            if (value > MV_EXPOSURE_AUTO_MODE_CONTINUOUS) return MV_E_GC_RANGE;
            (node == "ExposureAuto" ? device.exposureAuto : device.gainAuto) = afterOnce(value);
        } else {
            return MV_E_GC_PROPERTY;
        }
        return MV_OK;
    });
}

int Simulator::getIntValueEx(void* handle, const char* key, MVCC_INTVALUE_EX* value) {
    return onDevice("MV_CC_GetIntValueEx", arguments(key), handle, [&](Device& device) {
        if (!key || !value) return MV_E_PARAMETER;
        const std::string node = key;
        const DeviceDescription& description = device.model.description();
        *value = MVCC_INTVALUE_EX{};
        if (node == "Width" || node == "Height") {
            // The whole sensor: no region of interest is simulated.
            const std::uint32_t size = node == "Width" ? description.width : description.height;
            value->nCurValue = value->nMax = size;
            value->nMin = value->nInc = 1;
        } else if (node == "Brightness") {
            value->nCurValue = device.brightness.current;
            value->nMax = device.brightness.max;
            value->nMin = device.brightness.min;
            value->nInc = device.brightness.increment;
        } else {
            return MV_E_GC_PROPERTY;
        }
        return MV_OK;
    });
}

// The four functions our code binds but never calls answer "not supported", after the checks
// every call makes.
int Simulator::setIntValueEx(void* handle, const char* key, std::int64_t value) {
    return onHandle("MV_CC_SetIntValueEx", arguments(key, value), handle,
                    [](Handle&) { return MV_E_SUPPORT; });
}

int Simulator::setGainMode(void* handle, unsigned int value) {
    return onHandle("MV_CC_SetGainMode", arguments(value), handle,
                    [](Handle&) { return MV_E_SUPPORT; });
}

int Simulator::getFloatValue(void* handle, const char* key, MVCC_FLOATVALUE*) {
    return onHandle("MV_CC_GetFloatValue", arguments(key), handle,
                    [](Handle&) { return MV_E_SUPPORT; });
}

int Simulator::setFloatValue(void* handle, const char* key, float value) {
    return onHandle("MV_CC_SetFloatValue", arguments(key, value), handle,
                    [](Handle&) { return MV_E_SUPPORT; });
}

int Simulator::getGainMode(void* handle, MVCC_ENUMVALUE* value) {
    return onDevice("MV_CC_GetGainMode", {}, handle, [&](Device& device) {
        if (!value) return MV_E_PARAMETER;
        fillEnum(*value, device.gainAuto, kOffOnceContinuous);
        return MV_OK;
    });
}

int Simulator::getExposureAutoMode(void* handle, MVCC_ENUMVALUE* value) {
    return onDevice("MV_CC_GetExposureAutoMode", {}, handle, [&](Device& device) {
        if (!value) return MV_E_PARAMETER;
        fillEnum(*value, device.exposureAuto, kOffOnceContinuous);
        return MV_OK;
    });
}

int Simulator::setExposureAutoMode(void* handle, unsigned int value) {
    std::lock_guard lock(m_mutex);
    m_lastExposureAuto = value;
    return onDevice("MV_CC_SetExposureAutoMode", arguments(value), handle, [&](Device& device) {
        if (value > MV_EXPOSURE_AUTO_MODE_CONTINUOUS) return MV_E_GC_RANGE;
        device.exposureAuto = afterOnce(value);
        return MV_OK;
    });
}

int Simulator::getBrightness(void* handle, MVCC_INTVALUE* value) {
    return onDevice("MV_CC_GetBrightness", {}, handle, [&](Device& device) {
        if (!value) return MV_E_PARAMETER;
        *value = MVCC_INTVALUE{};
        value->nCurValue = device.brightness.current;
        value->nMax = device.brightness.max;
        value->nMin = device.brightness.min;
        value->nInc = device.brightness.increment;
        return MV_OK;
    });
}

int Simulator::setBrightness(void* handle, unsigned int value) {
    std::lock_guard lock(m_mutex);
    m_lastBrightness = value;
    return onDevice("MV_CC_SetBrightness", arguments(value), handle, [&](Device& device) {
        IntFeature& brightness = device.brightness;
        if (value < brightness.min || value > brightness.max ||
            (value - brightness.min) % brightness.increment != 0)
            return MV_E_GC_RANGE;
        brightness.current = value;
        return MV_OK;
    });
}

int Simulator::getExposureTime(void* handle, MVCC_FLOATVALUE* value) {
    return onDevice("MV_CC_GetExposureTime", {}, handle,
                    [&](Device& device) { return readFloat(device.exposure, value); });
}

int Simulator::setExposureTime(void* handle, float value) {
    std::lock_guard lock(m_mutex);
    m_lastExposureTime = value;
    return onDevice("MV_CC_SetExposureTime", arguments(value), handle, [&](Device& device) {
        // The automatic loop owns the value while it runs.
        if (device.exposureAuto == MV_EXPOSURE_AUTO_MODE_CONTINUOUS) return MV_E_GC_ACCESS;
        return writeFloat(device.exposure, value);
    });
}

int Simulator::getGain(void* handle, MVCC_FLOATVALUE* value) {
    return onDevice("MV_CC_GetGain", {}, handle,
                    [&](Device& device) { return readFloat(device.gain, value); });
}

int Simulator::setGain(void* handle, float value) {
    std::lock_guard lock(m_mutex);
    m_lastGain = value;
    return onDevice("MV_CC_SetGain", arguments(value), handle, [&](Device& device) {
        if (device.gainAuto == MV_GAIN_MODE_CONTINUOUS) return MV_E_GC_ACCESS;
        return writeFloat(device.gain, value);
    });
}

int Simulator::setCommandValue(void* handle, const char* key) {
    return onDevice("MV_CC_SetCommandValue", arguments(key), handle, [&](Device&) {
        if (!key) return MV_E_PARAMETER;
        // Settings are not lost at unplug here, so saving them has nothing to do.
        return std::string(key) == "UserDataSave" ? MV_OK : MV_E_GC_PROPERTY;
    });
}

// ---- Image processing: needs a handle, not an open device. ----

int Simulator::convertPixelTypeEx(void* handle, MV_CC_PIXEL_CONVERT_PARAM_EX* param) {
    const std::string recorded =
        param ? arguments(param->nWidth, param->nHeight, Hex{param->enSrcPixelType},
                          Hex{param->enDstPixelType}, param->nDstBufferSize)
              : std::string();
    return onHandle("MV_CC_ConvertPixelTypeEx", recorded, handle, [&](Handle&) {
        if (!param || !param->pSrcData || !param->pDstBuffer || param->nWidth == 0 ||
            param->nHeight == 0)
            return MV_E_PARAMETER;
        const auto source = formatOfPixelType(param->enSrcPixelType);
        if (!source || param->enDstPixelType != PixelType_Gvsp_RGB8_Packed) return MV_E_SUPPORT;
        const std::size_t inBytes = frameBytes(*source, param->nWidth, param->nHeight);
        const std::size_t outBytes = frameBytes(PixelFormat::Rgb8, param->nWidth, param->nHeight);
        if (outBytes > 0xFFFFFFFFu || param->nSrcDataLen < inBytes) return MV_E_PARAMETER;
        if (param->nDstBufferSize < outBytes) return MV_E_NOENOUGH_BUF;
        if (overlaps(param->pSrcData, inBytes, param->pDstBuffer, outBytes)) return MV_E_PARAMETER;
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
    const auto type = formatOfPixelType(param->enPixelType);
    if (!type || !isPackedFormat(*type)) return MV_E_SUPPORT;
    if (transform < first || transform > last) return MV_E_PARAMETER;
    format = *type;
    bytes = frameBytes(format, param->nWidth, param->nHeight);
    if (bytes > 0xFFFFFFFFu || param->nSrcDataLen < bytes) return MV_E_PARAMETER;
    if (param->nDstBufSize < bytes) return MV_E_NOENOUGH_BUF;
    if (overlaps(param->pSrcData, bytes, param->pDstBuf, bytes)) return MV_E_PARAMETER;
    return MV_OK;
}

}  // namespace

int Simulator::flipImage(void* handle, MV_CC_FLIP_IMAGE_PARAM* param) {
    const std::string recorded =
        param ? arguments(Hex{param->enPixelType}, param->nWidth, param->nHeight, param->enFlipType)
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

int Simulator::rotateImage(void* handle, MV_CC_ROTATE_IMAGE_PARAM* param) {
    const std::string recorded = param ? arguments(Hex{param->enPixelType}, param->nWidth,
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

// ---- Test control. ----

void Simulator::reset() {
    std::lock_guard lock(m_mutex);
    m_initialized = false;
    m_devices.clear();
    m_handles.clear();
    m_records.clear();
    m_lent.clear();
    m_calls.clear();
    m_faults.clear();
    m_lastGain.reset();
    m_lastExposureTime.reset();
    m_lastBrightness.reset();
    m_lastExposureAuto.reset();
    m_lastEnumValues.clear();
    m_lastError.clear();
}

bool Simulator::addParsed(DeviceDescription description, std::string& error) {
    if (description.make != kMake) {
        error = "not a " + std::string(kMake) + " line: " + description.make;
        return false;
    }
    if (description.layer.empty()) description.layer = "gige";
    const auto layer =
        std::find_if(std::begin(kLayers), std::end(kLayers),
                     [&](const LayerName& name) { return description.layer == name.word; });
    if (layer == std::end(kLayers)) {
        error = "unknown layer (gige, usb3, gentl-gige, gentl-cml, gentl-cxp, gentl-xof): " +
                description.layer;
        return false;
    }
    if (description.model.empty()) description.model = kDefaultModel;
    // The record's fields bound the texts: GigE keeps 16 bytes of serial and user name and 32 of
    // model name, the other layers 64 of each. A text may fill its field.
    const bool gige = isGigELayer(layer->bit);
    const std::size_t textLimit = gige ? 16 : 64;
    if (description.id.size() > textLimit || description.userName.size() > textLimit ||
        description.model.size() > (gige ? 32 : 64)) {
        error = "id, user or model too long for a " + description.layer + " device record";
        return false;
    }
    if (frameBytes(PixelFormat::Rgb8, description.width, description.height) > 0xFFFFFFFFu) {
        error = "frames of " + std::to_string(description.width) + "x" +
                std::to_string(description.height) + " do not fit the 32-bit frame length";
        return false;
    }
    if (findDevice(description.id)) {
        error = "id already present: " + description.id;
        return false;
    }
    m_devices.push_back(Device{VirtualDevice(std::move(description)), layer->bit});
    return true;
}

bool Simulator::addDevice(const std::string& rigLine) {
    std::lock_guard lock(m_mutex);
    m_lastError.clear();
    // Attributes alone are taken as this make's line.
    const std::size_t start = rigLine.find_first_not_of(" \t");
    const std::size_t end = rigLine.find_first_of(" \t", start);
    const bool hasMake = start != std::string::npos &&
                         rigLine.substr(start, end - start).find('=') == std::string::npos;
    const std::string line = hasMake ? rigLine : std::string(kMake) + " " + rigLine;
    auto description = parseRigLine(line, m_lastError);
    return description && addParsed(std::move(*description), m_lastError);
}

int Simulator::loadRig(const std::string& path) {
    std::lock_guard lock(m_mutex);
    m_lastError.clear();
    const Rig rig = readRigFile(path);
    std::ostringstream errors;
    bool unreadable = false;
    for (const RigError& error : rig.errors) {
        if (error.line == 0) unreadable = true;
        if (error.make.empty() || error.make == kMake)
            errors << "line " << error.line << ": " << error.message << "\n";
    }
    int added = 0;
    for (const RigDevice& entry : rig.devicesOf(kMake)) {
        std::string error;
        if (addParsed(entry.device, error))
            ++added;
        else
            errors << "line " << entry.line << ": " << error << "\n";
    }
    m_lastError = errors.str();
    return unreadable ? -1 : added;
}

bool Simulator::removeDevice(const std::string& id) {
    std::lock_guard lock(m_mutex);
    m_lastError.clear();
    const auto found = std::find_if(m_devices.begin(), m_devices.end(),
                                    [&](const Device& device) { return device.model.id() == id; });
    if (found == m_devices.end()) {
        m_lastError = "no device " + id;
        return false;
    }
    m_devices.erase(found);
    return true;
}

bool Simulator::changeDevice(const std::string& id, const std::function<void(Device&)>& change) {
    std::lock_guard lock(m_mutex);
    m_lastError.clear();
    Device* device = findDevice(id);
    if (!device) {
        m_lastError = "no device " + id;
        return false;
    }
    change(*device);
    return true;
}

bool Simulator::unplug(const std::string& id) {
    return changeDevice(id, [](Device& device) { device.model.unplug(); });
}

bool Simulator::replug(const std::string& id) {
    return changeDevice(id, [](Device& device) { device.model.replug(); });
}

bool Simulator::setFloatRange(const std::string& id, float min, float max,
                              FloatFeature Device::*feature) {
    std::lock_guard lock(m_mutex);
    m_lastError.clear();
    Device* device = findDevice(id);
    if (!device || !(min <= max)) {
        m_lastError = device ? "min above max" : "no device " + id;
        return false;
    }
    FloatFeature& range = device->*feature;
    range.min = min;
    range.max = max;
    range.current = std::clamp(range.current, min, max);
    return true;
}

bool Simulator::setGainRange(const std::string& id, float min, float max) {
    return setFloatRange(id, min, max, &Device::gain);
}

bool Simulator::setExposureRange(const std::string& id, float min, float max) {
    return setFloatRange(id, min, max, &Device::exposure);
}

bool Simulator::setBrightnessRange(const std::string& id, std::uint32_t min, std::uint32_t max) {
    std::lock_guard lock(m_mutex);
    m_lastError.clear();
    Device* device = findDevice(id);
    if (!device || min > max) {
        m_lastError = device ? "min above max" : "no device " + id;
        return false;
    }
    device->brightness = IntFeature{min, max, 1, std::clamp(device->brightness.current, min, max)};
    return true;
}

std::optional<bool> Simulator::isOpen(const std::string& id) {
    std::lock_guard lock(m_mutex);
    const Device* device = findDevice(id);
    if (!device) return std::nullopt;
    return !device->model.isFree();
}

std::optional<bool> Simulator::isGrabbing(const std::string& id) {
    std::lock_guard lock(m_mutex);
    const Device* device = findDevice(id);
    if (!device) return std::nullopt;
    return device->model.grabbing();
}

std::optional<std::uint32_t> Simulator::framesDelivered(const std::string& id) {
    std::lock_guard lock(m_mutex);
    const Device* device = findDevice(id);
    if (!device) return std::nullopt;
    return device->model.framesDelivered();
}

std::optional<std::uint32_t> Simulator::deviceSeed(const std::string& id) {
    std::lock_guard lock(m_mutex);
    const Device* device = findDevice(id);
    if (!device) return std::nullopt;
    return device->model.description().seed;
}

void Simulator::failCall(const std::string& function, int status, std::uint32_t nth) {
    std::lock_guard lock(m_mutex);
    m_faults.failOnCall(function, status, nth);
}

void Simulator::failAlways(const std::string& function, int status) {
    std::lock_guard lock(m_mutex);
    m_faults.failAlways(function, status);
}

void Simulator::clearFaults() {
    std::lock_guard lock(m_mutex);
    m_faults.clear();
}

std::uint32_t Simulator::callCount(const std::string& function) {
    std::lock_guard lock(m_mutex);
    return m_calls.count(function);
}

void Simulator::clearCallCounts() {
    std::lock_guard lock(m_mutex);
    m_calls.clear();
}

std::optional<std::string> Simulator::lastArguments(const std::string& function) {
    std::lock_guard lock(m_mutex);
    return m_calls.lastArguments(function);
}

std::optional<float> Simulator::lastSetGain() {
    std::lock_guard lock(m_mutex);
    return m_lastGain;
}

std::optional<float> Simulator::lastSetExposureTime() {
    std::lock_guard lock(m_mutex);
    return m_lastExposureTime;
}

std::optional<std::uint32_t> Simulator::lastSetBrightness() {
    std::lock_guard lock(m_mutex);
    return m_lastBrightness;
}

std::optional<std::uint32_t> Simulator::lastSetExposureAutoMode() {
    std::lock_guard lock(m_mutex);
    return m_lastExposureAuto;
}

std::optional<std::uint32_t> Simulator::lastSetEnumValue(const std::string& node) {
    std::lock_guard lock(m_mutex);
    const auto found = m_lastEnumValues.find(node);
    if (found == m_lastEnumValues.end()) return std::nullopt;
    return found->second;
}

std::size_t Simulator::outstandingBuffers() {
    std::lock_guard lock(m_mutex);
    return m_lent.outstanding();
}

const char* Simulator::lastError() {
    std::lock_guard lock(m_mutex);
    return m_lastError.c_str();
}

}  // namespace telvarra::sim::hikvision
