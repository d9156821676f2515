// The vendor functions the MindVision simulator exports, declared from the binding's own lists, so
// that every export has the exact signature the loader binds (a definition that differed would
// not compile). Test programs that link the simulator call them directly through this header.
#ifndef TELVARRA_SIM_MINDVISION_MINDVISIONEXPORTS_H
#define TELVARRA_SIM_MINDVISION_MINDVISIONEXPORTS_H

#include "sim/common/SimExport.h"
#include "vendor/mindvision/MindVisionSdk.h"

namespace telvarra::vendor::mindvision {

extern "C" {
#define MVSIM_DECLARE_EXPORT(returnType, name, parameters) \
    TELVARRA_SIM_API returnType name parameters;
TELVARRA_MINDVISION_FUNCTIONS(MVSIM_DECLARE_EXPORT)
#undef MVSIM_DECLARE_EXPORT

// The other names of the vendor's load list, which the library looks up but never calls: each
// answers CAMERA_STATUS_NOT_SUPPORTED. They take no arguments here; a caller that passes some
// leaves them unread, harmless in both calling conventions.
#define MVSIM_SKIP_CALLED(name)
#define MVSIM_DECLARE_OTHER(name) TELVARRA_SIM_API CameraSdkStatus name(void);
TELVARRA_MINDVISION_LOAD_LIST(MVSIM_SKIP_CALLED, MVSIM_DECLARE_OTHER)
#undef MVSIM_DECLARE_OTHER
#undef MVSIM_SKIP_CALLED
}

}  // namespace telvarra::vendor::mindvision

#endif
