// The vendor's exported C functions (declared in DvpExports.h): each hands its arguments to the
// simulator.
#include "sim/dvp/DvpExports.h"
#include "sim/dvp/DvpSimulator.h"

namespace telvarra::vendor::dvp {

using telvarra::sim::dvp::simulator;

extern "C" {

dvpStatus dvpRefresh(dvpUint32* count) { return simulator().refresh(count); }

dvpStatus dvpEnum(dvpUint32 index, dvpCameraInfo* info) {
    return simulator().enumerate(index, info);
}

dvpStatus dvpOpenByUserId(dvpStr userId, dvpEnum32 mode, dvpHandle* handle) {
    return simulator().openByUserId(userId, mode, handle);
}

dvpStatus dvpIsValid(dvpHandle handle, bool* isValid) {
    return simulator().isValid(handle, isValid);
}

dvpStatus dvpIsOnline(dvpHandle handle, bool* online) {
    return simulator().isOnline(handle, online);
}

dvpStatus dvpClose(dvpHandle handle) { return simulator().close(handle); }

dvpStatus dvpStart(dvpHandle handle) { return simulator().start(handle); }

dvpStatus dvpStop(dvpHandle handle) { return simulator().stop(handle); }

dvpStatus dvpGetStreamState(dvpHandle handle, dvpEnum32* state) {
    return simulator().getStreamState(handle, state);
}

dvpStatus dvpSetTriggerState(dvpHandle handle, bool on) {
    return simulator().setTriggerState(handle, on);
}

dvpStatus dvpGetTriggerState(dvpHandle handle, bool* on) {
    return simulator().getTriggerState(handle, on);
}

dvpStatus dvpGetTargetFormat(dvpHandle handle, dvpEnum32* format) {
    return simulator().getTargetFormat(handle, format);
}

dvpStatus dvpSetTargetFormat(dvpHandle handle, dvpEnum32 format) {
    return simulator().setTargetFormat(handle, format);
}

dvpStatus dvpGetExposureDescr(dvpHandle handle, dvpDoubleDescr* descriptor) {
    return simulator().getExposureDescr(handle, descriptor);
}

dvpStatus dvpGetAnalogGainDescr(dvpHandle handle, dvpFloatDescr* descriptor) {
    return simulator().getAnalogGainDescr(handle, descriptor);
}

dvpStatus dvpGetAeTargetDescr(dvpHandle handle, dvpIntDescr* descriptor) {
    return simulator().getAeTargetDescr(handle, descriptor);
}

dvpStatus dvpGetSensorInfo(dvpHandle handle, dvpSensorInfo* info) {
    return simulator().getSensorInfo(handle, info);
}

dvpStatus dvpSetAeOperation(dvpHandle handle, dvpEnum32 operation) {
    return simulator().setAeOperation(handle, operation);
}

dvpStatus dvpGetAeOperation(dvpHandle handle, dvpEnum32* operation) {
    return simulator().getAeOperation(handle, operation);
}

dvpStatus dvpGetAeTarget(dvpHandle handle, dvpInt32* target) {
    return simulator().getAeTarget(handle, target);
}

dvpStatus dvpSetAeTarget(dvpHandle handle, dvpInt32 target) {
    return simulator().setAeTarget(handle, target);
}

dvpStatus dvpSetAnalogGain(dvpHandle handle, float gain) {
    return simulator().setAnalogGain(handle, gain);
}

dvpStatus dvpGetAnalogGain(dvpHandle handle, float* gain) {
    return simulator().getAnalogGain(handle, gain);
}

dvpStatus dvpGetExposure(dvpHandle handle, double* microseconds) {
    return simulator().getExposure(handle, microseconds);
}

dvpStatus dvpSetExposure(dvpHandle handle, double microseconds) {
    return simulator().setExposure(handle, microseconds);
}

dvpStatus dvpGetFrame(dvpHandle handle, dvpFrame* frame, void** buffer, dvpUint32 timeoutMs) {
    return simulator().getFrame(handle, frame, buffer, timeoutMs);
}

#define DVPSIM_SKIP_CALLED(name)
#define DVPSIM_DEFINE_OTHER(name) \
    dvpStatus name(void) { return simulator().notSupported(#name); }
TELVARRA_DVP_LOAD_LIST(DVPSIM_SKIP_CALLED, DVPSIM_DEFINE_OTHER)
#undef DVPSIM_DEFINE_OTHER
#undef DVPSIM_SKIP_CALLED

}  // extern "C"

}  // namespace telvarra::vendor::dvp
