#include "drivers/canon/CanonBodies.h"

#include <iostream>

#include "core/Records.h"
#include "telvarra/CameraLogger.h"

namespace telvarra::canon {

namespace {

constexpr sdk::EdsUInt32 kSerialNumberBytes = 256;

void logInfo(const std::string& message) {
    CameraLogger::getInstance().log(LogLevel::Info, message);
}

std::string camerasLine(const char* prefix, std::size_t count) {
    return prefix + std::to_string(count) + " Canon cameras";
}

void failedAt(sdk::EdsInt32 index, sdk::EdsError error) {
    const std::string line =
        "Failed to get camera at index " + std::to_string(index) + ": " + std::to_string(error);
    std::cerr << line << std::endl;
    logInfo(line);
}

// The body's serial number, read in a session of its own; empty when the body refused.
bool readSerialNumber(const CanonObject& camera, sdk::EdsInt32 index, std::string& serial) {
    const CanonFunctions& eds = canonSdk();
    sdk::EdsError error = eds.EdsOpenSession(camera.get());
    if (error != sdk::EDS_ERR_OK) {
        failedAt(index, error);
        return false;
    }
    char text[kSerialNumberBytes] = {};
    error =
        eds.EdsGetPropertyData(camera.get(), sdk::kEdsPropID_BodyIDEx, 0, kSerialNumberBytes, text);
    eds.EdsCloseSession(camera.get());
    if (error != sdk::EDS_ERR_OK) {
        failedAt(index, error);
        return false;
    }
    serial = fieldText(text);
    return true;
}

}  // namespace

BodyListing listBodies() {
    const CanonFunctions& eds = canonSdk();
    BodyListing listing;
    // The list is released too: the SDK counts it as one more object the caller holds.
    CanonObject list;
    sdk::EdsUInt32 count = 0;
    if (eds.EdsGetCameraList(list.receive()) != sdk::EDS_ERR_OK || !list ||
        eds.EdsGetChildCount(list.get(), &count) != sdk::EDS_ERR_OK) {
        logInfo(camerasLine("Src Enumerated ", 0));
        return listing;
    }
    logInfo(camerasLine("Src Enumerated ", count));
    if (count == 0) {
        logInfo(camerasLine("Enumerated ", 0));
        return listing;
    }
    listing.listed = true;
    for (sdk::EdsUInt32 i = 0; i < count; ++i) {
        const auto index = static_cast<sdk::EdsInt32>(i);
        CanonObject camera;
        const sdk::EdsError error = eds.EdsGetChildAtIndex(list.get(), index, camera.receive());
        if (error != sdk::EDS_ERR_OK || !camera) {
            failedAt(index, error);
            continue;
        }
        std::string serial;
        if (!readSerialNumber(camera, index, serial)) continue;
        sdk::EdsDeviceInfo info{};
        if (const sdk::EdsError infoError = eds.EdsGetDeviceInfo(camera.get(), &info);
            infoError != sdk::EDS_ERR_OK) {
            std::cerr << "Failed to get device info for camera at index " << i << ": " << infoError
                      << std::endl;
            continue;
        }
        const std::string description = fieldText(info.szDeviceDescription);
        std::cout << "\nCamera Index: " << i << "\nDevice Name: " << description
                  << "\nPort Type: " << fieldText(info.szPortName) << std::endl;
        if (serial.empty()) continue;
        listing.bodies.push_back({std::move(camera), serial, description});
    }
    logInfo(camerasLine("Enumerated ", listing.bodies.size()));
    return listing;
}

}  // namespace telvarra::canon
