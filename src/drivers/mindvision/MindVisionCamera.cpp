#include "drivers/mindvision/MindVisionCamera.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <type_traits>
#include <vector>

#include "core/Records.h"
#include "drivers/mindvision/MindVisionDevices.h"

// Every SDK call goes through the table, which may lack any function of the vendor's list.
#define MV_CALL(name, ...) TELVARRA_MINDVISION_CALL(m_sdk, name, __VA_ARGS__)

namespace telvarra::mindvision {

using namespace sdk;

namespace {

constexpr UINT kFrameTimeoutMs = 1000;
constexpr int kOutputAlignment = 16;
constexpr int kZoomMinimumSize = 320;  // the sensor must be at least this wide and high
constexpr INT kZoomWidths[] = {0, 640, 320};

constexpr CameraProfile kProfile{RUVO_CAMERA_MINDVISION,
                                 "MindVision",
                                 "111111",
                                 "MindVision ace",
                                 "Connecting to MindVision camera: ",
                                 "Disconnecting from MindVision camera: ",
                                 "Starting acquisition on MindVision camera: ",
                                 "Stopping acquisition on MindVision camera: ",
                                 "Reconnecting to MindVision camera: ",
                                 " on MindVision camera: ",
                                 " from MindVision camera: ",
                                 " for MindVision camera: ",
                                 RUVO_STATUS_ACQUIRING,
                                 true,
                                 false,
                                 false};

bool succeeded(CameraSdkStatus status) { return status == CAMERA_STATUS_SUCCESS; }

// Samples per pixel of a delivered frame, by the image format it is reported in.
int32_t channelsOf(Ruvo_ImageFormat format) {
    switch (static_cast<int>(format)) {
        case RUVO_FORMAT_RGB8:
        case RUVO_FORMAT_BGR8:
            return 3;
        case 4:
        case 5:
            return 4;
        default:
            return 1;
    }
}

}  // namespace

// A setting in whole steps bounded by two fields of the capability's exposure description.
struct MindVisionCamera::SteppedSetting {
    using Get = MindVisionSignatures::CameraGetAeTarget* MindVisionFunctions::*;
    using Set = MindVisionSignatures::CameraSetAeTarget* MindVisionFunctions::*;
    UINT tSdkExpose::*minimum;
    UINT tSdkExpose::*maximum;
    Get get;
    const char* getName;
    Set set;
    const char* setName;

    // The gain's calls have the AE target's types, so one setting describes both.
    static_assert(std::is_same_v<MindVisionSignatures::CameraGetAeTarget,
                                 MindVisionSignatures::CameraGetAnalogGain> &&
                  std::is_same_v<MindVisionSignatures::CameraSetAeTarget,
                                 MindVisionSignatures::CameraSetAnalogGain>);
};

void MindVisionCamera::AlignedFree::operator()(BYTE* block) const {
    if (alignFree) alignFree(block);
}

MindVisionCamera::MindVisionCamera(const std::string& cameraId)
    : CameraBase(cameraId, kProfile, FramePath::Device),
      m_sdk(mindVisionSdk()),
      m_output(nullptr, AlignedFree{nullptr}) {
    m_width = m_deviceInfo.maxWidth;
    m_height = m_deviceInfo.maxHeight;
    m_brightness = steppedControl({&tSdkExpose::uiTargetMin, &tSdkExpose::uiTargetMax,
                                   &MindVisionFunctions::CameraGetAeTarget, "CameraGetAeTarget",
                                   &MindVisionFunctions::CameraSetAeTarget, "CameraSetAeTarget"});
    m_gain = steppedControl({&tSdkExpose::uiAnalogGainMin, &tSdkExpose::uiAnalogGainMax,
                             &MindVisionFunctions::CameraGetAnalogGain, "CameraGetAnalogGain",
                             &MindVisionFunctions::CameraSetAnalogGain, "CameraSetAnalogGain"});
    m_exposure = exposureControl();
}

MindVisionCamera::~MindVisionCamera() {
    if (m_connected) disconnect();
}

// ---- opening and closing

bool MindVisionCamera::initialize() {
    logInfo("Initializing MindVision camera: " + m_cameraId);
    if (!findDevice() || !openDevice() || !readOutputFormat() || !chooseFormats() ||
        !allocateOutput())
        return false;
    describeDevice();
    // A connection needs a device that answers once opened.
    return deviceStillConnected();
}

bool MindVisionCamera::findDevice() {
    std::vector<tSdkCameraDevInfo> devices;
    if (!enumerateDevices(devices)) return false;
    // The last record with the identifier as its serial number is the one opened.
    const auto match = std::find_if(devices.rbegin(), devices.rend(), [&](const auto& device) {
        return fieldText(device.acSn) == m_cameraId;
    });
    if (match == devices.rend()) return false;
    m_device = *match;
    return true;
}

bool MindVisionCamera::openDevice() {
    CameraHandle handle = -1;
    if (!succeeded(
            MV_CALL(CameraInit, &m_device, PARAM_MODE_LAST_EXIT, PARAM_MODE_LAST_EXIT, &handle)))
        return false;
    m_handle = handle;
    m_zoomLevel = 0;
    // What the capability record lacks when the SDK cannot give it stays zero: no zoom and
    // empty percent ranges, but frames still come.
    m_capability = tSdkCameraCapbility{};
    MV_CALL(CameraGetCapability, m_handle, &m_capability);
    return true;
}

bool MindVisionCamera::readOutputFormat() {
    UINT format = 0;
    if (!succeeded(MV_CALL(CameraGetIspOutFormat, m_handle, &format))) return false;
    if (format == CAMERA_MEDIA_TYPE_MONO8) {
        m_imageFormat = RUVO_FORMAT_MONO8;
    } else if (format == CAMERA_MEDIA_TYPE_RGB8 || format == CAMERA_MEDIA_TYPE_BGR8) {
        // BGR output is reported as RGB, as it always has been.
        m_imageFormat = RUVO_FORMAT_RGB8;
    }
    return true;
}

bool MindVisionCamera::chooseFormats() {
    _RUVO_IMAGE_FORMAT_LIST& formats = m_deviceInfo.supportedFormats;
    formats = _RUVO_IMAGE_FORMAT_LIST{};
    if (m_capability.sIspCapacity.bMonoSensor) {
        if (!succeeded(MV_CALL(CameraSetIspOutFormat, m_handle, CAMERA_MEDIA_TYPE_MONO8)))
            return false;
        m_imageFormat = RUVO_FORMAT_MONO8;
        formats.formats[formats.count++] = RUVO_FORMAT_MONO8;
    } else {
        for (Ruvo_ImageFormat format : {RUVO_FORMAT_MONO8, RUVO_FORMAT_RGB8, RUVO_FORMAT_BGR8})
            formats.formats[formats.count++] = format;
    }
    // Free run, and no overlay lines in the processed frames; neither answer matters.
    MV_CALL(CameraSetTriggerMode, m_handle, CONTINUATION);
    MV_CALL(CameraSetCrossLine, m_handle, 0, 0, 0, 0u, 0);
    return true;
}

bool MindVisionCamera::allocateOutput() {
    const auto& range = m_capability.sResolutionRange;
    const std::size_t channels = m_capability.sIspCapacity.bMonoSensor ? 1 : 3;
    const std::size_t size = channels * static_cast<std::size_t>(std::max(range.iWidthMax, 0)) *
                             static_cast<std::size_t>(std::max(range.iHeightMax, 0));
    // The SDK sizes its blocks with an int.
    if (!m_sdk.CameraAlignMalloc || size == 0 ||
        size > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return false;
    m_output = AlignedBlock(m_sdk.CameraAlignMalloc(static_cast<int>(size), kOutputAlignment),
                            AlignedFree{m_sdk.CameraAlignFree});
    m_outputSize = m_output ? size : 0;
    return m_output != nullptr;
}

void MindVisionCamera::describeDevice() {
    const std::string serial = fieldText(m_device.acSn);
    DeviceInfo record =
        makeDeviceRecord(RUVO_CAMERA_MINDVISION,
                         {serial, "MindVision", serial, "MindVision ace",
                          fieldText(m_device.acProductName), fieldText(m_device.acFriendlyName)});
    record.maxWidth = m_capability.sResolutionRange.iWidthMax;
    record.maxHeight = m_capability.sResolutionRange.iHeightMax;
    // The mono-sensor flag, as this record has always carried it: a colour camera says false.
    record.isAvailable = m_capability.sIspCapacity.bMonoSensor != 0;
    record.supportedFormats = m_deviceInfo.supportedFormats;
    m_deviceInfo = record;
}

bool MindVisionCamera::deviceStillConnected() {
    return deviceOpen() && succeeded(MV_CALL(CameraConnectTest, m_handle));
}

bool MindVisionCamera::closeDevice() {
    if (deviceOpen()) {
        retryGivingBack();
        if (!succeeded(MV_CALL(CameraUnInit, m_handle))) return false;
    }
    m_handle = -1;
    m_unreturned.forget();
    m_output.reset();
    m_outputSize = 0;
    return true;
}

bool MindVisionCamera::startStreaming() { return succeeded(MV_CALL(CameraPlay, m_handle)); }

bool MindVisionCamera::stopStreaming() {
    if (!deviceOpen()) return true;
    retryGivingBack();
    return succeeded(MV_CALL(CameraStop, m_handle));
}

// ---- format

bool MindVisionCamera::setImageFormat(Ruvo_ImageFormat format) {
    const _RUVO_IMAGE_FORMAT_LIST& supported = m_deviceInfo.supportedFormats;
    const auto end =
        supported.formats + std::min<uint32_t>(supported.count, RUVO_MAX_IMAGE_FORMATS);
    if (std::find(supported.formats, end, format) == end) {
        logError("Image format not supported: " + std::to_string(static_cast<int>(format)) +
                 " for MindVision camera: " + m_cameraId);
        return false;
    }
    if (!deviceOpen()) return false;
    // BGR is listed for a colour camera but has never been accepted.
    UINT output = 0;
    if (format == RUVO_FORMAT_MONO8) {
        output = CAMERA_MEDIA_TYPE_MONO8;
    } else if (format == RUVO_FORMAT_RGB8) {
        output = CAMERA_MEDIA_TYPE_RGB8;
    } else {
        return false;
    }
    if (!succeeded(MV_CALL(CameraSetIspOutFormat, m_handle, output))) return false;
    m_imageFormat = format;
    UINT readBack = 0;
    MV_CALL(CameraGetIspOutFormat, m_handle, &readBack);
    logInfo("Set image format to " + std::to_string(static_cast<int>(format)) +
            " for MindVision camera: " + m_cameraId);
    return true;
}

// ---- geometry, by the device

bool MindVisionCamera::setMirror(int direction, bool on) {
    return deviceOpen() && succeeded(MV_CALL(CameraSetMirror, m_handle, direction, on ? 1 : 0));
}

bool MindVisionCamera::getMirror(int direction, bool& on) {
    BOOL state = 0;
    if (!deviceOpen() || !succeeded(MV_CALL(CameraGetMirror, m_handle, direction, &state)))
        return false;
    on = state != 0;
    return true;
}

bool MindVisionCamera::setHorMirror(bool on) { return setMirror(MIRROR_DIRECTION_HORIZONTAL, on); }

bool MindVisionCamera::getHorMirror(bool& on) { return getMirror(MIRROR_DIRECTION_HORIZONTAL, on); }

bool MindVisionCamera::setVerMirror(bool on) { return setMirror(MIRROR_DIRECTION_VERTICAL, on); }

bool MindVisionCamera::getVerMirror(bool& on) { return getMirror(MIRROR_DIRECTION_VERTICAL, on); }

bool MindVisionCamera::setRotate(int32_t quarterTurns) {
    return deviceOpen() &&
           succeeded(MV_CALL(CameraSetRotate, m_handle, std::clamp(quarterTurns, 0, 3)));
}

bool MindVisionCamera::getRotate(int32_t& quarterTurns) {
    int turns = 0;
    if (!deviceOpen() || !succeeded(MV_CALL(CameraGetRotate, m_handle, &turns))) return false;
    quarterTurns = turns;
    return true;
}

bool MindVisionCamera::applyParameter(const std::string& name, const std::string&) {
    if (name == "CameraImageZoomIn") return zoom(std::min(m_zoomLevel + 1, 2));
    if (name == "CameraImageZoomInReturnNormal") return zoom(0);
    return false;
}

// The zoom is a centred field of view of the sensor, 640 (level 1) or 320 (level 2) pixels wide
// and as high as the sensor's proportions make it, read out at its own size.
bool MindVisionCamera::zoom(int level) {
    const INT sensorWidth = m_capability.sResolutionRange.iWidthMax;
    const INT sensorHeight = m_capability.sResolutionRange.iHeightMax;
    if (!deviceOpen() || sensorWidth < kZoomMinimumSize || sensorHeight < kZoomMinimumSize) {
        if (level == 0) m_zoomLevel = 0;
        return false;
    }
    tSdkImageResolution resolution{};
    if (level > 0) {
        const INT width = kZoomWidths[level];
        const INT height =
            static_cast<INT>(static_cast<double>(sensorHeight) / sensorWidth * width);
        resolution.iIndex = IMAGEOUT_MODE_CUSTOM;
        resolution.iHOffsetFOV = sensorWidth / 2 - width / 2;
        resolution.iVOffsetFOV = sensorHeight / 2 - height / 2;
        resolution.iWidthFOV = resolution.iWidth = width;
        resolution.iHeightFOV = resolution.iHeight = height;
    }
    if (level == 0) m_zoomLevel = 0;
    if (!succeeded(MV_CALL(CameraSetImageResolution, m_handle, &resolution))) return false;
    m_zoomLevel = level;
    tSdkImageResolution readBack{};
    MV_CALL(CameraGetImageResolution, m_handle, &readBack);
    return true;
}

// ---- exposure mode and percent controls

bool MindVisionCamera::setExposureMod(bool automatic) {
    return deviceOpen() && succeeded(MV_CALL(CameraSetAeState, m_handle, automatic ? 1 : 0));
}

bool MindVisionCamera::getExposureMod(bool& automatic) {
    BOOL state = 0;
    if (!deviceOpen() || !succeeded(MV_CALL(CameraGetAeState, m_handle, &state))) return false;
    automatic = state != 0;
    return true;
}

PercentControl MindVisionCamera::steppedControl(const SteppedSetting& setting) {
    auto bounds = [this, setting]() -> std::optional<DeviceRange> {
        if (!deviceOpen()) return std::nullopt;
        const tSdkExpose& expose = m_capability.sExposeDesc;
        return DeviceRange{0.0, double(expose.*setting.minimum), double(expose.*setting.maximum)};
    };
    return {[this, setting, bounds]() -> std::optional<DeviceRange> {
                std::optional<DeviceRange> range = bounds();
                int current = 0;
                if (!range ||
                    !succeeded(callSdk(m_sdk.*setting.get, setting.getName, m_handle, &current)))
                    return std::nullopt;
                range->current = current;
                return range;
            },
            [this, setting](double value) {
                // The bounds are unsigned; the SDK takes an int.
                const double step = std::min(value, double(std::numeric_limits<int>::max()));
                return succeeded(callSdk(m_sdk.*setting.set, setting.setName, m_handle,
                                         static_cast<int>(step)));
            },
            PercentArithmetic::ScaleThenDivide, bounds};
}

std::optional<DeviceRange> MindVisionCamera::exposureRange() {
    double minimum = 0, maximum = 0, step = 0;
    if (!deviceOpen() ||
        !succeeded(MV_CALL(CameraGetExposureTimeRange, m_handle, &minimum, &maximum, &step)))
        return std::nullopt;
    return DeviceRange{0.0, minimum, maximum};
}

PercentControl MindVisionCamera::exposureControl() {
    return {[this]() -> std::optional<DeviceRange> {
                std::optional<DeviceRange> range = exposureRange();
                double current = 0;
                if (!range || !succeeded(MV_CALL(CameraGetExposureTime, m_handle, &current)))
                    return std::nullopt;
                range->current = current;
                return range;
            },
            [this](double microseconds) {
                return succeeded(MV_CALL(CameraSetExposureTime, m_handle, microseconds));
            },
            PercentArithmetic::ScaleThenDivide, [this] { return exposureRange(); }};
}

// ---- frames

bool MindVisionCamera::release(BYTE* raw) {
    // An SDK without the function can take nothing back: nothing is kept for it.
    return succeeded(MV_CALL(CameraReleaseImageBuffer, m_handle, raw)) ||
           !m_sdk.CameraReleaseImageBuffer;
}

void MindVisionCamera::giveBack(BYTE* raw) {
    if (!m_unreturned.giveBack(raw, [this](BYTE* lent) { return release(lent); }))
        logError("Failed to release frame buffer of camera: " + m_cameraId);
}

void MindVisionCamera::retryGivingBack() {
    m_unreturned.retry([this](BYTE* lent) { return release(lent); });
}

bool MindVisionCamera::fetchFrame(ImageData& image) {
    if (!deviceOpen() || !m_output) return false;
    // Raw frames the SDK refused to take back are offered first.
    retryGivingBack();
    if (m_unreturned.full()) return false;
    tSdkFrameHead head{};
    BYTE* raw = nullptr;
    if (!succeeded(MV_CALL(CameraGetImageBufferPriority, m_handle, &head, &raw, kFrameTimeoutMs,
                           CAMERA_GET_IMAGE_PRIORITY_NEWEST)))
        return false;
    const bool processed =
        succeeded(MV_CALL(CameraImageProcess, m_handle, raw, m_output.get(), &head));
    // Given back also when processing failed: a raw frame kept would starve the SDK's queue.
    giveBack(raw);
    if (!processed) return false;
    const int32_t channels = channelsOf(m_imageFormat);
    const uint64_t size = static_cast<uint64_t>(std::max(head.iWidth, 0)) *
                          static_cast<uint64_t>(std::max(head.iHeight, 0)) * channels;
    // A frame that claims more than the output block holds is refused rather than read past it.
    if (size > m_outputSize) return false;
    describeFrame(image, m_output.get(), head.iWidth, head.iHeight, channels,
                  static_cast<int32_t>(size));
    return true;
}

}  // namespace telvarra::mindvision
