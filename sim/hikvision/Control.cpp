// The simulator's own C interface for tests (HikSimControl.h).
#include "sim/common/SimControlDefinitions.h"
#include "sim/hikvision/HikSimControl.h"
#include "sim/hikvision/HikVisionSimulator.h"

using telvarra::sim::control::deliver;
using telvarra::sim::control::result;
using telvarra::sim::control::text;
using telvarra::sim::hikvision::simulator;

TELVARRA_SIM_DEFINE_CONTROL(HikSim, simulator())

extern "C" {

int HikSim_SetGainRange(const char* id, float min, float max) {
    return result(simulator().setGainRange(text(id), min, max));
}

int HikSim_SetExposureRange(const char* id, float min, float max) {
    return result(simulator().setExposureRange(text(id), min, max));
}

int HikSim_SetBrightnessRange(const char* id, unsigned int min, unsigned int max) {
    return result(simulator().setBrightnessRange(text(id), min, max));
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

}  // extern "C"
