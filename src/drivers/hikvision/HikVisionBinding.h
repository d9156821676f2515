// The HikVision SDK as this library binds it: the list of bound functions (all 33 required, in
// the vendor library's binding order) and the process-wide binding of MvCameraControl.
#ifndef TELVARRA_DRIVERS_HIKVISION_HIKVISIONBINDING_H
#define TELVARRA_DRIVERS_HIKVISION_HIKVISIONBINDING_H

#include <iterator>

#include "platform/SdkBinding.h"
#include "vendor/hikvision/HikVisionSdk.h"

namespace telvarra::hikvision {

namespace sdk = vendor::hikvision;

#define TELVARRA_HIKVISION_BINDING(TYPED, NAMED) \
    TYPED(MV_CC_Initialize, Required)            \
    TYPED(MV_CC_Finalize, Required)              \
    TYPED(MV_CC_CreateHandle, Required)          \
    TYPED(MV_CC_OpenDevice, Required)            \
    TYPED(MV_CC_DestroyHandle, Required)         \
    TYPED(MV_CC_GetEnumValue, Required)          \
    TYPED(MV_CC_SetEnumValue, Required)          \
    TYPED(MV_CC_GetIntValueEx, Required)         \
    TYPED(MV_CC_SetIntValueEx, Required)         \
    TYPED(MV_CC_IsDeviceConnected, Required)     \
    TYPED(MV_CC_CloseDevice, Required)           \
    TYPED(MV_CC_StartGrabbing, Required)         \
    TYPED(MV_CC_StopGrabbing, Required)          \
    TYPED(MV_CC_GetImageBuffer, Required)        \
    TYPED(MV_CC_FreeImageBuffer, Required)       \
    TYPED(MV_CC_EnumDevices, Required)           \
    TYPED(MV_CC_GetGainMode, Required)           \
    TYPED(MV_CC_SetGainMode, Required)           \
    TYPED(MV_CC_GetBrightness, Required)         \
    TYPED(MV_CC_SetBrightness, Required)         \
    TYPED(MV_CC_GetFloatValue, Required)         \
    TYPED(MV_CC_SetFloatValue, Required)         \
    TYPED(MV_CC_GetExposureTime, Required)       \
    TYPED(MV_CC_SetExposureTime, Required)       \
    TYPED(MV_CC_GetSDKVersion, Required)         \
    TYPED(MV_CC_GetExposureAutoMode, Required)   \
    TYPED(MV_CC_SetExposureAutoMode, Required)   \
    TYPED(MV_CC_FlipImage, Required)             \
    TYPED(MV_CC_RotateImage, Required)           \
    TYPED(MV_CC_ConvertPixelTypeEx, Required)    \
    TYPED(MV_CC_GetGain, Required)               \
    TYPED(MV_CC_SetGain, Required)               \
    TYPED(MV_CC_SetCommandValue, Required)

struct HikVisionFunctions {
    using Signatures = sdk::HikVisionSignatures;
    TELVARRA_SDK_TABLE(TELVARRA_HIKVISION_BINDING)
};

static_assert(std::size(HikVisionFunctions::kNames) == 33);

using HikVisionBinding = platform::SdkBinding<HikVisionFunctions>;

// The process-wide binding, opened by the vendor's file name of the platform
// (MvCameraControl.dll, libMvCameraControl.so) through the system search order. Only the
// driver's initialize and uninitialize load and release it.
HikVisionBinding& hikVisionBinding();

inline const HikVisionFunctions& hikVisionSdk() { return hikVisionBinding().functions(); }

// "3.2.1.0": MV_CC_GetSDKVersion's packed bytes, asked of a library opened on its own (the SDK
// allows the call before its start).
std::string readSdkVersion(const std::function<void*(const char* name)>& lookup);

}  // namespace telvarra::hikvision

#endif
