// The MindVision SDK as this library binds it: all 279 names of the vendor's load list, every
// one optional (a missing function leaves its pointer empty and the load still succeeds), and
// the process-wide binding of MVCAMSDK_X64.dll / libMVSDK.so.
#ifndef TELVARRA_DRIVERS_MINDVISION_MINDVISIONBINDING_H
#define TELVARRA_DRIVERS_MINDVISION_MINDVISIONBINDING_H

#include <iterator>

#include "platform/SdkBinding.h"
#include "vendor/mindvision/MindVisionSdk.h"

namespace telvarra::mindvision {

namespace sdk = vendor::mindvision;

struct MindVisionFunctions {
    using Signatures = sdk::MindVisionSignatures;
    TELVARRA_SDK_OPTIONAL_TABLE(TELVARRA_MINDVISION_LOAD_LIST)
};

static_assert(std::size(MindVisionFunctions::kNames) == 279);

using MindVisionBinding = platform::SdkBinding<MindVisionFunctions>;

// The process-wide binding, opened by the vendor's file name of the platform through the system
// search order. Only the driver loads and releases it.
MindVisionBinding& mindVisionBinding();

inline const MindVisionFunctions& mindVisionSdk() { return mindVisionBinding().functions(); }

}  // namespace telvarra::mindvision

#endif
