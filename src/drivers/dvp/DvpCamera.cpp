#include "drivers/dvp/DvpCamera.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "core/Records.h"
#include "drivers/dvp/DvpDevices.h"

namespace telvarra::dvp {

using namespace sdk;

namespace {

constexpr dvpUint32 kFrameTimeoutMs = 1000;

constexpr CameraProfile kProfile{RUVO_CAMERA_DVP,
                                 "Dvp",
                                 "33333",
                                 "Dvp ace",
                                 "Connecting to Dvp camera: ",
                                 "Disconnecting from Dvp camera: ",
                                 "Starting acquisition on Dvp camera: ",
                                 "Stopping acquisition on Dvp camera: ",
                                 "Reconnecting to Dvp camera: ",
                                 " on Dvp camera: ",
                                 " from Dvp camera: ",
                                 " for Dvp camera: ",
                                 RUVO_STATUS_ACQUIRING,
                                 false,
                                 false,
                                 true};

bool ok(dvpStatus status) { return status == DVP_STATUS_OK; }

// The SDK's output format for an image format, and back; 0 and unknown when there is none.
struct FormatPair {
    Ruvo_ImageFormat format;
    dvpEnum32 streamFormat;  // what dvpSetTargetFormat takes
    dvpEnum32 frameFormat;   // what a delivered frame says
    int32_t channels;
};

constexpr FormatPair kFormats[] = {
    {RUVO_FORMAT_MONO8, S_MONO8, FORMAT_MONO, 1},
    {RUVO_FORMAT_RGB8, S_RGB24, FORMAT_RGB24, 3},
    {RUVO_FORMAT_BGR8, S_BGR24, FORMAT_BGR24, 3},
};

template <class Matches>
const FormatPair* findFormat(Matches&& matches) {
    const auto found = std::find_if(std::begin(kFormats), std::end(kFormats), matches);
    return found == std::end(kFormats) ? nullptr : found;
}

}  // namespace

DvpCamera::DvpCamera(const std::string& cameraId)
    : CameraBase(cameraId, kProfile, FramePath::Software), m_sdk(dvpSdk()) {
    m_width = m_deviceInfo.maxWidth;
    m_height = m_deviceInfo.maxHeight;
    // Each control checks the handle and reads its descriptor afresh, then the value.
    auto aeTargetRange = [this]() -> std::optional<DeviceRange> {
        dvpIntDescr descriptor{};
        if (!handleValid() || !ok(m_sdk.dvpGetAeTargetDescr(m_handle, &descriptor)))
            return std::nullopt;
        return DeviceRange{0.0, double(descriptor.iMin), double(descriptor.iMax)};
    };
    m_brightness = {[this, aeTargetRange]() {
                        dvpInt32 current = 0;
                        auto range = aeTargetRange();
                        if (range && !ok(m_sdk.dvpGetAeTarget(m_handle, &current))) range.reset();
                        if (range) range->current = current;
                        return range;
                    },
                    [this](double value) {
                        return ok(m_sdk.dvpSetAeTarget(m_handle, static_cast<dvpInt32>(value)));
                    },
                    PercentArithmetic::DivideThenScale, aeTargetRange};
    auto gainRange = [this]() -> std::optional<DeviceRange> {
        dvpFloatDescr descriptor{};
        if (!handleValid() || !ok(m_sdk.dvpGetAnalogGainDescr(m_handle, &descriptor)))
            return std::nullopt;
        return DeviceRange{0.0, descriptor.fMin, descriptor.fMax};
    };
    m_gain = {[this, gainRange]() {
                  float current = 0;
                  auto range = gainRange();
                  if (range && !ok(m_sdk.dvpGetAnalogGain(m_handle, &current))) range.reset();
                  if (range) range->current = current;
                  return range;
              },
              [this](double value) {
                  return ok(m_sdk.dvpSetAnalogGain(m_handle, static_cast<float>(value)));
              },
              PercentArithmetic::DivideThenScale, gainRange};
    auto exposureRange = [this]() -> std::optional<DeviceRange> {
        dvpDoubleDescr descriptor{};
        if (!handleValid() || !ok(m_sdk.dvpGetExposureDescr(m_handle, &descriptor)))
            return std::nullopt;
        return DeviceRange{0.0, descriptor.fMin, descriptor.fMax};
    };
    m_exposure = {
        [this, exposureRange]() {
            double current = 0;
            auto range = exposureRange();
            if (range && !ok(m_sdk.dvpGetExposure(m_handle, &current))) range.reset();
            if (range) range->current = current;
            return range;
        },
        [this](double microseconds) { return ok(m_sdk.dvpSetExposure(m_handle, microseconds)); },
        PercentArithmetic::DivideThenScale, exposureRange};
}

DvpCamera::~DvpCamera() {
    if (m_connected) disconnect();
}

// ---- opening and closing

bool DvpCamera::initialize() {
    logInfo("Initializing Dvp camera: " + m_cameraId);
    return findDevice() && openDevice() && stopRunningStream() && useFreeRun() &&
           readDescriptors() && readFormats();
}

bool DvpCamera::findDevice() {
    dvpUint32 count = 0;
    if (!refreshDevices(count)) return false;
    const std::vector<dvpCameraInfo> devices = readDevices(count);
    const auto device = std::find_if(devices.begin(), devices.end(), [&](const auto& listed) {
        return identifierOf(listed) == m_cameraId;
    });
    if (device == devices.end()) return false;
    m_device = *device;
    logInfo("Enumerated Ok ID:" + m_cameraId);
    return true;
}

bool DvpCamera::openDevice() {
    // Opened by the record's own user id (byte 960), the text dvpOpenByUserId matches in every
    // SDK version, not by the identifier listed (byte 1088): from SDK 2.21 on that is the
    // original serial number, which equals the user id only when nobody changed it.
    const std::string userId = fieldText(m_device.UserID);
    dvpHandle handle = 0;
    if (!ok(m_sdk.dvpOpenByUserId(userId.c_str(), OPEN_NORMAL, &handle))) return false;
    m_handle = handle;
    m_open = true;
    return handleValid();
}

bool DvpCamera::stopRunningStream() {
    dvpEnum32 state = STATE_STOPED;
    if (!ok(m_sdk.dvpGetStreamState(m_handle, &state))) return false;
    return state != STATE_STARTED || ok(m_sdk.dvpStop(m_handle));
}

bool DvpCamera::useFreeRun() {
    bool triggered = true;
    return ok(m_sdk.dvpSetTriggerState(m_handle, false)) &&
           ok(m_sdk.dvpGetTriggerState(m_handle, &triggered)) && !triggered;
}

bool DvpCamera::readDescriptors() {
    // The percent controls read them again each time; an open needs them to be there.
    dvpDoubleDescr exposure{};
    dvpFloatDescr gain{};
    dvpIntDescr aeTarget{};
    return ok(m_sdk.dvpGetExposureDescr(m_handle, &exposure)) &&
           ok(m_sdk.dvpGetAnalogGainDescr(m_handle, &gain)) &&
           ok(m_sdk.dvpGetAeTargetDescr(m_handle, &aeTarget));
}

bool DvpCamera::readFormats() {
    dvpSensorInfo sensor{};
    dvpEnum32 target = 0;
    if (!ok(m_sdk.dvpGetSensorInfo(m_handle, &sensor)) ||
        !ok(m_sdk.dvpGetTargetFormat(m_handle, &target)))
        return false;
    const bool mono = sensor.pixel == SENSOR_PIXEL_MONO;
    _RUVO_IMAGE_FORMAT_LIST& formats = m_deviceInfo.supportedFormats;
    formats = _RUVO_IMAGE_FORMAT_LIST{};
    for (const FormatPair& pair : kFormats) {
        if (mono && pair.format != RUVO_FORMAT_MONO8) continue;
        formats.formats[formats.count++] = pair.format;
    }
    const FormatPair* current =
        findFormat([&](const FormatPair& pair) { return pair.streamFormat == target; });
    if (!current) {
        // An output the camera cannot hand on (raw, deep or planar): the SDK is asked for 8 bits.
        current = &kFormats[mono ? 0 : 2];
        if (!ok(m_sdk.dvpSetTargetFormat(m_handle, current->streamFormat))) return false;
    }
    m_imageFormat = current->format;
    m_deviceInfo.maxWidth = sensor.region.iMaxW;
    m_deviceInfo.maxHeight = sensor.region.iMaxH;
    logInfo("Initializing Dvp camera, CurChannelCount:" + std::to_string(current->channels));
    return true;
}

bool DvpCamera::handleValid() const {
    bool valid = false;
    return m_open && ok(m_sdk.dvpIsValid(m_handle, &valid)) && valid;
}

bool DvpCamera::deviceStillConnected() {
    bool online = false;
    return m_open && ok(m_sdk.dvpIsOnline(m_handle, &online)) && online;
}

bool DvpCamera::isConnected() { return m_connected && deviceStillConnected(); }

bool DvpCamera::closeDevice() {
    if (m_open) m_sdk.dvpClose(m_handle);
    m_open = false;
    m_handle = 0;
    return true;
}

bool DvpCamera::startStreaming() { return ok(m_sdk.dvpStart(m_handle)); }

bool DvpCamera::stopStreaming() { return !m_open || ok(m_sdk.dvpStop(m_handle)); }

// ---- format and exposure mode

bool DvpCamera::setImageFormat(Ruvo_ImageFormat format) {
    const _RUVO_IMAGE_FORMAT_LIST& supported = m_deviceInfo.supportedFormats;
    const auto end =
        supported.formats + std::min<uint32_t>(supported.count, RUVO_MAX_IMAGE_FORMATS);
    if (std::find(supported.formats, end, format) == end) {
        logError("Image format not supported: " + std::to_string(static_cast<int>(format)) +
                 " for Dvp camera: " + m_cameraId);
        return false;
    }
    const FormatPair* pair =
        findFormat([&](const FormatPair& candidate) { return candidate.format == format; });
    if (!pair || !handleValid() || !ok(m_sdk.dvpSetTargetFormat(m_handle, pair->streamFormat)))
        return false;
    m_imageFormat = format;
    logInfo("Set image format to " + std::to_string(static_cast<int>(format)) +
            " for Dvp camera: " + m_cameraId);
    return true;
}

bool DvpCamera::setExposureMod(bool automatic) {
    return handleValid() &&
           ok(m_sdk.dvpSetAeOperation(m_handle, automatic ? AE_OP_CONTINUOUS : AE_OP_OFF));
}

bool DvpCamera::getExposureMod(bool& automatic) {
    dvpEnum32 operation = AE_OP_OFF;
    if (!handleValid() || !ok(m_sdk.dvpGetAeOperation(m_handle, &operation))) return false;
    automatic = operation == AE_OP_CONTINUOUS;
    return true;
}

// ---- frames

bool DvpCamera::failFetch(int code) const {
    logError("DvpCamera ERROR: GenerateCurImage " + std::to_string(code));
    return false;
}

bool DvpCamera::fetchFrame(ImageData& image) {
    if (!handleValid()) return failFetch(-1);
    dvpEnum32 state = STATE_STOPED;
    if (!ok(m_sdk.dvpGetStreamState(m_handle, &state))) return failFetch(-2);
    if (state != STATE_STARTED) return failFetch(-3);
    dvpFrame frame{};
    void* buffer = nullptr;
    if (!ok(m_sdk.dvpGetFrame(m_handle, &frame, &buffer, kFrameTimeoutMs)) || !buffer)
        return failFetch(-4);

    // The SDK's buffer is valid until the next dvpGetFrame: copied out at once. A frame whose
    // format or size does not add up is refused rather than read past its end.
    const FormatPair* pair = findFormat(
        [&](const FormatPair& candidate) { return candidate.frameFormat == frame.format; });
    if (!pair || frame.bits != BITS_8 || frame.iWidth < 1 || frame.iHeight < 1) return false;
    const uint64_t bytes = uint64_t(frame.iWidth) * uint64_t(frame.iHeight) * pair->channels;
    if (bytes > frame.uBytes || bytes > uint64_t(std::numeric_limits<int32_t>::max())) return false;
    // Mirrored, turned and zoomed on the way out: one pass.
    if (!m_softwareFrames->copyFrom(static_cast<const unsigned char*>(buffer), bytes, frame.iWidth,
                                    frame.iHeight, pair->channels, m_frameBuffer, image))
        return false;
    describeFrame(image, image.data, image.width, image.height, pair->channels, image.dataSize);
    // What the frame says it is, also when the format changed since the last one.
    image.format = pair->format;
    return true;
}

}  // namespace telvarra::dvp
