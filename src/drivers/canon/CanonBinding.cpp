#include "drivers/canon/CanonBinding.h"

#include "platform/Paths.h"

namespace telvarra::canon {

namespace {

// Beside this library, not through the system's search order: a copy of the runtime elsewhere
// on the path is never taken. When this library's own path cannot be told (or fills the whole
// 260-character buffer on Windows), the directory is empty and the bare name is loaded.
// At namespace scope for the same reason as every make's binding.
CanonBinding g_binding(platform::moduleDirectory() +
                       platform::platformFileName("EDSDK.dll", "libEDSDK.so"));

}  // namespace

CanonBinding& canonBinding() { return g_binding; }

}  // namespace telvarra::canon
