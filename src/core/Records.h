// Helpers for the exported records that every make fills the same way.
#ifndef TELVARRA_CORE_RECORDS_H
#define TELVARRA_CORE_RECORDS_H

#include <cstddef>
#include <cstring>
#include <string>

#include "telvarra/Types.h"

namespace telvarra {

// Clears `destination` and copies at most capacity - 1 bytes of `source` plus a terminator.
// Returns false when the text had to be cut (or `source` was null).
bool copyBoundedText(char* destination, std::size_t capacity, const char* source);

template <std::size_t N>
bool copyBoundedText(char (&destination)[N], const std::string& source) {
    return copyBoundedText(destination, N, source.c_str());
}

// The text of a fixed-size field (of char, or of unsigned char as vendor records have them),
// which a full-length value fills without a terminator.
template <class Char, std::size_t N>
std::string fieldText(const Char (&field)[N]) {
    static_assert(sizeof(Char) == 1, "a field of bytes");
    const char* text = reinterpret_cast<const char*>(field);
    const void* terminator = std::memchr(text, '\0', N);
    return std::string(text, terminator ? static_cast<const char*>(terminator) - text : N);
}

// The texts a driver reports for one device; everything else of the record is derived.
struct DeviceTexts {
    std::string cameraId;
    std::string vendorName;
    std::string serialNumber;
    std::string modelName;
    std::string displayName;
    std::string userDefinedName;
};

// An enumerated device: all-zero record with the texts, the type and isAvailable set.
DeviceInfo makeDeviceRecord(Ruvo_CameraType type, const DeviceTexts& texts);

// The maximum image size every camera constructor sets in its own copy of the record.
constexpr int32_t kCameraMaxWidth = 1280;
constexpr int32_t kCameraMaxHeight = 1024;

// Appends a whole copy of `device` unless the list is full. Returns false when full.
bool appendDeviceRecord(_RUVO_DEVICE_INFO_LIST& list, const DeviceInfo& device);

// Frees `data` with array delete when set, then zeroes every field but `channels`.
void releaseImageData(ImageData& image);

}  // namespace telvarra

#endif
