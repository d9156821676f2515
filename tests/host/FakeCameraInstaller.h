/* C interface of the fake-camera installer used by the C host. */
#ifndef TELVARRA_HOST_FAKECAMERAINSTALLER_H
#define TELVARRA_HOST_FAKECAMERAINSTALLER_H

#ifdef __cplusplus
extern "C" {
#endif

/* Registers a fake driver under `type` that lists one device, `cameraId`. */
void fake_install(int type, const char* cameraId);
/* Opens the camera through the facade and starts its capture; 1 on success. */
int fake_open(const char* cameraId, int type);

#ifdef __cplusplus
}
#endif

#endif
