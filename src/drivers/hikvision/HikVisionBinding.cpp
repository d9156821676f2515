#include "drivers/hikvision/HikVisionBinding.h"

namespace telvarra::hikvision {

namespace {

// At namespace scope, built when the module loads: the library must outlive the driver registry
// (made later, so destroyed sooner), whose drivers still call the SDK when a host exits without
// releasing the library.
HikVisionBinding g_binding(platform::sharedLibraryFileName("MvCameraControl"));

}  // namespace

HikVisionBinding& hikVisionBinding() { return g_binding; }

}  // namespace telvarra::hikvision
