/* Test control of the Dvp SDK simulator (libdvp.so / DVPCamera64.dll): the controls of every
 * simulator (sim/common/SimControl.h) as DvpSim_*, and Dvp's own.
 *
 * Dvp's part of the common controls:
 * - DvpSim_AddDevice: layers usb3 (default), usb2, gige. The id and model hold at most 63 bytes,
 *   the user id 127 (the record's fields with their terminator). Without `user` the user id is
 *   the id, as the library opens cameras by user id.
 * - DvpSim_LastArguments gives the arguments after the handle, for example "5000" for
 *   dvpSetExposure or "Press, 1" for dvpOpenByUserId (user id, mode).
 * - DvpSim_OutstandingBuffers counts the handles whose last frame from dvpGetFrame is still
 *   valid: not yet followed by another dvpGetFrame, dvpStop or dvpClose on that handle.
 * - DvpSim_Unplug also resets the device's settings to their power-up values. */
#ifndef TELVARRA_SIM_DVP_DVPSIMCONTROL_H
#define TELVARRA_SIM_DVP_DVPSIMCONTROL_H

#include "sim/common/SimControl.h"
#include "sim/common/SimExport.h"

#ifdef __cplusplus
extern "C" {
#endif

TELVARRA_SIM_DECLARE_CONTROL(DvpSim, TELVARRA_SIM_API)

/* The runtime version imitated, by its minor number: 21 (SDK 2.21, the default, also after
 * DvpSim_Reset) or 16 (SDK 2.16, whose device records leave OriginalSerialNumber empty); else
 * -1. */
TELVARRA_SIM_API int DvpSim_SetSdkVersion(int minor);

/* Ranges of a device, as its descriptors report them and the setters enforce them; the current
 * value is clamped into the new range. min <= max, else -1. Exposure in microseconds. */
TELVARRA_SIM_API int DvpSim_SetAeTargetRange(const char* id, int min, int max);
TELVARRA_SIM_API int DvpSim_SetAnalogGainRange(const char* id, float min, float max);
TELVARRA_SIM_API int DvpSim_SetExposureRange(const char* id, double min, double max);

/* The device's stream stops on its own (stream state 0) while its handle stays open, as a camera
 * does that stops sending; -1 for an unknown device or one not open. */
TELVARRA_SIM_API int DvpSim_StopStream(const char* id);

#ifdef __cplusplus
}
#endif

#endif
