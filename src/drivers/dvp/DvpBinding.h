// The DVP2 SDK as this library binds it: the 37 names of its list, every one required, and the
// process-wide binding of DVPCamera64.dll / libdvp.so.
#ifndef TELVARRA_DRIVERS_DVP_DVPBINDING_H
#define TELVARRA_DRIVERS_DVP_DVPBINDING_H

#include <iterator>

#include "platform/SdkBinding.h"
#include "vendor/dvp/DvpSdk.h"

namespace telvarra::dvp {

namespace sdk = vendor::dvp;

struct DvpFunctions {
    using Signatures = sdk::DvpSignatures;
    TELVARRA_SDK_REQUIRED_TABLE(TELVARRA_DVP_LOAD_LIST)
};

static_assert(std::size(DvpFunctions::kNames) == 37);

using DvpBinding = platform::SdkBinding<DvpFunctions>;

// The process-wide binding, opened by the vendor's file name of the platform through the system
// search order. Only the driver loads and releases it.
DvpBinding& dvpBinding();

inline const DvpFunctions& dvpSdk() { return dvpBinding().functions(); }

}  // namespace telvarra::dvp

#endif
