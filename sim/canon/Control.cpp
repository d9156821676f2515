// The simulator's own C interface for tests (CanonSimControl.h).
#include "sim/canon/CanonSimControl.h"
#include "sim/canon/CanonSimulator.h"
#include "sim/common/SimControlDefinitions.h"

using telvarra::sim::canon::simulator;
using telvarra::sim::control::copyText;
using telvarra::sim::control::deliver;
using telvarra::sim::control::result;
using telvarra::sim::control::text;

TELVARRA_SIM_DEFINE_CONTROL(CanonSim, simulator())

extern "C" {

int CanonSim_SetSerialNumber(const char* id, const char* serial) {
    return result(simulator().setSerialNumber(text(id), text(serial)));
}

int CanonSim_SetPropertyDesc(const char* id, unsigned int propertyId, const int* codes,
                             int count) {
    return result(simulator().setPropertyDesc(text(id), propertyId, codes, count));
}

int CanonSim_SetProperty(const char* id, unsigned int propertyId, unsigned int value) {
    return result(simulator().setProperty(text(id), propertyId, value));
}

int CanonSim_GetProperty(const char* id, unsigned int propertyId, unsigned int* value) {
    return deliver(simulator().property(text(id), propertyId), value);
}

int CanonSim_Commands(const char* id, char* buffer, unsigned int size) {
    const auto commands = simulator().commands(text(id));
    return commands ? copyText(*commands, buffer, size) : -1;
}

void CanonSim_ClearCommands(void) { simulator().clearCommands(); }

int CanonSim_SetLiveViewNotReady(const char* id, unsigned int count) {
    return result(simulator().setLiveViewNotReady(text(id), count));
}

int CanonSim_HoldStills(const char* id, int hold) {
    return result(simulator().holdStills(text(id), hold != 0));
}

unsigned int CanonSim_PendingEvents(void) {
    return static_cast<unsigned int>(simulator().pendingEvents());
}

}  // extern "C"
