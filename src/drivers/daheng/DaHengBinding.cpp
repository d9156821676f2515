#include "drivers/daheng/DaHengBinding.h"

namespace telvarra::daheng {

namespace {

// At namespace scope for the same reason as every make's binding: it outlives the registry's
// drivers, which may still stop the SDK when a host exits without releasing the library.
DaHengBinding g_binding(platform::platformFileName("GxIAPI.dll", "libgxiapi.so"));

}  // namespace

DaHengBinding& dahengBinding() { return g_binding; }

}  // namespace telvarra::daheng
