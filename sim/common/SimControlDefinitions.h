// The C++ side of SimControl.h: what each control function does, on any simulator, and the macro
// that defines a make's <Prefix>_* functions from them. A make's control source uses
//   TELVARRA_SIM_DEFINE_CONTROL(HikSim, telvarra::sim::hikvision::simulator())
// and the helpers below for its own controls.
#ifndef TELVARRA_SIM_COMMON_SIMCONTROLDEFINITIONS_H
#define TELVARRA_SIM_COMMON_SIMCONTROLDEFINITIONS_H

#include <optional>
#include <string>

#include "sim/common/SimControl.h"
#include "sim/common/SimulatorCore.h"

// Named as the exported functions without their prefix, so that one list defines them all.
namespace telvarra::sim::control {

// A C text as the core takes it: a null pointer is the empty text.
inline std::string text(const char* value) { return value ? value : ""; }
inline int result(bool ok) { return ok ? 0 : -1; }
// Copies at most size - 1 bytes of `value` and a terminator into `buffer` (when there is room for
// one); returns the full length, as the control functions that hand out text do.
int copyText(const std::string& value, char* buffer, unsigned int size);
// -1 when there is no value; otherwise 0, with the value stored where `out` points (if anywhere).
template <class T, class Out>
int deliver(const std::optional<T>& value, Out* out) {
    if (!value) return -1;
    if (out) *out = static_cast<Out>(*value);
    return 0;
}

void Reset(SimulatorBase& simulator);
int AddDevice(SimulatorBase& simulator, const char* rigLine);
int LoadRig(SimulatorBase& simulator, const char* path);
int RemoveDevice(SimulatorBase& simulator, const char* id);
int Unplug(SimulatorBase& simulator, const char* id);
int Replug(SimulatorBase& simulator, const char* id);
int IsOpen(SimulatorBase& simulator, const char* id);
int IsGrabbing(SimulatorBase& simulator, const char* id);
int FramesDelivered(SimulatorBase& simulator, const char* id, unsigned int* count);
int DeviceSeed(SimulatorBase& simulator, const char* id, unsigned int* seed);
int PrepareFrames(SimulatorBase& simulator, const char* id, int on);
void FailCall(SimulatorBase& simulator, const char* function, int status, unsigned int nth);
void FailAlways(SimulatorBase& simulator, const char* function, int status);
void ClearFaults(SimulatorBase& simulator);
unsigned int CallCount(SimulatorBase& simulator, const char* function);
void ClearCallCounts(SimulatorBase& simulator);
int LastArguments(SimulatorBase& simulator, const char* function, char* buffer, unsigned int size);
unsigned int OutstandingBuffers(SimulatorBase& simulator);
const char* LastError(SimulatorBase& simulator);

}  // namespace telvarra::sim::control

#define TELVARRA_SIM_SPREAD(...) __VA_ARGS__
#define TELVARRA_SIM_DEFINE_CONTROL_FUNCTION(prefix, simulator, returnType, name, parameters, \
                                             arguments)                                       \
    returnType prefix##_##name parameters {                                                   \
        return ::telvarra::sim::control::name(simulator TELVARRA_SIM_SPREAD arguments);       \
    }

// Defines <prefix>_Reset ... <prefix>_LastError on the simulator `simulator` evaluates to.
#define TELVARRA_SIM_DEFINE_CONTROL(prefix, simulator)                                      \
    extern "C" {                                                                            \
    TELVARRA_SIM_CONTROL_FUNCTIONS(TELVARRA_SIM_DEFINE_CONTROL_FUNCTION, prefix, simulator) \
    }

#endif
