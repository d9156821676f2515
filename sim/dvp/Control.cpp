// The simulator's own C interface for tests (DvpSimControl.h).
#include "sim/common/SimControlDefinitions.h"
#include "sim/dvp/DvpSimControl.h"
#include "sim/dvp/DvpSimulator.h"

using telvarra::sim::control::result;
using telvarra::sim::control::text;
using telvarra::sim::dvp::simulator;

TELVARRA_SIM_DEFINE_CONTROL(DvpSim, simulator())

extern "C" {

int DvpSim_SetSdkVersion(int minor) { return result(simulator().setSdkVersion(minor)); }

int DvpSim_SetAeTargetRange(const char* id, int min, int max) {
    return result(simulator().setAeTargetRange(text(id), min, max));
}

int DvpSim_SetAnalogGainRange(const char* id, float min, float max) {
    return result(simulator().setAnalogGainRange(text(id), min, max));
}

int DvpSim_SetExposureRange(const char* id, double min, double max) {
    return result(simulator().setExposureRange(text(id), min, max));
}

int DvpSim_StopStream(const char* id) { return result(simulator().stopStream(text(id))); }

}  // extern "C"
