// The MindVision camera SDK (MVCAMSDK) as its published headers define it: the records and
// constants we use and the signatures of the functions we call, declared by us from the vendor
// ABI notes. Standard headers only: the driver and the SDK simulator both build on it. No record
// holds a `long`, so Windows x64 and Linux x86_64 share every layout.
#ifndef TELVARRA_VENDOR_MINDVISION_MINDVISIONSDK_H
#define TELVARRA_VENDOR_MINDVISION_MINDVISIONSDK_H

#include <cstddef>
#include <cstdint>

namespace telvarra::vendor::mindvision {

using CameraHandle = int;
using CameraSdkStatus = int;
using BOOL = int;
using INT = int;
using UINT = unsigned int;
using BYTE = unsigned char;

// ---- Status codes: 0 is success. ----

constexpr CameraSdkStatus CAMERA_STATUS_SUCCESS = 0;
constexpr CameraSdkStatus CAMERA_STATUS_FAILED = -1;
constexpr CameraSdkStatus CAMERA_STATUS_INTERNAL_ERROR = -2;
constexpr CameraSdkStatus CAMERA_STATUS_NOT_SUPPORTED = -4;
constexpr CameraSdkStatus CAMERA_STATUS_NOT_INITIALIZED = -5;
constexpr CameraSdkStatus CAMERA_STATUS_PARAMETER_INVALID = -6;
constexpr CameraSdkStatus CAMERA_STATUS_PARAMETER_OUT_OF_BOUND = -7;
constexpr CameraSdkStatus CAMERA_STATUS_TIME_OUT = -12;
constexpr CameraSdkStatus CAMERA_STATUS_NO_DEVICE_FOUND = -16;
constexpr CameraSdkStatus CAMERA_STATUS_DEVICE_IS_OPENED = -18;
constexpr CameraSdkStatus CAMERA_STATUS_DEVICE_IS_CLOSED = -19;
constexpr CameraSdkStatus CAMERA_STATUS_NO_MEMORY = -21;
constexpr CameraSdkStatus CAMERA_STATUS_DEVICE_LOST = -38;
constexpr CameraSdkStatus CAMERA_STATUS_ACCESS_DENY = -45;

// ---- Pixel types (CAMERA_MEDIA_TYPE_*): the GenICam codes. ----

constexpr UINT CAMERA_MEDIA_TYPE_MONO8 = 0x01080001;
constexpr UINT CAMERA_MEDIA_TYPE_MONO16 = 0x01100007;
constexpr UINT CAMERA_MEDIA_TYPE_BAYGR8 = 0x01080008;
constexpr UINT CAMERA_MEDIA_TYPE_BAYRG8 = 0x01080009;
constexpr UINT CAMERA_MEDIA_TYPE_BAYGB8 = 0x0108000A;
constexpr UINT CAMERA_MEDIA_TYPE_BAYBG8 = 0x0108000B;
constexpr UINT CAMERA_MEDIA_TYPE_RGB8 = 0x02180014;
constexpr UINT CAMERA_MEDIA_TYPE_BGR8 = 0x02180015;
constexpr UINT CAMERA_MEDIA_TYPE_RGBA8 = 0x02200016;
constexpr UINT CAMERA_MEDIA_TYPE_BGRA8 = 0x02200017;

// ---- Enumerations. ----

constexpr int MIRROR_DIRECTION_HORIZONTAL = 0;
constexpr int MIRROR_DIRECTION_VERTICAL = 1;
constexpr int CONTINUATION = 0;  // trigger mode: free run
constexpr int SOFT_TRIGGER = 1;
constexpr int EXTERNAL_TRIGGER = 2;
constexpr UINT CAMERA_GET_IMAGE_PRIORITY_OLDEST = 0;
constexpr UINT CAMERA_GET_IMAGE_PRIORITY_NEWEST = 1;
constexpr UINT CAMERA_GET_IMAGE_PRIORITY_NEXT = 2;
constexpr int PARAM_MODE_LAST_EXIT = -1;    // CameraInit's load mode and team
constexpr INT IMAGEOUT_MODE_CUSTOM = 0xFF;  // tSdkImageResolution::iIndex of a custom region

// ---- Records. Texts are NUL-terminated within their fields. ----

struct tSdkCameraDevInfo {
    char acProductSeries[32];
    char acProductName[32];
    char acFriendlyName[32];
    char acLinkName[32];
    char acDriverVersion[32];
    char acSensorType[32];
    char acPortType[32];
    char acSn[32];
    UINT uInstance;
};

struct tSdkFrameHead {
    UINT uiMediaType;
    UINT uBytes;
    INT iWidth;
    INT iHeight;
    INT iWidthZoomSw;
    INT iHeightZoomSw;
    BOOL bIsTrigger;
    UINT uiTimeStamp;  // units of 0.1 ms
    UINT uiExpTime;
    float fAnalogGain;
    INT iGamma;
    INT iContrast;
    INT iSaturation;
    float fRgain;
    float fGgain;
    float fBgain;
};

struct tSdkImageResolution {
    INT iIndex;
    char acDescription[32];
    UINT uBinSumMode;
    UINT uBinAverageMode;
    UINT uSkipMode;
    UINT uResampleMask;
    INT iHOffsetFOV;
    INT iVOffsetFOV;
    INT iWidthFOV;
    INT iHeightFOV;
    INT iWidth;
    INT iHeight;
    INT iWidthZoomHd;
    INT iHeightZoomHd;
    INT iWidthZoomSw;
    INT iHeightZoomSw;
};

struct tSdkExpose {
    UINT uiTargetMin;
    UINT uiTargetMax;
    UINT uiAnalogGainMin;
    UINT uiAnalogGainMax;
    float fAnalogGainStep;
    UINT uiExposeTimeMin;  // sensor lines
    UINT uiExposeTimeMax;
};

struct tSdkResolutionRange {
    INT iHeightMax;
    INT iHeightMin;
    INT iWidthMax;
    INT iWidthMin;
    UINT uSkipModeMask;
    UINT uBinSumModeMask;
    UINT uBinAverageModeMask;
    UINT uResampleMask;
};

struct tSdkIspCapacity {
    BOOL bMonoSensor;
    BOOL bWbOnce;
    BOOL bAutoWb;
    BOOL bAutoExposure;
    BOOL bManualExposure;
    BOOL bAntiFlick;
    BOOL bDeviceIsp;
    BOOL bForceUseDeviceIsp;
    BOOL bZoomHD;
};

struct tSdkIntRange {
    INT iMin;
    INT iMax;
};

// The capability record: the descriptor arrays it points to are the SDK's and are not read here.
struct tSdkCameraCapbility {
    void* pTriggerDesc;
    INT iTriggerDesc;
    void* pImageSizeDesc;
    INT iImageSizeDesc;
    void* pClrTempDesc;
    INT iClrTempDesc;
    void* pMediaTypeDesc;
    INT iMediaTypdeDesc;  // the vendor's spelling
    void* pFrameSpeedDesc;
    INT iFrameSpeedDesc;
    void* pPackLenDesc;
    INT iPackLenDesc;
    INT iOutputIoCounts;
    INT iInputIoCounts;
    void* pPresetLutDesc;
    INT iPresetLut;
    INT iUserDataMaxLen;
    BOOL bParamInDevice;
    void* pAeAlmSwDesc;
    int iAeAlmSwDesc;
    void* pAeAlmHdDesc;
    int iAeAlmHdDesc;
    void* pBayerDecAlmSwDesc;
    int iBayerDecAlmSwDesc;
    void* pBayerDecAlmHdDesc;
    int iBayerDecAlmHdDesc;
    tSdkExpose sExposeDesc;
    tSdkResolutionRange sResolutionRange;
    INT sRgbGainRange[6];
    tSdkIntRange sSaturationRange;
    tSdkIntRange sGammaRange;
    tSdkIntRange sContrastRange;
    tSdkIntRange sSharpnessRange;
    tSdkIspCapacity sIspCapacity;
};

static_assert(sizeof(tSdkCameraDevInfo) == 260 && alignof(tSdkCameraDevInfo) == 4);
static_assert(offsetof(tSdkCameraDevInfo, acProductName) == 32);
static_assert(offsetof(tSdkCameraDevInfo, acFriendlyName) == 64);
static_assert(offsetof(tSdkCameraDevInfo, acPortType) == 192);
static_assert(offsetof(tSdkCameraDevInfo, acSn) == 224);
static_assert(offsetof(tSdkCameraDevInfo, uInstance) == 256);
static_assert(sizeof(tSdkFrameHead) == 64 && alignof(tSdkFrameHead) == 4);
static_assert(offsetof(tSdkFrameHead, uBytes) == 4);
static_assert(offsetof(tSdkFrameHead, iWidth) == 8);
static_assert(offsetof(tSdkFrameHead, iHeight) == 12);
static_assert(offsetof(tSdkFrameHead, uiTimeStamp) == 28);
static_assert(offsetof(tSdkFrameHead, fBgain) == 60);
static_assert(sizeof(tSdkImageResolution) == 92);
static_assert(offsetof(tSdkImageResolution, acDescription) == 4);
static_assert(offsetof(tSdkImageResolution, iHOffsetFOV) == 52);
static_assert(offsetof(tSdkImageResolution, iVOffsetFOV) == 56);
static_assert(offsetof(tSdkImageResolution, iWidthFOV) == 60);
static_assert(offsetof(tSdkImageResolution, iHeightFOV) == 64);
static_assert(offsetof(tSdkImageResolution, iWidth) == 68);
static_assert(offsetof(tSdkImageResolution, iHeight) == 72);
static_assert(offsetof(tSdkImageResolution, iHeightZoomSw) == 88);
static_assert(sizeof(tSdkExpose) == 28 && sizeof(tSdkResolutionRange) == 32);
static_assert(sizeof(tSdkIspCapacity) == 36);
static_assert(sizeof(tSdkCameraCapbility) == 344 && alignof(tSdkCameraCapbility) == 8);
static_assert(offsetof(tSdkCameraCapbility, iPackLenDesc) == 88);
static_assert(offsetof(tSdkCameraCapbility, pPresetLutDesc) == 104);
static_assert(offsetof(tSdkCameraCapbility, bParamInDevice) == 120);
static_assert(offsetof(tSdkCameraCapbility, iBayerDecAlmHdDesc) == 184);
// The fields the camera reads, at their absolute offsets.
static_assert(offsetof(tSdkCameraCapbility, sExposeDesc) + offsetof(tSdkExpose, uiTargetMin) ==
              188);
static_assert(offsetof(tSdkCameraCapbility, sExposeDesc) + offsetof(tSdkExpose, uiTargetMax) ==
              192);
static_assert(offsetof(tSdkCameraCapbility, sExposeDesc) + offsetof(tSdkExpose, uiAnalogGainMin) ==
              196);
static_assert(offsetof(tSdkCameraCapbility, sExposeDesc) + offsetof(tSdkExpose, uiAnalogGainMax) ==
              200);
static_assert(offsetof(tSdkCameraCapbility, sResolutionRange) +
                  offsetof(tSdkResolutionRange, iHeightMax) ==
              216);
static_assert(offsetof(tSdkCameraCapbility, sResolutionRange) +
                  offsetof(tSdkResolutionRange, iWidthMax) ==
              224);
static_assert(offsetof(tSdkCameraCapbility, sRgbGainRange) == 248);
static_assert(offsetof(tSdkCameraCapbility, sSaturationRange) == 272);
static_assert(offsetof(tSdkCameraCapbility, sSharpnessRange) == 296);
static_assert(offsetof(tSdkCameraCapbility, sIspCapacity) == 304);

// ---- The functions we call, with the vendor's signatures. ----
//
// X(return type, exported name, parameter list). The simulator declares these exports from this
// list; the other bound names are only looked up.
#define TELVARRA_MINDVISION_FUNCTIONS(X)                                                       \
    X(CameraSdkStatus, CameraSdkInit, (int language))                                          \
    X(CameraSdkStatus, CameraEnumerateDevice, (tSdkCameraDevInfo * list, INT * count))         \
    X(CameraSdkStatus, CameraInit,                                                             \
      (tSdkCameraDevInfo * info, int paramLoadMode, int team, CameraHandle* handle))           \
    X(CameraSdkStatus, CameraGetCapability, (CameraHandle handle, tSdkCameraCapbility * out))  \
    X(CameraSdkStatus, CameraGetIspOutFormat, (CameraHandle handle, UINT * format))            \
    X(CameraSdkStatus, CameraSetIspOutFormat, (CameraHandle handle, UINT format))              \
    X(CameraSdkStatus, CameraSetTriggerMode, (CameraHandle handle, int mode))                  \
    X(CameraSdkStatus, CameraSetCrossLine,                                                     \
      (CameraHandle handle, int line, INT x, INT y, UINT color, BOOL visible))                 \
    X(BYTE*, CameraAlignMalloc, (int size, int align))                                         \
    X(void, CameraAlignFree, (BYTE * memory))                                                  \
    X(CameraSdkStatus, CameraConnectTest, (CameraHandle handle))                               \
    X(CameraSdkStatus, CameraUnInit, (CameraHandle handle))                                    \
    X(CameraSdkStatus, CameraPlay, (CameraHandle handle))                                      \
    X(CameraSdkStatus, CameraStop, (CameraHandle handle))                                      \
    X(CameraSdkStatus, CameraGetImageBufferPriority,                                           \
      (CameraHandle handle, tSdkFrameHead * head, BYTE * *raw, UINT timeoutMs, UINT priority)) \
    X(CameraSdkStatus, CameraImageProcess,                                                     \
      (CameraHandle handle, BYTE * raw, BYTE * out, tSdkFrameHead * head))                     \
    X(CameraSdkStatus, CameraReleaseImageBuffer, (CameraHandle handle, BYTE * raw))            \
    X(CameraSdkStatus, CameraSetMirror, (CameraHandle handle, int direction, BOOL on))         \
    X(CameraSdkStatus, CameraGetMirror, (CameraHandle handle, int direction, BOOL* on))        \
    X(CameraSdkStatus, CameraSetRotate, (CameraHandle handle, int quarterTurns))               \
    X(CameraSdkStatus, CameraGetRotate, (CameraHandle handle, int* quarterTurns))              \
    X(CameraSdkStatus, CameraSetAeState, (CameraHandle handle, BOOL automatic))                \
    X(CameraSdkStatus, CameraGetAeState, (CameraHandle handle, BOOL * automatic))              \
    X(CameraSdkStatus, CameraSetAeTarget, (CameraHandle handle, int target))                   \
    X(CameraSdkStatus, CameraGetAeTarget, (CameraHandle handle, int* target))                  \
    X(CameraSdkStatus, CameraSetAnalogGain, (CameraHandle handle, INT gain))                   \
    X(CameraSdkStatus, CameraGetAnalogGain, (CameraHandle handle, INT * gain))                 \
    X(CameraSdkStatus, CameraGetExposureTimeRange,                                             \
      (CameraHandle handle, double* minimum, double* maximum, double* step))                   \
    X(CameraSdkStatus, CameraSetExposureTime, (CameraHandle handle, double microseconds))      \
    X(CameraSdkStatus, CameraGetExposureTime, (CameraHandle handle, double* microseconds))     \
    X(CameraSdkStatus, CameraSetImageResolution,                                               \
      (CameraHandle handle, tSdkImageResolution * resolution))                                 \
    X(CameraSdkStatus, CameraGetImageResolution,                                               \
      (CameraHandle handle, tSdkImageResolution * resolution))

// The function type of each, by name: MindVisionSignatures::CameraPlay is CameraSdkStatus(int).
struct MindVisionSignatures {
#define TELVARRA_MINDVISION_SIGNATURE(returnType, name, parameters) \
    using name = returnType parameters;
    TELVARRA_MINDVISION_FUNCTIONS(TELVARRA_MINDVISION_SIGNATURE)
#undef TELVARRA_MINDVISION_SIGNATURE
};

// The vendor's run-time load list (the order of its CameraApiLoad.h): all 279 exported names,
// CALLED(name) for the functions above and OTHER(name) for the rest, which we only look up.
// clang-format off
#define TELVARRA_MINDVISION_LOAD_LIST(CALLED, OTHER) \
    CALLED(CameraSdkInit) \
    OTHER(CameraSetCallbackFunction) \
    OTHER(CameraGetInformation) \
    CALLED(CameraInit) \
    OTHER(CameraInitEx) \
    OTHER(CameraInitEx2) \
    CALLED(CameraUnInit) \
    CALLED(CameraImageProcess) \
    OTHER(CameraImageProcessEx) \
    CALLED(CameraPlay) \
    OTHER(CameraPause) \
    CALLED(CameraStop) \
    OTHER(CameraDisplayRGB24) \
    OTHER(CameraSetDisplayMode) \
    OTHER(CameraImageOverlay) \
    OTHER(CameraDisplayInit) \
    OTHER(CameraDisplayInitEx) \
    OTHER(CameraSetDisplaySize) \
    OTHER(CameraSetDisplayOffset) \
    OTHER(CameraInitRecord) \
    OTHER(CameraStopRecord) \
    OTHER(CameraPushFrame) \
    OTHER(CameraSpecialControl) \
    OTHER(CameraSnapToBuffer) \
    OTHER(CameraGetImageBuffer) \
    OTHER(CameraGetImageBufferEx) \
    CALLED(CameraReleaseImageBuffer) \
    OTHER(CameraCreateSettingPage) \
    OTHER(CameraSetActiveSettingSubPage) \
    OTHER(CameraSetSettingPageParent) \
    OTHER(CameraGetSettingPageHWnd) \
    CALLED(CameraSetMirror) \
    CALLED(CameraGetMirror) \
    CALLED(CameraSetRotate) \
    CALLED(CameraGetRotate) \
    OTHER(CameraSetMonochrome) \
    OTHER(CameraGetMonochrome) \
    OTHER(CameraSetInverse) \
    OTHER(CameraGetInverse) \
    OTHER(CameraCustomizeResolution) \
    CALLED(CameraGetImageResolution) \
    OTHER(CameraGetImageResolutionEx) \
    CALLED(CameraSetImageResolution) \
    OTHER(CameraSetImageResolutionEx) \
    OTHER(CameraGetMediaType) \
    OTHER(CameraSetMediaType) \
    CALLED(CameraSetAeState) \
    CALLED(CameraGetAeState) \
    CALLED(CameraSetAeTarget) \
    CALLED(CameraGetAeTarget) \
    OTHER(CameraSetAeExposureRange) \
    OTHER(CameraGetAeExposureRange) \
    OTHER(CameraSetAeAnalogGainRange) \
    OTHER(CameraGetAeAnalogGainRange) \
    OTHER(CameraSetAeThreshold) \
    OTHER(CameraGetAeThreshold) \
    OTHER(CameraIsAeWinVisible) \
    CALLED(CameraSetExposureTime) \
    CALLED(CameraGetExposureTime) \
    CALLED(CameraGetExposureTimeRange) \
    OTHER(CameraGetExposureLineTime) \
    CALLED(CameraSetAnalogGain) \
    CALLED(CameraGetAnalogGain) \
    OTHER(CameraSetSharpness) \
    OTHER(CameraGetSharpness) \
    OTHER(CameraSetOnceWB) \
    OTHER(CameraSetLutMode) \
    OTHER(CameraGetLutMode) \
    OTHER(CameraSelectLutPreset) \
    OTHER(CameraGetLutPresetSel) \
    OTHER(CameraSetCustomLut) \
    OTHER(CameraGetCustomLut) \
    OTHER(CameraGetCurrentLut) \
    OTHER(CameraSetWbMode) \
    OTHER(CameraGetWbMode) \
    OTHER(CameraSetWbWindow) \
    OTHER(CameraIsWbWinVisible) \
    OTHER(CameraSaveImage) \
    OTHER(CameraSetGain) \
    OTHER(CameraGetGain) \
    OTHER(CameraSetGamma) \
    OTHER(CameraGetGamma) \
    OTHER(CameraSetSaturation) \
    OTHER(CameraGetSaturation) \
    OTHER(CameraSetContrast) \
    OTHER(CameraGetContrast) \
    OTHER(CameraSetFrameSpeed) \
    OTHER(CameraGetFrameSpeed) \
    OTHER(CameraSetAntiFlick) \
    OTHER(CameraGetAntiFlick) \
    OTHER(CameraGetLightFrequency) \
    OTHER(CameraSetLightFrequency) \
    OTHER(CameraSetTransPackLen) \
    OTHER(CameraGetTransPackLen) \
    OTHER(CameraWriteSN) \
    OTHER(CameraReadSN) \
    OTHER(CameraGetPresetClrTemp) \
    OTHER(CameraSetPresetClrTemp) \
    OTHER(CameraSaveParameter) \
    OTHER(CameraLoadParameter) \
    OTHER(CameraGetCurrentParameterGroup) \
    CALLED(CameraEnumerateDevice) \
    OTHER(CameraEnumerateDeviceEx) \
    CALLED(CameraGetCapability) \
    OTHER(CameraSoftTrigger) \
    CALLED(CameraSetTriggerMode) \
    OTHER(CameraGetTriggerMode) \
    OTHER(CameraShowSettingPage) \
    OTHER(CameraGetFrameStatistic) \
    OTHER(CameraGetResolutionForSnap) \
    OTHER(CameraSetResolutionForSnap) \
    OTHER(CameraGetNoiseFilterState) \
    OTHER(CameraSetParameterMode) \
    OTHER(CameraGetParameterMode) \
    OTHER(CameraSetParameterMask) \
    OTHER(CameraGetTriggerCount) \
    OTHER(CameraGetCrossLine) \
    CALLED(CameraSetCrossLine) \
    OTHER(CameraGetTriggerDelayTime) \
    OTHER(CameraSetTriggerDelayTime) \
    OTHER(CameraSetAeWinVisible) \
    OTHER(CameraSetNoiseFilter) \
    OTHER(CameraSetTriggerCount) \
    OTHER(CameraCustomizeReferWin) \
    OTHER(CameraSetAeWindow) \
    OTHER(CameraReadParameterFromFile) \
    OTHER(CameraSetWbWinVisible) \
    OTHER(CameraRstTimeStamp) \
    OTHER(CameraGetCapabilityEx) \
    OTHER(CameraLoadUserData) \
    OTHER(CameraSaveUserData) \
    OTHER(CameraIsOpened) \
    OTHER(CameraSetFriendlyName) \
    OTHER(CameraGetFriendlyName) \
    OTHER(CameraSetUserClrTempGain) \
    OTHER(CameraGetUserClrTempGain) \
    OTHER(CameraSetUserClrTempMatrix) \
    OTHER(CameraGetUserClrTempMatrix) \
    OTHER(CameraSetClrTempMode) \
    OTHER(CameraGetClrTempMode) \
    OTHER(CameraSdkGetVersionString) \
    OTHER(CameraCheckFwUpdate) \
    OTHER(CameraGetFirmwareVersion) \
    OTHER(CameraGetFirmwareVision) \
    OTHER(CameraGetEnumInfo) \
    OTHER(CameraGetInerfaceVersion) \
    OTHER(CameraSetIOState) \
    OTHER(CameraGetIOState) \
    OTHER(CameraSetInPutIOMode) \
    OTHER(CameraSetOutPutIOMode) \
    OTHER(CameraSetOutPutPWM) \
    OTHER(CameraSetBayerDecAlgorithm) \
    OTHER(CameraGetBayerDecAlgorithm) \
    OTHER(CameraSetBlackLevel) \
    OTHER(CameraGetBlackLevel) \
    OTHER(CameraSetWhiteLevel) \
    OTHER(CameraGetWhiteLevel) \
    CALLED(CameraSetIspOutFormat) \
    CALLED(CameraGetIspOutFormat) \
    OTHER(CameraSetStrobeMode) \
    OTHER(CameraGetStrobeMode) \
    OTHER(CameraSetStrobeDelayTime) \
    OTHER(CameraGetStrobeDelayTime) \
    OTHER(CameraSetStrobePulseWidth) \
    OTHER(CameraGetStrobePulseWidth) \
    OTHER(CameraSetStrobePolarity) \
    OTHER(CameraGetStrobePolarity) \
    OTHER(CameraSetExtTrigSignalType) \
    OTHER(CameraGetExtTrigSignalType) \
    OTHER(CameraSetExtTrigShutterType) \
    OTHER(CameraGetExtTrigShutterType) \
    OTHER(CameraSetExtTrigDelayTime) \
    OTHER(CameraGetExtTrigDelayTime) \
    OTHER(CameraSetExtTrigJitterTime) \
    OTHER(CameraGetExtTrigJitterTime) \
    OTHER(CameraGetExtTrigCapability) \
    OTHER(CameraPauseLevelTrigger) \
    OTHER(CameraGetErrorString) \
    OTHER(CameraGetCapabilityEx2) \
    OTHER(CameraGetImageBufferEx2) \
    OTHER(CameraGetImageBufferEx3) \
    OTHER(CameraReConnect) \
    CALLED(CameraConnectTest) \
    OTHER(CameraSetLedEnable) \
    OTHER(CameraGetLedEnable) \
    OTHER(CameraSetLedOnOff) \
    OTHER(CameraGetLedOnOff) \
    OTHER(CameraSetLedDuration) \
    OTHER(CameraGetLedDuration) \
    OTHER(CameraSetLedBrightness) \
    OTHER(CameraGetLedBrightness) \
    OTHER(CameraEnableTransferRoi) \
    OTHER(CameraSetTransferRoi) \
    OTHER(CameraGetTransferRoi) \
    CALLED(CameraAlignMalloc) \
    CALLED(CameraAlignFree) \
    OTHER(CameraSetAutoConnect) \
    OTHER(CameraGetAutoConnect) \
    OTHER(CameraGetReConnectCounts) \
    OTHER(CameraSetSingleGrabMode) \
    OTHER(CameraGetSingleGrabMode) \
    OTHER(CameraRestartGrab) \
    OTHER(CameraDrawText) \
    OTHER(CameraGigeGetIp) \
    OTHER(CameraGigeSetIp) \
    OTHER(CameraGigeGetMac) \
    OTHER(CameraEnableFastResponse) \
    OTHER(CameraSetCorrectDeadPixel) \
    OTHER(CameraGetCorrectDeadPixel) \
    OTHER(CameraFlatFieldingCorrectSetEnable) \
    OTHER(CameraFlatFieldingCorrectGetEnable) \
    OTHER(CameraFlatFieldingCorrectSetParameter) \
    OTHER(CameraFlatFieldingCorrectSaveParameterToFile) \
    OTHER(CameraFlatFieldingCorrectLoadParameterFromFile) \
    OTHER(CameraCommonCall) \
    OTHER(CameraSetDenoise3DParams) \
    OTHER(CameraGetDenoise3DParams) \
    OTHER(CameraManualDenoise3D) \
    OTHER(CameraCustomizeDeadPixels) \
    OTHER(CameraReadDeadPixels) \
    OTHER(CameraAddDeadPixels) \
    OTHER(CameraRemoveDeadPixels) \
    OTHER(CameraRemoveAllDeadPixels) \
    OTHER(CameraSaveDeadPixels) \
    OTHER(CameraSaveDeadPixelsToFile) \
    OTHER(CameraLoadDeadPixelsFromFile) \
    CALLED(CameraGetImageBufferPriority) \
    OTHER(CameraGetImageBufferPriorityEx) \
    OTHER(CameraGetImageBufferPriorityEx2) \
    OTHER(CameraGetImageBufferPriorityEx3) \
    OTHER(CameraClearBuffer) \
    OTHER(CameraSoftTriggerEx) \
    OTHER(CameraSetHDR) \
    OTHER(CameraGetHDR) \
    OTHER(CameraGetFrameID) \
    OTHER(CameraGetFrameTimeStamp) \
    OTHER(CameraSetHDRGainMode) \
    OTHER(CameraGetHDRGainMode) \
    OTHER(CameraCreateDIBitmap) \
    OTHER(CameraDrawFrameBuffer) \
    OTHER(CameraFlipFrameBuffer) \
    OTHER(CameraConvertFrameBufferFormat) \
    OTHER(CameraSetConnectionStatusCallback) \
    OTHER(CameraSetLightingControllerMode) \
    OTHER(CameraSetLightingControllerState) \
    OTHER(CameraSetFrameResendCount) \
    OTHER(CameraGetEyeCount) \
    OTHER(CameraMultiEyeImageProcess) \
    OTHER(CameraGrabber_CreateFromDevicePage) \
    OTHER(CameraGrabber_CreateByIndex) \
    OTHER(CameraGrabber_CreateByName) \
    OTHER(CameraGrabber_Create) \
    OTHER(CameraGrabber_Destroy) \
    OTHER(CameraGrabber_SetHWnd) \
    OTHER(CameraGrabber_SetPriority) \
    OTHER(CameraGrabber_StartLive) \
    OTHER(CameraGrabber_StopLive) \
    OTHER(CameraGrabber_SaveImage) \
    OTHER(CameraGrabber_SaveImageAsync) \
    OTHER(CameraGrabber_SaveImageAsyncEx) \
    OTHER(CameraGrabber_SetSaveImageCompleteCallback) \
    OTHER(CameraGrabber_SetFrameListener) \
    OTHER(CameraGrabber_SetRawCallback) \
    OTHER(CameraGrabber_SetRGBCallback) \
    OTHER(CameraGrabber_GetCameraHandle) \
    OTHER(CameraGrabber_GetStat) \
    OTHER(CameraGrabber_GetCameraDevInfo) \
    OTHER(CameraImage_Create) \
    OTHER(CameraImage_Destroy) \
    OTHER(CameraImage_GetData) \
    OTHER(CameraImage_GetUserData) \
    OTHER(CameraImage_SetUserData) \
    OTHER(CameraImage_IsEmpty) \
    OTHER(CameraImage_Draw) \
    OTHER(CameraImage_BitBlt) \
    OTHER(CameraImage_SaveAsBmp) \
    OTHER(CameraImage_SaveAsJpeg) \
    OTHER(CameraImage_SaveAsPng) \
    OTHER(CameraImage_SaveAsRaw)
// clang-format on

}  // namespace telvarra::vendor::mindvision

#endif
