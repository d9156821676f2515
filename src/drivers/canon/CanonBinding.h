// The Canon EDSDK as this library binds it: the 54 names of its list, every one required, and
// the process-wide binding of EDSDK.dll / libEDSDK.so, looked for beside this library only.
#ifndef TELVARRA_DRIVERS_CANON_CANONBINDING_H
#define TELVARRA_DRIVERS_CANON_CANONBINDING_H

#include <iterator>

#include "platform/SdkBinding.h"
#include "vendor/canon/CanonSdk.h"

namespace telvarra::canon {

namespace sdk = vendor::canon;

struct CanonFunctions {
    using Signatures = sdk::CanonSignatures;
    TELVARRA_SDK_REQUIRED_TABLE(TELVARRA_CANON_LOAD_LIST)
};

static_assert(std::size(CanonFunctions::kNames) == 54);

using CanonBinding = platform::SdkBinding<CanonFunctions>;

// The process-wide binding. Only the driver loads and releases it.
CanonBinding& canonBinding();

inline const CanonFunctions& canonSdk() { return canonBinding().functions(); }

}  // namespace telvarra::canon

#endif
