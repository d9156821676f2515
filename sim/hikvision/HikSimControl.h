/* Test control of the HikVision SDK simulator (libMvCameraControl.so / MvCameraControl.dll).
 * A test links the simulator and calls these functions while the code under test reaches the
 * same loaded instance through the vendor functions. Device identifiers are serial numbers.
 * Functions returning int give 0 on success and -1 on failure unless said otherwise; after a
 * failure HikSim_LastError() says why. None of them is counted as an SDK call. */
#ifndef TELVARRA_SIM_HIKVISION_HIKSIMCONTROL_H
#define TELVARRA_SIM_HIKVISION_HIKSIMCONTROL_H

#include "sim/common/SimExport.h"

#ifdef HIKSIM_BUILDING
#define HIKSIM_API TELVARRA_SIM_EXPORT
#else
#define HIKSIM_API TELVARRA_SIM_IMPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* What MV_CC_GetSDKVersion reports: 4.5.0.3. */
#define HIKSIM_SDK_VERSION 0x04050003u
/* Frames one handle may hold lent at a time; MV_CC_GetImageBuffer fails beyond. */
#define HIKSIM_IMAGE_NODE_COUNT 4u

/* Back to an empty rig: no devices, SDK not initialised, no handles, no enumeration records,
 * no lent buffers, no planned faults, no counts, no recorded arguments. */
HIKSIM_API void HikSim_Reset(void);

/* Adds one device described as a rig line of this make: "id=DA0001 layer=usb3 size=64x48
 * format=bayer_rg8", with or without the leading "hikvision". Layers: gige, usb3, gentl-gige,
 * gentl-cml, gentl-cxp, gentl-xof (default gige). The id must be new. */
HIKSIM_API int HikSim_AddDevice(const char* rigLine);
/* Adds the hikvision lines of a rig file; returns how many devices were added, -1 when the file
 * cannot be read. Bad lines are skipped; HikSim_LastError() lists them, one per line. */
HIKSIM_API int HikSim_LoadRig(const char* path);
/* Forgets a device; handles on it stay, dead. */
HIKSIM_API int HikSim_RemoveDevice(const char* id);
/* Unplugging ends the device's session (its handle stays, dead: not connected, no frames) and
 * hides it from enumeration; replugging shows it again, closed and free to open. */
HIKSIM_API int HikSim_Unplug(const char* id);
HIKSIM_API int HikSim_Replug(const char* id);

/* Feature ranges of a device; the current value is clamped into the new range. min <= max. */
HIKSIM_API int HikSim_SetGainRange(const char* id, float min, float max);
HIKSIM_API int HikSim_SetExposureRange(const char* id, float min, float max);
HIKSIM_API int HikSim_SetBrightnessRange(const char* id, unsigned int min, unsigned int max);

/* The device state: 1 yes, 0 no, -1 unknown device. */
HIKSIM_API int HikSim_IsOpen(const char* id);
HIKSIM_API int HikSim_IsGrabbing(const char* id);
/* Frames delivered in the device's current (or last) session; the last one's number. */
HIKSIM_API int HikSim_FramesDelivered(const char* id, unsigned int* count);
/* The test-pattern seed of a device. */
HIKSIM_API int HikSim_DeviceSeed(const char* id, unsigned int* seed);

/* Fault plan. `function` is an exported SDK name. The nth call from now (1: the next) fails
 * with `status`, once; FailAlways fails every call until cleared. A failing call does nothing
 * else; MV_CC_IsDeviceConnected then returns false and MV_CC_GetSDKVersion the status. */
HIKSIM_API void HikSim_FailCall(const char* function, int status, unsigned int nth);
HIKSIM_API void HikSim_FailAlways(const char* function, int status);
HIKSIM_API void HikSim_ClearFaults(void);

/* Calls received per exported SDK name, failed ones included. */
HIKSIM_API unsigned int HikSim_CallCount(const char* function);
HIKSIM_API void HikSim_ClearCallCounts(void);
/* The arguments of the last call of `function` as text, values only, ", "-separated: numbers in
 * decimal (floats with 9 significant digits), node names as they came, pointers left out; for
 * example "TriggerMode, 0" for MV_CC_SetEnumValue or "1, 0" for MV_CC_OpenDevice. Copies at
 * most size - 1 bytes and a terminator; returns the full length, -1 when never called. */
HIKSIM_API int HikSim_LastArguments(const char* function, char* buffer, unsigned int size);

/* The value of the last call of each setter (accepted or not); -1 when never called. */
HIKSIM_API int HikSim_LastSetGain(float* value);
HIKSIM_API int HikSim_LastSetExposureTime(float* value);
HIKSIM_API int HikSim_LastSetBrightness(unsigned int* value);
HIKSIM_API int HikSim_LastSetExposureAutoMode(unsigned int* value);
HIKSIM_API int HikSim_LastSetEnumValue(const char* node, unsigned int* value);

/* Frames lent by MV_CC_GetImageBuffer and not given back, over all handles, destroyed ones
 * included: a non-zero count after a session is a leak. */
HIKSIM_API unsigned int HikSim_OutstandingBuffers(void);

/* Why the last failing control call failed; empty after a success. Valid until the next call. */
HIKSIM_API const char* HikSim_LastError(void);

#ifdef __cplusplus
}
#endif

#endif
