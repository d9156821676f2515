#include "drivers/hikvision/HikVisionCamera.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <functional>
#include <limits>
#include <mutex>

#include "api/DigitalZoom.h"
#include "api/FrameRoutines.h"
#include "api/PercentMapping.h"
#include "api/Records.h"
#include "drivers/hikvision/HikVisionDriver.h"
#include "telvarra/CameraLogger.h"

namespace telvarra::hikvision {

namespace {

constexpr unsigned int kFrameTimeoutMs = 2000;
constexpr double kExposureCapMicroseconds = 200000.0;
constexpr int32_t kRequestedWidth = 640;
constexpr int32_t kRequestedHeight = 480;
constexpr char kZoomIn[] = "CameraImageZoomIn";
constexpr char kZoomReset[] = "CameraImageZoomInReturnNormal";
// What getParameter hands out: constant text owned by the library.
constexpr char kParameterAnswer[] = "100";

DeviceInfo constructorRecord(const std::string& cameraId) {
    return makeDeviceRecord(
        RUVO_CAMERA_HIKVISION,
        {cameraId, "HikVision", "222222", "HikVision ace", "productName", "friendlyName"});
}

const char* formatText(Ruvo_ImageFormat format) {
    switch (format) {
        case RUVO_FORMAT_MONO8:
            return "MONO8";
        case RUVO_FORMAT_RGB8:
            return "RGB8";
        case RUVO_FORMAT_BGR8:
            return "BGR8";
        default:
            return "UNKNOWN";
    }
}

Ruvo_ImageFormat formatOfPixelType(uint32_t pixelType) {
    switch (pixelType) {
        case PixelType_Gvsp_Mono8:
            return RUVO_FORMAT_MONO8;
        case PixelType_Gvsp_RGB8_Packed:
            return RUVO_FORMAT_RGB8;
        case PixelType_Gvsp_BGR8_Packed:
            return RUVO_FORMAT_BGR8;
        default:
            return RUVO_FORMAT_UNKNOWN;
    }
}

int32_t channelsOf(Ruvo_ImageFormat format) { return format == RUVO_FORMAT_MONO8 ? 1 : 3; }

bool needsConversion(Ruvo_ImageFormat format) {
    return format == RUVO_FORMAT_UNKNOWN ||
           (format >= RUVO_FORMAT_BAYER_GR8 && format <= RUVO_FORMAT_BAYER_BG8);
}

uint32_t bayerPixelType(Ruvo_ImageFormat format) {
    switch (format) {
        case RUVO_FORMAT_BAYER_GR8:
            return PixelType_Gvsp_BayerGR8;
        case RUVO_FORMAT_BAYER_RG8:
            return PixelType_Gvsp_BayerRG8;
        case RUVO_FORMAT_BAYER_GB8:
            return PixelType_Gvsp_BayerGB8;
        default:
            return PixelType_Gvsp_BayerBG8;
    }
}

}  // namespace

HikVisionCamera::HikVisionCamera(const std::string& cameraId)
    : CameraBase(cameraId, constructorRecord(cameraId)),
      m_sdk(hikVisionSdk()),
      m_deviceList(std::make_unique<MV_CC_DEVICE_INFO_LIST>()) {
    m_width = kRequestedWidth;
    m_height = kRequestedHeight;
}

HikVisionCamera::~HikVisionCamera() {
    if (m_connected) disconnect();
}

void HikVisionCamera::logInfo(const std::string& message) const {
    CameraLogger::getInstance().log(LogLevel::Info, message);
}

bool HikVisionCamera::deviceConnected() const {
    return m_handle && m_sdk.MV_CC_IsDeviceConnected(m_handle);
}

// ---- opening

bool HikVisionCamera::initialize() {
    logInfo("Initializing HikVision camera: " + m_cameraId);
    return findDevice() && openDevice() && readPixelFormat();
}

bool HikVisionCamera::findDevice() {
    m_sdk.MV_CC_GetSDKVersion();
    std::memset(m_deviceList.get(), 0, sizeof *m_deviceList);
    if (m_sdk.MV_CC_EnumDevices(kEnumerationLayers, m_deviceList.get()) != MV_OK) return false;
    logInfo("Src Enumerated " + std::to_string(m_deviceList->nDeviceNum) + " HikVision cameras");

    const std::size_t count = std::min<std::size_t>(m_deviceList->nDeviceNum, MV_MAX_DEVICE_NUM);
    for (std::size_t i = 0; i < count; ++i) {
        const MV_CC_DEVICE_INFO* device = m_deviceList->pDeviceInfo[i];
        if (!device) continue;
        const std::optional<DeviceTexts> texts = readDeviceTexts(*device);
        if (!texts || texts->serialNumber != m_cameraId) continue;
        logInfo("Enumerated Ok ID:" + texts->serialNumber);
        // Older runtimes write only the first 572 bytes; the SDK's record dies with the next
        // enumeration, so keep a copy.
        std::memset(&m_selectedDevice, 0, sizeof m_selectedDevice);
        std::memcpy(&m_selectedDevice, device, kDeviceInfoBytesInEveryVersion);
        return true;
    }
    return false;
}

bool HikVisionCamera::openDevice() {
    if (m_handle) return false;
    if (m_sdk.MV_CC_CreateHandle(&m_handle, &m_selectedDevice) != MV_OK || !m_handle) {
        m_handle = nullptr;
        return false;
    }
    if (m_sdk.MV_CC_OpenDevice(m_handle, MV_ACCESS_Exclusive, 0) != MV_OK) {
        m_sdk.MV_CC_DestroyHandle(m_handle);
        m_handle = nullptr;
        return false;
    }
    MVCC_ENUMVALUE trigger{};
    return m_sdk.MV_CC_GetEnumValue(m_handle, "TriggerMode", &trigger) == MV_OK &&
           m_sdk.MV_CC_SetEnumValue(m_handle, "TriggerMode", MV_TRIGGER_MODE_OFF) == MV_OK;
}

bool HikVisionCamera::readPixelFormat() {
    MVCC_ENUMVALUE pixelFormat{};
    if (m_sdk.MV_CC_GetEnumValue(m_handle, "PixelFormat", &pixelFormat) != MV_OK) return false;
    m_imageFormat = formatOfPixelType(pixelFormat.nCurValue);
    if (m_imageFormat == RUVO_FORMAT_UNKNOWN) m_rawPixelType = pixelFormat.nCurValue;
    m_channels = channelsOf(m_imageFormat);
    logInfo(std::string("Initializing HikVision camera, CurImageFormat:") +
            formatText(m_imageFormat));
    logInfo("Initializing HikVision camera, CurChannelCount:" + std::to_string(m_channels));

    const uint32_t supported =
        std::min<uint32_t>(pixelFormat.nSupportedNum, MV_MAX_XML_SYMBOLIC_NUM);
    logInfo("Initializing HikVision camera, ReadImageFormat-Count:" + std::to_string(supported));
    _RUVO_IMAGE_FORMAT_LIST& formats = m_deviceInfo.supportedFormats;
    formats = _RUVO_IMAGE_FORMAT_LIST{};
    for (uint32_t i = 0; i < supported && formats.count < RUVO_MAX_IMAGE_FORMATS; ++i) {
        const Ruvo_ImageFormat format = formatOfPixelType(pixelFormat.nSupportValue[i]);
        if (format == RUVO_FORMAT_UNKNOWN) continue;
        formats.formats[formats.count++] = format;
        logInfo(std::string("Initializing HikVision camera, ReadImageFormat:") +
                formatText(format));
    }

    MVCC_INTVALUE_EX width{}, height{};
    m_sdk.MV_CC_GetIntValueEx(m_handle, "Width", &width);
    m_sdk.MV_CC_GetIntValueEx(m_handle, "Height", &height);
    m_sensorWidth = static_cast<uint32_t>(width.nCurValue);
    m_sensorHeight = static_cast<uint32_t>(height.nCurValue);
    return true;
}

void HikVisionCamera::closeHandle() {
    if (!m_handle) return;
    if (deviceConnected()) m_sdk.MV_CC_CloseDevice(m_handle);
    m_sdk.MV_CC_DestroyHandle(m_handle);
    m_handle = nullptr;
}

bool HikVisionCamera::connect() {
    std::lock_guard<QCriticalSection> guard(m_cameraLock);
    if (m_connected) {
        CameraLogger::getInstance().log(LogLevel::Warning,
                                        "Camera already connected: " + m_cameraId);
        return true;
    }
    logInfo("Connecting to HikVision camera: " + m_cameraId);
    if (!initialize()) {
        closeHandle();
        m_connected = false;
        m_status = RUVO_STATUS_DISCONNECTED;
        return false;
    }
    m_connected = true;
    m_status = RUVO_STATUS_CONNECTED;
    return true;
}

bool HikVisionCamera::disconnect() {
    std::lock_guard<QCriticalSection> guard(m_cameraLock);
    if (!m_connected) {
        CameraLogger::getInstance().log(LogLevel::Warning, "Camera not connected: " + m_cameraId);
        return false;
    }
    if (m_acquiring) stopAcquisition();
    closeHandle();
    logInfo("Disconnecting from HikVision camera: " + m_cameraId);
    m_connected = false;
    m_status = RUVO_STATUS_DISCONNECTED;
    return true;
}

bool HikVisionCamera::reconnect() {
    std::lock_guard<QCriticalSection> guard(m_cameraLock);
    logInfo("Reconnecting to HikVision camera: " + m_cameraId);
    if (deviceConnected()) return true;
    if (m_connected) disconnect();
    return connect();
}

void HikVisionCamera::setReconnectInterval(int32_t intervalMs) {
    m_reconnectIntervalMs = intervalMs;
    logInfo("Setting reconnect interval to " + std::to_string(intervalMs) +
            "ms for HikVision camera: " + m_cameraId);
}

// ---- acquisition

bool HikVisionCamera::startAcquisition() {
    std::lock_guard<QCriticalSection> guard(m_cameraLock);
    if (!m_connected) {
        CameraLogger::getInstance().log(LogLevel::Error, "Camera not connected: " + m_cameraId);
        return false;
    }
    if (m_acquiring) {
        CameraLogger::getInstance().log(LogLevel::Warning,
                                        "Camera already streaming: " + m_cameraId);
        return true;
    }
    if (m_handle && m_sdk.MV_CC_StartGrabbing(m_handle) == MV_OK) {
        logInfo("Starting acquisition on HikVision camera: " + m_cameraId);
        m_acquiring = true;
        m_status = RUVO_STATUS_ACQUIRING;
        return true;
    }
    m_acquiring = false;
    m_status = RUVO_STATUS_NONE;
    return false;
}

bool HikVisionCamera::stopAcquisition() {
    std::lock_guard<QCriticalSection> guard(m_cameraLock);
    if (!m_connected) {
        CameraLogger::getInstance().log(LogLevel::Error, "Camera not connected: " + m_cameraId);
        return false;
    }
    if (!m_acquiring) {
        CameraLogger::getInstance().log(LogLevel::Warning, "Camera not streaming: " + m_cameraId);
        return false;
    }
    logInfo("Stopping acquisition on HikVision camera: " + m_cameraId);
    if (deviceConnected() && m_sdk.MV_CC_StopGrabbing(m_handle) != MV_OK) {
        m_status = RUVO_STATUS_NONE;
        return false;
    }
    // The status stays "acquiring" until disconnect, as this make has always reported it.
    m_acquiring = false;
    return true;
}

// ---- parameters

bool HikVisionCamera::setParameter(const char* name, const char* value) {
    const std::string key = name ? name : "";
    logInfo("Setting parameter " + key + "=" + (value ? value : "") +
            " on HikVision camera: " + m_cameraId);
    if (!m_handle) return false;
    const bool sensorZoomable =
        m_sensorWidth >= kZoomMinimumSide && m_sensorHeight >= kZoomMinimumSide;
    if (key == kZoomIn) {
        if (!sensorZoomable) return false;
        m_zoomLevel = std::min(m_zoomLevel + 1, kZoomMaximumLevel);
        return true;
    }
    if (key == kZoomReset) {
        m_zoomLevel = 0;
        return sensorZoomable;
    }
    return true;
}

bool HikVisionCamera::getParameter(const char* name, char** value) {
    if (value) *value = const_cast<char*>(kParameterAnswer);
    logInfo(std::string("Getting parameter ") + (name ? name : "") +
            " from HikVision camera: " + m_cameraId);
    return m_handle != nullptr;
}

bool HikVisionCamera::registerFrameCallback(FrameCallback callback, void* user) {
    m_frameCallback = callback;
    m_frameCallbackUser = user;
    logInfo("Registered frame callback for HikVision camera: " + m_cameraId);
    return true;
}

bool HikVisionCamera::unregisterFrameCallback() {
    m_frameCallback = nullptr;
    m_frameCallbackUser = nullptr;
    logInfo("Unregistered frame callback for HikVision camera: " + m_cameraId);
    return true;
}

// ---- format and size

bool HikVisionCamera::setPixelFormat(uint32_t pixelType, Ruvo_ImageFormat format,
                                     int32_t channels) {
    if (m_sdk.MV_CC_SetEnumValue(m_handle, "PixelFormat", pixelType) != MV_OK) return false;
    m_imageFormat = format;
    m_channels = channels;
    return true;
}

bool HikVisionCamera::setImageFormat(Ruvo_ImageFormat format) {
    const _RUVO_IMAGE_FORMAT_LIST& supported = m_deviceInfo.supportedFormats;
    const auto end =
        supported.formats + std::min<uint32_t>(supported.count, RUVO_MAX_IMAGE_FORMATS);
    const bool listed = std::find(supported.formats, end, format) != end;
    const bool known =
        format == RUVO_FORMAT_MONO8 || format == RUVO_FORMAT_RGB8 || format == RUVO_FORMAT_BGR8;
    if (!listed || !known) {
        logInfo(std::string("Initializing HikVision camera, SetImageFormat-Cur:") +
                formatText(m_imageFormat));
        logInfo("Initializing HikVision camera, SetImageFormat-false:no");
        return false;
    }
    if (!m_handle) return false;

    logInfo(std::string("Initializing HikVision camera, SetImageFormat:") + formatText(format));
    bool done = true;
    if (format == RUVO_FORMAT_MONO8) {
        done = setPixelFormat(PixelType_Gvsp_Mono8, RUVO_FORMAT_MONO8, 1);
    } else if (format == RUVO_FORMAT_RGB8 && m_imageFormat == RUVO_FORMAT_UNKNOWN) {
        // The device's own format stays; its frames are converted to RGB in software.
        m_channels = 3;
        logInfo("Initializing HikVision camera, SetImageFormat:UNKNOWN");
    } else if (format == RUVO_FORMAT_RGB8) {
        done = setPixelFormat(PixelType_Gvsp_RGB8_Packed, RUVO_FORMAT_RGB8, 3);
    } else {
        done = setPixelFormat(PixelType_Gvsp_BGR8_Packed, RUVO_FORMAT_BGR8, 3);
    }
    if (!done) {
        CameraLogger::getInstance().log(LogLevel::Error,
                                        "Initializing HikVision camera, SetImageFormat:false");
        return false;
    }
    logInfo("Initializing HikVision camera, SetImageFormat:true");
    logInfo("Set image format to " + std::to_string(static_cast<int>(format)) +
            " for HikVision camera: " + m_cameraId);
    return true;
}

bool HikVisionCamera::setImageSize(int32_t width, int32_t height) {
    if (width < 1 || width > m_deviceInfo.maxWidth || height < 1 ||
        height > m_deviceInfo.maxHeight) {
        CameraLogger::getInstance().log(LogLevel::Error, "Invalid image size: " + m_cameraId);
        return false;
    }
    // Recorded for the host only: frames keep the device's size.
    m_width = width;
    m_height = height;
    logInfo("Set image size to " + std::to_string(width) + "x" + std::to_string(height) +
            " for HikVision camera: " + m_cameraId);
    return true;
}

// ---- geometry flags

// The geometry is applied in software, but the flags only exist for an opened device.
template <class Value, class Stored>
bool HikVisionCamera::storeFlag(Stored& flag, Value value) {
    if (!m_handle) return false;
    flag = value;
    return true;
}

template <class Value, class Stored>
bool HikVisionCamera::readFlag(const Stored& flag, Value& value) const {
    if (!m_handle) return false;
    value = flag;
    return true;
}

bool HikVisionCamera::setHorMirror(bool on) { return storeFlag(m_horMirror, on); }
bool HikVisionCamera::getHorMirror(bool& on) { return readFlag(m_horMirror, on); }
bool HikVisionCamera::setVerMirror(bool on) { return storeFlag(m_verMirror, on); }
bool HikVisionCamera::getVerMirror(bool& on) { return readFlag(m_verMirror, on); }

bool HikVisionCamera::setRotate(int32_t quarterTurns) {
    return storeFlag(m_rotation, std::clamp(quarterTurns, 0, 3));
}

bool HikVisionCamera::getRotate(int32_t& quarterTurns) {
    return readFlag(m_rotation, quarterTurns);
}

// ---- exposure mode and percent controls

bool HikVisionCamera::setExposureMod(bool automatic) {
    if (!m_handle) return false;
    MVCC_ENUMVALUE gainMode{}, exposureMode{};
    if (m_sdk.MV_CC_GetGainMode(m_handle, &gainMode) != MV_OK) return false;
    m_sdk.MV_CC_GetExposureAutoMode(m_handle, &exposureMode);
    const unsigned int mode =
        automatic ? MV_EXPOSURE_AUTO_MODE_CONTINUOUS : MV_EXPOSURE_AUTO_MODE_OFF;
    if (m_sdk.MV_CC_SetExposureAutoMode(m_handle, mode) != MV_OK) return false;
    if (m_sdk.MV_CC_GetGainMode(m_handle, &gainMode) != MV_OK ||
        m_sdk.MV_CC_GetExposureAutoMode(m_handle, &exposureMode) != MV_OK) {
        return false;
    }
    m_sdk.MV_CC_SetCommandValue(m_handle, "UserDataSave");
    return true;
}

bool HikVisionCamera::getExposureMod(bool& automatic) {
    if (!m_handle) return false;
    MVCC_ENUMVALUE gainMode{}, exposureMode{};
    if (m_sdk.MV_CC_GetGainMode(m_handle, &gainMode) != MV_OK ||
        m_sdk.MV_CC_GetExposureAutoMode(m_handle, &exposureMode) != MV_OK) {
        return false;
    }
    automatic = exposureMode.nCurValue == MV_EXPOSURE_AUTO_MODE_CONTINUOUS;
    return true;
}

std::optional<DeviceRange> HikVisionCamera::brightnessRange() const {
    MVCC_INTVALUE value{};
    if (!m_handle || m_sdk.MV_CC_GetBrightness(m_handle, &value) != MV_OK) return std::nullopt;
    return DeviceRange{double(value.nCurValue), double(value.nMin), double(value.nMax)};
}

std::optional<DeviceRange> HikVisionCamera::gainRange() const {
    MVCC_FLOATVALUE value{};
    if (!m_handle || m_sdk.MV_CC_GetGain(m_handle, &value) != MV_OK) return std::nullopt;
    return DeviceRange{value.fCurValue, value.fMin, value.fMax};
}

std::optional<DeviceRange> HikVisionCamera::exposureRange() const {
    MVCC_FLOATVALUE value{};
    if (!m_handle || m_sdk.MV_CC_GetExposureTime(m_handle, &value) != MV_OK) return std::nullopt;
    // Longer exposures than this are never offered on the percent scale.
    return DeviceRange{value.fCurValue, value.fMin,
                       std::min<double>(value.fMax, kExposureCapMicroseconds)};
}

bool HikVisionCamera::setByPercent(int32_t percent, const std::optional<DeviceRange>& range,
                                   const std::function<int(double)>& write) {
    if (!range || write(percentToRange(percent, range->minimum, range->maximum)) != MV_OK) {
        return false;
    }
    m_sdk.MV_CC_SetCommandValue(m_handle, "UserDataSave");
    return true;
}

bool HikVisionCamera::getByPercent(const std::optional<DeviceRange>& range, int32_t& percent) {
    if (!range) return false;
    percent = rangeToPercent(range->current, range->minimum, range->maximum);
    return true;
}

bool HikVisionCamera::setBrightnessByPercent(int32_t percent) {
    return setByPercent(percent, brightnessRange(), [this](double value) {
        return m_sdk.MV_CC_SetBrightness(m_handle, static_cast<unsigned int>(value));
    });
}

bool HikVisionCamera::getBrightnessByPercent(int32_t& percent) {
    return getByPercent(brightnessRange(), percent);
}

bool HikVisionCamera::setGainByPercent(int32_t percent) {
    return setByPercent(percent, gainRange(), [this](double value) {
        return m_sdk.MV_CC_SetGain(m_handle, static_cast<float>(value));
    });
}

bool HikVisionCamera::getGainByPercent(int32_t& percent) {
    return getByPercent(gainRange(), percent);
}

bool HikVisionCamera::setExposureByPercent(int32_t percent) {
    return setByPercent(percent, exposureRange(), [this](double value) {
        return m_sdk.MV_CC_SetExposureTime(m_handle, static_cast<float>(value));
    });
}

bool HikVisionCamera::getExposureByPercent(int32_t& percent) {
    return getByPercent(exposureRange(), percent);
}

// ---- frames

bool HikVisionCamera::getCurrentFrame(ImageData& image, int32_t) {
    if (!m_connected || !m_acquiring) {
        CameraLogger::getInstance().log(LogLevel::Error, "Camera not streaming: " + m_cameraId);
        return false;
    }
    return fetchFrame(image);
}

bool HikVisionCamera::getCurrentFrameToBuffer(unsigned char* buffer, int32_t size, ImageData& image,
                                              int32_t) {
    if (!m_connected || !m_acquiring) {
        CameraLogger::getInstance().log(LogLevel::Error, "Camera not streaming: " + m_cameraId);
        return false;
    }
    if (!buffer || size < 1) {
        CameraLogger::getInstance().log(LogLevel::Error, "Invalid buffer provided");
        return false;
    }
    // Held across the copy too: another thread's fetch would otherwise overwrite the frame
    // while it is being copied out.
    std::lock_guard<QCriticalSection> guard(m_cameraLock);
    if (!fetchFrame(image)) return false;
    if (size < image.dataSize) {
        CameraLogger::getInstance().log(LogLevel::Error, "Buffer too small: " + m_cameraId);
        return false;
    }
    std::memcpy(buffer, image.data, static_cast<std::size_t>(image.dataSize));
    image.data = buffer;
    return true;
}

bool HikVisionCamera::fetchFrame(ImageData& image) {
    std::lock_guard<QCriticalSection> guard(m_cameraLock);
    if (!deviceConnected()) return false;
    MV_FRAME_OUT frame{};
    if (m_sdk.MV_CC_GetImageBuffer(m_handle, &frame, kFrameTimeoutMs) != MV_OK) return false;
    if (!frame.pBufAddr) return false;
    const bool stored = storeFrame(frame, image);
    // The SDK lends its buffer: it goes back on every path, a failed conversion included.
    m_sdk.MV_CC_FreeImageBuffer(m_handle, &frame);
    return stored && applyGeometry(image) && applyZoom(image);
}

bool HikVisionCamera::storeFrame(const MV_FRAME_OUT& frame, ImageData& image) {
    const MV_FRAME_OUT_INFO_EX& info = frame.stFrameInfo;
    const uint32_t width = info.nExtendWidth ? info.nExtendWidth : info.nWidth;
    const uint32_t height = info.nExtendHeight ? info.nExtendHeight : info.nHeight;
    const Ruvo_ImageFormat format = m_imageFormat;
    const int32_t frameNumber = ++m_frameCounter;

    std::lock_guard<QCriticalSection> guard(m_bufferLock);
    uint32_t dataSize = info.nFrameLen;
    if (!needsConversion(format)) {
        if (m_frameBuffer.size() < dataSize) m_frameBuffer.resize(dataSize);
        std::memcpy(m_frameBuffer.data(), frame.pBufAddr, dataSize);
    } else {
        // Converted straight from the SDK's buffer into ours: no intermediate copy.
        const uint64_t rgbBytes = uint64_t{width} * height * 3;
        if (rgbBytes > static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) return false;
        if (m_frameBuffer.size() < rgbBytes) m_frameBuffer.resize(rgbBytes);
        MV_CC_PIXEL_CONVERT_PARAM_EX convert{};
        convert.nWidth = width;
        convert.nHeight = height;
        convert.enSrcPixelType =
            format == RUVO_FORMAT_UNKNOWN ? m_rawPixelType : bayerPixelType(format);
        convert.pSrcData = frame.pBufAddr;
        convert.nSrcDataLen = info.nFrameLen;
        convert.enDstPixelType = PixelType_Gvsp_RGB8_Packed;
        convert.pDstBuffer = m_frameBuffer.data();
        convert.nDstBufferSize = static_cast<uint32_t>(m_frameBuffer.size());
        if (m_sdk.MV_CC_ConvertPixelTypeEx(m_handle, &convert) != MV_OK) return false;
        dataSize = convert.nDstLen;
    }
    if (dataSize > static_cast<uint32_t>(std::numeric_limits<int32_t>::max())) return false;
    image.data = m_frameBuffer.data();
    image.width = static_cast<int32_t>(width);
    image.height = static_cast<int32_t>(height);
    image.channels = channelsOf(format);
    image.format = format;
    image.dataSize = static_cast<int32_t>(dataSize);
    image.timestamp = static_cast<int64_t>(std::time(nullptr)) * 1000;
    image.frameNumber = frameNumber;
    return true;
}

bool HikVisionCamera::applyGeometry(ImageData& image) {
    unsigned char* data = image.data;
    if (m_horMirror && mirrorHorizontal(image.width, image.height, data, image.dataSize,
                                        image.channels) != kFrameDone) {
        return false;
    }
    if (m_verMirror && mirrorVertical(image.width, image.height, data, image.dataSize,
                                      image.channels) != kFrameDone) {
        return false;
    }
    const int32_t turns = m_rotation;
    return turns == 0 || rotateQuarterTurns(image.width, image.height, data, image.dataSize,
                                            image.channels, turns) == kFrameDone;
}

bool HikVisionCamera::applyZoom(ImageData& image) {
    const int32_t level = m_zoomLevel;
    if (level == 0) return true;
    const std::optional<ZoomWindow> window = zoomWindow(level, image.width, image.height);
    if (!window) {
        m_zoomLevel = 0;
        return false;
    }
    cropToWindow(image.data, image.width, image.channels, *window);
    image.width = window->width;
    image.height = window->height;
    image.dataSize = window->width * window->height * image.channels;
    return true;
}

}  // namespace telvarra::hikvision
