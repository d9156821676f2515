/* The complete C interface: everything a host does with Telvarra, as plain C functions prefixed
 * telvarra_, for C, Python (ctypes), C#, LabVIEW and any host that cannot use the C++ classes.
 * The eight flat functions of TelvarraC.h stay as they are; these work beside them, over the
 * same process-wide facade, which the first call here creates.
 *
 * Conventions
 * - Results: functions named for an action answer 1 when done and 0 when not; after a 0,
 *   telvarra_last_error() says why. Counts and lengths are -1 on failure.
 * - Cameras are named by their identifier (the serial number or user id a listing shows), a
 *   NUL-terminated text; makes by their number: 0 every make, 1 MindVision, 2 HikVision, 3 Dvp,
 *   4 DaHeng, 5 Canon (Ruvo_CameraType).
 * - Ownership: the library never keeps or frees a pointer it is given, except the frame callback
 *   and its user pointer, kept until replaced, cleared, the camera closed or telvarra_shutdown.
 *   Text comes back by copy into the caller's buffer of `size` bytes, cut to fit and always
 *   terminated; the result is the whole text's length, so a caller can ask again with room.
 *   The one pointer handed out is a frame's data (telvarra_frame), which belongs to the camera.
 * - No C++ exception crosses this interface: an unexpected one is a 0 (or -1) with its text.
 * - Calls on one camera are serialised by the host; different cameras may be used from different
 *   threads. The last error is kept per thread. */
#ifndef TELVARRA_TELVARRAAPI_H
#define TELVARRA_TELVARRAAPI_H

#include "telvarra/Export.h"
#include "telvarra/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- The library ---- */

/* "1.2.3": the library's version. Static text. */
TELVARRA_API const char* telvarra_version(void);
/* Why the last call on this thread that answered 0 or -1 failed; "" after a success. Valid until
 * this thread's next call. */
TELVARRA_API const char* telvarra_last_error(void);
/* Starts one make's driver (its SDK), or with 0 every make's: 1 when at least one started. */
TELVARRA_API int telvarra_initialize(int make);
/* Closes every camera, stops every driver and ends the facade; the next call starts afresh. */
TELVARRA_API void telvarra_shutdown(void);
/* What the library found of each make's SDK: the file it looked for and where, whether it loaded
 * (and if not, the system's reason), which required functions it lacks. Text, one make a block. */
TELVARRA_API int telvarra_doctor(char* buffer, int size);

/* ---- Cameras ---- */

/* The cameras of a started make (0: of every started make): fills up to `capacity` records and
 * answers how many there are, which may be more; -1 when the make is not started. */
TELVARRA_API int telvarra_list_cameras(int make, DeviceInfo* cameras, int capacity);
/* Opens a listed camera; `make` 0 lets every started make look for the identifier. */
TELVARRA_API int telvarra_open(const char* id, int make);
TELVARRA_API int telvarra_close(const char* id);
TELVARRA_API int telvarra_start(const char* id);
TELVARRA_API int telvarra_stop(const char* id);
/* Ruvo_CameraStatus: 0 not open (or a failed start or stop), 1 disconnected, 2 connected,
 * 3 acquiring. */
TELVARRA_API int telvarra_status(const char* id);
TELVARRA_API int telvarra_is_connected(const char* id);
TELVARRA_API int telvarra_reconnect(const char* id);

/* ---- Frames ---- */

/* The next frame: image->data points into the camera's own buffer and stays valid until the
 * camera's next frame call, close or telvarra_shutdown. Copy what must last; never free it. */
TELVARRA_API int telvarra_frame(const char* id, ImageData* image);
/* The next frame copied into the caller's buffer of `size` bytes (image->data is `buffer`); a
 * buffer too small for the frame is refused and keeps its bytes. */
TELVARRA_API int telvarra_frame_to_buffer(const char* id, void* buffer, int64_t size,
                                          ImageData* image);
/* Called with each still a Canon body sends (never with live view), on the thread of the call
 * that received it; the frame is the camera's, valid during the call. NULL clears it. */
typedef void (*telvarra_frame_callback)(const ImageData* frame, void* user);
TELVARRA_API int telvarra_set_frame_callback(const char* id, telvarra_frame_callback callback,
                                             void* user);

/* ---- Format, size and geometry ---- */

/* Ruvo_ImageFormat: 1 mono8, 2 rgb8, 3 bgr8, 6..9 Bayer GR, RG, GB, BG; 0 unknown or not open. */
TELVARRA_API int telvarra_get_format(const char* id);
TELVARRA_API int telvarra_set_format(const char* id, int format);
/* The formats the camera offers: fills up to `capacity` and answers how many there are. */
TELVARRA_API int telvarra_supported_formats(const char* id, int* formats, int capacity);
TELVARRA_API int telvarra_get_size(const char* id, int* width, int* height);
TELVARRA_API int telvarra_set_size(const char* id, int width, int height);
TELVARRA_API int telvarra_get_mirror(const char* id, int* leftRight, int* topBottom);
TELVARRA_API int telvarra_set_mirror(const char* id, int leftRight, int topBottom);
/* Quarter turns, 0 to 3 (values outside are clamped). */
TELVARRA_API int telvarra_get_rotation(const char* id, int* quarterTurns);
TELVARRA_API int telvarra_set_rotation(const char* id, int quarterTurns);
/* Digital zoom: 0 the whole picture, 1 and 2 the centre at two steps (level 0 always taken). */
TELVARRA_API int telvarra_set_zoom(const char* id, int level);

/* ---- Exposure controls ---- */

/* Percent of the camera's range, 0 to 100. */
TELVARRA_API int telvarra_get_gain(const char* id, int* percent);
TELVARRA_API int telvarra_set_gain(const char* id, int percent);
TELVARRA_API int telvarra_get_exposure(const char* id, int* percent);
TELVARRA_API int telvarra_set_exposure(const char* id, int percent);
TELVARRA_API int telvarra_get_brightness(const char* id, int* percent);
TELVARRA_API int telvarra_set_brightness(const char* id, int percent);
TELVARRA_API int telvarra_get_auto_exposure(const char* id, int* on);
TELVARRA_API int telvarra_set_auto_exposure(const char* id, int on);

/* ---- Named values ---- */

/* A free-form text parameter of the camera; its value copied as the conventions say. */
TELVARRA_API int telvarra_get_parameter(const char* id, const char* name, char* buffer, int size);
TELVARRA_API int telvarra_set_parameter(const char* id, const char* name, const char* value);
/* Typed named values as the camera's make defines them. */
TELVARRA_API int telvarra_get_int(const char* id, const char* name, _RUVO_INT_VALUE* value);
TELVARRA_API int telvarra_set_int(const char* id, const char* name, int64_t value);
TELVARRA_API int telvarra_get_float(const char* id, const char* name, _RUVO_FLOAT_VALUE* value);
TELVARRA_API int telvarra_set_float(const char* id, const char* name, double value);
TELVARRA_API int telvarra_get_bool(const char* id, const char* name, int* value);
TELVARRA_API int telvarra_set_bool(const char* id, const char* name, int value);
TELVARRA_API int telvarra_get_string(const char* id, const char* name, char* buffer, int size);
TELVARRA_API int telvarra_set_string(const char* id, const char* name, const char* value);
/* Enumerations, such as a Canon body's "GetShutterSpeedIndex", "GetApertureIndex" and
 * "GetISOSpeedIndex" lists, chosen with "SetShutterSpeedIndex" (and its siblings) and an index. */
TELVARRA_API int telvarra_get_enum(const char* id, const char* name, _RUVO_ENUM_VALUE* value);
TELVARRA_API int telvarra_set_enum(const char* id, const char* name, int64_t index);

/* ---- Canon bodies ---- */

/* Presses the shutter button (with autofocus first when `autofocus`); the still follows through
 * the frame callback. Refused while the previous still has not arrived. */
TELVARRA_API int telvarra_canon_capture(const char* id, int autofocus);
TELVARRA_API int telvarra_canon_autofocus(const char* id);

/* ---- Configuration files ---- */

/* The value of `key` in the open camera's configuration (camera_<id>.cfg); -1 when absent. */
TELVARRA_API int telvarra_config_get(const char* id, const char* key, char* buffer, int size);
TELVARRA_API int telvarra_config_set(const char* id, const char* key, const char* value);
/* Writes the configuration to its file, or to `path` when not NULL. */
TELVARRA_API int telvarra_config_save(const char* id, const char* path);
/* Reads the configuration from its file, or from `path` when not NULL. */
TELVARRA_API int telvarra_config_load(const char* id, const char* path);

#ifdef __cplusplus
}
#endif

#endif
