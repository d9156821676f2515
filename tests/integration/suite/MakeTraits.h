// What the shared integration suite knows of one make: its camera type and driver, its
// simulator's control functions, rig lines for a mono and a colour camera, and the SDK calls of
// its open path. A new make adds one of these to Makes.cpp, not copies of the tests.
#ifndef TELVARRA_TESTS_INTEGRATION_MAKETRAITS_H
#define TELVARRA_TESTS_INTEGRATION_MAKETRAITS_H

#include <ostream>
#include <string>
#include <vector>

#include "sim/common/PixelFormat.h"
#include "telvarra/Types.h"

namespace telvarra::test {

// The control functions every simulator exports under its own prefix.
struct SimulatorControl {
    void (*reset)();
    int (*addDevice)(const char* rigLine);
    int (*unplug)(const char* id);
    int (*replug)(const char* id);
    int (*isOpen)(const char* id);
    int (*framesDelivered)(const char* id, unsigned int* count);
    int (*deviceSeed)(const char* id, unsigned int* seed);
    void (*failCall)(const char* function, int status, unsigned int nth);
    void (*failAlways)(const char* function, int status);
    void (*clearFaults)();
    unsigned int (*outstandingBuffers)();
    const char* (*lastError)();
    int (*lastArguments)(const char* function, char* buffer, unsigned int size);
};

// The control functions of the simulator whose functions carry `prefix` (HikSim: HikSim_Reset...).
#define TELVARRA_SIMULATOR_CONTROL(prefix)                                                         \
    ::telvarra::test::SimulatorControl {                                                           \
        prefix##_Reset, prefix##_AddDevice, prefix##_Unplug, prefix##_Replug, prefix##_IsOpen,     \
            prefix##_FramesDelivered, prefix##_DeviceSeed, prefix##_FailCall, prefix##_FailAlways, \
            prefix##_ClearFaults, prefix##_OutstandingBuffers, prefix##_LastError,                 \
            prefix##_LastArguments                                                                 \
    }

// An SDK call failed once: the `nth` call of `function` from the start of an open.
struct OpenStep {
    const char* function;
    unsigned int nth;
};

struct Camera {
    std::string rigLine;  // attributes of the make's rig line; its id is `id`
    std::string id;
    sim::PixelFormat sensor;
    unsigned int width;
    unsigned int height;
    // Delivered in BGR order: the SDK's default output for a colour sensor (MindVision's
    // processor although it reports RGB, Dvp's as BGR).
    bool redBlueSwapped = false;
};

struct MakeTraits {
    const char* name;      // the driver's name, and the test's
    Ruvo_CameraType type;  // the registry key cameras are opened with
    SimulatorControl simulator;
    int failure;  // a status the make's SDK fails a call with
    Ruvo_CameraStatus statusAfterStop;
    // Frame sizes at least 640 wide, so that both zoom steps apply.
    Camera mono;
    Camera colour;
    std::vector<OpenStep> openSteps;
    // The SDK mirrors, turns (counter-clockwise) and zooms, the zoom as a field of view of the
    // sensor, before its processing; otherwise the library does it to the delivered frame.
    bool deviceGeometry = false;
    // The SDK call that takes a lent frame back; null when the SDK lends none.
    const char* frameRelease = nullptr;
    // The digital zoom commands; Dvp cameras have none.
    bool zooms = true;
    // Frames that come as JPEG files (Canon's live view) match the pattern within this mean
    // difference per sample; 0: exactly.
    double jpegTolerance = 0;
    // What the typed values a make lacks answer: true everywhere but on Canon.
    bool lackingTypedValuesAnswer = true;
};

const std::vector<MakeTraits>& allMakes();

// Test names and failures name the make, not the record's bytes.
inline void PrintTo(const MakeTraits& make, std::ostream* out) { *out << make.name; }

}  // namespace telvarra::test

#endif
