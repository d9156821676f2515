#include "drivers/daheng/DaHengCamera.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>

#include "api/PixelCodes.h"
#include "core/Records.h"
#include "drivers/daheng/DaHengDevices.h"

namespace telvarra::daheng {

using namespace sdk;

namespace {

constexpr std::uint32_t kFrameTimeoutMs = 1000;
constexpr int32_t kRequestedWidth = 800;
constexpr int32_t kRequestedHeight = 600;
constexpr std::size_t kBytesPerSensorPixel = 4;  // room for every format the camera lists

constexpr CameraProfile kProfile{RUVO_CAMERA_DAHENG,
                                 "DaHeng",
                                 "444444",
                                 "DaHeng ace",
                                 "Connecting to DaHeng camera: ",
                                 "Disconnecting from DaHeng camera: ",
                                 "Starting acquisition on DaHeng camera: ",
                                 "Stopping acquisition on DaHeng camera: ",
                                 "Reconnecting to DaHeng camera: ",
                                 " on DaHeng camera: ",
                                 " from DaHeng camera: ",
                                 " for DaHeng camera: ",
                                 RUVO_STATUS_CONNECTED,
                                 false,
                                 true,
                                 true};

// Bytes per pixel as the SDK delivers a format: Bayer mosaics come as they are, one byte.
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

DaHengCamera::DaHengCamera(const std::string& cameraId)
    : CameraBase(cameraId, kProfile, FramePath::Software), m_sdk(dahengSdk()) {
    m_width = kRequestedWidth;
    m_height = kRequestedHeight;
    m_brightness = {
        [this]() -> std::optional<DeviceRange> {
            GX_INT_VALUE value{};
            if (!m_handle ||
                m_sdk.GXGetIntValue(m_handle, "ExpectedGrayValue", &value) != GX_STATUS_SUCCESS)
                return std::nullopt;
            return DeviceRange{double(value.nCurValue), double(value.nMin), double(value.nMax)};
        },
        [this](double value) {
            return m_sdk.GXSetIntValue(m_handle, "ExpectedGrayValue",
                                       static_cast<int64_t>(value)) == GX_STATUS_SUCCESS;
        },
        PercentArithmetic::DivideThenScale};
    m_gain = floatControl("Gain");
    m_exposure = floatControl("ExposureTime");
}

DaHengCamera::~DaHengCamera() {
    if (m_connected) disconnect();
}

PercentControl DaHengCamera::floatControl(const char* feature) {
    return {
        [this, feature]() -> std::optional<DeviceRange> {
            GX_FLOAT_VALUE value{};
            if (!m_handle || m_sdk.GXGetFloatValue(m_handle, feature, &value) != GX_STATUS_SUCCESS)
                return std::nullopt;
            return DeviceRange{value.dCurValue, value.dMin, value.dMax};
        },
        [this, feature](double value) {
            // Rounded to single precision first, as the camera keeps it.
            return m_sdk.GXSetFloatValue(m_handle, feature, static_cast<float>(value)) ==
                   GX_STATUS_SUCCESS;
        },
        PercentArithmetic::DivideThenScale};
}

// ---- opening and closing

bool DaHengCamera::initialize() {
    return findDevice() && openDevice() && readPixelFormat() && readSensorSize();
}

bool DaHengCamera::findDevice() {
    std::uint32_t count = 0;
    if (!refreshDevices(count)) return false;
    logInfo("Src Enumerated " + std::to_string(count) + " DaHeng cameras");
    std::vector<GX_DEVICE_BASE_INFO> records;
    if (count < 1 || !readBaseInfo(records)) return false;
    const auto listed = records.begin() + std::min<std::size_t>(count, records.size());
    const auto device = std::find_if(records.begin(), listed, [&](const GX_DEVICE_BASE_INFO& r) {
        const std::string serial = fieldText(r.szSN);
        return !serial.empty() && serial == m_cameraId;
    });
    if (device == listed) return false;
    m_baseInfo = *device;
    // The other make's word in this line is how the camera has always logged it.
    logInfo("Enumerated Ok ID: " + m_cameraId + " Dvp cameras");
    return true;
}

bool DaHengCamera::openDevice() {
    GX_OPEN_PARAM open{m_baseInfo.szSN, GX_OPEN_SN, GX_ACCESS_EXCLUSIVE};
    if (m_sdk.GXOpenDevice(&open, &m_handle) != GX_STATUS_SUCCESS || !m_handle) return false;
    return m_sdk.GXSetEnumValueByString(m_handle, "AcquisitionMode", "Continuous") ==
               GX_STATUS_SUCCESS &&
           m_sdk.GXSetEnumValueByString(m_handle, "TriggerMode", "Off") == GX_STATUS_SUCCESS;
}

bool DaHengCamera::readEnum(const char* feature, GX_ENUM_VALUE& value) const {
    // The SDK writes the whole record, never a plain integer: the current value is its first field.
    return m_sdk.GXGetEnumValue(m_handle, feature, &value) == GX_STATUS_SUCCESS;
}

bool DaHengCamera::readPixelFormat() {
    auto pixelFormat = std::make_unique<GX_ENUM_VALUE>();
    if (!readEnum("PixelFormat", *pixelFormat)) return false;
    const auto current =
        formatOfPixelCode(static_cast<std::uint32_t>(pixelFormat->stCurValue.nCurValue));
    if (current) {
        m_imageFormat = *current;
    } else {
        // A format the camera cannot deliver as it is: the device is switched to 8-bit mono.
        if (m_sdk.GXSetEnumValue(m_handle, "PixelFormat", GX_PIXEL_FORMAT_MONO8) !=
            GX_STATUS_SUCCESS)
            return false;
        m_imageFormat = RUVO_FORMAT_MONO8;
    }
    // The formats a host may switch to: those the device offers that the camera can deliver.
    _RUVO_IMAGE_FORMAT_LIST& formats = m_deviceInfo.supportedFormats;
    formats = _RUVO_IMAGE_FORMAT_LIST{};
    const std::uint32_t offered =
        std::min<std::uint32_t>(pixelFormat->nSupportedNum, GX_MAX_ENUM_ENTRIES);
    for (std::uint32_t i = 0; i < offered && formats.count < RUVO_MAX_IMAGE_FORMATS; ++i) {
        const auto code = pixelFormat->nArrySupportedValue[i].nCurValue;
        if (const auto format = formatOfPixelCode(static_cast<std::uint32_t>(code)))
            formats.formats[formats.count++] = *format;
    }
    // The other make's word in this line is how the camera has always logged it.
    logInfo("Initializing HikVision camera, CurChannelCount:" +
            std::to_string(channelsOf(m_imageFormat)));
    return true;
}

bool DaHengCamera::readSensorSize() {
    GX_INT_VALUE width{}, height{};
    if (m_sdk.GXGetIntValue(m_handle, "Width", &width) != GX_STATUS_SUCCESS ||
        m_sdk.GXGetIntValue(m_handle, "Height", &height) != GX_STATUS_SUCCESS)
        return false;
    // The largest frame the sensor can send, whatever region is set now.
    const int64_t sensorWidth = std::max<int64_t>(width.nMax, 0);
    const int64_t sensorHeight = std::max<int64_t>(height.nMax, 0);
    const uint64_t bytes = static_cast<uint64_t>(sensorWidth) *
                           static_cast<uint64_t>(sensorHeight) * kBytesPerSensorPixel;
    if (bytes == 0 || bytes > static_cast<uint64_t>(std::numeric_limits<int32_t>::max()) ||
        !m_frameBuffer.reserve(bytes))
        return false;
    m_softwareFrames->setSensorSize(sensorWidth, sensorHeight);
    logInfo("Initializing DaHeng camera:" + m_cameraId);
    m_offline = false;
    return true;
}

bool DaHengCamera::closeDevice() {
    m_offline = true;
    if (m_handle) m_sdk.GXCloseDevice(m_handle);
    m_handle = nullptr;
    return true;
}

bool DaHengCamera::startStreaming() {
    return m_sdk.GXSetCommandValue(m_handle, "AcquisitionStart") == GX_STATUS_SUCCESS;
}

bool DaHengCamera::stopStreaming() {
    return !m_handle || m_sdk.GXSetCommandValue(m_handle, "AcquisitionStop") == GX_STATUS_SUCCESS;
}

// ---- format

bool DaHengCamera::setImageFormat(Ruvo_ImageFormat format) {
    const _RUVO_IMAGE_FORMAT_LIST& supported = m_deviceInfo.supportedFormats;
    const auto end =
        supported.formats + std::min<uint32_t>(supported.count, RUVO_MAX_IMAGE_FORMATS);
    if (std::find(supported.formats, end, format) == end) {
        // The text after the colon keeps an old slip: a literal advanced by the format's number.
        logError("Image format not supported: " + literalTail(" < ", format));
        return false;
    }
    const std::uint32_t code = pixelCodeOf(format);
    if (!m_handle || code == 0) return false;
    if (m_sdk.GXSetEnumValue(m_handle, "PixelFormat", code) != GX_STATUS_SUCCESS) return false;
    m_imageFormat = format;
    auto readBack = std::make_unique<GX_ENUM_VALUE>();
    if (!readEnum("PixelFormat", *readBack)) return false;
    logInfo("Set image format to " + std::to_string(static_cast<int>(format)) +
            " for DaHeng camera: " + m_cameraId);
    return true;
}

// ---- exposure mode and percent controls

void DaHengCamera::saveFeatures() const {
    // The vendor refuses a null file name; the save has never had one, and its answer is unused.
    m_sdk.GXFeatureSave(m_handle, nullptr);
}

bool DaHengCamera::setExposureMod(bool automatic) {
    if (!m_handle) return false;
    const int64_t mode = automatic ? GX_EXPOSURE_AUTO_CONTINUOUS : GX_EXPOSURE_AUTO_OFF;
    if (m_sdk.GXSetEnumValue(m_handle, "ExposureAuto", mode) != GX_STATUS_SUCCESS) return false;
    saveFeatures();
    return true;
}

bool DaHengCamera::getExposureMod(bool& automatic) {
    if (!m_handle) return false;
    auto mode = std::make_unique<GX_ENUM_VALUE>();
    if (!readEnum("ExposureAuto", *mode)) return false;
    automatic = mode->stCurValue.nCurValue == GX_EXPOSURE_AUTO_CONTINUOUS;
    return true;
}

// A setter in disguise, as this make has always had it: the value already in `percent` is set,
// and `percent` is left as it was.
bool DaHengCamera::getExposureByPercent(int32_t& percent) { return setExposureByPercent(percent); }

// ---- frames

bool DaHengCamera::fetchFrame(ImageData& image) {
    if (m_offline || !m_handle) return false;
    GX_FRAME_DATA frame{};
    frame.pImgBuf = m_frameBuffer.data();
    if (m_sdk.GXGetImage(m_handle, &frame, kFrameTimeoutMs) != GX_STATUS_SUCCESS) return false;
    const int32_t channels = channelsOf(m_imageFormat);
    // The SDK states no capacity: a frame that claims more than the buffer holds is refused
    // rather than read past its end.
    const uint64_t pixels = static_cast<uint64_t>(std::max(frame.nWidth, 0)) *
                            static_cast<uint64_t>(std::max(frame.nHeight, 0)) * channels;
    if (frame.nImgSize < 0 || static_cast<uint64_t>(frame.nImgSize) > m_frameBuffer.size() ||
        pixels > m_frameBuffer.size())
        return false;
    describeFrame(image, m_frameBuffer.data(), frame.nWidth, frame.nHeight, channels,
                  frame.nImgSize);
    return true;
}

}  // namespace telvarra::daheng
