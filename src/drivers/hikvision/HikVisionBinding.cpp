#include "drivers/hikvision/HikVisionBinding.h"

#include <string>

namespace telvarra::hikvision {

namespace {

// At namespace scope, built when the module loads: the library must outlive the driver registry
// (made later, so destroyed sooner), whose drivers still call the SDK when a host exits without
// releasing the library.
HikVisionBinding g_binding(platform::sharedLibraryFileName("MvCameraControl"));

}  // namespace

HikVisionBinding& hikVisionBinding() { return g_binding; }

std::string readSdkVersion(const std::function<void*(const char* name)>& lookup) {
    auto* version = reinterpret_cast<sdk::HikVisionSignatures::MV_CC_GetSDKVersion*>(
        lookup("MV_CC_GetSDKVersion"));
    if (!version) return {};
    const unsigned int packed = version();
    return std::to_string(packed >> 24) + "." + std::to_string((packed >> 16) & 0xFF) + "." +
           std::to_string((packed >> 8) & 0xFF) + "." + std::to_string(packed & 0xFF);
}

}  // namespace telvarra::hikvision
