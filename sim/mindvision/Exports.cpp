// The vendor's exported C functions (declared in MindVisionExports.h): each hands its arguments
// to the simulator.
#include "sim/mindvision/MindVisionExports.h"
#include "sim/mindvision/MindVisionSimulator.h"

namespace telvarra::vendor::mindvision {

using telvarra::sim::mindvision::simulator;

extern "C" {

CameraSdkStatus CameraSdkInit(int language) { return simulator().sdkInit(language); }

CameraSdkStatus CameraEnumerateDevice(tSdkCameraDevInfo* list, INT* count) {
    return simulator().enumerateDevice(list, count);
}

CameraSdkStatus CameraInit(tSdkCameraDevInfo* info, int paramLoadMode, int team,
                           CameraHandle* handle) {
    return simulator().init(info, paramLoadMode, team, handle);
}

CameraSdkStatus CameraGetCapability(CameraHandle handle, tSdkCameraCapbility* out) {
    return simulator().getCapability(handle, out);
}

CameraSdkStatus CameraGetIspOutFormat(CameraHandle handle, UINT* format) {
    return simulator().getIspOutFormat(handle, format);
}

CameraSdkStatus CameraSetIspOutFormat(CameraHandle handle, UINT format) {
    return simulator().setIspOutFormat(handle, format);
}

CameraSdkStatus CameraSetTriggerMode(CameraHandle handle, int mode) {
    return simulator().setTriggerMode(handle, mode);
}

CameraSdkStatus CameraSetCrossLine(CameraHandle handle, int line, INT x, INT y, UINT color,
                                   BOOL visible) {
    return simulator().setCrossLine(handle, line, x, y, color, visible);
}

BYTE* CameraAlignMalloc(int size, int align) { return simulator().alignMalloc(size, align); }

void CameraAlignFree(BYTE* memory) { simulator().alignFree(memory); }

CameraSdkStatus CameraConnectTest(CameraHandle handle) { return simulator().connectTest(handle); }

CameraSdkStatus CameraUnInit(CameraHandle handle) { return simulator().unInit(handle); }

CameraSdkStatus CameraPlay(CameraHandle handle) { return simulator().play(handle); }

CameraSdkStatus CameraStop(CameraHandle handle) { return simulator().stop(handle); }

CameraSdkStatus CameraGetImageBufferPriority(CameraHandle handle, tSdkFrameHead* head, BYTE** raw,
                                             UINT timeoutMs, UINT priority) {
    return simulator().getImageBufferPriority(handle, head, raw, timeoutMs, priority);
}

CameraSdkStatus CameraImageProcess(CameraHandle handle, BYTE* raw, BYTE* out, tSdkFrameHead* head) {
    return simulator().imageProcess(handle, raw, out, head);
}

CameraSdkStatus CameraReleaseImageBuffer(CameraHandle handle, BYTE* raw) {
    return simulator().releaseImageBuffer(handle, raw);
}

CameraSdkStatus CameraSetMirror(CameraHandle handle, int direction, BOOL on) {
    return simulator().setMirror(handle, direction, on);
}

CameraSdkStatus CameraGetMirror(CameraHandle handle, int direction, BOOL* on) {
    return simulator().getMirror(handle, direction, on);
}

CameraSdkStatus CameraSetRotate(CameraHandle handle, int quarterTurns) {
    return simulator().setRotate(handle, quarterTurns);
}

CameraSdkStatus CameraGetRotate(CameraHandle handle, int* quarterTurns) {
    return simulator().getRotate(handle, quarterTurns);
}

CameraSdkStatus CameraSetAeState(CameraHandle handle, BOOL automatic) {
    return simulator().setAeState(handle, automatic);
}

CameraSdkStatus CameraGetAeState(CameraHandle handle, BOOL* automatic) {
    return simulator().getAeState(handle, automatic);
}

CameraSdkStatus CameraSetAeTarget(CameraHandle handle, int target) {
    return simulator().setAeTarget(handle, target);
}

CameraSdkStatus CameraGetAeTarget(CameraHandle handle, int* target) {
    return simulator().getAeTarget(handle, target);
}

CameraSdkStatus CameraSetAnalogGain(CameraHandle handle, INT gain) {
    return simulator().setAnalogGain(handle, gain);
}

CameraSdkStatus CameraGetAnalogGain(CameraHandle handle, INT* gain) {
    return simulator().getAnalogGain(handle, gain);
}

CameraSdkStatus CameraGetExposureTimeRange(CameraHandle handle, double* minimum, double* maximum,
                                           double* step) {
    return simulator().getExposureTimeRange(handle, minimum, maximum, step);
}

CameraSdkStatus CameraSetExposureTime(CameraHandle handle, double microseconds) {
    return simulator().setExposureTime(handle, microseconds);
}

CameraSdkStatus CameraGetExposureTime(CameraHandle handle, double* microseconds) {
    return simulator().getExposureTime(handle, microseconds);
}

CameraSdkStatus CameraSetImageResolution(CameraHandle handle, tSdkImageResolution* resolution) {
    return simulator().setImageResolution(handle, resolution);
}

CameraSdkStatus CameraGetImageResolution(CameraHandle handle, tSdkImageResolution* resolution) {
    return simulator().getImageResolution(handle, resolution);
}

#define MVSIM_SKIP_CALLED(name)
#define MVSIM_DEFINE_OTHER(name) \
    CameraSdkStatus name(void) { return simulator().notSupported(#name); }
TELVARRA_MINDVISION_LOAD_LIST(MVSIM_SKIP_CALLED, MVSIM_DEFINE_OTHER)
#undef MVSIM_DEFINE_OTHER
#undef MVSIM_SKIP_CALLED

}  // extern "C"

}  // namespace telvarra::vendor::mindvision
