// The Canon EOS Digital SDK (EDSDK) as its published headers define it: the records and
// constants we use and the signatures of the functions we call, declared by us from the vendor
// ABI notes. Standard headers only: the driver and the SDK simulator both build on it.
//
// The widths are those of SDK 3.4 and later (every 13.x runtime, the only ones for Linux):
// stream sizes and lengths are 64-bit and a directory item's record is 288 bytes. An older
// runtime, with 32-bit sizes, is not supported: its EdsGetLength would write half the value.
// The structs' layouts are the same on Windows x64 and Linux x86_64.
#ifndef TELVARRA_VENDOR_CANON_CANONSDK_H
#define TELVARRA_VENDOR_CANON_CANONSDK_H

#include <cstddef>
#include <cstdint>

namespace telvarra::vendor::canon {

using EdsInt32 = std::int32_t;  // `long` in the Windows headers: 4 bytes there too
using EdsUInt32 = std::uint32_t;
using EdsInt64 = std::int64_t;
using EdsUInt64 = std::uint64_t;
using EdsBool = int;
using EdsChar = char;
using EdsError = EdsUInt32;

// Every object the SDK hands out is a pointer to an opaque object of its own.
struct EdsOpaqueObject;
using EdsBaseRef = EdsOpaqueObject*;
using EdsCameraListRef = EdsBaseRef;
using EdsCameraRef = EdsBaseRef;
using EdsDirectoryItemRef = EdsBaseRef;
using EdsStreamRef = EdsBaseRef;
using EdsImageRef = EdsBaseRef;
using EdsEvfImageRef = EdsBaseRef;

// ---- Errors: 0 is success. EdsRetain and EdsRelease answer a reference count instead. ----

constexpr EdsError EDS_ERR_OK = 0x00;
constexpr EdsError EDS_ERR_UNIMPLEMENTED = 0x01;
constexpr EdsError EDS_ERR_INTERNAL_ERROR = 0x02;
constexpr EdsError EDS_ERR_MEM_ALLOC_FAILED = 0x03;
constexpr EdsError EDS_ERR_NOT_SUPPORTED = 0x07;
constexpr EdsError EDS_ERR_PROTECTION_VIOLATION = 0x09;
constexpr EdsError EDS_ERR_FILE_OPEN_ERROR = 0x23;
constexpr EdsError EDS_ERR_FILE_WRITE_ERROR = 0x28;
constexpr EdsError EDS_ERR_PROPERTIES_UNAVAILABLE = 0x50;
constexpr EdsError EDS_ERR_INVALID_PARAMETER = 0x60;
constexpr EdsError EDS_ERR_INVALID_HANDLE = 0x61;
constexpr EdsError EDS_ERR_INVALID_POINTER = 0x62;
constexpr EdsError EDS_ERR_INVALID_INDEX = 0x63;
constexpr EdsError EDS_ERR_INVALID_LENGTH = 0x64;
constexpr EdsError EDS_ERR_DEVICE_NOT_FOUND = 0x80;
constexpr EdsError EDS_ERR_DEVICE_BUSY = 0x81;
constexpr EdsError EDS_ERR_COMM_PORT_IS_IN_USE = 0xC0;
constexpr EdsError EDS_ERR_COMM_DISCONNECTED = 0xC1;
constexpr EdsError EDS_ERR_SESSION_NOT_OPEN = 0x2003;
constexpr EdsError EDS_ERR_DEVICEPROP_NOT_SUPPORTED = 0x200A;
constexpr EdsError EDS_ERR_INVALID_DEVICEPROP_VALUE = 0x201C;
constexpr EdsError EDS_ERR_SESSION_ALREADY_OPEN = 0x201E;
constexpr EdsError EDS_ERR_OBJECT_NOTREADY = 0xA102;

// ---- Property ids and values. ----

constexpr EdsUInt32 kEdsPropID_ProductName = 0x02;
constexpr EdsUInt32 kEdsPropID_SaveTo = 0x0B;
constexpr EdsUInt32 kEdsPropID_BodyIDEx = 0x15;  // the body's serial number, a string
constexpr EdsUInt32 kEdsPropID_ISOSpeed = 0x402;
constexpr EdsUInt32 kEdsPropID_Av = 0x405;
constexpr EdsUInt32 kEdsPropID_Tv = 0x406;
constexpr EdsUInt32 kEdsPropID_Evf_OutputDevice = 0x500;
constexpr EdsUInt32 kEdsPropID_Evf_Mode = 0x501;

constexpr EdsUInt32 kEdsSaveTo_Camera = 1;
constexpr EdsUInt32 kEdsSaveTo_Host = 2;
constexpr EdsUInt32 kEdsSaveTo_Both = 3;
constexpr EdsUInt32 kEdsEvfOutputDevice_TFT = 1;
constexpr EdsUInt32 kEdsEvfOutputDevice_PC = 2;

// ---- Commands. ----

constexpr EdsUInt32 kEdsCameraCommand_TakePicture = 0x0;
constexpr EdsUInt32 kEdsCameraCommand_PressShutterButton = 0x4;
constexpr EdsInt32 kEdsCameraCommand_ShutterButton_OFF = 0x0;
constexpr EdsInt32 kEdsCameraCommand_ShutterButton_Halfway = 0x1;
constexpr EdsInt32 kEdsCameraCommand_ShutterButton_Completely = 0x3;
constexpr EdsInt32 kEdsCameraCommand_ShutterButton_Halfway_NonAF = 0x10001;
constexpr EdsInt32 kEdsCameraCommand_ShutterButton_Completely_NonAF = 0x10003;

// ---- Events. ----

constexpr EdsUInt32 kEdsPropertyEvent_All = 0x100;
constexpr EdsUInt32 kEdsPropertyEvent_PropertyChanged = 0x101;
constexpr EdsUInt32 kEdsPropertyEvent_PropertyDescChanged = 0x102;
constexpr EdsUInt32 kEdsObjectEvent_All = 0x200;
constexpr EdsUInt32 kEdsObjectEvent_DirItemCreated = 0x204;
constexpr EdsUInt32 kEdsObjectEvent_DirItemRequestTransfer = 0x208;
constexpr EdsUInt32 kEdsStateEvent_All = 0x300;
constexpr EdsUInt32 kEdsStateEvent_Shutdown = 0x301;
constexpr EdsUInt32 kEdsStateEvent_CaptureError = 0x305;

// ---- Streams and images. ----

constexpr EdsInt32 kEdsFileCreateDisposition_CreateNew = 0;
constexpr EdsInt32 kEdsFileCreateDisposition_CreateAlways = 1;
constexpr EdsInt32 kEdsAccess_Read = 0;
constexpr EdsInt32 kEdsAccess_Write = 1;
constexpr EdsInt32 kEdsAccess_ReadWrite = 2;
constexpr EdsInt32 kEdsImageSrc_FullView = 0;

constexpr EdsInt32 kEdsDataType_String = 2;
constexpr EdsInt32 kEdsDataType_UInt32 = 9;

constexpr std::size_t EDS_MAX_NAME = 256;

// ---- Records. ----

struct EdsDeviceInfo {
    EdsChar szPortName[EDS_MAX_NAME];
    EdsChar szDeviceDescription[EDS_MAX_NAME];
    EdsUInt32 deviceSubType;
    EdsUInt32 reserved;
};

struct EdsPropertyDesc {
    EdsInt32 form;
    EdsInt32 access;
    EdsInt32 numElements;
    EdsInt32 propDesc[128];
};

struct EdsCapacity {
    EdsInt32 numberOfFreeClusters;
    EdsInt32 bytesPerSector;
    EdsBool reset;
};

struct EdsDirectoryItemInfo {
    EdsUInt64 size;
    EdsBool isFolder;
    EdsUInt32 groupID;
    EdsUInt32 option;
    EdsChar szFileName[EDS_MAX_NAME];
    EdsUInt32 format;
    EdsUInt32 dateTime;
};

struct EdsPoint {
    EdsInt32 x;
    EdsInt32 y;
};

struct EdsSize {
    EdsInt32 width;
    EdsInt32 height;
};

struct EdsRect {
    EdsPoint point;
    EdsSize size;
};

struct EdsImageInfo {
    EdsUInt32 width;
    EdsUInt32 height;
    EdsUInt32 numOfComponents;
    EdsUInt32 componentDepth;
    EdsRect effectiveRect;
    EdsUInt32 reserved1;
    EdsUInt32 reserved2;
};

static_assert(sizeof(EdsDeviceInfo) == 520 && alignof(EdsDeviceInfo) == 4);
static_assert(offsetof(EdsDeviceInfo, szDeviceDescription) == 256);
static_assert(offsetof(EdsDeviceInfo, deviceSubType) == 512);
static_assert(sizeof(EdsPropertyDesc) == 524 && offsetof(EdsPropertyDesc, propDesc) == 12);
static_assert(offsetof(EdsPropertyDesc, numElements) == 8);
static_assert(sizeof(EdsCapacity) == 12 && offsetof(EdsCapacity, reset) == 8);
static_assert(sizeof(EdsDirectoryItemInfo) == 288 && alignof(EdsDirectoryItemInfo) == 8);
static_assert(offsetof(EdsDirectoryItemInfo, isFolder) == 8);
static_assert(offsetof(EdsDirectoryItemInfo, szFileName) == 20);
static_assert(offsetof(EdsDirectoryItemInfo, format) == 276);
static_assert(offsetof(EdsDirectoryItemInfo, dateTime) == 280);
static_assert(sizeof(EdsImageInfo) == 40 && offsetof(EdsImageInfo, effectiveRect) == 16);
static_assert(sizeof(EdsRect) == 16 && sizeof(EdsSize) == 8);

// ---- Event handlers (the SDK calls them on the thread that pumps its events). ----

using EdsPropertyEventHandler = EdsError (*)(EdsUInt32 event, EdsUInt32 propertyId,
                                             EdsUInt32 parameter, void* context);
using EdsObjectEventHandler = EdsError (*)(EdsUInt32 event, EdsBaseRef item, void* context);
using EdsStateEventHandler = EdsError (*)(EdsUInt32 event, EdsUInt32 eventData, void* context);

// ---- The functions we call, with the vendor's signatures. ----
//
// X(return type, exported name, parameter list). The simulator declares these exports from this
// list; the other bound names are only looked up. EdsRetain is never called but listed, as the
// one besides EdsRelease that answers a count rather than an error.
#define TELVARRA_CANON_FUNCTIONS(X)                                                              \
    X(EdsError, EdsInitializeSDK, ())                                                            \
    X(EdsError, EdsTerminateSDK, ())                                                             \
    X(EdsUInt32, EdsRetain, (EdsBaseRef object))                                                 \
    X(EdsUInt32, EdsRelease, (EdsBaseRef object))                                                \
    X(EdsError, EdsGetChildCount, (EdsBaseRef parent, EdsUInt32 * count))                        \
    X(EdsError, EdsGetChildAtIndex, (EdsBaseRef parent, EdsInt32 index, EdsBaseRef * child))     \
    X(EdsError, EdsGetPropertySize,                                                              \
      (EdsBaseRef object, EdsUInt32 propertyId, EdsInt32 parameter, EdsInt32 * dataType,         \
       EdsUInt32 * size))                                                                        \
    X(EdsError, EdsGetPropertyData,                                                              \
      (EdsBaseRef object, EdsUInt32 propertyId, EdsInt32 parameter, EdsUInt32 size, void* out))  \
    X(EdsError, EdsSetPropertyData,                                                              \
      (EdsBaseRef object, EdsUInt32 propertyId, EdsInt32 parameter, EdsUInt32 size,              \
       const void* in))                                                                          \
    X(EdsError, EdsGetPropertyDesc,                                                              \
      (EdsBaseRef object, EdsUInt32 propertyId, EdsPropertyDesc * out))                          \
    X(EdsError, EdsGetCameraList, (EdsCameraListRef * list))                                     \
    X(EdsError, EdsGetDeviceInfo, (EdsCameraRef camera, EdsDeviceInfo * out))                    \
    X(EdsError, EdsOpenSession, (EdsCameraRef camera))                                           \
    X(EdsError, EdsCloseSession, (EdsCameraRef camera))                                          \
    X(EdsError, EdsSendCommand, (EdsCameraRef camera, EdsUInt32 command, EdsInt32 parameter))    \
    X(EdsError, EdsSetCapacity, (EdsCameraRef camera, EdsCapacity capacity))                     \
    X(EdsError, EdsGetDirectoryItemInfo, (EdsDirectoryItemRef item, EdsDirectoryItemInfo * out)) \
    X(EdsError, EdsDownload, (EdsDirectoryItemRef item, EdsUInt64 size, EdsStreamRef stream))    \
    X(EdsError, EdsDownloadCancel, (EdsDirectoryItemRef item))                                   \
    X(EdsError, EdsDownloadComplete, (EdsDirectoryItemRef item))                                 \
    X(EdsError, EdsCreateFileStream,                                                             \
      (const EdsChar* path, EdsInt32 disposition, EdsInt32 access, EdsStreamRef* stream))        \
    X(EdsError, EdsCreateMemoryStream, (EdsUInt64 initialSize, EdsStreamRef * stream))           \
    X(EdsError, EdsGetPointer, (EdsStreamRef stream, void** pointer))                            \
    X(EdsError, EdsGetLength, (EdsStreamRef stream, EdsUInt64 * length))                         \
    X(EdsError, EdsCreateImageRef, (EdsStreamRef stream, EdsImageRef * image))                   \
    X(EdsError, EdsGetImageInfo, (EdsImageRef image, EdsInt32 source, EdsImageInfo * out))       \
    X(EdsError, EdsCreateEvfImageRef, (EdsStreamRef stream, EdsEvfImageRef * image))             \
    X(EdsError, EdsDownloadEvfImage, (EdsCameraRef camera, EdsEvfImageRef image))                \
    X(EdsError, EdsSetPropertyEventHandler,                                                      \
      (EdsCameraRef camera, EdsUInt32 event, EdsPropertyEventHandler handler, void* context))    \
    X(EdsError, EdsSetObjectEventHandler,                                                        \
      (EdsCameraRef camera, EdsUInt32 event, EdsObjectEventHandler handler, void* context))      \
    X(EdsError, EdsSetCameraStateEventHandler,                                                   \
      (EdsCameraRef camera, EdsUInt32 event, EdsStateEventHandler handler, void* context))       \
    X(EdsError, EdsGetEvent, ())

// The function type of each, by name: CanonSignatures::EdsOpenSession is EdsError(EdsCameraRef).
struct CanonSignatures {
#define TELVARRA_CANON_SIGNATURE(returnType, name, parameters) using name = returnType parameters;
    TELVARRA_CANON_FUNCTIONS(TELVARRA_CANON_SIGNATURE)
#undef TELVARRA_CANON_SIGNATURE
};

// The 54 names this library binds, in binding order, every one required: CALLED(name) for the
// functions above, OTHER(name) for those only looked up. The 2024 Linux runtime lacks
// EdsSaveImage, EdsCacheImage and EdsReflectImageProperty.
// clang-format off
#define TELVARRA_CANON_LOAD_LIST(CALLED, OTHER) \
    CALLED(EdsInitializeSDK) \
    CALLED(EdsTerminateSDK) \
    CALLED(EdsRetain) \
    CALLED(EdsRelease) \
    CALLED(EdsGetChildCount) \
    CALLED(EdsGetChildAtIndex) \
    OTHER(EdsGetParent) \
    CALLED(EdsGetPropertySize) \
    CALLED(EdsGetPropertyData) \
    CALLED(EdsSetPropertyData) \
    CALLED(EdsGetPropertyDesc) \
    CALLED(EdsGetCameraList) \
    CALLED(EdsGetDeviceInfo) \
    CALLED(EdsOpenSession) \
    CALLED(EdsCloseSession) \
    CALLED(EdsSendCommand) \
    OTHER(EdsSendStatusCommand) \
    CALLED(EdsSetCapacity) \
    OTHER(EdsGetVolumeInfo) \
    OTHER(EdsFormatVolume) \
    CALLED(EdsGetDirectoryItemInfo) \
    OTHER(EdsDeleteDirectoryItem) \
    CALLED(EdsDownload) \
    CALLED(EdsDownloadCancel) \
    CALLED(EdsDownloadComplete) \
    OTHER(EdsDownloadThumbnail) \
    OTHER(EdsGetAttribute) \
    OTHER(EdsSetAttribute) \
    CALLED(EdsCreateFileStream) \
    CALLED(EdsCreateMemoryStream) \
    OTHER(EdsCreateFileStreamEx) \
    OTHER(EdsCreateMemoryStreamFromPointer) \
    CALLED(EdsGetPointer) \
    OTHER(EdsRead) \
    OTHER(EdsWrite) \
    OTHER(EdsSeek) \
    OTHER(EdsGetPosition) \
    CALLED(EdsGetLength) \
    OTHER(EdsCopyData) \
    OTHER(EdsSetProgressCallback) \
    CALLED(EdsCreateImageRef) \
    CALLED(EdsGetImageInfo) \
    OTHER(EdsGetImage) \
    OTHER(EdsSaveImage) \
    OTHER(EdsCacheImage) \
    OTHER(EdsReflectImageProperty) \
    CALLED(EdsCreateEvfImageRef) \
    CALLED(EdsDownloadEvfImage) \
    OTHER(EdsSetCameraAddedHandler) \
    CALLED(EdsSetPropertyEventHandler) \
    CALLED(EdsSetObjectEventHandler) \
    CALLED(EdsSetCameraStateEventHandler) \
    OTHER(EdsCreateStream) \
    CALLED(EdsGetEvent)
// clang-format on

}  // namespace telvarra::vendor::canon

#endif
