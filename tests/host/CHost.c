/* A C host: drives a camera through the flat entry points only.
 * Exit code 0 when every step behaved; otherwise the number of the failing step. */
#include <stdio.h>
#include <string.h>
#include <telvarra/Telvarra.h>

#include "FakeCameraInstaller.h"

enum { kFakeType = 40 };

int main(void) {
    ImageData image;
    unsigned char buffer[64];
    void* handle = CreateCameraManager();
    if (!handle) return 1;

    fake_install(kFakeType, "c-cam");
    if (!InitializeCameraSystemByType((Ruvo_CameraType)kFakeType)) return 2;
    if (!fake_open("c-cam", kFakeType)) return 3;

    memset(&image, 0, sizeof image);
    if (!GetCurrentFrame("c-cam", &image)) return 4;
    if (image.width != 4 || image.height != 2 || image.data[0] != 10 || image.frameNumber != 1) {
        return 5;
    }
    if (!GetCurrentFrameToBuffer("c-cam", buffer, sizeof buffer, &image)) return 6;
    if (image.data != buffer || buffer[7] != 27) return 7;
    if (GetCurrentFrameToBuffer("c-cam", buffer, 2, &image)) return 8;
    if (GetCurrentFrame(NULL, &image) || GetCurrentFrame("c-cam", NULL)) return 9;

    image.data = NULL;
    image.channels = 3;
    ReleaseImageData(&image);
    if (image.width != 0 || image.channels != 3) return 10;
    ReleaseImageData(NULL);

    DestroyCameraManager(handle);
    if (!InitializeCameraSystem()) return 11; /* a fresh facade restarts the fake driver */
    CleanupCameraSystem();
    CleanupCameraSystem();
    puts("C host: flat entry points work");
    return 0;
}
