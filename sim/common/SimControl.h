/* The test control every SDK simulator exports under a prefix of its own (HikVision: HikSim_).
 * A test links the simulator and calls these functions while the code under test reaches the
 * same loaded instance through the vendor functions. A make's control header declares them with
 * TELVARRA_SIM_DECLARE_CONTROL(Prefix, api) and adds its own controls.
 *
 * Device identifiers are the ids of the rig lines (serial numbers). Functions returning int give
 * 0 on success and -1 on failure unless said otherwise; after a failure <Prefix>_LastError() says
 * why. None of them is counted as an SDK call.
 *
 * <Prefix>_Reset()
 *     Back to an empty rig: no devices, SDK not started, no handles, no lent or held frame memory,
 *     no planned faults, no counts, no recorded arguments, and the make's own state as at start.
 * <Prefix>_AddDevice(rigLine)
 *     Adds one device described as a rig line of this make ("id=DA0001 size=64x48
 *     format=bayer_rg8"), with or without the leading make word. The id must be new; the make
 *     checks its own limits (its control header says which).
 * <Prefix>_LoadRig(path)
 *     Adds the make's lines of a rig file; returns how many devices were added, -1 when the file
 *     cannot be read. Bad lines are skipped; LastError lists them, one per line ("line N: why").
 * <Prefix>_RemoveDevice(id)
 *     Forgets a device; handles on it stay, dead.
 * <Prefix>_Unplug(id), <Prefix>_Replug(id)
 *     Unplugging ends the device's session (its handle stays, dead: not connected, no frames)
 *     and hides it from enumeration; replugging shows it again, closed and free to open.
 * <Prefix>_IsOpen(id), <Prefix>_IsGrabbing(id)
 *     The device state: 1 yes, 0 no, -1 unknown device.
 * <Prefix>_FramesDelivered(id, &count)
 *     Frames delivered in the device's current (or last) session: the last one's number.
 * <Prefix>_DeviceSeed(id, &seed)
 *     The test-pattern seed of a device.
 * <Prefix>_PrepareFrames(id, on)
 *     On (non-zero): from now on every frame of the device shows one picture, drawn once, so that
 *     a host's frame path can be timed without the pattern's drawing; frame numbers still count.
 *     0: each frame is drawn again.
 * <Prefix>_FailCall(function, status, nth), <Prefix>_FailAlways(function, status),
 * <Prefix>_ClearFaults()
 *     Fault plan. `function` is an exported SDK name. The nth call from now (1: the next) fails
 *     with `status`, once; FailAlways fails every call until cleared. A failing call is counted
 *     and does nothing else.
 * <Prefix>_CallCount(function), <Prefix>_ClearCallCounts()
 *     Calls received per exported SDK name, failed ones included.
 * <Prefix>_LastArguments(function, buffer, size)
 *     The arguments of the last call of `function` as text, values only, ", "-separated:
 *     numbers in decimal (floats with 9 significant digits), names as they came, pointers left
 *     out. Copies at most size - 1 bytes and a terminator; returns the full length, -1 when
 *     never called.
 * <Prefix>_OutstandingBuffers()
 *     Frame memory the caller still holds by the make's ownership rule, over all handles,
 *     destroyed ones included: a non-zero count after a session is a leak.
 * <Prefix>_LastError()
 *     Why the last failing control call failed; empty after a success. Valid until the next
 *     control call. */
#ifndef TELVARRA_SIM_COMMON_SIMCONTROL_H
#define TELVARRA_SIM_COMMON_SIMCONTROL_H

#include "sim/common/SimExport.h"

/* The list: X(prefix, extra, return type, name, (parameters), (, arguments)). The arguments
 * start with a comma so that a definition can put its simulator before them. */
#define TELVARRA_SIM_CONTROL_FUNCTIONS(X, prefix, extra)                                          \
    X(prefix, extra, void, Reset, (void), ())                                                     \
    X(prefix, extra, int, AddDevice, (const char* rigLine), (, rigLine))                          \
    X(prefix, extra, int, LoadRig, (const char* path), (, path))                                  \
    X(prefix, extra, int, RemoveDevice, (const char* id), (, id))                                 \
    X(prefix, extra, int, Unplug, (const char* id), (, id))                                       \
    X(prefix, extra, int, Replug, (const char* id), (, id))                                       \
    X(prefix, extra, int, IsOpen, (const char* id), (, id))                                       \
    X(prefix, extra, int, IsGrabbing, (const char* id), (, id))                                   \
    X(prefix, extra, int, FramesDelivered, (const char* id, unsigned int* count), (, id, count))  \
    X(prefix, extra, int, DeviceSeed, (const char* id, unsigned int* seed), (, id, seed))         \
    X(prefix, extra, int, PrepareFrames, (const char* id, int on), (, id, on))                    \
    X(prefix, extra, void, FailCall, (const char* function, int status, unsigned int nth),        \
      (, function, status, nth))                                                                  \
    X(prefix, extra, void, FailAlways, (const char* function, int status), (, function, status))  \
    X(prefix, extra, void, ClearFaults, (void), ())                                               \
    X(prefix, extra, unsigned int, CallCount, (const char* function), (, function))               \
    X(prefix, extra, void, ClearCallCounts, (void), ())                                           \
    X(prefix, extra, int, LastArguments, (const char* function, char* buffer, unsigned int size), \
      (, function, buffer, size))                                                                 \
    X(prefix, extra, unsigned int, OutstandingBuffers, (void), ())                                \
    X(prefix, extra, const char*, LastError, (void), ())

#define TELVARRA_SIM_DECLARE_CONTROL_FUNCTION(prefix, api, returnType, name, parameters, \
                                              arguments)                                 \
    api returnType prefix##_##name parameters;

/* Declares <prefix>_Reset ... <prefix>_LastError with the export attribute `api`. */
#define TELVARRA_SIM_DECLARE_CONTROL(prefix, api) \
    TELVARRA_SIM_CONTROL_FUNCTIONS(TELVARRA_SIM_DECLARE_CONTROL_FUNCTION, prefix, api)

#endif
