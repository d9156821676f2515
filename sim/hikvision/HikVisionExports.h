// The vendor functions the HikVision simulator exports, declared from the binding's own list, so
// that every export has the exact signature the loader binds (a definition that differed would
// not compile). Test programs that link the simulator call them directly through this header.
#ifndef TELVARRA_SIM_HIKVISION_HIKVISIONEXPORTS_H
#define TELVARRA_SIM_HIKVISION_HIKVISIONEXPORTS_H

#include "sim/common/SimExport.h"
#include "vendor/hikvision/HikVisionSdk.h"

namespace telvarra::vendor::hikvision {

extern "C" {
#define HIKSIM_DECLARE_EXPORT(returnType, name, parameters) \
    TELVARRA_SIM_API returnType name parameters;
TELVARRA_HIKVISION_FUNCTIONS(HIKSIM_DECLARE_EXPORT)
#undef HIKSIM_DECLARE_EXPORT
}

}  // namespace telvarra::vendor::hikvision

#endif
