// The vendor's exported C functions (declared in HikVisionExports.h): each hands its arguments
// to the simulator.
#include "sim/hikvision/HikVisionExports.h"
#include "sim/hikvision/HikVisionSimulator.h"

namespace telvarra::vendor::hikvision {

using telvarra::sim::hikvision::simulator;

extern "C" {

int MV_CC_Initialize(void) { return simulator().initialize(); }

int MV_CC_Finalize(void) { return simulator().finalize(); }

int MV_CC_CreateHandle(void** handle, const MV_CC_DEVICE_INFO* deviceInfo) {
    return simulator().createHandle(handle, deviceInfo);
}

int MV_CC_OpenDevice(void* handle, unsigned int accessMode, unsigned short switchoverKey) {
    return simulator().openDevice(handle, accessMode, switchoverKey);
}

int MV_CC_DestroyHandle(void* handle) { return simulator().destroyHandle(handle); }

int MV_CC_GetEnumValue(void* handle, const char* key, MVCC_ENUMVALUE* value) {
    return simulator().getEnumValue(handle, key, value);
}

int MV_CC_SetEnumValue(void* handle, const char* key, unsigned int value) {
    return simulator().setEnumValue(handle, key, value);
}

int MV_CC_GetIntValueEx(void* handle, const char* key, MVCC_INTVALUE_EX* value) {
    return simulator().getIntValueEx(handle, key, value);
}

int MV_CC_SetIntValueEx(void* handle, const char* key, std::int64_t value) {
    return simulator().setIntValueEx(handle, key, value);
}

bool MV_CC_IsDeviceConnected(void* handle) { return simulator().isDeviceConnected(handle); }

int MV_CC_CloseDevice(void* handle) { return simulator().closeDevice(handle); }

int MV_CC_StartGrabbing(void* handle) { return simulator().startGrabbing(handle); }

int MV_CC_StopGrabbing(void* handle) { return simulator().stopGrabbing(handle); }

int MV_CC_GetImageBuffer(void* handle, MV_FRAME_OUT* frame, unsigned int timeoutMs) {
    return simulator().getImageBuffer(handle, frame, timeoutMs);
}

int MV_CC_FreeImageBuffer(void* handle, MV_FRAME_OUT* frame) {
    return simulator().freeImageBuffer(handle, frame);
}

int MV_CC_EnumDevices(unsigned int layerMask, MV_CC_DEVICE_INFO_LIST* list) {
    return simulator().enumDevices(layerMask, list);
}

int MV_CC_GetGainMode(void* handle, MVCC_ENUMVALUE* value) {
    return simulator().getGainMode(handle, value);
}

int MV_CC_SetGainMode(void* handle, unsigned int value) {
    return simulator().setGainMode(handle, value);
}

int MV_CC_GetBrightness(void* handle, MVCC_INTVALUE* value) {
    return simulator().getBrightness(handle, value);
}

int MV_CC_SetBrightness(void* handle, unsigned int value) {
    return simulator().setBrightness(handle, value);
}

int MV_CC_GetFloatValue(void* handle, const char* key, MVCC_FLOATVALUE* value) {
    return simulator().getFloatValue(handle, key, value);
}

int MV_CC_SetFloatValue(void* handle, const char* key, float value) {
    return simulator().setFloatValue(handle, key, value);
}

int MV_CC_GetExposureTime(void* handle, MVCC_FLOATVALUE* value) {
    return simulator().getExposureTime(handle, value);
}

int MV_CC_SetExposureTime(void* handle, float value) {
    return simulator().setExposureTime(handle, value);
}

unsigned int MV_CC_GetSDKVersion(void) { return simulator().getSdkVersion(); }

int MV_CC_GetExposureAutoMode(void* handle, MVCC_ENUMVALUE* value) {
    return simulator().getExposureAutoMode(handle, value);
}

int MV_CC_SetExposureAutoMode(void* handle, unsigned int value) {
    return simulator().setExposureAutoMode(handle, value);
}

int MV_CC_FlipImage(void* handle, MV_CC_FLIP_IMAGE_PARAM* param) {
    return simulator().flipImage(handle, param);
}

int MV_CC_RotateImage(void* handle, MV_CC_ROTATE_IMAGE_PARAM* param) {
    return simulator().rotateImage(handle, param);
}

int MV_CC_ConvertPixelTypeEx(void* handle, MV_CC_PIXEL_CONVERT_PARAM_EX* param) {
    return simulator().convertPixelTypeEx(handle, param);
}

int MV_CC_GetGain(void* handle, MVCC_FLOATVALUE* value) {
    return simulator().getGain(handle, value);
}

int MV_CC_SetGain(void* handle, float value) { return simulator().setGain(handle, value); }

int MV_CC_SetCommandValue(void* handle, const char* key) {
    return simulator().setCommandValue(handle, key);
}

}  // extern "C"

}  // namespace telvarra::vendor::hikvision
