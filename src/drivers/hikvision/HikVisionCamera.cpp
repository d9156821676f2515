#include "drivers/hikvision/HikVisionCamera.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "api/PixelCodes.h"
#include "drivers/hikvision/HikVisionDevices.h"

namespace telvarra::hikvision {

using namespace sdk;

namespace {

constexpr unsigned int kFrameTimeoutMs = 2000;
// Longer exposures than this are never offered on the percent scale.
constexpr double kExposureCapMicroseconds = 200000.0;
constexpr int32_t kRequestedWidth = 640;
constexpr int32_t kRequestedHeight = 480;

constexpr CameraProfile kProfile{RUVO_CAMERA_HIKVISION,
                                 "HikVision",
                                 "222222",
                                 "HikVision ace",
                                 "Connecting to HikVision camera: ",
                                 "Disconnecting from HikVision camera: ",
                                 "Starting acquisition on HikVision camera: ",
                                 "Stopping acquisition on HikVision camera: ",
                                 "Reconnecting to HikVision camera: ",
                                 " on HikVision camera: ",
                                 " from HikVision camera: ",
                                 " for HikVision camera: ",
                                 RUVO_STATUS_ACQUIRING,
                                 false,
                                 false,
                                 true};

// The three formats frames are delivered in as the device sends them; any other is converted.
Ruvo_ImageFormat packedFormatOf(uint32_t pixelType) {
    const auto format = formatOfPixelCode(pixelType);
    return format && isPackedFormat(*format) ? *format : RUVO_FORMAT_UNKNOWN;
}

bool needsConversion(Ruvo_ImageFormat format) {
    return format == RUVO_FORMAT_UNKNOWN ||
           (format >= RUVO_FORMAT_BAYER_GR8 && format <= RUVO_FORMAT_BAYER_BG8);
}

}  // namespace

HikVisionCamera::HikVisionCamera(const std::string& cameraId)
    : CameraBase(cameraId, kProfile, FramePath::Software),
      m_sdk(hikVisionSdk()),
      m_deviceList(std::make_unique<MV_CC_DEVICE_INFO_LIST>()) {
    m_width = kRequestedWidth;
    m_height = kRequestedHeight;
    m_brightness = {
        [this]() -> std::optional<DeviceRange> {
            MVCC_INTVALUE value{};
            if (!m_handle || m_sdk.MV_CC_GetBrightness(m_handle, &value) != MV_OK)
                return std::nullopt;
            return DeviceRange{double(value.nCurValue), double(value.nMin), double(value.nMax)};
        },
        [this](double value) {
            return m_sdk.MV_CC_SetBrightness(m_handle, static_cast<unsigned int>(value)) == MV_OK;
        }};
    m_gain = {[this]() -> std::optional<DeviceRange> {
                  MVCC_FLOATVALUE value{};
                  if (!m_handle || m_sdk.MV_CC_GetGain(m_handle, &value) != MV_OK)
                      return std::nullopt;
                  return DeviceRange{value.fCurValue, value.fMin, value.fMax};
              },
              [this](double value) {
                  return m_sdk.MV_CC_SetGain(m_handle, static_cast<float>(value)) == MV_OK;
              }};
    m_exposure = {[this]() -> std::optional<DeviceRange> {
                      MVCC_FLOATVALUE value{};
                      if (!m_handle || m_sdk.MV_CC_GetExposureTime(m_handle, &value) != MV_OK)
                          return std::nullopt;
                      return DeviceRange{value.fCurValue, value.fMin,
                                         std::min<double>(value.fMax, kExposureCapMicroseconds)};
                  },
                  [this](double value) {
                      return m_sdk.MV_CC_SetExposureTime(m_handle, static_cast<float>(value)) ==
                             MV_OK;
                  }};
}

HikVisionCamera::~HikVisionCamera() {
    if (m_connected) disconnect();
}

// ---- opening and closing

bool HikVisionCamera::initialize() {
    logInfo("Initializing HikVision camera: " + m_cameraId);
    return findDevice() && openDevice() && readPixelFormat();
}

bool HikVisionCamera::findDevice() {
    const DeviceListing listing = listDevices(*m_deviceList);
    if (!listing.succeeded) return false;
    logInfo("Src Enumerated " + std::to_string(listing.reported) + " HikVision cameras");
    const auto device =
        std::find_if(listing.devices.begin(), listing.devices.end(),
                     [&](const ListedDevice& listed) { return listed.serialNumber == m_cameraId; });
    if (device == listing.devices.end()) return false;
    logInfo("Enumerated Ok ID:" + device->serialNumber);
    // Older runtimes write only the first 572 bytes; the SDK's record dies with the next
    // enumeration, so keep a copy.
    std::memset(&m_selectedDevice, 0, sizeof m_selectedDevice);
    std::memcpy(&m_selectedDevice, device->record, kDeviceInfoBytesInEveryVersion);
    return true;
}

bool HikVisionCamera::openDevice() {
    if (m_handle) return false;
    // A handle the SDK wrote before failing is destroyed with the rest by closeDevice.
    if (m_sdk.MV_CC_CreateHandle(&m_handle, &m_selectedDevice) != MV_OK || !m_handle) return false;
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
    m_imageFormat = packedFormatOf(pixelFormat.nCurValue);
    if (m_imageFormat == RUVO_FORMAT_UNKNOWN) m_rawPixelType = pixelFormat.nCurValue;
    logInfo(std::string("Initializing HikVision camera, CurImageFormat:") +
            formatText(m_imageFormat));
    logInfo("Initializing HikVision camera, CurChannelCount:" +
            std::to_string(deliveredChannels(m_imageFormat)));

    const uint32_t supported =
        std::min<uint32_t>(pixelFormat.nSupportedNum, MV_MAX_XML_SYMBOLIC_NUM);
    logInfo("Initializing HikVision camera, ReadImageFormat-Count:" + std::to_string(supported));
    _RUVO_IMAGE_FORMAT_LIST& formats = m_deviceInfo.supportedFormats;
    formats = _RUVO_IMAGE_FORMAT_LIST{};
    for (uint32_t i = 0; i < supported && formats.count < RUVO_MAX_IMAGE_FORMATS; ++i) {
        const Ruvo_ImageFormat format = packedFormatOf(pixelFormat.nSupportValue[i]);
        if (format == RUVO_FORMAT_UNKNOWN) continue;
        formats.formats[formats.count++] = format;
        logInfo(std::string("Initializing HikVision camera, ReadImageFormat:") +
                formatText(format));
    }

    MVCC_INTVALUE_EX width{}, height{};
    m_sdk.MV_CC_GetIntValueEx(m_handle, "Width", &width);
    m_sdk.MV_CC_GetIntValueEx(m_handle, "Height", &height);
    m_softwareFrames->setSensorSize(static_cast<uint32_t>(width.nCurValue),
                                    static_cast<uint32_t>(height.nCurValue));
    return true;
}

bool HikVisionCamera::deviceStillConnected() {
    return m_handle && m_sdk.MV_CC_IsDeviceConnected(m_handle);
}

bool HikVisionCamera::closeDevice() {
    if (!m_handle) return true;
    retryGivingBack();
    if (deviceStillConnected()) m_sdk.MV_CC_CloseDevice(m_handle);
    m_sdk.MV_CC_DestroyHandle(m_handle);
    m_handle = nullptr;
    m_unreturned.forget();
    m_grabbing = false;
    return true;
}

bool HikVisionCamera::startStreaming() {
    // A stop that found the device not answering left the SDK grabbing, and the SDK refuses to
    // start twice: stop it first, whatever it answers, so that this start can succeed.
    if (m_grabbing) m_sdk.MV_CC_StopGrabbing(m_handle);
    m_grabbing = m_sdk.MV_CC_StartGrabbing(m_handle) == MV_OK;
    return m_grabbing;
}

bool HikVisionCamera::stopStreaming() {
    retryGivingBack();
    if (!deviceStillConnected()) return true;
    if (m_sdk.MV_CC_StopGrabbing(m_handle) != MV_OK) return false;
    m_grabbing = false;
    return true;
}

// ---- format

bool HikVisionCamera::setPixelFormat(uint32_t pixelType, Ruvo_ImageFormat format) {
    if (m_sdk.MV_CC_SetEnumValue(m_handle, "PixelFormat", pixelType) != MV_OK) return false;
    m_imageFormat = format;
    return true;
}

bool HikVisionCamera::setImageFormat(Ruvo_ImageFormat format) {
    const _RUVO_IMAGE_FORMAT_LIST& supported = m_deviceInfo.supportedFormats;
    const auto end =
        supported.formats + std::min<uint32_t>(supported.count, RUVO_MAX_IMAGE_FORMATS);
    if (std::find(supported.formats, end, format) == end || !isPackedFormat(format)) {
        logInfo(std::string("Initializing HikVision camera, SetImageFormat-Cur:") +
                formatText(m_imageFormat));
        logInfo("Initializing HikVision camera, SetImageFormat-false:no");
        return false;
    }
    if (!m_handle) return false;

    logInfo(std::string("Initializing HikVision camera, SetImageFormat:") + formatText(format));
    bool done = true;
    if (format == RUVO_FORMAT_RGB8 && m_imageFormat == RUVO_FORMAT_UNKNOWN) {
        // The device's own format stays; its frames are converted to RGB in software.
        logInfo("Initializing HikVision camera, SetImageFormat:UNKNOWN");
    } else {
        done = setPixelFormat(pixelCodeOf(format), format);
    }
    if (!done) {
        logError("Initializing HikVision camera, SetImageFormat:false");
        return false;
    }
    logInfo("Initializing HikVision camera, SetImageFormat:true");
    logInfo("Set image format to " + std::to_string(static_cast<int>(format)) +
            " for HikVision camera: " + m_cameraId);
    return true;
}

// ---- exposure mode and percent controls

bool HikVisionCamera::readModes(MVCC_ENUMVALUE& gainMode, MVCC_ENUMVALUE& exposureMode) const {
    return m_sdk.MV_CC_GetGainMode(m_handle, &gainMode) == MV_OK &&
           m_sdk.MV_CC_GetExposureAutoMode(m_handle, &exposureMode) == MV_OK;
}

void HikVisionCamera::saveUserData() const {
    m_sdk.MV_CC_SetCommandValue(m_handle, "UserDataSave");
}

bool HikVisionCamera::setExposureMod(bool automatic) {
    if (!m_handle) return false;
    MVCC_ENUMVALUE gainMode{}, exposureMode{};
    if (m_sdk.MV_CC_GetGainMode(m_handle, &gainMode) != MV_OK) return false;
    m_sdk.MV_CC_GetExposureAutoMode(m_handle, &exposureMode);
    const unsigned int mode =
        automatic ? MV_EXPOSURE_AUTO_MODE_CONTINUOUS : MV_EXPOSURE_AUTO_MODE_OFF;
    if (m_sdk.MV_CC_SetExposureAutoMode(m_handle, mode) != MV_OK) return false;
    if (!readModes(gainMode, exposureMode)) return false;
    saveUserData();
    return true;
}

bool HikVisionCamera::getExposureMod(bool& automatic) {
    MVCC_ENUMVALUE gainMode{}, exposureMode{};
    if (!m_handle || !readModes(gainMode, exposureMode)) return false;
    automatic = exposureMode.nCurValue == MV_EXPOSURE_AUTO_MODE_CONTINUOUS;
    return true;
}

// ---- frames

bool HikVisionCamera::release(MV_FRAME_OUT& lent) {
    return m_sdk.MV_CC_FreeImageBuffer(m_handle, &lent) == MV_OK;
}

void HikVisionCamera::giveBack(const MV_FRAME_OUT& frame) {
    if (!m_unreturned.giveBack(frame, [this](MV_FRAME_OUT& lent) { return release(lent); }))
        logError("Failed to release frame buffer of camera: " + m_cameraId);
}

void HikVisionCamera::retryGivingBack() {
    m_unreturned.retry([this](MV_FRAME_OUT& lent) { return release(lent); });
}

bool HikVisionCamera::fetchFrame(ImageData& image) {
    if (!deviceStillConnected()) return false;
    // The SDK lends from a few buffers: those it refused to take back are offered first.
    retryGivingBack();
    if (m_unreturned.full()) return false;
    MV_FRAME_OUT frame{};
    if (m_sdk.MV_CC_GetImageBuffer(m_handle, &frame, kFrameTimeoutMs) != MV_OK) return false;
    if (!frame.pBufAddr) return false;
    const bool stored = storeFrame(frame, image);
    // The SDK lends its buffer: it goes back on every path, a failed conversion included.
    giveBack(frame);
    return stored;
}

bool HikVisionCamera::storeFrame(const MV_FRAME_OUT& frame, ImageData& image) {
    const MV_FRAME_OUT_INFO_EX& info = frame.stFrameInfo;
    const uint32_t width = info.nExtendWidth ? info.nExtendWidth : info.nWidth;
    const uint32_t height = info.nExtendHeight ? info.nExtendHeight : info.nHeight;
    const Ruvo_ImageFormat format = m_imageFormat;
    describeFrame(image, nullptr, static_cast<int32_t>(width), static_cast<int32_t>(height),
                  deliveredChannels(format), static_cast<int32_t>(info.nFrameLen));
    constexpr uint64_t kLargestFrame = std::numeric_limits<int32_t>::max();
    const uint64_t rgbBytes = uint64_t{width} * height * 3;

    if (!needsConversion(format)) {
        // Mirrored, turned and zoomed on the way out of the SDK's buffer: one pass.
        return info.nFrameLen <= kLargestFrame &&
               m_softwareFrames->copyFrom(frame.pBufAddr, info.nFrameLen, image.width, image.height,
                                          image.channels, m_frameBuffer, image);
    }
    // Converted straight from the SDK's buffer into ours: no intermediate copy.
    if (rgbBytes > kLargestFrame || !m_frameBuffer.reserve(rgbBytes)) return false;
    MV_CC_PIXEL_CONVERT_PARAM_EX convert{};
    convert.nWidth = width;
    convert.nHeight = height;
    convert.enSrcPixelType = format == RUVO_FORMAT_UNKNOWN ? m_rawPixelType : pixelCodeOf(format);
    convert.pSrcData = frame.pBufAddr;
    convert.nSrcDataLen = info.nFrameLen;
    convert.enDstPixelType = PixelType_Gvsp_RGB8_Packed;
    convert.pDstBuffer = m_frameBuffer.data();
    convert.nDstBufferSize = static_cast<uint32_t>(m_frameBuffer.size());
    if (m_sdk.MV_CC_ConvertPixelTypeEx(m_handle, &convert) != MV_OK) return false;
    // What the SDK wrote: width x height x 3. That is the frame length x 3 for the 8-bit
    // mosaics, and still right for a raw format of another depth, where x 3 would not be.
    image.dataSize = static_cast<int32_t>(std::min<uint64_t>(convert.nDstLen, rgbBytes));
    image.data = m_frameBuffer.data();
    return true;
}

}  // namespace telvarra::hikvision
