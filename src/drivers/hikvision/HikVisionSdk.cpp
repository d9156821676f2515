#include "drivers/hikvision/HikVisionSdk.h"

#include "platform/BindSymbol.h"
#include "platform/DynamicLibrary.h"

namespace telvarra::hikvision {

namespace {

// Both live at namespace scope, built when the module loads: the library handle must outlive
// the driver registry (made later, so destroyed sooner), whose drivers still call the SDK when a
// host exits without releasing the library.
HikVisionFunctions g_functions;
platform::DynamicLibrary g_library;

HikVisionFunctions& table() { return g_functions; }
platform::DynamicLibrary& library() { return g_library; }

}  // namespace

const HikVisionFunctions& hikVisionSdk() { return table(); }

std::string hikVisionSdkFileName() { return platform::sharedLibraryFileName("MvCameraControl"); }

int loadHikVisionSdk(const std::string& fileName) {
    if (!library().open(fileName)) return kHikVisionSdkFailed;
    // Every name is looked up, even after a miss, so the table always reflects this library.
    bool allFound = true;
    HikVisionFunctions& functions = table();
#define TELVARRA_HIKVISION_BIND(returnType, name, parameters) \
    allFound &= platform::bindSymbol(library(), #name, functions.name);
    TELVARRA_HIKVISION_FUNCTIONS(TELVARRA_HIKVISION_BIND)
#undef TELVARRA_HIKVISION_BIND
    return allFound ? kHikVisionSdkLoaded : kHikVisionSdkFailed;
}

void unloadHikVisionSdk() { library().close(); }

bool hikVisionSdkLibraryLoaded() { return library().isOpen(); }

}  // namespace telvarra::hikvision
