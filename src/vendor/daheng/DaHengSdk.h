// The DaHeng Imaging Galaxy SDK (GxIAPI 2.x) as its published headers define it: the records and
// constants we use and the signatures of the functions we call, declared by us from the vendor
// ABI notes. Standard headers only: the driver and the SDK simulator both build on it. Every
// record has the same layout on Windows x64 and Linux x86_64 (none holds a `long`).
#ifndef TELVARRA_VENDOR_DAHENG_DAHENGSDK_H
#define TELVARRA_VENDOR_DAHENG_DAHENGSDK_H

#include <cstddef>
#include <cstdint>

namespace telvarra::vendor::daheng {

// ---- Status codes (GX_STATUS, a 32-bit int): 0 is success. ----

using GX_STATUS = std::int32_t;
constexpr GX_STATUS GX_STATUS_SUCCESS = 0;
constexpr GX_STATUS GX_STATUS_ERROR = -1;
constexpr GX_STATUS GX_STATUS_NOT_FOUND_TL = -2;
constexpr GX_STATUS GX_STATUS_NOT_FOUND_DEVICE = -3;
constexpr GX_STATUS GX_STATUS_OFFLINE = -4;
constexpr GX_STATUS GX_STATUS_INVALID_PARAMETER = -5;
constexpr GX_STATUS GX_STATUS_INVALID_HANDLE = -6;
constexpr GX_STATUS GX_STATUS_INVALID_CALL = -7;
constexpr GX_STATUS GX_STATUS_INVALID_ACCESS = -8;
constexpr GX_STATUS GX_STATUS_NEED_MORE_BUFFER = -9;
constexpr GX_STATUS GX_STATUS_ERROR_TYPE = -10;
constexpr GX_STATUS GX_STATUS_OUT_OF_RANGE = -11;
constexpr GX_STATUS GX_STATUS_NOT_IMPLEMENTED = -12;
constexpr GX_STATUS GX_STATUS_NOT_INIT_API = -13;
constexpr GX_STATUS GX_STATUS_TIMEOUT = -14;

// ---- Enumerations (32-bit). ----

constexpr std::int32_t GX_OPEN_SN = 0;
constexpr std::int32_t GX_OPEN_IP = 1;
constexpr std::int32_t GX_OPEN_MAC = 2;
constexpr std::int32_t GX_OPEN_INDEX = 3;
constexpr std::int32_t GX_OPEN_USERID = 4;

constexpr std::int32_t GX_ACCESS_READONLY = 2;
constexpr std::int32_t GX_ACCESS_CONTROL = 3;
constexpr std::int32_t GX_ACCESS_EXCLUSIVE = 4;

constexpr std::int32_t GX_FRAME_STATUS_SUCCESS = 0;
constexpr std::int32_t GX_FRAME_STATUS_INCOMPLETE = -1;

constexpr std::int32_t GX_DEVICE_CLASS_USB2 = 1;
constexpr std::int32_t GX_DEVICE_CLASS_GEV = 2;
constexpr std::int32_t GX_DEVICE_CLASS_U3V = 3;

constexpr std::int32_t GX_ACCESS_STATUS_READWRITE = 1;

constexpr std::int64_t GX_EXPOSURE_AUTO_OFF = 0;
constexpr std::int64_t GX_EXPOSURE_AUTO_CONTINUOUS = 1;
constexpr std::int64_t GX_EXPOSURE_AUTO_ONCE = 2;

constexpr std::int64_t GX_ACQ_MODE_SINGLE_FRAME = 0;
constexpr std::int64_t GX_ACQ_MODE_MULITI_FRAME = 1;
constexpr std::int64_t GX_ACQ_MODE_CONTINUOUS = 2;

constexpr std::int64_t GX_TRIGGER_MODE_OFF = 0;
constexpr std::int64_t GX_TRIGGER_MODE_ON = 1;

// Pixel formats (GX_PIXEL_FORMAT_ENTRY): the GenICam codes.
constexpr std::int64_t GX_PIXEL_FORMAT_MONO8 = 0x01080001;
constexpr std::int64_t GX_PIXEL_FORMAT_BAYER_GR8 = 0x01080008;
constexpr std::int64_t GX_PIXEL_FORMAT_BAYER_RG8 = 0x01080009;
constexpr std::int64_t GX_PIXEL_FORMAT_BAYER_GB8 = 0x0108000A;
constexpr std::int64_t GX_PIXEL_FORMAT_BAYER_BG8 = 0x0108000B;
constexpr std::int64_t GX_PIXEL_FORMAT_RGB8 = 0x02180014;
constexpr std::int64_t GX_PIXEL_FORMAT_BGR8 = 0x02180015;
constexpr std::int64_t GX_PIXEL_FORMAT_RGBA8 = 0x02200016;
constexpr std::int64_t GX_PIXEL_FORMAT_BGRA8 = 0x02200017;

// ---- Records. Texts are NUL-terminated within their fields. ----

// One listed device, as GXGetAllDeviceBaseInfo copies it.
struct GX_DEVICE_BASE_INFO {
    char szVendorName[32];
    char szModelName[32];
    char szSN[32];  // at most 31 characters and the terminator
    char szDisplayName[132];
    char szDeviceID[68];
    char szUserID[68];
    std::int32_t accessStatus;  // GX_ACCESS_STATUS
    std::int32_t deviceClass;   // GX_DEVICE_CLASS
    char reserved[300];
};

struct GX_OPEN_PARAM {
    char* pszContent;  // not const in the vendor's record; never empty
    std::int32_t openMode;
    std::int32_t accessMode;
};

// Filled by GXGetImage into the buffer the caller supplies in pImgBuf.
struct GX_FRAME_DATA {
    std::int32_t nStatus;  // GX_FRAME_STATUS: a frame may come back incomplete
    void* pImgBuf;
    std::int32_t nWidth;
    std::int32_t nHeight;
    std::int32_t nPixelFormat;
    std::int32_t nImgSize;
    std::uint64_t nFrameID;
    std::uint64_t nTimestamp;
    unsigned char tail[16];  // reserved or library-internal, by version
};

struct GX_INT_VALUE {
    std::int64_t nCurValue;
    std::int64_t nMin;
    std::int64_t nMax;
    std::int64_t nInc;
    std::int32_t reserved[16];
};

struct GX_FLOAT_VALUE {
    double dCurValue;
    double dMin;
    double dMax;
    double dInc;
    bool bIncIsValid;
    char szUnit[8];
    std::int32_t reserved[16];
};

struct GX_ENUM_VALUE_DES {
    std::int64_t nCurValue;
    char szSymbolic[128];
    std::int32_t reserved[4];
};

constexpr std::size_t GX_MAX_ENUM_ENTRIES = 128;

// The whole record, not a plain integer: the SDK writes all of it.
struct GX_ENUM_VALUE {
    GX_ENUM_VALUE_DES stCurValue;
    std::uint32_t nSupportedNum;
    GX_ENUM_VALUE_DES nArrySupportedValue[GX_MAX_ENUM_ENTRIES];
    std::int32_t reserved[16];
};

static_assert(sizeof(GX_DEVICE_BASE_INFO) == 672 && alignof(GX_DEVICE_BASE_INFO) == 4);
static_assert(offsetof(GX_DEVICE_BASE_INFO, szModelName) == 32);
static_assert(offsetof(GX_DEVICE_BASE_INFO, szSN) == 64);
static_assert(offsetof(GX_DEVICE_BASE_INFO, szDisplayName) == 96);
static_assert(offsetof(GX_DEVICE_BASE_INFO, szDeviceID) == 228);
static_assert(offsetof(GX_DEVICE_BASE_INFO, szUserID) == 296);
static_assert(offsetof(GX_DEVICE_BASE_INFO, accessStatus) == 364);
static_assert(offsetof(GX_DEVICE_BASE_INFO, deviceClass) == 368);
static_assert(sizeof(GX_OPEN_PARAM) == 16);
static_assert(offsetof(GX_OPEN_PARAM, openMode) == 8);
static_assert(offsetof(GX_OPEN_PARAM, accessMode) == 12);
static_assert(sizeof(GX_FRAME_DATA) == 64 && alignof(GX_FRAME_DATA) == 8);
static_assert(offsetof(GX_FRAME_DATA, pImgBuf) == 8);
static_assert(offsetof(GX_FRAME_DATA, nWidth) == 16);
static_assert(offsetof(GX_FRAME_DATA, nHeight) == 20);
static_assert(offsetof(GX_FRAME_DATA, nPixelFormat) == 24);
static_assert(offsetof(GX_FRAME_DATA, nImgSize) == 28);
static_assert(offsetof(GX_FRAME_DATA, nFrameID) == 32);
static_assert(offsetof(GX_FRAME_DATA, nTimestamp) == 40);
static_assert(sizeof(GX_INT_VALUE) == 96);
static_assert(offsetof(GX_INT_VALUE, nMin) == 8);
static_assert(offsetof(GX_INT_VALUE, nMax) == 16);
static_assert(offsetof(GX_INT_VALUE, nInc) == 24);
static_assert(sizeof(GX_FLOAT_VALUE) == 112);
static_assert(offsetof(GX_FLOAT_VALUE, dMin) == 8);
static_assert(offsetof(GX_FLOAT_VALUE, dMax) == 16);
static_assert(offsetof(GX_FLOAT_VALUE, bIncIsValid) == 32);
static_assert(offsetof(GX_FLOAT_VALUE, szUnit) == 33);
static_assert(offsetof(GX_FLOAT_VALUE, reserved) == 44);
static_assert(sizeof(GX_ENUM_VALUE_DES) == 152);
static_assert(offsetof(GX_ENUM_VALUE_DES, szSymbolic) == 8);
static_assert(offsetof(GX_ENUM_VALUE_DES, reserved) == 136);
static_assert(sizeof(GX_ENUM_VALUE) == 19680);
static_assert(offsetof(GX_ENUM_VALUE, nSupportedNum) == 152);
static_assert(offsetof(GX_ENUM_VALUE, nArrySupportedValue) == 160);
static_assert(offsetof(GX_ENUM_VALUE, reserved) == 19616);

// ---- The functions we call, with the vendor's signatures. ----
//
// X(return type, exported name, parameter list). Handles are void*; a device handle serves as the
// port handle of the feature calls. The simulator declares these exports from this list.
#define TELVARRA_DAHENG_FUNCTIONS(X)                                                         \
    X(GX_STATUS, GXInitLib, (void))                                                          \
    X(GX_STATUS, GXCloseLib, (void))                                                         \
    X(GX_STATUS, GXUpdateAllDeviceList, (std::uint32_t * count, std::uint32_t timeoutMs))    \
    X(GX_STATUS, GXOpenDevice, (GX_OPEN_PARAM * param, void** device))                       \
    X(GX_STATUS, GXCloseDevice, (void* device))                                              \
    X(GX_STATUS, GXFeatureSave, (void* port, const char* filePath))                          \
    X(GX_STATUS, GXGetIntValue, (void* port, const char* name, GX_INT_VALUE* value))         \
    X(GX_STATUS, GXSetIntValue, (void* port, const char* name, std::int64_t value))          \
    X(GX_STATUS, GXGetEnumValue, (void* port, const char* name, GX_ENUM_VALUE* value))       \
    X(GX_STATUS, GXSetEnumValue, (void* port, const char* name, std::int64_t value))         \
    X(GX_STATUS, GXSetEnumValueByString, (void* port, const char* name, const char* symbol)) \
    X(GX_STATUS, GXGetFloatValue, (void* port, const char* name, GX_FLOAT_VALUE* value))     \
    X(GX_STATUS, GXSetFloatValue, (void* port, const char* name, double value))              \
    X(GX_STATUS, GXSetCommandValue, (void* port, const char* name))                          \
    X(GX_STATUS, GXGetImage, (void* device, GX_FRAME_DATA* frame, std::uint32_t timeoutMs))  \
    X(GX_STATUS, GXGetAllDeviceBaseInfo, (GX_DEVICE_BASE_INFO * devices, std::size_t * bytes))

// The function type of each, by name: DaHengSignatures::GXInitLib is GX_STATUS(void).
struct DaHengSignatures {
#define TELVARRA_DAHENG_SIGNATURE(returnType, name, parameters) using name = returnType parameters;
    TELVARRA_DAHENG_FUNCTIONS(TELVARRA_DAHENG_SIGNATURE)
#undef TELVARRA_DAHENG_SIGNATURE
};

// The names the library binds but never calls: the simulator exports them too, answering "not
// implemented".
// clang-format off
#define TELVARRA_DAHENG_UNCALLED_NAMES(N) \
    N(GXSetLogType) \
    N(GXGetLogType) \
    N(GXGetLastError) \
    N(GXUpdateAllDeviceListEx) \
    N(GXGetInterfaceNum) \
    N(GXGetInterfaceInfo) \
    N(GXGetInterfaceHandle) \
    N(GXGetDeviceInfo) \
    N(GXGetParentInterfaceFromDev) \
    N(GXGetLocalDeviceHandleFromDev) \
    N(GXGetDataStreamNumFromDev) \
    N(GXGetDataStreamHandleFromDev) \
    N(GXGetDevicePersistentIpAddress) \
    N(GXSetDevicePersistentIpAddress) \
    N(GXGigEIpConfiguration) \
    N(GXGigEForceIp) \
    N(GXGigEResetDevice) \
    N(GXGetPayLoadSize) \
    N(GXFeatureLoad) \
    N(GXFeatureSaveW) \
    N(GXFeatureLoadW) \
    N(GXGetNodeAccessMode) \
    N(GXGetBoolValue) \
    N(GXSetBoolValue) \
    N(GXGetStringValue) \
    N(GXSetStringValue) \
    N(GXGetRegisterLength) \
    N(GXGetRegisterValue) \
    N(GXSetRegisterValue) \
    N(GXReadPort) \
    N(GXWritePort) \
    N(GXReadPortStacked) \
    N(GXWritePortStacked) \
    N(GXGetOptimalPacketSize) \
    N(GXSetAcqusitionBufferNumber) \
    N(GXRegisterCaptureCallback) \
    N(GXUnregisterCaptureCallback) \
    N(GXFlushQueue) \
    N(GXRegisterDeviceOfflineCallback) \
    N(GXUnregisterDeviceOfflineCallback) \
    N(GXFlushEvent) \
    N(GXGetEventNumInQueue) \
    N(GXRegisterFeatureCallbackByString) \
    N(GXUnregisterFeatureCallbackByString) \
    N(GXUpdateDeviceList)
// clang-format on

}  // namespace telvarra::vendor::daheng

#endif
