// The vendor functions the Canon simulator exports, declared from the binding's own lists, so that
// every export has the exact signature the loader binds (a definition that differed would not
// compile). Test programs that link the simulator call them directly through this header.
#ifndef TELVARRA_SIM_CANON_CANONEXPORTS_H
#define TELVARRA_SIM_CANON_CANONEXPORTS_H

#include "sim/common/SimExport.h"
#include "vendor/canon/CanonSdk.h"

namespace telvarra::vendor::canon {

extern "C" {
#define CANONSIM_DECLARE_EXPORT(returnType, name, parameters) \
    TELVARRA_SIM_API returnType name parameters;
TELVARRA_CANON_FUNCTIONS(CANONSIM_DECLARE_EXPORT)
#undef CANONSIM_DECLARE_EXPORT

// The other names of the load list, which the library looks up but never calls: each answers
// EDS_ERR_NOT_SUPPORTED. They take no arguments here; a caller that passes some leaves them
// unread, harmless in both calling conventions.
#define CANONSIM_SKIP_CALLED(name)
#define CANONSIM_DECLARE_OTHER(name) TELVARRA_SIM_API EdsError name(void);
TELVARRA_CANON_LOAD_LIST(CANONSIM_SKIP_CALLED, CANONSIM_DECLARE_OTHER)
#undef CANONSIM_DECLARE_OTHER
#undef CANONSIM_SKIP_CALLED
}

}  // namespace telvarra::vendor::canon

#endif
