// The vendor functions the DaHeng simulator exports, declared from the binding's own lists, so
// that every export has the exact signature the loader binds (a definition that differed would
// not compile). Test programs that link the simulator call them directly through this header.
#ifndef TELVARRA_SIM_DAHENG_DAHENGEXPORTS_H
#define TELVARRA_SIM_DAHENG_DAHENGEXPORTS_H

#include "sim/common/SimExport.h"
#include "vendor/daheng/DaHengSdk.h"

namespace telvarra::vendor::daheng {

extern "C" {
#define DAHSIM_DECLARE_EXPORT(returnType, name, parameters) \
    TELVARRA_SIM_API returnType name parameters;
TELVARRA_DAHENG_FUNCTIONS(DAHSIM_DECLARE_EXPORT)
#undef DAHSIM_DECLARE_EXPORT

// Bound but never called by the library: each answers GX_STATUS_NOT_IMPLEMENTED. They take no
// arguments here; a caller that passes some leaves them unread, harmless in both conventions.
#define DAHSIM_DECLARE_UNCALLED(name) TELVARRA_SIM_API GX_STATUS name(void);
TELVARRA_DAHENG_UNCALLED_NAMES(DAHSIM_DECLARE_UNCALLED)
#undef DAHSIM_DECLARE_UNCALLED
}

}  // namespace telvarra::vendor::daheng

#endif
