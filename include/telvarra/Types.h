/* Records and enumerations that cross the library boundary. Their binary layout is part of the
 * interface: hosts compiled against these declarations pass them by pointer, so every size and
 * offset is pinned below. The header compiles as C and as C++. */
#ifndef TELVARRA_TYPES_H
#define TELVARRA_TYPES_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#define TELVARRA_STATIC_ASSERT(condition, message) _Static_assert(condition, message)
#else
#define TELVARRA_STATIC_ASSERT(condition, message) static_assert(condition, message)
#endif

/* The registry key of a make; 0 means "any make" when creating a camera. MindVision's driver
 * reports 6 as its own type while being registered and looked up under 1. */
typedef enum Ruvo_CameraType {
    RUVO_CAMERA_ANY = 0,
    RUVO_CAMERA_MINDVISION = 1,
    RUVO_CAMERA_HIKVISION = 2,
    RUVO_CAMERA_DVP = 3,
    RUVO_CAMERA_DAHENG = 4,
    RUVO_CAMERA_CANON = 5,
    RUVO_CAMERA_MINDVISION_DRIVER = 6,
    /* The two bounds make every 32-bit value a valid value of the type: hosts may pass any. */
    RUVO_CAMERA_TYPE_LOWEST = INT32_MIN,
    RUVO_CAMERA_TYPE_HIGHEST = INT32_MAX
} Ruvo_CameraType;

typedef enum Ruvo_CameraStatus {
    RUVO_STATUS_NONE = 0, /* not open, or a failed acquisition change */
    RUVO_STATUS_DISCONNECTED = 1,
    RUVO_STATUS_CONNECTED = 2,
    RUVO_STATUS_ACQUIRING = 3,
    RUVO_STATUS_LOWEST = INT32_MIN,
    RUVO_STATUS_HIGHEST = INT32_MAX
} Ruvo_CameraStatus;

/* Format 1 is delivered with one channel, every other with three (Bayer mosaics are converted
 * to colour before delivery). */
typedef enum Ruvo_ImageFormat {
    RUVO_FORMAT_UNKNOWN = 0,
    RUVO_FORMAT_MONO8 = 1,
    RUVO_FORMAT_RGB8 = 2,
    RUVO_FORMAT_BGR8 = 3,
    RUVO_FORMAT_BAYER_GR8 = 6,
    RUVO_FORMAT_BAYER_RG8 = 7,
    RUVO_FORMAT_BAYER_GB8 = 8,
    RUVO_FORMAT_BAYER_BG8 = 9,
    RUVO_FORMAT_LOWEST = INT32_MIN,
    RUVO_FORMAT_HIGHEST = INT32_MAX
} Ruvo_ImageFormat;

/* One frame. After a camera's getCurrentFrame, data points into that camera's own buffer and
 * stays valid until its next fetch. */
typedef struct ImageData {
    unsigned char* data;
    int32_t width;
    int32_t height;
    int32_t channels;
    Ruvo_ImageFormat format;
    int32_t dataSize;
    int64_t timestamp; /* milliseconds since 1970-01-01 UTC */
    int32_t frameNumber;
} ImageData;

#define RUVO_MAX_IMAGE_FORMATS 20
#define RUVO_MAX_DEVICES 256
#define RUVO_TEXT_SIZE 256

typedef struct _RUVO_IMAGE_FORMAT_LIST {
    uint32_t count;
    Ruvo_ImageFormat formats[RUVO_MAX_IMAGE_FORMATS];
} _RUVO_IMAGE_FORMAT_LIST;

typedef struct DeviceInfo {
    char cameraId[RUVO_TEXT_SIZE];
    Ruvo_CameraType cameraType;
    char vendorName[RUVO_TEXT_SIZE];
    char serialNumber[RUVO_TEXT_SIZE];
    char modelName[RUVO_TEXT_SIZE];
    char displayName[RUVO_TEXT_SIZE];
    char userDefinedName[RUVO_TEXT_SIZE];
    int32_t maxWidth;
    int32_t maxHeight;
    _RUVO_IMAGE_FORMAT_LIST supportedFormats;
    bool isAvailable;
} DeviceInfo;

typedef struct _RUVO_DEVICE_INFO_LIST {
    uint32_t count;
    DeviceInfo devices[RUVO_MAX_DEVICES];
} _RUVO_DEVICE_INFO_LIST;

/* Typed named values. Only the enumeration record is filled by any make. */
typedef struct _RUVO_INT_VALUE {
    int64_t current;
    int64_t minimum;
    int64_t maximum;
    int64_t increment;
} _RUVO_INT_VALUE;

typedef struct _RUVO_FLOAT_VALUE {
    double current;
    double minimum;
    double maximum;
} _RUVO_FLOAT_VALUE;

#define RUVO_ENUM_SYMBOLIC_SIZE 144
#define RUVO_MAX_ENUM_ENTRIES 32

typedef struct _RUVO_ENUM_ENTRY {
    int64_t value;
    char symbolic[RUVO_ENUM_SYMBOLIC_SIZE];
} _RUVO_ENUM_ENTRY;

typedef struct _RUVO_ENUM_VALUE {
    _RUVO_ENUM_ENTRY current;
    uint32_t count;
    _RUVO_ENUM_ENTRY entries[RUVO_MAX_ENUM_ENTRIES];
} _RUVO_ENUM_VALUE;

#define RUVO_STRING_VALUE_SIZE 256

typedef struct _RUVO_STRING_VALUE {
    char current[RUVO_STRING_VALUE_SIZE];
    int64_t maxLength;
} _RUVO_STRING_VALUE;

TELVARRA_STATIC_ASSERT(sizeof(Ruvo_CameraType) == 4, "32-bit enumeration");
TELVARRA_STATIC_ASSERT(sizeof(Ruvo_ImageFormat) == 4, "32-bit enumeration");
TELVARRA_STATIC_ASSERT(sizeof(Ruvo_CameraStatus) == 4, "32-bit enumeration");

TELVARRA_STATIC_ASSERT(offsetof(ImageData, data) == 0, "ImageData layout");
TELVARRA_STATIC_ASSERT(offsetof(ImageData, width) == 8, "ImageData layout");
TELVARRA_STATIC_ASSERT(offsetof(ImageData, height) == 12, "ImageData layout");
TELVARRA_STATIC_ASSERT(offsetof(ImageData, channels) == 16, "ImageData layout");
TELVARRA_STATIC_ASSERT(offsetof(ImageData, format) == 20, "ImageData layout");
TELVARRA_STATIC_ASSERT(offsetof(ImageData, dataSize) == 24, "ImageData layout");
TELVARRA_STATIC_ASSERT(offsetof(ImageData, timestamp) == 32, "timestamp after its alignment gap");
TELVARRA_STATIC_ASSERT(offsetof(ImageData, frameNumber) == 40, "ImageData layout");
TELVARRA_STATIC_ASSERT(sizeof(ImageData) == 48, "ImageData size");

TELVARRA_STATIC_ASSERT(sizeof(_RUVO_IMAGE_FORMAT_LIST) == 84, "format list size");
TELVARRA_STATIC_ASSERT(offsetof(_RUVO_IMAGE_FORMAT_LIST, formats) == 4, "format list layout");

TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, cameraId) == 0, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, cameraType) == 256, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, vendorName) == 260, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, serialNumber) == 516, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, modelName) == 772, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, displayName) == 1028, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, userDefinedName) == 1284, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, maxWidth) == 1540, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, maxHeight) == 1544, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, supportedFormats) == 1548, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(offsetof(DeviceInfo, isAvailable) == 1632, "DeviceInfo layout");
TELVARRA_STATIC_ASSERT(sizeof(DeviceInfo) == 1636, "DeviceInfo size");

TELVARRA_STATIC_ASSERT(offsetof(_RUVO_DEVICE_INFO_LIST, devices) == 4, "device list layout");
TELVARRA_STATIC_ASSERT(sizeof(_RUVO_DEVICE_INFO_LIST) == 418820, "device list size");

TELVARRA_STATIC_ASSERT(sizeof(_RUVO_ENUM_ENTRY) == 152, "enumeration entry size");
TELVARRA_STATIC_ASSERT(offsetof(_RUVO_ENUM_ENTRY, symbolic) == 8, "enumeration entry layout");
TELVARRA_STATIC_ASSERT(offsetof(_RUVO_ENUM_VALUE, count) == 152, "enumeration value layout");
TELVARRA_STATIC_ASSERT(offsetof(_RUVO_ENUM_VALUE, entries) == 160, "enumeration value layout");

#endif
