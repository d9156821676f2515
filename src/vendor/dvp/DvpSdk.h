// The Do3think DVP2 camera SDK (DVPCamera64.dll / libdvp.so) as its published headers define it:
// the records and constants we use and the signatures of the functions we call, declared by us
// from the vendor ABI notes. Standard headers only: the driver and the SDK simulator both build
// on it. No record holds a `long` and none is packed, so Windows x64 and Linux x86_64 share
// every layout. Success is 1 for every call.
#ifndef TELVARRA_VENDOR_DVP_DVPSDK_H
#define TELVARRA_VENDOR_DVP_DVPSDK_H

#include <cstddef>
#include <cstdint>

namespace telvarra::vendor::dvp {

using dvpStatus = std::int32_t;  // a C enum: four bytes, signed
using dvpHandle = std::uint32_t;  // a number, not a pointer; may come back after a close
using dvpUint32 = std::uint32_t;
using dvpInt32 = std::int32_t;
using dvpUint64 = std::uint64_t;
using dvpStr = const char*;
using dvpEnum32 = std::int32_t;  // every vendor enumeration is four bytes

static_assert(sizeof(bool) == 1, "the vendor's bool parameters are single bytes");

// ---- Status codes: 1 is success, above 1 warnings, below 1 errors. ----

constexpr dvpStatus DVP_STATUS_OK = 1;
constexpr dvpStatus DVP_STATUS_FAILED = 0;
constexpr dvpStatus DVP_STATUS_NOT_SUPPORTED = -2;
constexpr dvpStatus DVP_STATUS_PARAMETER_INVALID = -4;
constexpr dvpStatus DVP_STATUS_PARAMETER_OUT_OF_BOUND = -5;
constexpr dvpStatus DVP_STATUS_UNPLAY = -9;
constexpr dvpStatus DVP_STATUS_NOT_STARTED = -10;
constexpr dvpStatus DVP_STATUS_INVALID_HANDLE = -13;
constexpr dvpStatus DVP_STATUS_IN_AUTO = -30;
constexpr dvpStatus DVP_STATUS_TIME_OUT = -1000;
constexpr dvpStatus DVP_STATUS_NO_DEVICE_FOUND = -1100;
constexpr dvpStatus DVP_STATUS_DEVICE_IS_OPENED = -1102;
constexpr dvpStatus DVP_STATUS_DEVICE_IS_CLOSED = -1103;
constexpr dvpStatus DVP_STATUS_DEVICE_IS_DISCONNECTED = -1104;
constexpr dvpStatus DVP_STATUS_DEVICE_IS_STARTED = -1106;
constexpr dvpStatus DVP_STATUS_DEVICE_IS_STOPPED = -1107;
constexpr dvpStatus DVP_STATUS_GRAB_FAILED = -1600;

// ---- Enumerations. ----

constexpr dvpEnum32 STATE_STOPED = 0;  // dvpStreamState, the vendor's spelling
constexpr dvpEnum32 STATE_STARTED = 2;

constexpr dvpEnum32 OPEN_OFFLINE = 0;  // dvpOpenMode, bit flags
constexpr dvpEnum32 OPEN_NORMAL = 1;

constexpr dvpEnum32 AE_MODE_AE_AG = 0;  // dvpAeMode
constexpr dvpEnum32 AE_MODE_AG_AE = 1;
constexpr dvpEnum32 AE_MODE_AE_ONLY = 2;
constexpr dvpEnum32 AE_MODE_AG_ONLY = 3;

constexpr dvpEnum32 AE_OP_OFF = 0;  // dvpAeOperation
constexpr dvpEnum32 AE_OP_ONCE = 1;
constexpr dvpEnum32 AE_OP_CONTINUOUS = 2;

// dvpImageFormat: the format of a delivered frame (dvpFrame::format).
constexpr dvpEnum32 FORMAT_MONO = 0;
constexpr dvpEnum32 FORMAT_BAYER_BG = 1;
constexpr dvpEnum32 FORMAT_BAYER_GB = 2;
constexpr dvpEnum32 FORMAT_BAYER_GR = 3;
constexpr dvpEnum32 FORMAT_BAYER_RG = 4;
constexpr dvpEnum32 FORMAT_BGR24 = 10;
constexpr dvpEnum32 FORMAT_BGR32 = 11;
constexpr dvpEnum32 FORMAT_RGB24 = 14;
constexpr dvpEnum32 FORMAT_RGB32 = 15;

// dvpStreamFormat: what the sensor sends and what the SDK's processing hands on. Mono output is
// S_MONO8 here but FORMAT_MONO in the frames it gives.
constexpr dvpEnum32 S_RAW8 = 0;
constexpr dvpEnum32 S_BGR24 = 10;
constexpr dvpEnum32 S_RGB24 = 14;
constexpr dvpEnum32 S_MONO8 = 30;

constexpr dvpEnum32 BITS_8 = 0;  // dvpBits

// dvpSensorPixel: the sensor's colour filter.
constexpr dvpEnum32 SENSOR_PIXEL_MONO = 0;
constexpr dvpEnum32 SENSOR_PIXEL_BAYER_RG = 1;
constexpr dvpEnum32 SENSOR_PIXEL_BAYER_GB = 2;
constexpr dvpEnum32 SENSOR_PIXEL_BAYER_GR = 3;
constexpr dvpEnum32 SENSOR_PIXEL_BAYER_BG = 4;

// ---- Records. Texts are NUL-terminated char arrays. ----

// One camera of the last refresh. OriginalSerialNumber exists from SDK 2.21 on; in 2.16 its bytes
// are reserved (empty).
struct dvpCameraInfo {
    char Vendor[64];
    char Manufacturer[64];
    char Model[64];
    char Family[64];
    char LinkName[64];
    char SensorInfo[64];
    char HardwareVersion[64];
    char FirmwareVersion[64];
    char KernelVersion[64];
    char DscamVersion[64];
    char FriendlyName[64];
    char PortInfo[64];
    char SerialNumber[64];
    char CameraInfo[128];
    char UserID[128];
    char OriginalSerialNumber[64];
    char reserved[64];
};

// A delivered frame, as SDK 2.21 lays out its version-dependent tail.
struct dvpFrame {
    dvpEnum32 format;  // dvpImageFormat
    dvpEnum32 bits;
    dvpUint32 uBytes;
    dvpInt32 iWidth;
    dvpInt32 iHeight;
    dvpUint64 uFrameID;
    dvpUint64 uTimestamp;
    double fExposure;
    float fAGain;
    dvpEnum32 position;
    bool bFlipHorizontalState;
    bool bFlipVerticalState;
    bool bRotateState;
    bool bRotateOpposite;
    dvpUint32 internalFlags;
    dvpUint32 internalValue;
    dvpUint64 uTriggerId;
    dvpUint64 userValue;
    dvpUint32 reserved[24];
};

struct dvpIntDescr {
    dvpInt32 iStep;
    dvpInt32 iMin;
    dvpInt32 iMax;
    dvpInt32 iDefault;
    dvpUint32 reserved[32];
};

struct dvpFloatDescr {
    float fStep;
    float fMin;
    float fMax;
    float fDefault;
    dvpUint32 reserved[32];
};

struct dvpDoubleDescr {
    double fStep;
    double fMin;
    double fMax;
    double fDefault;
    dvpUint32 reserved[32];
};

struct dvpRegionDescr {
    dvpInt32 iMinW;
    dvpInt32 iMinH;
    dvpInt32 iMaxW;
    dvpInt32 iMaxH;
    dvpInt32 iStepW;
    dvpInt32 iStepH;
    dvpUint32 reserved[32];
};

struct dvpSensorInfo {
    char descr[64];
    dvpEnum32 sensor;  // 0 CMOS, 1 CCD
    dvpEnum32 pixel;   // dvpSensorPixel
    dvpRegionDescr region;
    dvpUint32 reserved[32];
};

// Feature flags as SDK 2.21 lays them out.
struct dvpFunctionInfo {
    bool bTrigger;
    bool bHardwareIsp;
    bool bUserSet;
    bool bHflip;
    bool bVflip;
    bool bInverse;
    bool bLine;
    bool bCooler;
    bool bTemperature;
    bool bReserved3;
    dvpUint32 reserved[30];
};

struct dvpRegion {
    dvpInt32 X;
    dvpInt32 Y;
    dvpInt32 W;
    dvpInt32 H;
    dvpUint32 reserved[32];
};

static_assert(sizeof(dvpCameraInfo) == 1216 && alignof(dvpCameraInfo) == 1);
static_assert(offsetof(dvpCameraInfo, Model) == 128);
static_assert(offsetof(dvpCameraInfo, FriendlyName) == 640);
static_assert(offsetof(dvpCameraInfo, SerialNumber) == 768);
static_assert(offsetof(dvpCameraInfo, CameraInfo) == 832);
static_assert(offsetof(dvpCameraInfo, UserID) == 960);
static_assert(offsetof(dvpCameraInfo, OriginalSerialNumber) == 1088);
static_assert(offsetof(dvpCameraInfo, reserved) == 1152);
static_assert(sizeof(dvpFrame) == 184 && alignof(dvpFrame) == 8);
static_assert(offsetof(dvpFrame, uBytes) == 8);
static_assert(offsetof(dvpFrame, iWidth) == 12);
static_assert(offsetof(dvpFrame, iHeight) == 16);
static_assert(offsetof(dvpFrame, uFrameID) == 24);
static_assert(offsetof(dvpFrame, uTimestamp) == 32);
static_assert(offsetof(dvpFrame, fExposure) == 40);
static_assert(offsetof(dvpFrame, fAGain) == 48);
static_assert(offsetof(dvpFrame, position) == 52);
static_assert(offsetof(dvpFrame, bFlipHorizontalState) == 56);
static_assert(offsetof(dvpFrame, internalFlags) == 60);
static_assert(offsetof(dvpFrame, internalValue) == 64);
static_assert(offsetof(dvpFrame, uTriggerId) == 72);
static_assert(offsetof(dvpFrame, reserved) == 88);
static_assert(sizeof(dvpIntDescr) == 144 && offsetof(dvpIntDescr, iMax) == 8);
static_assert(sizeof(dvpFloatDescr) == 144 && offsetof(dvpFloatDescr, fMax) == 8);
static_assert(sizeof(dvpDoubleDescr) == 160 && alignof(dvpDoubleDescr) == 8);
static_assert(offsetof(dvpDoubleDescr, fMin) == 8 && offsetof(dvpDoubleDescr, fMax) == 16);
static_assert(sizeof(dvpRegionDescr) == 152);
static_assert(sizeof(dvpSensorInfo) == 352 && offsetof(dvpSensorInfo, pixel) == 68);
static_assert(offsetof(dvpSensorInfo, region) == 72 && offsetof(dvpSensorInfo, reserved) == 224);
static_assert(sizeof(dvpFunctionInfo) == 132 && offsetof(dvpFunctionInfo, reserved) == 12);
static_assert(sizeof(dvpRegion) == 144);

// ---- The functions, with the vendor's signatures. ----
//
// X(return type, exported name, parameter list) for the functions we call; the simulator
// declares these exports from this list.
#define TELVARRA_DVP_FUNCTIONS(X)                                                              \
    X(dvpStatus, dvpStart, (dvpHandle handle))                                                 \
    X(dvpStatus, dvpStop, (dvpHandle handle))                                                  \
    X(dvpStatus, dvpIsValid, (dvpHandle handle, bool* isValid))                                \
    X(dvpStatus, dvpRefresh, (dvpUint32 * count))                                              \
    X(dvpStatus, dvpEnum, (dvpUint32 index, dvpCameraInfo * info))                             \
    X(dvpStatus, dvpOpenByUserId, (dvpStr userId, dvpEnum32 mode, dvpHandle * handle))         \
    X(dvpStatus, dvpGetStreamState, (dvpHandle handle, dvpEnum32 * state))                     \
    X(dvpStatus, dvpSetTriggerState, (dvpHandle handle, bool on))                              \
    X(dvpStatus, dvpGetTriggerState, (dvpHandle handle, bool* on))                             \
    X(dvpStatus, dvpGetTargetFormat, (dvpHandle handle, dvpEnum32 * format))                   \
    X(dvpStatus, dvpSetTargetFormat, (dvpHandle handle, dvpEnum32 format))                     \
    X(dvpStatus, dvpGetExposureDescr, (dvpHandle handle, dvpDoubleDescr * descriptor))         \
    X(dvpStatus, dvpGetAnalogGainDescr, (dvpHandle handle, dvpFloatDescr * descriptor))        \
    X(dvpStatus, dvpGetAeTargetDescr, (dvpHandle handle, dvpIntDescr * descriptor))            \
    X(dvpStatus, dvpGetSensorInfo, (dvpHandle handle, dvpSensorInfo * info))                   \
    X(dvpStatus, dvpClose, (dvpHandle handle))                                                 \
    X(dvpStatus, dvpSetAeOperation, (dvpHandle handle, dvpEnum32 operation))                   \
    X(dvpStatus, dvpGetAeOperation, (dvpHandle handle, dvpEnum32 * operation))                 \
    X(dvpStatus, dvpGetAeTarget, (dvpHandle handle, dvpInt32 * target))                        \
    X(dvpStatus, dvpSetAeTarget, (dvpHandle handle, dvpInt32 target))                          \
    X(dvpStatus, dvpSetAnalogGain, (dvpHandle handle, float gain))                             \
    X(dvpStatus, dvpGetAnalogGain, (dvpHandle handle, float* gain))                            \
    X(dvpStatus, dvpGetExposure, (dvpHandle handle, double* microseconds))                     \
    X(dvpStatus, dvpSetExposure, (dvpHandle handle, double microseconds))                      \
    X(dvpStatus, dvpGetFrame,                                                                  \
      (dvpHandle handle, dvpFrame * frame, void** buffer, dvpUint32 timeoutMs))                \
    X(dvpStatus, dvpIsOnline, (dvpHandle handle, bool* online))

// The function type of each, by name: DvpSignatures::dvpStart is dvpStatus(dvpHandle).
struct DvpSignatures {
#define TELVARRA_DVP_SIGNATURE(returnType, name, parameters) using name = returnType parameters;
    TELVARRA_DVP_FUNCTIONS(TELVARRA_DVP_SIGNATURE)
#undef TELVARRA_DVP_SIGNATURE
};

// The 37 names a DVP2 runtime must export for this library, in binding order: CALLED(name) for
// the functions above, OTHER(name) for those only looked up. SDK 2.16 and 2.21 runtimes lack the
// last four enumeration helpers (dvpGetEnumValue to dvpGetAllEnumValue).
// clang-format off
#define TELVARRA_DVP_LOAD_LIST(CALLED, OTHER) \
    CALLED(dvpStart) \
    CALLED(dvpStop) \
    CALLED(dvpIsValid) \
    CALLED(dvpRefresh) \
    CALLED(dvpEnum) \
    CALLED(dvpOpenByUserId) \
    CALLED(dvpGetStreamState) \
    CALLED(dvpSetTriggerState) \
    CALLED(dvpGetTriggerState) \
    OTHER(dvpGetSourceFormat) \
    OTHER(dvpSetSourceFormat) \
    CALLED(dvpGetTargetFormat) \
    CALLED(dvpSetTargetFormat) \
    CALLED(dvpGetExposureDescr) \
    CALLED(dvpGetAnalogGainDescr) \
    CALLED(dvpGetAeTargetDescr) \
    CALLED(dvpGetSensorInfo) \
    OTHER(dvpGetFunctionInfo) \
    CALLED(dvpClose) \
    OTHER(dvpSetAeMode) \
    OTHER(dvpGetAeMode) \
    CALLED(dvpSetAeOperation) \
    CALLED(dvpGetAeOperation) \
    CALLED(dvpGetAeTarget) \
    CALLED(dvpSetAeTarget) \
    CALLED(dvpSetAnalogGain) \
    CALLED(dvpGetAnalogGain) \
    CALLED(dvpGetExposure) \
    CALLED(dvpSetExposure) \
    OTHER(dvpGetRoi) \
    OTHER(dvpSetRoi) \
    CALLED(dvpGetFrame) \
    OTHER(dvpGetEnumValue) \
    OTHER(dvpSetEnumValue) \
    OTHER(dvpGetEnumValueEx) \
    OTHER(dvpGetAllEnumValue) \
    CALLED(dvpIsOnline)
// clang-format on

}  // namespace telvarra::vendor::dvp

#endif
