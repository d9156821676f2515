/* Test control of the HikVision SDK simulator (libMvCameraControl.so / MvCameraControl.dll):
 * the controls of every simulator (sim/common/SimControl.h) as HikSim_*, and HikVision's own.
 *
 * HikVision's part of the common controls:
 * - HikSim_AddDevice: layers gige, usb3, gentl-gige, gentl-cml, gentl-cxp, gentl-xof (default
 *   gige). GigE serial and user name hold at most 16 bytes and the model 32; the other layers 64
 *   each.
 * - A planned fault makes MV_CC_IsDeviceConnected return false and MV_CC_GetSDKVersion the
 *   status.
 * - HikSim_LastArguments gives, for example, "TriggerMode, 0" for MV_CC_SetEnumValue or "1, 0"
 *   for MV_CC_OpenDevice.
 * - HikSim_OutstandingBuffers counts frames lent by MV_CC_GetImageBuffer and not given back. */
#ifndef TELVARRA_SIM_HIKVISION_HIKSIMCONTROL_H
#define TELVARRA_SIM_HIKVISION_HIKSIMCONTROL_H

#include "sim/common/SimControl.h"
#include "sim/common/SimExport.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What MV_CC_GetSDKVersion reports: 4.5.0.3. */
#define HIKSIM_SDK_VERSION 0x04050003u
/* Frames one handle may hold lent at a time; MV_CC_GetImageBuffer fails beyond. */
#define HIKSIM_IMAGE_NODE_COUNT 4u

TELVARRA_SIM_DECLARE_CONTROL(HikSim, TELVARRA_SIM_API)

/* Feature ranges of a device; the current value is clamped into the new range. min <= max. */
TELVARRA_SIM_API int HikSim_SetGainRange(const char* id, float min, float max);
TELVARRA_SIM_API int HikSim_SetExposureRange(const char* id, float min, float max);
TELVARRA_SIM_API int HikSim_SetBrightnessRange(const char* id, unsigned int min, unsigned int max);

/* The value of the last call of each setter (accepted or not); -1 when never called. */
TELVARRA_SIM_API int HikSim_LastSetGain(float* value);
TELVARRA_SIM_API int HikSim_LastSetExposureTime(float* value);
TELVARRA_SIM_API int HikSim_LastSetBrightness(unsigned int* value);
TELVARRA_SIM_API int HikSim_LastSetExposureAutoMode(unsigned int* value);
TELVARRA_SIM_API int HikSim_LastSetEnumValue(const char* node, unsigned int* value);

#ifdef __cplusplus
}
#endif

#endif
