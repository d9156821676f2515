// The simulator's own C interface for tests (MvSimControl.h).
#include "sim/common/SimControlDefinitions.h"
#include "sim/mindvision/MindVisionSimulator.h"
#include "sim/mindvision/MvSimControl.h"

using telvarra::sim::control::result;
using telvarra::sim::control::text;
using telvarra::sim::mindvision::simulator;

TELVARRA_SIM_DEFINE_CONTROL(MvSim, simulator())

extern "C" {

int MvSim_SetAeTargetRange(const char* id, unsigned int min, unsigned int max) {
    return result(simulator().setAeTargetRange(text(id), min, max));
}

int MvSim_SetAnalogGainRange(const char* id, unsigned int min, unsigned int max) {
    return result(simulator().setAnalogGainRange(text(id), min, max));
}

int MvSim_SetExposureRange(const char* id, double min, double max) {
    return result(simulator().setExposureRange(text(id), min, max));
}

unsigned int MvSim_AlignedBlocks(void) {
    return static_cast<unsigned int>(simulator().alignedBlocks());
}

int MvSim_Resolution(const char* id, int* hOffset, int* vOffset, int* width, int* height) {
    const auto resolution = simulator().resolution(text(id));
    if (!resolution) return -1;
    if (hOffset) *hOffset = resolution->iHOffsetFOV;
    if (vOffset) *vOffset = resolution->iVOffsetFOV;
    if (width) *width = resolution->iWidthFOV;
    if (height) *height = resolution->iHeightFOV;
    return 0;
}

}  // extern "C"
