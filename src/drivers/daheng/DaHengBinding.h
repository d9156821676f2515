// The DaHeng Galaxy SDK as this library binds it: the list of bound functions (61 in binding order,
// all required but GXRegisterDeviceOfflineCallback, which is never called) and the process-wide
// binding of GxIAPI.
#ifndef TELVARRA_DRIVERS_DAHENG_DAHENGBINDING_H
#define TELVARRA_DRIVERS_DAHENG_DAHENGBINDING_H

#include <iterator>

#include "platform/SdkBinding.h"
#include "vendor/daheng/DaHengSdk.h"

namespace telvarra::daheng {

namespace sdk = vendor::daheng;

// clang-format off
#define TELVARRA_DAHENG_BINDING(TYPED, NAMED) \
    TYPED(GXInitLib, Required) \
    TYPED(GXCloseLib, Required) \
    NAMED(GXSetLogType, Required) \
    NAMED(GXGetLogType, Required) \
    NAMED(GXGetLastError, Required) \
    NAMED(GXUpdateAllDeviceListEx, Required) \
    TYPED(GXUpdateAllDeviceList, Required) \
    NAMED(GXGetInterfaceNum, Required) \
    NAMED(GXGetInterfaceInfo, Required) \
    NAMED(GXGetInterfaceHandle, Required) \
    NAMED(GXGetDeviceInfo, Required) \
    TYPED(GXOpenDevice, Required) \
    TYPED(GXCloseDevice, Required) \
    NAMED(GXGetParentInterfaceFromDev, Required) \
    NAMED(GXGetLocalDeviceHandleFromDev, Required) \
    NAMED(GXGetDataStreamNumFromDev, Required) \
    NAMED(GXGetDataStreamHandleFromDev, Required) \
    NAMED(GXGetDevicePersistentIpAddress, Required) \
    NAMED(GXSetDevicePersistentIpAddress, Required) \
    NAMED(GXGigEIpConfiguration, Required) \
    NAMED(GXGigEForceIp, Required) \
    NAMED(GXGigEResetDevice, Required) \
    NAMED(GXGetPayLoadSize, Required) \
    TYPED(GXFeatureSave, Required) \
    NAMED(GXFeatureLoad, Required) \
    NAMED(GXFeatureSaveW, Required) \
    NAMED(GXFeatureLoadW, Required) \
    NAMED(GXGetNodeAccessMode, Required) \
    TYPED(GXGetIntValue, Required) \
    TYPED(GXSetIntValue, Required) \
    TYPED(GXGetEnumValue, Required) \
    TYPED(GXSetEnumValue, Required) \
    TYPED(GXSetEnumValueByString, Required) \
    TYPED(GXGetFloatValue, Required) \
    TYPED(GXSetFloatValue, Required) \
    NAMED(GXGetBoolValue, Required) \
    NAMED(GXSetBoolValue, Required) \
    NAMED(GXGetStringValue, Required) \
    NAMED(GXSetStringValue, Required) \
    TYPED(GXSetCommandValue, Required) \
    NAMED(GXGetRegisterLength, Required) \
    NAMED(GXGetRegisterValue, Required) \
    NAMED(GXSetRegisterValue, Required) \
    NAMED(GXReadPort, Required) \
    NAMED(GXWritePort, Required) \
    NAMED(GXReadPortStacked, Required) \
    NAMED(GXWritePortStacked, Required) \
    NAMED(GXGetOptimalPacketSize, Required) \
    NAMED(GXSetAcqusitionBufferNumber, Required) \
    NAMED(GXRegisterCaptureCallback, Required) \
    NAMED(GXUnregisterCaptureCallback, Required) \
    TYPED(GXGetImage, Required) \
    NAMED(GXFlushQueue, Required) \
    NAMED(GXRegisterDeviceOfflineCallback, Optional) \
    NAMED(GXUnregisterDeviceOfflineCallback, Required) \
    NAMED(GXFlushEvent, Required) \
    NAMED(GXGetEventNumInQueue, Required) \
    NAMED(GXRegisterFeatureCallbackByString, Required) \
    NAMED(GXUnregisterFeatureCallbackByString, Required) \
    NAMED(GXUpdateDeviceList, Required) \
    TYPED(GXGetAllDeviceBaseInfo, Required)
// clang-format on

struct DaHengFunctions {
    using Signatures = sdk::DaHengSignatures;
    TELVARRA_SDK_TABLE(TELVARRA_DAHENG_BINDING)
};

static_assert(std::size(DaHengFunctions::kNames) == 61);

using DaHengBinding = platform::SdkBinding<DaHengFunctions>;

// The process-wide binding, opened by the vendor's file name of the platform (GxIAPI.dll,
// libgxiapi.so) through the system search order. Only the driver loads and releases it.
DaHengBinding& dahengBinding();

inline const DaHengFunctions& dahengSdk() { return dahengBinding().functions(); }

}  // namespace telvarra::daheng

#endif
