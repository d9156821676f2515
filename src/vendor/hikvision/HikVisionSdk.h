// The HikVision (HIKROBOT MVS) camera SDK as its published headers define it: the records and
// constants we use and the signatures of the functions we bind, declared by us from the vendor
// ABI notes. Standard headers only: the driver and the SDK simulator both build on it.
//
// Layouts are the 4.5+ ones on x86_64. The one platform difference is the pixel-type enum, which
// MSVC makes 4 bytes and gcc 8 bytes (its values run from -1 to above 0x7FFFFFFF); the records
// holding it are templates on that storage type, both forms are pinned below on every platform,
// and the aliases pick the target's form.
#ifndef TELVARRA_VENDOR_HIKVISION_HIKVISIONSDK_H
#define TELVARRA_VENDOR_HIKVISION_HIKVISIONSDK_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace telvarra::vendor::hikvision {

// ---- Status codes: 0 is success, failures are 0x8000xxxx (negative as int). ----

constexpr int mvStatus(std::uint32_t code) { return static_cast<int>(code); }

constexpr int MV_OK = 0;
constexpr int MV_E_HANDLE = mvStatus(0x80000000u);
constexpr int MV_E_SUPPORT = mvStatus(0x80000001u);
constexpr int MV_E_BUFOVER = mvStatus(0x80000002u);
constexpr int MV_E_CALLORDER = mvStatus(0x80000003u);
constexpr int MV_E_PARAMETER = mvStatus(0x80000004u);
constexpr int MV_E_RESOURCE = mvStatus(0x80000006u);
constexpr int MV_E_NODATA = mvStatus(0x80000007u);
constexpr int MV_E_PRECONDITION = mvStatus(0x80000008u);
constexpr int MV_E_VERSION = mvStatus(0x80000009u);
constexpr int MV_E_NOENOUGH_BUF = mvStatus(0x8000000Au);
constexpr int MV_E_ABNORMAL_IMAGE = mvStatus(0x8000000Bu);
constexpr int MV_E_LOAD_LIBRARY = mvStatus(0x8000000Cu);
constexpr int MV_E_NOOUTBUF = mvStatus(0x8000000Du);
constexpr int MV_E_UNKNOW = mvStatus(0x800000FFu);
constexpr int MV_E_GC_GENERIC = mvStatus(0x80000100u);
constexpr int MV_E_GC_ARGUMENT = mvStatus(0x80000101u);
constexpr int MV_E_GC_RANGE = mvStatus(0x80000102u);
constexpr int MV_E_GC_PROPERTY = mvStatus(0x80000103u);
constexpr int MV_E_GC_RUNTIME = mvStatus(0x80000104u);
constexpr int MV_E_GC_LOGICAL = mvStatus(0x80000105u);
constexpr int MV_E_GC_ACCESS = mvStatus(0x80000106u);
constexpr int MV_E_GC_TIMEOUT = mvStatus(0x80000107u);
constexpr int MV_E_GC_DYNAMICCAST = mvStatus(0x80000108u);
constexpr int MV_E_GC_UNKNOW = mvStatus(0x800001FFu);
constexpr int MV_E_NOT_IMPLEMENTED = mvStatus(0x80000200u);
constexpr int MV_E_INVALID_ADDRESS = mvStatus(0x80000201u);
constexpr int MV_E_WRITE_PROTECT = mvStatus(0x80000202u);
constexpr int MV_E_ACCESS_DENIED = mvStatus(0x80000203u);
constexpr int MV_E_BUSY = mvStatus(0x80000204u);
constexpr int MV_E_PACKET = mvStatus(0x80000205u);
constexpr int MV_E_NETER = mvStatus(0x80000206u);
constexpr int MV_E_IP_CONFLICT = mvStatus(0x80000221u);
constexpr int MV_E_USB_READ = mvStatus(0x80000300u);
constexpr int MV_E_USB_WRITE = mvStatus(0x80000301u);
constexpr int MV_E_USB_DEVICE = mvStatus(0x80000302u);
constexpr int MV_E_USB_GENICAM = mvStatus(0x80000303u);
constexpr int MV_E_USB_BANDWIDTH = mvStatus(0x80000304u);
constexpr int MV_E_USB_DRIVER = mvStatus(0x80000305u);
constexpr int MV_E_USB_UNKNOW = mvStatus(0x800003FFu);

// ---- Transport layers (nTLayerType, and the EnumDevices mask). ----

constexpr std::uint32_t MV_UNKNOW_DEVICE = 0x0;
constexpr std::uint32_t MV_GIGE_DEVICE = 0x1;
constexpr std::uint32_t MV_1394_DEVICE = 0x2;
constexpr std::uint32_t MV_USB_DEVICE = 0x4;
constexpr std::uint32_t MV_CAMERALINK_DEVICE = 0x8;
constexpr std::uint32_t MV_VIR_GIGE_DEVICE = 0x10;
constexpr std::uint32_t MV_VIR_USB_DEVICE = 0x20;
constexpr std::uint32_t MV_GENTL_GIGE_DEVICE = 0x40;
constexpr std::uint32_t MV_GENTL_CAMERALINK_DEVICE = 0x80;
constexpr std::uint32_t MV_GENTL_CXP_DEVICE = 0x100;
constexpr std::uint32_t MV_GENTL_XOF_DEVICE = 0x200;
constexpr std::uint32_t MV_GENTL_VIR_DEVICE = 0x800;

// ---- Access modes of MV_CC_OpenDevice. ----

constexpr unsigned int MV_ACCESS_Exclusive = 1;
constexpr unsigned int MV_ACCESS_ExclusiveWithSwitch = 2;
constexpr unsigned int MV_ACCESS_Control = 3;
constexpr unsigned int MV_ACCESS_ControlWithSwitch = 4;
constexpr unsigned int MV_ACCESS_ControlSwitchEnable = 5;
constexpr unsigned int MV_ACCESS_ControlSwitchEnableWithKey = 6;
constexpr unsigned int MV_ACCESS_Monitor = 7;

// ---- Limits. ----

constexpr std::size_t MV_MAX_DEVICE_NUM = 256;
constexpr std::size_t INFO_MAX_BUFFER_SIZE = 64;
constexpr std::size_t MV_MAX_XML_SYMBOLIC_NUM = 64;

// ---- Pixel types (MvGvspPixelType values). ----

constexpr std::uint32_t PixelType_Gvsp_Mono8 = 0x01080001;
constexpr std::uint32_t PixelType_Gvsp_Mono10 = 0x01100003;
constexpr std::uint32_t PixelType_Gvsp_Mono12 = 0x01100005;
constexpr std::uint32_t PixelType_Gvsp_Mono16 = 0x01100007;
constexpr std::uint32_t PixelType_Gvsp_BayerGR8 = 0x01080008;
constexpr std::uint32_t PixelType_Gvsp_BayerRG8 = 0x01080009;
constexpr std::uint32_t PixelType_Gvsp_BayerGB8 = 0x0108000A;
constexpr std::uint32_t PixelType_Gvsp_BayerBG8 = 0x0108000B;
constexpr std::uint32_t PixelType_Gvsp_BayerRG12 = 0x01100011;
constexpr std::uint32_t PixelType_Gvsp_RGB8_Packed = 0x02180014;
constexpr std::uint32_t PixelType_Gvsp_BGR8_Packed = 0x02180015;
constexpr std::uint32_t PixelType_Gvsp_YUV422_Packed = 0x0210001F;
constexpr std::uint32_t PixelType_Gvsp_Jpeg = 0x80180001;

// The pixel-type field as the platform's compiler stores the vendor's enum.
using WindowsPixelType = std::uint32_t;
using LinuxPixelType = std::int64_t;
// The vendor DLL is built by MSVC for the Windows (LLP64) data model, where `long` has 4 bytes;
// the Linux library by gcc for LP64. The data model tells the two targets apart.
using MvGvspPixelType = std::conditional_t<sizeof(long) == 4, WindowsPixelType, LinuxPixelType>;

// "Undefined" is the enumerator -1, which the 4-byte Windows form holds as 0xFFFFFFFF.
constexpr MvGvspPixelType PixelType_Gvsp_Undefined = static_cast<MvGvspPixelType>(-1);

// ---- Other enumerations. ----

constexpr unsigned int MV_FLIP_VERTICAL = 1;
constexpr unsigned int MV_FLIP_HORIZONTAL = 2;

// The header leaves the direction open; our simulator and our camera take 90 as clockwise.
constexpr unsigned int MV_IMAGE_ROTATE_90 = 1;
constexpr unsigned int MV_IMAGE_ROTATE_180 = 2;
constexpr unsigned int MV_IMAGE_ROTATE_270 = 3;

constexpr unsigned int MV_EXPOSURE_AUTO_MODE_OFF = 0;
constexpr unsigned int MV_EXPOSURE_AUTO_MODE_ONCE = 1;
constexpr unsigned int MV_EXPOSURE_AUTO_MODE_CONTINUOUS = 2;

constexpr unsigned int MV_GAIN_MODE_OFF = 0;
constexpr unsigned int MV_GAIN_MODE_ONCE = 1;
constexpr unsigned int MV_GAIN_MODE_CONTINUOUS = 2;

constexpr unsigned int MV_TRIGGER_MODE_OFF = 0;
constexpr unsigned int MV_TRIGGER_MODE_ON = 1;

// ---- Device records. Texts are NUL-padded and a full field has no terminator. ----

struct MV_GIGE_DEVICE_INFO {
    std::uint32_t nIpCfgOption;
    std::uint32_t nIpCfgCurrent;
    std::uint32_t nCurrentIp;
    std::uint32_t nCurrentSubNetMask;
    std::uint32_t nDefultGateWay;
    unsigned char chManufacturerName[32];
    unsigned char chModelName[32];
    unsigned char chDeviceVersion[32];
    unsigned char chManufacturerSpecificInfo[48];
    unsigned char chSerialNumber[16];
    unsigned char chUserDefinedName[16];
    std::uint32_t nNetExport;
    std::uint32_t nReserved[4];
};

struct MV_USB3_DEVICE_INFO {
    unsigned char CrtlInEndPoint;
    unsigned char CrtlOutEndPoint;
    unsigned char StreamEndPoint;
    unsigned char EventEndPoint;
    std::uint16_t idVendor;
    std::uint16_t idProduct;
    std::uint32_t nDeviceNumber;
    unsigned char chDeviceGUID[INFO_MAX_BUFFER_SIZE];
    unsigned char chVendorName[INFO_MAX_BUFFER_SIZE];
    unsigned char chModelName[INFO_MAX_BUFFER_SIZE];
    unsigned char chFamilyName[INFO_MAX_BUFFER_SIZE];
    unsigned char chDeviceVersion[INFO_MAX_BUFFER_SIZE];
    unsigned char chManufacturerName[INFO_MAX_BUFFER_SIZE];
    unsigned char chSerialNumber[INFO_MAX_BUFFER_SIZE];
    unsigned char chUserDefinedName[INFO_MAX_BUFFER_SIZE];
    std::uint32_t nbcdUSB;
    std::uint32_t nDeviceAddress;
    std::uint32_t nReserved[2];
};

// The frame-grabber cameras (GenTL Camera Link, CoaXPress, 10GigE over fibre) share one layout.
struct MV_GENTL_CAMERA_INFO {
    unsigned char chInterfaceID[INFO_MAX_BUFFER_SIZE];
    unsigned char chVendorName[INFO_MAX_BUFFER_SIZE];
    unsigned char chModelName[INFO_MAX_BUFFER_SIZE];
    unsigned char chManufacturerInfo[INFO_MAX_BUFFER_SIZE];
    unsigned char chDeviceVersion[INFO_MAX_BUFFER_SIZE];
    unsigned char chSerialNumber[INFO_MAX_BUFFER_SIZE];
    unsigned char chUserDefinedName[INFO_MAX_BUFFER_SIZE];
    unsigned char chDeviceID[INFO_MAX_BUFFER_SIZE];
    std::uint32_t nReserved[7];
};
using MV_CML_DEVICE_INFO = MV_GENTL_CAMERA_INFO;
using MV_CXP_DEVICE_INFO = MV_GENTL_CAMERA_INFO;
using MV_XOF_DEVICE_INFO = MV_GENTL_CAMERA_INFO;

// The 636-byte form of 4.5+; older runtimes write only the first 572 bytes, which hold every
// member used here.
struct MV_CC_DEVICE_INFO {
    std::uint16_t nMajorVer;
    std::uint16_t nMinorVer;
    std::uint32_t nMacAddrHigh;
    std::uint32_t nMacAddrLow;
    std::uint32_t nTLayerType;
    std::uint32_t nDevTypeInfo;
    std::uint32_t nReserved[3];
    union {
        MV_GIGE_DEVICE_INFO stGigEInfo;
        MV_USB3_DEVICE_INFO stUsb3VInfo;
        MV_CML_DEVICE_INFO stCMLInfo;
        MV_CXP_DEVICE_INFO stCXPInfo;
        MV_XOF_DEVICE_INFO stXoFInfo;
        // The serial Camera Link (536) and virtual GenTL (604, 4.5+) members; unused here.
        std::uint32_t nReservedMembers[151];
    } SpecialInfo;
};

// The bytes every SDK version writes: a copy of this much is a version-proof copy.
constexpr std::size_t kDeviceInfoBytesInEveryVersion = 572;

struct MV_CC_DEVICE_INFO_LIST {
    std::uint32_t nDeviceNum;
    MV_CC_DEVICE_INFO* pDeviceInfo[MV_MAX_DEVICE_NUM];
};

// ---- Feature values. ----

struct MVCC_ENUMVALUE {
    std::uint32_t nCurValue;
    std::uint32_t nSupportedNum;
    std::uint32_t nSupportValue[MV_MAX_XML_SYMBOLIC_NUM];
    std::uint32_t nReserved[4];
};

struct MVCC_INTVALUE {
    std::uint32_t nCurValue;
    std::uint32_t nMax;
    std::uint32_t nMin;
    std::uint32_t nInc;
    std::uint32_t nReserved[4];
};

struct MVCC_INTVALUE_EX {
    std::int64_t nCurValue;
    std::int64_t nMax;
    std::int64_t nMin;
    std::int64_t nInc;
    std::uint32_t nReserved[16];
};

struct MVCC_FLOATVALUE {
    float fCurValue;
    float fMax;
    float fMin;
    std::uint32_t nReserved[4];
};

// ---- Frames and image processing: templates on the pixel-type storage. ----

template <class PixelType>
struct FrameOutInfoExRecord {
    std::uint16_t nWidth;  // the full width is in nExtendWidth when above 65535
    std::uint16_t nHeight;
    PixelType enPixelType;
    std::uint32_t nFrameNum;
    std::uint32_t nDevTimeStampHigh;
    std::uint32_t nDevTimeStampLow;
    std::uint32_t nReserved0;
    std::int64_t nHostTimeStamp;
    std::uint32_t nFrameLen;
    std::uint32_t nSecondCount;
    std::uint32_t nCycleCount;
    std::uint32_t nCycleOffset;
    float fGain;
    float fExposureTime;
    std::uint32_t nAverageBrightness;
    std::uint32_t nRed;
    std::uint32_t nGreen;
    std::uint32_t nBlue;
    std::uint32_t nFrameCounter;
    std::uint32_t nTriggerIndex;
    std::uint32_t nInput;
    std::uint32_t nOutput;
    std::uint16_t nOffsetX;
    std::uint16_t nOffsetY;
    std::uint16_t nChunkWidth;
    std::uint16_t nChunkHeight;
    std::uint32_t nLostPacket;
    std::uint32_t nUnparsedChunkNum;
    void* UnparsedChunkList;
    std::uint32_t nExtendWidth;
    std::uint32_t nExtendHeight;
    std::uint64_t nFrameLenEx;
    std::uint32_t nReserved1;
    std::uint32_t nSubImageNum;
    void* SubImageList;
    void* UserPtr;
    std::uint32_t nReserved[26];
};

template <class PixelType>
struct FrameOutRecord {
    unsigned char* pBufAddr;
    FrameOutInfoExRecord<PixelType> stFrameInfo;
    std::uint32_t nRes[16];
};

template <class PixelType>
struct PixelConvertParamExRecord {
    std::uint32_t nWidth;
    std::uint32_t nHeight;
    PixelType enSrcPixelType;
    unsigned char* pSrcData;
    std::uint32_t nSrcDataLen;
    PixelType enDstPixelType;
    unsigned char* pDstBuffer;
    std::uint32_t nDstLen;  // written by the SDK
    std::uint32_t nDstBufferSize;
    std::uint32_t nRes[4];
};

// Flip and rotate records have one layout and differ in the last field's name.
template <class PixelType>
struct FlipImageParamRecord {
    PixelType enPixelType;
    std::uint32_t nWidth;
    std::uint32_t nHeight;
    unsigned char* pSrcData;
    std::uint32_t nSrcDataLen;
    unsigned char* pDstBuf;
    std::uint32_t nDstBufLen;  // written by the SDK
    std::uint32_t nDstBufSize;
    std::uint32_t enFlipType;  // MV_FLIP_*; a 4-byte enum on both platforms
    std::uint32_t nRes[8];
};

template <class PixelType>
struct RotateImageParamRecord {
    PixelType enPixelType;
    std::uint32_t nWidth;   // in, and the new width out
    std::uint32_t nHeight;  // in, and the new height out
    unsigned char* pSrcData;
    std::uint32_t nSrcDataLen;
    unsigned char* pDstBuf;
    std::uint32_t nDstBufLen;  // written by the SDK
    std::uint32_t nDstBufSize;
    std::uint32_t enRotationAngle;  // MV_IMAGE_ROTATE_*; a 4-byte enum on both platforms
    std::uint32_t nRes[8];
};

using MV_FRAME_OUT_INFO_EX = FrameOutInfoExRecord<MvGvspPixelType>;
using MV_FRAME_OUT = FrameOutRecord<MvGvspPixelType>;
using MV_CC_PIXEL_CONVERT_PARAM_EX = PixelConvertParamExRecord<MvGvspPixelType>;
using MV_CC_FLIP_IMAGE_PARAM = FlipImageParamRecord<MvGvspPixelType>;
using MV_CC_ROTATE_IMAGE_PARAM = RotateImageParamRecord<MvGvspPixelType>;

// ---- The layouts, pinned. Both pixel-type forms are checked on every platform. ----

static_assert(sizeof(MV_GIGE_DEVICE_INFO) == 216);
static_assert(offsetof(MV_GIGE_DEVICE_INFO, nCurrentIp) == 8);
static_assert(offsetof(MV_GIGE_DEVICE_INFO, chManufacturerName) == 20);
static_assert(offsetof(MV_GIGE_DEVICE_INFO, chModelName) == 52);
static_assert(offsetof(MV_GIGE_DEVICE_INFO, chDeviceVersion) == 84);
static_assert(offsetof(MV_GIGE_DEVICE_INFO, chManufacturerSpecificInfo) == 116);
static_assert(offsetof(MV_GIGE_DEVICE_INFO, chSerialNumber) == 164);
static_assert(offsetof(MV_GIGE_DEVICE_INFO, chUserDefinedName) == 180);
static_assert(offsetof(MV_GIGE_DEVICE_INFO, nNetExport) == 196);
static_assert(sizeof(MV_USB3_DEVICE_INFO) == 540);
static_assert(offsetof(MV_USB3_DEVICE_INFO, idVendor) == 4);
static_assert(offsetof(MV_USB3_DEVICE_INFO, idProduct) == 6);
static_assert(offsetof(MV_USB3_DEVICE_INFO, nDeviceNumber) == 8);
static_assert(offsetof(MV_USB3_DEVICE_INFO, chDeviceGUID) == 12);
static_assert(offsetof(MV_USB3_DEVICE_INFO, chVendorName) == 76);
static_assert(offsetof(MV_USB3_DEVICE_INFO, chModelName) == 140);
static_assert(offsetof(MV_USB3_DEVICE_INFO, chFamilyName) == 204);
static_assert(offsetof(MV_USB3_DEVICE_INFO, chDeviceVersion) == 268);
static_assert(offsetof(MV_USB3_DEVICE_INFO, chManufacturerName) == 332);
static_assert(offsetof(MV_USB3_DEVICE_INFO, chSerialNumber) == 396);
static_assert(offsetof(MV_USB3_DEVICE_INFO, chUserDefinedName) == 460);
static_assert(offsetof(MV_USB3_DEVICE_INFO, nbcdUSB) == 524);
static_assert(offsetof(MV_USB3_DEVICE_INFO, nDeviceAddress) == 528);
static_assert(sizeof(MV_GENTL_CAMERA_INFO) == 540);
static_assert(offsetof(MV_GENTL_CAMERA_INFO, chVendorName) == 64);
static_assert(offsetof(MV_GENTL_CAMERA_INFO, chModelName) == 128);
static_assert(offsetof(MV_GENTL_CAMERA_INFO, chManufacturerInfo) == 192);
static_assert(offsetof(MV_GENTL_CAMERA_INFO, chDeviceVersion) == 256);
static_assert(offsetof(MV_GENTL_CAMERA_INFO, chSerialNumber) == 320);
static_assert(offsetof(MV_GENTL_CAMERA_INFO, chUserDefinedName) == 384);
static_assert(offsetof(MV_GENTL_CAMERA_INFO, chDeviceID) == 448);

static_assert(sizeof(MV_CC_DEVICE_INFO) == 636 && alignof(MV_CC_DEVICE_INFO) == 4);
static_assert(offsetof(MV_CC_DEVICE_INFO, nMacAddrHigh) == 4);
static_assert(offsetof(MV_CC_DEVICE_INFO, nMacAddrLow) == 8);
static_assert(offsetof(MV_CC_DEVICE_INFO, nTLayerType) == 12);
static_assert(offsetof(MV_CC_DEVICE_INFO, nDevTypeInfo) == 16);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo) == 32);
static_assert(sizeof(MV_CC_DEVICE_INFO::SpecialInfo) == 604);
// The absolute offsets of the three texts the driver reads, per member.
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo.stGigEInfo.chUserDefinedName) == 212);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo.stGigEInfo.chModelName) == 84);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo.stGigEInfo.chSerialNumber) == 196);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo.stUsb3VInfo.chUserDefinedName) == 492);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo.stUsb3VInfo.chModelName) == 172);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo.stUsb3VInfo.chSerialNumber) == 428);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo.stCXPInfo.chUserDefinedName) == 416);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo.stCXPInfo.chModelName) == 160);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo.stCXPInfo.chSerialNumber) == 352);
static_assert(offsetof(MV_CC_DEVICE_INFO, SpecialInfo) + sizeof(MV_USB3_DEVICE_INFO) ==
              kDeviceInfoBytesInEveryVersion);

static_assert(sizeof(MV_CC_DEVICE_INFO_LIST) == 2056 && alignof(MV_CC_DEVICE_INFO_LIST) == 8);
static_assert(offsetof(MV_CC_DEVICE_INFO_LIST, pDeviceInfo) == 8);

static_assert(sizeof(MVCC_ENUMVALUE) == 280);
static_assert(offsetof(MVCC_ENUMVALUE, nSupportedNum) == 4);
static_assert(offsetof(MVCC_ENUMVALUE, nSupportValue) == 8);
static_assert(offsetof(MVCC_ENUMVALUE, nReserved) == 264);
static_assert(sizeof(MVCC_INTVALUE) == 32);
static_assert(offsetof(MVCC_INTVALUE, nMax) == 4);
static_assert(offsetof(MVCC_INTVALUE, nMin) == 8);
static_assert(offsetof(MVCC_INTVALUE, nInc) == 12);
static_assert(sizeof(MVCC_INTVALUE_EX) == 96 && alignof(MVCC_INTVALUE_EX) == 8);
static_assert(offsetof(MVCC_INTVALUE_EX, nMax) == 8);
static_assert(offsetof(MVCC_INTVALUE_EX, nMin) == 16);
static_assert(offsetof(MVCC_INTVALUE_EX, nInc) == 24);
static_assert(sizeof(MVCC_FLOATVALUE) == 28);
static_assert(offsetof(MVCC_FLOATVALUE, fMax) == 4);
static_assert(offsetof(MVCC_FLOATVALUE, fMin) == 8);

namespace layout {

// The two platform forms of a record.
template <template <class> class Record>
struct Forms {
    using Windows = Record<WindowsPixelType>;
    using Linux = Record<LinuxPixelType>;
};

using FrameInfo = Forms<FrameOutInfoExRecord>;
static_assert(sizeof(FrameInfo::Windows) == 256 && sizeof(FrameInfo::Linux) == 264);
static_assert(offsetof(FrameInfo::Windows, nHeight) == 2 &&
              offsetof(FrameInfo::Linux, nHeight) == 2);
static_assert(offsetof(FrameInfo::Windows, enPixelType) == 4);
static_assert(offsetof(FrameInfo::Linux, enPixelType) == 8);
static_assert(offsetof(FrameInfo::Windows, nFrameNum) == 8);
static_assert(offsetof(FrameInfo::Linux, nFrameNum) == 16);
static_assert(offsetof(FrameInfo::Windows, nDevTimeStampHigh) == 12);
static_assert(offsetof(FrameInfo::Linux, nDevTimeStampHigh) == 20);
static_assert(offsetof(FrameInfo::Windows, nDevTimeStampLow) == 16);
static_assert(offsetof(FrameInfo::Linux, nDevTimeStampLow) == 24);
static_assert(offsetof(FrameInfo::Windows, nHostTimeStamp) == 24);
static_assert(offsetof(FrameInfo::Linux, nHostTimeStamp) == 32);
static_assert(offsetof(FrameInfo::Windows, nFrameLen) == 32);
static_assert(offsetof(FrameInfo::Linux, nFrameLen) == 40);
static_assert(offsetof(FrameInfo::Windows, fGain) == 48);
static_assert(offsetof(FrameInfo::Linux, fGain) == 56);
static_assert(offsetof(FrameInfo::Windows, fExposureTime) == 52);
static_assert(offsetof(FrameInfo::Linux, fExposureTime) == 60);
static_assert(offsetof(FrameInfo::Windows, nFrameCounter) == 72);
static_assert(offsetof(FrameInfo::Linux, nFrameCounter) == 80);
static_assert(offsetof(FrameInfo::Windows, nOffsetX) == 88);
static_assert(offsetof(FrameInfo::Linux, nOffsetX) == 96);
static_assert(offsetof(FrameInfo::Windows, nLostPacket) == 96);
static_assert(offsetof(FrameInfo::Linux, nLostPacket) == 104);
static_assert(offsetof(FrameInfo::Windows, UnparsedChunkList) == 104);
static_assert(offsetof(FrameInfo::Linux, UnparsedChunkList) == 112);
static_assert(offsetof(FrameInfo::Windows, nExtendWidth) == 112);
static_assert(offsetof(FrameInfo::Linux, nExtendWidth) == 120);
static_assert(offsetof(FrameInfo::Windows, nExtendHeight) == 116);
static_assert(offsetof(FrameInfo::Linux, nExtendHeight) == 124);
static_assert(offsetof(FrameInfo::Windows, nFrameLenEx) == 120);
static_assert(offsetof(FrameInfo::Linux, nFrameLenEx) == 128);
static_assert(offsetof(FrameInfo::Windows, UserPtr) == 144);
static_assert(offsetof(FrameInfo::Linux, UserPtr) == 152);
static_assert(offsetof(FrameInfo::Windows, nReserved) == 152);
static_assert(offsetof(FrameInfo::Linux, nReserved) == 160);

using FrameOut = Forms<FrameOutRecord>;
static_assert(sizeof(FrameOut::Windows) == 328 && sizeof(FrameOut::Linux) == 336);
static_assert(offsetof(FrameOut::Windows, stFrameInfo) == 8);
static_assert(offsetof(FrameOut::Linux, stFrameInfo) == 8);
static_assert(offsetof(FrameOut::Windows, nRes) == 264 && offsetof(FrameOut::Linux, nRes) == 272);

using Convert = Forms<PixelConvertParamExRecord>;
static_assert(sizeof(Convert::Windows) == 64 && sizeof(Convert::Linux) == 72);
static_assert(offsetof(Convert::Windows, nHeight) == 4 && offsetof(Convert::Linux, nHeight) == 4);
static_assert(offsetof(Convert::Windows, enSrcPixelType) == 8);
static_assert(offsetof(Convert::Linux, enSrcPixelType) == 8);
static_assert(offsetof(Convert::Windows, pSrcData) == 16);
static_assert(offsetof(Convert::Linux, pSrcData) == 16);
static_assert(offsetof(Convert::Windows, nSrcDataLen) == 24);
static_assert(offsetof(Convert::Linux, nSrcDataLen) == 24);
static_assert(offsetof(Convert::Windows, enDstPixelType) == 28);
static_assert(offsetof(Convert::Linux, enDstPixelType) == 32);
static_assert(offsetof(Convert::Windows, pDstBuffer) == 32);
static_assert(offsetof(Convert::Linux, pDstBuffer) == 40);
static_assert(offsetof(Convert::Windows, nDstLen) == 40);
static_assert(offsetof(Convert::Linux, nDstLen) == 48);
static_assert(offsetof(Convert::Windows, nDstBufferSize) == 44);
static_assert(offsetof(Convert::Linux, nDstBufferSize) == 52);
static_assert(offsetof(Convert::Windows, nRes) == 48 && offsetof(Convert::Linux, nRes) == 56);

// Flip and rotate: checked through one macro so both records get every check.
#define TELVARRA_HIKVISION_TRANSFORM_LAYOUT(Record, lastField)                                     \
    static_assert(sizeof(Record<WindowsPixelType>) == 88 && sizeof(Record<LinuxPixelType>) == 88); \
    static_assert(offsetof(Record<WindowsPixelType>, nWidth) == 4);                                \
    static_assert(offsetof(Record<LinuxPixelType>, nWidth) == 8);                                  \
    static_assert(offsetof(Record<WindowsPixelType>, nHeight) == 8);                               \
    static_assert(offsetof(Record<LinuxPixelType>, nHeight) == 12);                                \
    static_assert(offsetof(Record<WindowsPixelType>, pSrcData) == 16);                             \
    static_assert(offsetof(Record<LinuxPixelType>, pSrcData) == 16);                               \
    static_assert(offsetof(Record<WindowsPixelType>, nSrcDataLen) == 24);                          \
    static_assert(offsetof(Record<LinuxPixelType>, nSrcDataLen) == 24);                            \
    static_assert(offsetof(Record<WindowsPixelType>, pDstBuf) == 32);                              \
    static_assert(offsetof(Record<LinuxPixelType>, pDstBuf) == 32);                                \
    static_assert(offsetof(Record<WindowsPixelType>, nDstBufLen) == 40);                           \
    static_assert(offsetof(Record<LinuxPixelType>, nDstBufLen) == 40);                             \
    static_assert(offsetof(Record<WindowsPixelType>, nDstBufSize) == 44);                          \
    static_assert(offsetof(Record<LinuxPixelType>, nDstBufSize) == 44);                            \
    static_assert(offsetof(Record<WindowsPixelType>, lastField) == 48);                            \
    static_assert(offsetof(Record<LinuxPixelType>, lastField) == 48);                              \
    static_assert(offsetof(Record<WindowsPixelType>, nRes) == 52);                                 \
    static_assert(offsetof(Record<LinuxPixelType>, nRes) == 52);
TELVARRA_HIKVISION_TRANSFORM_LAYOUT(FlipImageParamRecord, enFlipType)
TELVARRA_HIKVISION_TRANSFORM_LAYOUT(RotateImageParamRecord, enRotationAngle)
#undef TELVARRA_HIKVISION_TRANSFORM_LAYOUT

}  // namespace layout

// ---- The functions we bind, with the vendor's signatures. ----
//
// X(return type, exported name, parameter list), in the binding order of the driver. The
// simulator declares its exports from this list, so driver and simulator agree on every
// signature by construction; an independent test checks them against the vendor notes.
#define TELVARRA_HIKVISION_FUNCTIONS(X)                                                       \
    X(int, MV_CC_Initialize, (void))                                                          \
    X(int, MV_CC_Finalize, (void))                                                            \
    X(int, MV_CC_CreateHandle, (void** handle, const MV_CC_DEVICE_INFO* deviceInfo))          \
    X(int, MV_CC_OpenDevice,                                                                  \
      (void* handle, unsigned int accessMode, unsigned short switchoverKey))                  \
    X(int, MV_CC_DestroyHandle, (void* handle))                                               \
    X(int, MV_CC_GetEnumValue, (void* handle, const char* key, MVCC_ENUMVALUE* value))        \
    X(int, MV_CC_SetEnumValue, (void* handle, const char* key, unsigned int value))           \
    X(int, MV_CC_GetIntValueEx, (void* handle, const char* key, MVCC_INTVALUE_EX* value))     \
    X(int, MV_CC_SetIntValueEx, (void* handle, const char* key, std::int64_t value))          \
    X(bool, MV_CC_IsDeviceConnected, (void* handle))                                          \
    X(int, MV_CC_CloseDevice, (void* handle))                                                 \
    X(int, MV_CC_StartGrabbing, (void* handle))                                               \
    X(int, MV_CC_StopGrabbing, (void* handle))                                                \
    X(int, MV_CC_GetImageBuffer, (void* handle, MV_FRAME_OUT* frame, unsigned int timeoutMs)) \
    X(int, MV_CC_FreeImageBuffer, (void* handle, MV_FRAME_OUT* frame))                        \
    X(int, MV_CC_EnumDevices, (unsigned int layerMask, MV_CC_DEVICE_INFO_LIST* list))         \
    X(int, MV_CC_GetGainMode, (void* handle, MVCC_ENUMVALUE* value))                          \
    X(int, MV_CC_SetGainMode, (void* handle, unsigned int value))                             \
    X(int, MV_CC_GetBrightness, (void* handle, MVCC_INTVALUE* value))                         \
    X(int, MV_CC_SetBrightness, (void* handle, unsigned int value))                           \
    X(int, MV_CC_GetFloatValue, (void* handle, const char* key, MVCC_FLOATVALUE* value))      \
    X(int, MV_CC_SetFloatValue, (void* handle, const char* key, float value))                 \
    X(int, MV_CC_GetExposureTime, (void* handle, MVCC_FLOATVALUE* value))                     \
    X(int, MV_CC_SetExposureTime, (void* handle, float value))                                \
    X(unsigned int, MV_CC_GetSDKVersion, (void))                                              \
    X(int, MV_CC_GetExposureAutoMode, (void* handle, MVCC_ENUMVALUE* value))                  \
    X(int, MV_CC_SetExposureAutoMode, (void* handle, unsigned int value))                     \
    X(int, MV_CC_FlipImage, (void* handle, MV_CC_FLIP_IMAGE_PARAM* param))                    \
    X(int, MV_CC_RotateImage, (void* handle, MV_CC_ROTATE_IMAGE_PARAM* param))                \
    X(int, MV_CC_ConvertPixelTypeEx, (void* handle, MV_CC_PIXEL_CONVERT_PARAM_EX* param))     \
    X(int, MV_CC_GetGain, (void* handle, MVCC_FLOATVALUE* value))                             \
    X(int, MV_CC_SetGain, (void* handle, float value))                                        \
    X(int, MV_CC_SetCommandValue, (void* handle, const char* key))

// The function type of each, by name: HikVisionSignatures::MV_CC_Initialize is int(void).
struct HikVisionSignatures {
#define TELVARRA_HIKVISION_SIGNATURE(returnType, name, parameters) \
    using name = returnType parameters;
    TELVARRA_HIKVISION_FUNCTIONS(TELVARRA_HIKVISION_SIGNATURE)
#undef TELVARRA_HIKVISION_SIGNATURE
};

}  // namespace telvarra::vendor::hikvision

#endif
