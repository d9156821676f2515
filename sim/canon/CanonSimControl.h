/* Test control of the Canon EDSDK simulator (libEDSDK.so / EDSDK.dll): the controls of every
 * simulator (sim/common/SimControl.h) as CanonSim_*, and Canon's own.
 *
 * A body ("canon id=EOS0001 size=960x640") streams live view at its rig size as colour JPEG
 * files of the test pattern, and takes stills twice as wide and twice as high, also JPEG. Live
 * view and stills share the body's frame numbers: each live-view image and each still takes the
 * next one (CanonSim_FramesDelivered gives the last). Only the format rgb8 is accepted.
 *
 * Canon's part of the common controls:
 * - CanonSim_IsOpen: the body's session is open. CanonSim_IsGrabbing: live view goes to the host
 *   (the PC bit, 2, of Evf_OutputDevice 0x500 is set).
 * - CanonSim_OutstandingBuffers: SDK objects the host still holds a reference to (camera lists,
 *   cameras, streams, image and live-view references, directory items), plus those that were
 *   still held when EdsTerminateSDK freed them: a non-zero count after a session is a leak.
 * - CanonSim_LastArguments gives the arguments after the object, for example "4, 65539" for
 *   EdsSendCommand, "1030, 0, 4, 96" for EdsSetPropertyData (property, parameter, size, and the
 *   value as an unsigned number when the size is 4), "1030, 0, 4" for EdsGetPropertyData,
 *   "/dir/Canon__EOS0001.jpg, 1, 2" for EdsCreateFileStream, "2147483647, 4096, 1" for
 *   EdsSetCapacity.
 * - CanonSim_Unplug ends the body's session and queues a Shutdown state event (0x301) for its
 *   state handler; calls on its camera object then fail with EDS_ERR_COMM_DISCONNECTED (0xC1)
 *   and the body is missing from new camera lists. CanonSim_Replug lists it again, closed.
 *
 * Events wait until the host calls EdsGetEvent, which delivers them in order on its thread.
 *
 * Default property descriptions (the body's lists) and current values:
 * - Tv (0x406): 55 codes rising by 3, 2, 3 in turn from 0x10 (0x10, 0x13, 0x15, 0x18, 0x1B,
 *   0x1D, 0x20, ...) up to 0xA0; current 0x60, element 30 of the list (shutter index 14).
 * - Av (0x405): 20 codes the same way from 0x08 (0x08, 0x0B, 0x0D, 0x10, ...) up to 0x3B;
 *   current 0x20, element 9.
 * - ISO (0x402): 14 codes, 0x00 (auto) then the same way from 0x48 up to 0x68; current 0x48,
 *   element 1.
 * - SaveTo (0x0B): 1 (the card); Evf_OutputDevice (0x500): 1 (the body's screen); Evf_Mode
 *   (0x501): 1. */
#ifndef TELVARRA_SIM_CANON_CANONSIMCONTROL_H
#define TELVARRA_SIM_CANON_CANONSIMCONTROL_H

#include "sim/common/SimControl.h"
#include "sim/common/SimExport.h"

#ifdef __cplusplus
extern "C" {
#endif

TELVARRA_SIM_DECLARE_CONTROL(CanonSim, TELVARRA_SIM_API)

/* What the body answers for its serial number (BodyIDEx, 0x15): the id by default; "" for a body
 * that reports none. At most 255 bytes. */
TELVARRA_SIM_API int CanonSim_SetSerialNumber(const char* id, const char* serial);

/* A body's list of allowed codes for Tv (0x406), Av (0x405) or ISO (0x402), 0 to 128 codes; the
 * current value is left as it is. Another property, or a count outside 0..128: -1. */
TELVARRA_SIM_API int CanonSim_SetPropertyDesc(const char* id, unsigned int propertyId,
                                              const int* codes, int count);

/* A 4-byte property's value (SaveTo, Tv, Av, ISO, Evf_OutputDevice, Evf_Mode), set and read
 * without an SDK call; -1 for an unknown body or property. */
TELVARRA_SIM_API int CanonSim_SetProperty(const char* id, unsigned int propertyId,
                                          unsigned int value);
TELVARRA_SIM_API int CanonSim_GetProperty(const char* id, unsigned int propertyId,
                                          unsigned int* value);

/* The commands the body received through EdsSendCommand since its session was opened (or since
 * CanonSim_ClearCommands), in order, as "command:parameter" in decimal joined by single blanks:
 * "4:65539 4:0". Copies at most size - 1 bytes and a terminator; returns the full length, -1 for
 * an unknown body. */
TELVARRA_SIM_API int CanonSim_Commands(const char* id, char* buffer, unsigned int size);
TELVARRA_SIM_API void CanonSim_ClearCommands(void);

/* The next `count` EdsDownloadEvfImage calls on the body answer EDS_ERR_OBJECT_NOTREADY (0xA102),
 * as a body does while its live view starts. Without it, the first download after the PC bit is
 * set answers so once. */
TELVARRA_SIM_API int CanonSim_SetLiveViewNotReady(const char* id, unsigned int count);

/* Stills: a full press of the shutter button (PressShutterButton 4 with 3 or 0x10003) followed by
 * its release (4 with 0) takes one. With SaveTo = host (2) it is announced to the object handler
 * as DirItemRequestTransfer (0x208) with a new directory item ("IMG_0001.JPG", counting up);
 * otherwise it stays on the card and nothing is announced. While stills are held, taken stills
 * wait and are announced when CanonSim_HoldStills(id, 0) lets them go: a capture in progress. */
TELVARRA_SIM_API int CanonSim_HoldStills(const char* id, int hold);

/* Events queued and not yet delivered by EdsGetEvent. */
TELVARRA_SIM_API unsigned int CanonSim_PendingEvents(void);

#ifdef __cplusplus
}
#endif

#endif
