/* Test control of the DaHeng SDK simulator (libgxiapi.so / GxIAPI.dll): the controls of every
 * simulator (sim/common/SimControl.h) as DahSim_*, and DaHeng's own.
 *
 * DaHeng's part of the common controls:
 * - DahSim_AddDevice: layers usb3 (default), gige, usb2. The serial and the model hold at most
 *   31 bytes, the user id 67 (the fields of the base-info record, with their terminator).
 * - DahSim_LastArguments gives, for example, "ExposureTime, 5000" for GXSetFloatValue or
 *   "DH0001, 0, 4" for GXOpenDevice (content, open mode, access mode).
 * - DahSim_OutstandingBuffers is always 0: frames go into the caller's own buffer. */
#ifndef TELVARRA_SIM_DAHENG_DAHSIMCONTROL_H
#define TELVARRA_SIM_DAHENG_DAHSIMCONTROL_H

#include <stdint.h>

#include "sim/common/SimControl.h"
#include "sim/common/SimExport.h"

#ifdef __cplusplus
extern "C" {
#endif

TELVARRA_SIM_DECLARE_CONTROL(DahSim, TELVARRA_SIM_API)

/* Feature ranges of a device; the current value is clamped into the new range. min <= max. */
TELVARRA_SIM_API int DahSim_SetGainRange(const char* id, double min, double max);
TELVARRA_SIM_API int DahSim_SetExposureRange(const char* id, double min, double max);
TELVARRA_SIM_API int DahSim_SetGrayValueRange(const char* id, int64_t min, int64_t max);

/* The value of the last write of a feature through GXSetIntValue, GXSetFloatValue, or
 * GXSetEnumValue and GXSetEnumValueByString (a known symbol, as its value), accepted or not;
 * -1 when never written. */
TELVARRA_SIM_API int DahSim_LastSetInt(const char* feature, int64_t* value);
TELVARRA_SIM_API int DahSim_LastSetFloat(const char* feature, double* value);
TELVARRA_SIM_API int DahSim_LastSetEnum(const char* feature, int64_t* value);

/* The next GXGetImage that delivers a frame on this device succeeds with frame status -1
 * (incomplete); only the upper half of its rows is written. */
TELVARRA_SIM_API int DahSim_MakeNextFrameIncomplete(const char* id);

#ifdef __cplusplus
}
#endif

#endif
