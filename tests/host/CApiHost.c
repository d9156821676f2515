/* A C host on the complete C interface alone: a HikVision camera and a Canon body of the
 * simulators (the rig file named by TELVARRA_SIM_RIG) listed, opened, streamed, controlled and
 * closed, with the refusals a host meets on the way.
 * Exit code 0 when every step behaved; otherwise the number of the failing step. */
#include <stdio.h>
#include <string.h>
#include <telvarra/TelvarraApi.h>

enum { kHikVision = 2, kCanon = 5 };

static int g_stills;
static int g_stillWidth;

static void onStill(const ImageData* frame, void* user) {
    ++*(int*)user;
    g_stillWidth = frame->width;
}

static int failedWith(const char* part) { return strstr(telvarra_last_error(), part) != NULL; }

static int industrialCamera(void) {
    DeviceInfo cameras[4];
    ImageData image;
    unsigned char small[16];
    static unsigned char whole[64 * 48];
    char text[4];
    int left = 0, top = 0, turns = 0, percent = -1;

    if (telvarra_list_cameras(kHikVision, NULL, 0) != 1) return 10;
    memset(cameras, 0, sizeof cameras);
    if (telvarra_list_cameras(kHikVision, cameras, 4) != 1) return 11;
    if (strcmp(cameras[0].cameraId, "CAPI01") != 0) return 12;
    if (telvarra_list_cameras(kHikVision, NULL, 1) != -1 || !failedWith("no room")) return 13;

    if (telvarra_open("NOSUCH", kHikVision) || telvarra_last_error()[0] == '\0') return 14;
    if (!telvarra_open("CAPI01", kHikVision) || telvarra_last_error()[0] != '\0') return 15;
    if (telvarra_frame("CAPI01", &image)) return 16; /* not started yet */
    if (!telvarra_start("CAPI01") || telvarra_status("CAPI01") != 3) return 17;

    memset(&image, 0, sizeof image);
    if (!telvarra_frame("CAPI01", &image)) return 18;
    if (image.width != 64 || image.height != 48 || image.channels != 1 || !image.data) return 19;
    if (telvarra_frame_to_buffer("CAPI01", small, sizeof small, &image)) return 20;
    if (!telvarra_frame_to_buffer("CAPI01", whole, sizeof whole, &image)) return 21;
    if (image.data != whole || image.dataSize != 64 * 48) return 22;
    if (telvarra_frame("CAPI01", NULL) || !failedWith("no frame record")) return 23;
    if (telvarra_frame(NULL, &image)) return 24;

    if (!telvarra_set_mirror("CAPI01", 1, 0) || !telvarra_set_rotation("CAPI01", 1)) return 25;
    if (!telvarra_get_mirror("CAPI01", &left, &top) || left != 1 || top != 0) return 26;
    if (!telvarra_get_rotation("CAPI01", &turns) || turns != 1) return 27;
    if (!telvarra_frame("CAPI01", &image) || image.width != 48 || image.height != 64) return 28;
    if (telvarra_set_zoom("CAPI01", 1) || !failedWith("too small")) return 29;
    if (!telvarra_set_zoom("CAPI01", 0) || telvarra_set_zoom("CAPI01", 3)) return 30;

    if (!telvarra_set_gain("CAPI01", 50) || !telvarra_get_gain("CAPI01", &percent)) return 31;
    if (percent < 49 || percent > 51) return 32;
    /* Text is cut to the buffer and terminated; the whole length comes back. */
    if (telvarra_get_parameter("CAPI01", "Anything", text, sizeof text) != 3) return 33;
    if (strcmp(text, "100") != 0) return 34;
    if (telvarra_get_parameter("CAPI01", "Anything", text, 2) != 3 || strcmp(text, "1")) return 35;

    if (!telvarra_config_set("CAPI01", "Note", "bench 4")) return 36;
    if (telvarra_config_set("CAPI01", "Note", "a\nsetCameraRotate=3")) return 37;
    if (telvarra_config_get("CAPI01", "Note", text, sizeof text) != 7 || strcmp(text, "ben"))
        return 38;
    if (telvarra_config_get("CAPI01", "Absent", text, sizeof text) != -1) return 39;
    if (!telvarra_stop("CAPI01") || !telvarra_close("CAPI01")) return 40;
    if (telvarra_close("CAPI01")) return 41;
    return 0;
}

static int canonBody(void) {
    ImageData image;
    _RUVO_ENUM_VALUE iso;
    int tries;

    if (!telvarra_open("CAPIEOS", kCanon)) return 50;
    if (!telvarra_set_frame_callback("CAPIEOS", onStill, &g_stills)) return 51;
    if (!telvarra_start("CAPIEOS") || !telvarra_frame("CAPIEOS", &image)) return 52;
    if (image.width != 64 || image.channels != 3) return 53;
    memset(&iso, 0, sizeof iso);
    if (!telvarra_get_enum("CAPIEOS", "GetISOSpeedIndex", &iso) || iso.count != 8) return 54;
    if (telvarra_set_enum("CAPIEOS", "SetISOSpeedIndex", 8)) return 55;
    if (!telvarra_canon_capture("CAPIEOS", 0)) return 56;
    for (tries = 0; tries < 200 && g_stills == 0; ++tries) telvarra_is_connected("CAPIEOS");
    if (g_stills != 1 || g_stillWidth != 128) return 57;
    if (!telvarra_set_frame_callback("CAPIEOS", NULL, NULL)) return 58;
    if (!telvarra_close("CAPIEOS")) return 59;
    return 0;
}

int main(void) {
    char report[4096];
    int step;

    if (!telvarra_version()[0]) return 1;
    if (!telvarra_initialize(kHikVision) || !telvarra_initialize(kCanon)) return 2;
    if (telvarra_doctor(report, sizeof report) <= 0 || !strstr(report, "HikVision")) return 3;

    step = industrialCamera();
    if (step) return step;
    step = canonBody();
    if (step) return step;

    telvarra_shutdown();
    if (telvarra_status("CAPI01") != 0) return 90;
    telvarra_shutdown();
    puts("C host: the complete C interface works");
    return 0;
}
