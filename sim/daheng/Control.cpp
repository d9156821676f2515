// The simulator's own C interface for tests (DahSimControl.h).
#include "sim/common/SimControlDefinitions.h"
#include "sim/daheng/DaHengSimulator.h"
#include "sim/daheng/DahSimControl.h"

using telvarra::sim::control::deliver;
using telvarra::sim::control::result;
using telvarra::sim::control::text;
using telvarra::sim::daheng::simulator;

TELVARRA_SIM_DEFINE_CONTROL(DahSim, simulator())

extern "C" {

int DahSim_SetGainRange(const char* id, double min, double max) {
    return result(simulator().setGainRange(text(id), min, max));
}

int DahSim_SetExposureRange(const char* id, double min, double max) {
    return result(simulator().setExposureRange(text(id), min, max));
}

int DahSim_SetGrayValueRange(const char* id, int64_t min, int64_t max) {
    return result(simulator().setGrayValueRange(text(id), min, max));
}

int DahSim_LastSetInt(const char* feature, int64_t* value) {
    return deliver(simulator().lastSetInt(text(feature)), value);
}

int DahSim_LastSetFloat(const char* feature, double* value) {
    return deliver(simulator().lastSetFloat(text(feature)), value);
}

int DahSim_LastSetEnum(const char* feature, int64_t* value) {
    return deliver(simulator().lastSetEnum(text(feature)), value);
}

int DahSim_MakeNextFrameIncomplete(const char* id) {
    return result(simulator().makeNextFrameIncomplete(text(id)));
}

}  // extern "C"
