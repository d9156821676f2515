// The flat C entry points: thin wrappers over the facade singleton.
#include "telvarra/CameraPublicInterface.h"
#include "telvarra/TelvarraC.h"

void* CreateCameraManager(void) { return CameraPublicInterface::getInstance(); }

void DestroyCameraManager(void* handle) {
    if (!handle) return;
    // Only the live facade can be cleaned: a handle from an earlier, released one would point
    // at freed memory, and when none is live there is nothing to build just to release it.
    if (CameraPublicInterface::isInstance(handle)) {
        static_cast<CameraPublicInterface*>(handle)->cleanup();
    }
    CameraPublicInterface::releaseInstance();
}

bool InitializeCameraSystem(void) { return CameraPublicInterface::getInstance()->initialize(); }

bool InitializeCameraSystemByType(Ruvo_CameraType type) {
    return CameraPublicInterface::getInstance()->initialize(type);
}

void CleanupCameraSystem(void) {
    CameraPublicInterface::getInstance()->cleanup();
    CameraPublicInterface::releaseInstance();
}

bool GetCurrentFrame(const char* cameraId, ImageData* image) {
    if (!cameraId || !image) return false;
    return CameraPublicInterface::getInstance()->getCurrentFrame(cameraId, *image, 0);
}

bool GetCurrentFrameToBuffer(const char* cameraId, unsigned char* buffer, int32_t size,
                             ImageData* image) {
    if (!cameraId || !buffer || !image) return false;
    return CameraPublicInterface::getInstance()->getCurrentFrame2(cameraId, buffer, size, *image,
                                                                  0);
}

void ReleaseImageData(ImageData* image) {
    if (!image) return;
    CameraPublicInterface::getInstance()->releaseImageData(*image);
}
