// The simulator's own C interface for tests (HikSimControl.h).
#include <algorithm>
#include <cstring>
#include <optional>
#include <string>

#include "sim/hikvision/HikSimControl.h"
#include "sim/hikvision/HikVisionSimulator.h"

using telvarra::sim::hikvision::simulator;

namespace {

std::string text(const char* value) { return value ? value : ""; }

int result(bool ok) { return ok ? 0 : -1; }

template <class T, class Out>
int deliver(const std::optional<T>& value, Out* out) {
    if (!value) return -1;
    if (out) *out = static_cast<Out>(*value);
    return 0;
}

}  // namespace

extern "C" {

void HikSim_Reset(void) { simulator().reset(); }

int HikSim_AddDevice(const char* rigLine) { return result(simulator().addDevice(text(rigLine))); }

int HikSim_LoadRig(const char* path) { return simulator().loadRig(text(path)); }

int HikSim_RemoveDevice(const char* id) { return result(simulator().removeDevice(text(id))); }

int HikSim_Unplug(const char* id) { return result(simulator().unplug(text(id))); }

int HikSim_Replug(const char* id) { return result(simulator().replug(text(id))); }

int HikSim_SetGainRange(const char* id, float min, float max) {
    return result(simulator().setGainRange(text(id), min, max));
}

int HikSim_SetExposureRange(const char* id, float min, float max) {
    return result(simulator().setExposureRange(text(id), min, max));
}

int HikSim_SetBrightnessRange(const char* id, unsigned int min, unsigned int max) {
    return result(simulator().setBrightnessRange(text(id), min, max));
}

int HikSim_IsOpen(const char* id) {
    const auto open = simulator().isOpen(text(id));
    return open ? (*open ? 1 : 0) : -1;
}

int HikSim_IsGrabbing(const char* id) {
    const auto grabbing = simulator().isGrabbing(text(id));
    return grabbing ? (*grabbing ? 1 : 0) : -1;
}

int HikSim_FramesDelivered(const char* id, unsigned int* count) {
    return deliver(simulator().framesDelivered(text(id)), count);
}

int HikSim_DeviceSeed(const char* id, unsigned int* seed) {
    return deliver(simulator().deviceSeed(text(id)), seed);
}

void HikSim_FailCall(const char* function, int status, unsigned int nth) {
    simulator().failCall(text(function), status, nth);
}

void HikSim_FailAlways(const char* function, int status) {
    simulator().failAlways(text(function), status);
}

void HikSim_ClearFaults(void) { simulator().clearFaults(); }

unsigned int HikSim_CallCount(const char* function) {
    return simulator().callCount(text(function));
}

void HikSim_ClearCallCounts(void) { simulator().clearCallCounts(); }

int HikSim_LastArguments(const char* function, char* buffer, unsigned int size) {
    const auto arguments = simulator().lastArguments(text(function));
    if (!arguments) return -1;
    if (buffer && size > 0) {
        const std::size_t length = std::min<std::size_t>(arguments->size(), size - 1);
        std::memcpy(buffer, arguments->data(), length);
        buffer[length] = '\0';
    }
    return static_cast<int>(arguments->size());
}

int HikSim_LastSetGain(float* value) { return deliver(simulator().lastSetGain(), value); }

int HikSim_LastSetExposureTime(float* value) {
    return deliver(simulator().lastSetExposureTime(), value);
}

int HikSim_LastSetBrightness(unsigned int* value) {
    return deliver(simulator().lastSetBrightness(), value);
}

int HikSim_LastSetExposureAutoMode(unsigned int* value) {
    return deliver(simulator().lastSetExposureAutoMode(), value);
}

int HikSim_LastSetEnumValue(const char* node, unsigned int* value) {
    return deliver(simulator().lastSetEnumValue(text(node)), value);
}

unsigned int HikSim_OutstandingBuffers(void) {
    return static_cast<unsigned int>(simulator().outstandingBuffers());
}

const char* HikSim_LastError(void) { return simulator().lastError(); }

}  // extern "C"
