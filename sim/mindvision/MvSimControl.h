/* Test control of the MindVision SDK simulator (libMVSDK.so / MVCAMSDK_X64.dll): the controls of
 * every simulator (sim/common/SimControl.h) as MvSim_*, and MindVision's own.
 *
 * MindVision's part of the common controls:
 * - MvSim_AddDevice: layers usb3 (default), gige, usb2. The id, user name and model hold at most
 *   31 bytes (the 32-byte fields of the device record, with their terminator).
 * - MvSim_LastArguments gives the arguments after the handle, for example "5000" for
 *   CameraSetExposureTime or "MV0001, -1, -1" for CameraInit (serial, load mode, team).
 * - MvSim_OutstandingBuffers counts the raw frames lent by CameraGetImageBufferPriority and not
 *   yet given back with CameraReleaseImageBuffer.
 * - MvSim_Unplug also resets the device's settings to their power-up values. */
#ifndef TELVARRA_SIM_MINDVISION_MVSIMCONTROL_H
#define TELVARRA_SIM_MINDVISION_MVSIMCONTROL_H

#include "sim/common/SimControl.h"
#include "sim/common/SimExport.h"

#ifdef __cplusplus
extern "C" {
#endif

TELVARRA_SIM_DECLARE_CONTROL(MvSim, TELVARRA_SIM_API)

/* Ranges of a device, as its capability record and the setters report and enforce them; the
 * current value is clamped into the new range. min <= max, else -1. Exposure in microseconds. */
TELVARRA_SIM_API int MvSim_SetAeTargetRange(const char* id, unsigned int min, unsigned int max);
TELVARRA_SIM_API int MvSim_SetAnalogGainRange(const char* id, unsigned int min, unsigned int max);
TELVARRA_SIM_API int MvSim_SetExposureRange(const char* id, double min, double max);

/* Blocks from CameraAlignMalloc not yet given to CameraAlignFree (since the last reset). */
TELVARRA_SIM_API unsigned int MvSim_AlignedBlocks(void);

/* The device's current field of view on the sensor: the full sensor after preset 0. Null
 * pointers are skipped; -1 for an unknown device. */
TELVARRA_SIM_API int MvSim_Resolution(const char* id, int* hOffset, int* vOffset, int* width,
                                      int* height);

#ifdef __cplusplus
}
#endif

#endif
