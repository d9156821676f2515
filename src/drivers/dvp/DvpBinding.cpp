#include "drivers/dvp/DvpBinding.h"

namespace telvarra::dvp {

namespace {

// At namespace scope for the same reason as every make's binding: it outlives the registry's
// drivers, which may still release it when a host exits without releasing the library.
DvpBinding g_binding(platform::platformFileName("DVPCamera64.dll", "libdvp.so"));

}  // namespace

DvpBinding& dvpBinding() { return g_binding; }

}  // namespace telvarra::dvp
