// The vendor's exported C functions (declared in DaHengExports.h): each hands its arguments to
// the simulator.
#include "sim/daheng/DaHengExports.h"
#include "sim/daheng/DaHengSimulator.h"

namespace telvarra::vendor::daheng {

using telvarra::sim::daheng::simulator;

extern "C" {

GX_STATUS GXInitLib(void) { return simulator().initLib(); }

GX_STATUS GXCloseLib(void) { return simulator().closeLib(); }

GX_STATUS GXUpdateAllDeviceList(std::uint32_t* count, std::uint32_t timeoutMs) {
    return simulator().updateAllDeviceList(count, timeoutMs);
}

GX_STATUS GXOpenDevice(GX_OPEN_PARAM* param, void** device) {
    return simulator().openDevice(param, device);
}

GX_STATUS GXCloseDevice(void* device) { return simulator().closeDevice(device); }

GX_STATUS GXFeatureSave(void* port, const char* filePath) {
    return simulator().featureSave(port, filePath);
}

GX_STATUS GXGetIntValue(void* port, const char* name, GX_INT_VALUE* value) {
    return simulator().getIntValue(port, name, value);
}

GX_STATUS GXSetIntValue(void* port, const char* name, std::int64_t value) {
    return simulator().setIntValue(port, name, value);
}

GX_STATUS GXGetEnumValue(void* port, const char* name, GX_ENUM_VALUE* value) {
    return simulator().getEnumValue(port, name, value);
}

GX_STATUS GXSetEnumValue(void* port, const char* name, std::int64_t value) {
    return simulator().setEnumValue(port, name, value);
}

GX_STATUS GXSetEnumValueByString(void* port, const char* name, const char* symbol) {
    return simulator().setEnumValueByString(port, name, symbol);
}

GX_STATUS GXGetFloatValue(void* port, const char* name, GX_FLOAT_VALUE* value) {
    return simulator().getFloatValue(port, name, value);
}

GX_STATUS GXSetFloatValue(void* port, const char* name, double value) {
    return simulator().setFloatValue(port, name, value);
}

GX_STATUS GXSetCommandValue(void* port, const char* name) {
    return simulator().setCommandValue(port, name);
}

GX_STATUS GXGetImage(void* device, GX_FRAME_DATA* frame, std::uint32_t timeoutMs) {
    return simulator().getImage(device, frame, timeoutMs);
}

GX_STATUS GXGetAllDeviceBaseInfo(GX_DEVICE_BASE_INFO* devices, std::size_t* bytes) {
    return simulator().getAllDeviceBaseInfo(devices, bytes);
}

#define DAHSIM_DEFINE_UNCALLED(name) \
    GX_STATUS name(void) { return simulator().notImplemented(#name); }
TELVARRA_DAHENG_UNCALLED_NAMES(DAHSIM_DEFINE_UNCALLED)
#undef DAHSIM_DEFINE_UNCALLED

}  // extern "C"

}  // namespace telvarra::vendor::daheng
