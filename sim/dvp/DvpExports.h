// The vendor functions the Dvp simulator exports, declared from the binding's own lists, so that
// every export has the exact signature the loader binds (a definition that differed would not
// compile). Test programs that link the simulator call them directly through this header.
#ifndef TELVARRA_SIM_DVP_DVPEXPORTS_H
#define TELVARRA_SIM_DVP_DVPEXPORTS_H

#include "sim/common/SimExport.h"
#include "vendor/dvp/DvpSdk.h"

namespace telvarra::vendor::dvp {

extern "C" {
#define DVPSIM_DECLARE_EXPORT(returnType, name, parameters) \
    TELVARRA_SIM_API returnType name parameters;
TELVARRA_DVP_FUNCTIONS(DVPSIM_DECLARE_EXPORT)
#undef DVPSIM_DECLARE_EXPORT

// The other names of the load list, which the library looks up but never calls: each answers
// DVP_STATUS_NOT_SUPPORTED. They take no arguments here; a caller that passes some leaves them
// unread, harmless in both calling conventions.
#define DVPSIM_SKIP_CALLED(name)
#define DVPSIM_DECLARE_OTHER(name) TELVARRA_SIM_API dvpStatus name(void);
TELVARRA_DVP_LOAD_LIST(DVPSIM_SKIP_CALLED, DVPSIM_DECLARE_OTHER)
#undef DVPSIM_DECLARE_OTHER
#undef DVPSIM_SKIP_CALLED
}

}  // namespace telvarra::vendor::dvp

#endif
