#include <algorithm>
#include <cstring>

#include "sim/common/SimControlDefinitions.h"

namespace telvarra::sim::control {

namespace {

int answer(const std::optional<bool>& state) { return state ? (*state ? 1 : 0) : -1; }

}  // namespace

void Reset(SimulatorBase& simulator) { simulator.reset(); }

int AddDevice(SimulatorBase& simulator, const char* rigLine) {
    return result(simulator.addDevice(text(rigLine)));
}

int LoadRig(SimulatorBase& simulator, const char* path) { return simulator.loadRig(text(path)); }

int RemoveDevice(SimulatorBase& simulator, const char* id) {
    return result(simulator.removeDevice(text(id)));
}

int Unplug(SimulatorBase& simulator, const char* id) { return result(simulator.unplug(text(id))); }

int Replug(SimulatorBase& simulator, const char* id) { return result(simulator.replug(text(id))); }

int IsOpen(SimulatorBase& simulator, const char* id) { return answer(simulator.isOpen(text(id))); }

int IsGrabbing(SimulatorBase& simulator, const char* id) {
    return answer(simulator.isGrabbing(text(id)));
}

int FramesDelivered(SimulatorBase& simulator, const char* id, unsigned int* count) {
    return deliver(simulator.framesDelivered(text(id)), count);
}

int DeviceSeed(SimulatorBase& simulator, const char* id, unsigned int* seed) {
    return deliver(simulator.deviceSeed(text(id)), seed);
}

int PrepareFrames(SimulatorBase& simulator, const char* id, int on) {
    return result(simulator.prepareFrames(text(id), on != 0));
}

void FailCall(SimulatorBase& simulator, const char* function, int status, unsigned int nth) {
    simulator.failCall(text(function), status, nth);
}

void FailAlways(SimulatorBase& simulator, const char* function, int status) {
    simulator.failAlways(text(function), status);
}

void ClearFaults(SimulatorBase& simulator) { simulator.clearFaults(); }

unsigned int CallCount(SimulatorBase& simulator, const char* function) {
    return simulator.callCount(text(function));
}

void ClearCallCounts(SimulatorBase& simulator) { simulator.clearCallCounts(); }

int copyText(const std::string& value, char* buffer, unsigned int size) {
    if (buffer && size > 0) {
        const std::size_t length = std::min<std::size_t>(value.size(), size - 1);
        std::memcpy(buffer, value.data(), length);
        buffer[length] = '\0';
    }
    return static_cast<int>(value.size());
}

int LastArguments(SimulatorBase& simulator, const char* function, char* buffer, unsigned int size) {
    const auto arguments = simulator.lastArguments(text(function));
    return arguments ? copyText(*arguments, buffer, size) : -1;
}

unsigned int OutstandingBuffers(SimulatorBase& simulator) {
    return static_cast<unsigned int>(simulator.outstandingBuffers());
}

const char* LastError(SimulatorBase& simulator) { return simulator.lastError(); }

}  // namespace telvarra::sim::control
