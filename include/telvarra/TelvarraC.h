/* The flat entry points: unmangled C functions over the facade singleton, for hosts that cannot
 * use the C++ classes. The handle they trade is the facade itself. Null pointers give false (or
 * nothing) without a log line. Not thread-safe: serialise creation and release. */
#ifndef TELVARRA_TELVARRAC_H
#define TELVARRA_TELVARRAC_H

#include "telvarra/Export.h"
#include "telvarra/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

TELVARRA_API void* CreateCameraManager(void);
/* Cleans the facade the handle names, then releases the singleton whatever the handle. */
TELVARRA_API void DestroyCameraManager(void* handle);
TELVARRA_API bool InitializeCameraSystem(void);
TELVARRA_API bool InitializeCameraSystemByType(Ruvo_CameraType type);
TELVARRA_API void CleanupCameraSystem(void);
/* image->data points into the camera's own buffer until its next fetch: copy, never release. */
TELVARRA_API bool GetCurrentFrame(const char* cameraId, ImageData* image);
TELVARRA_API bool GetCurrentFrameToBuffer(const char* cameraId, unsigned char* buffer, int32_t size,
                                          ImageData* image);
/* Frees image->data with array delete when set; zeroes every field but channels. */
TELVARRA_API void ReleaseImageData(ImageData* image);

#ifdef __cplusplus
}
#endif

#endif
