#include "core/Records.h"

#include <cstring>

namespace telvarra {

bool copyBoundedText(char* destination, std::size_t capacity, const char* source) {
    if (!destination || capacity == 0) return false;
    std::memset(destination, 0, capacity);
    if (!source) return false;
    const std::size_t length = std::strlen(source);
    const std::size_t copied = length < capacity ? length : capacity - 1;
    std::memcpy(destination, source, copied);
    return copied == length;
}

DeviceInfo makeDeviceRecord(Ruvo_CameraType type, const DeviceTexts& texts) {
    DeviceInfo record{};
    copyBoundedText(record.cameraId, texts.cameraId);
    record.cameraType = type;
    copyBoundedText(record.vendorName, texts.vendorName);
    copyBoundedText(record.serialNumber, texts.serialNumber);
    copyBoundedText(record.modelName, texts.modelName);
    copyBoundedText(record.displayName, texts.displayName);
    copyBoundedText(record.userDefinedName, texts.userDefinedName);
    record.isAvailable = true;
    return record;
}

bool appendDeviceRecord(_RUVO_DEVICE_INFO_LIST& list, const DeviceInfo& device) {
    if (list.count >= RUVO_MAX_DEVICES) return false;
    list.devices[list.count] = device;
    ++list.count;
    return true;
}

void releaseImageData(ImageData& image) {
    delete[] image.data;
    image.data = nullptr;
    image.width = 0;
    image.height = 0;
    image.format = RUVO_FORMAT_UNKNOWN;
    image.dataSize = 0;
    image.timestamp = 0;
    image.frameNumber = 0;
}

}  // namespace telvarra
