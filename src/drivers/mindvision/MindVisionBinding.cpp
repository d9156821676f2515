#include "drivers/mindvision/MindVisionBinding.h"

namespace telvarra::mindvision {

namespace {

// At namespace scope for the same reason as every make's binding: it outlives the registry's
// drivers, which may still release it when a host exits without releasing the library.
MindVisionBinding g_binding(platform::platformFileName("MVCAMSDK_X64.dll", "libMVSDK.so"));

}  // namespace

MindVisionBinding& mindVisionBinding() { return g_binding; }

}  // namespace telvarra::mindvision
