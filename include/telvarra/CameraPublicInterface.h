// The facade a host drives every camera through. A process-wide heap singleton: getInstance()
// builds it (and its manager) on first use, releaseInstance() ends it. Every member that names a
// camera looks it up among the open cameras, calls one camera operation and writes one log line
// per outcome. Identifiers are NUL-terminated narrow text. No lock: callers serialise calls.
#ifndef TELVARRA_CAMERAPUBLICINTERFACE_H
#define TELVARRA_CAMERAPUBLICINTERFACE_H

#include <functional>
#include <memory>
#include <string>

#include "telvarra/Callbacks.h"
#include "telvarra/CameraConfig.h"
#include "telvarra/CameraLogger.h"
#include "telvarra/CameraManager.h"
#include "telvarra/Export.h"
#include "telvarra/ICamera.h"
#include "telvarra/Types.h"

class TELVARRA_API CameraPublicInterface {
  public:
    static CameraPublicInterface* getInstance();
    static void releaseInstance();
    // Whether `handle` is the live facade; asking builds none.
    static bool isInstance(const void* handle);

    // Lifecycle and sessions.
    bool initialize();
    bool initialize(Ruvo_CameraType type);
    bool getAvailableCamerasAll(_RUVO_DEVICE_INFO_LIST* list);
    bool getAvailableCamerasByType(Ruvo_CameraType type, _RUVO_DEVICE_INFO_LIST* list);
    bool openCamera(const char* cameraId, Ruvo_CameraType type);
    bool closeCamera(const char* cameraId);
    bool startCapture(const char* cameraId);
    bool stopCapture(const char* cameraId);
    Ruvo_CameraStatus getCameraStatus(const char* cameraId);
    bool isCameraConnected(const char* cameraId);
    bool reconnectCamera(const char* cameraId);
    void setReconnectInterval(const char* cameraId, int32_t intervalMs);
    // Only log: the manager reads and writes the configuration files itself.
    bool loadCameraConfig(const char* cameraId, const char* configFile);
    bool saveCameraConfig(const char* cameraId, const char* configFile);
    // Owned by the facade; valid while the camera is open.
    CameraConfig* getCameraConfigById(const char* cameraId) const;
    void setEventCallback(EventCallback callback, void* user);
    void setImageProcessingCallback(ImageProcessingCallback callback, void* user);
    void cleanup();

    // Frames. getCurrentFrame points image.data into the camera's own buffer, valid until its
    // next fetch; getCurrentFrame2 copies into the caller's buffer of `size` bytes.
    bool getCurrentFrame(const char* cameraId, ImageData& image, int32_t option);
    bool getCurrentFrame2(const char* cameraId, unsigned char* buffer, int32_t size,
                          ImageData& image, int32_t option);
    bool registerFrameCallback(const char* cameraId, FrameCallback callback, void* user);
    bool unregisterFrameCallback(const char* cameraId);
    bool setImageFormat(const char* cameraId, Ruvo_ImageFormat format);
    Ruvo_ImageFormat getImageFormat(const char* cameraId);
    _RUVO_IMAGE_FORMAT_LIST getSupportedImageFormats(const char* cameraId);
    bool setImageSize(const char* cameraId, int32_t width, int32_t height);
    bool getImageSize(const char* cameraId, int32_t& width, int32_t& height);
    // For records whose data was allocated with array new for the caller, never for a frame
    // straight from a camera.
    void releaseImageData(ImageData& image);

    // Free-form text parameters. The text handed back is the library's: do not free or modify.
    bool setCameraParameter(const char* cameraId, const char* name, const char* value);
    bool getCameraParameter(const char* cameraId, const char* name, char** value);

    // Fixed controls; each successful set is recorded in the camera's configuration.
    bool setCameraHorMirror(const char* cameraId, bool on);
    bool getCameraHorMirror(const char* cameraId, bool& on);
    bool setCameraVerMirror(const char* cameraId, bool on);
    bool getCameraVerMirror(const char* cameraId, bool& on);
    bool setCameraRotate(const char* cameraId, int32_t quarterTurns);
    bool getCameraRotate(const char* cameraId, int32_t& quarterTurns);
    bool setCameraExposureMod(const char* cameraId, bool automatic);
    bool getCameraExposureMod(const char* cameraId, bool& automatic);
    bool setCameraBrightnessByPercent(const char* cameraId, int32_t percent);
    bool getCameraBrightnessByPercent(const char* cameraId, int32_t& percent);
    bool setCameraGainByPercent(const char* cameraId, int32_t percent);
    bool getCameraGainByPercent(const char* cameraId, int32_t& percent);
    bool setCameraExposureByPercent(const char* cameraId, int32_t percent);
    bool getCameraExposureByPercent(const char* cameraId, int32_t& percent);

    // Typed named values, passed to the camera as they are; not recorded.
    bool getCameraIntValue(const char* cameraId, const char* name, _RUVO_INT_VALUE* value);
    bool setCameraIntValue(const char* cameraId, const char* name, int64_t value);
    bool getCameraEnumValue(const char* cameraId, const char* name, _RUVO_ENUM_VALUE* value);
    bool setCameraEnumValue(const char* cameraId, const char* name, int64_t value);
    bool getCameraFloatValue(const char* cameraId, const char* name, _RUVO_FLOAT_VALUE* value);
    bool setCameraFloatValue(const char* cameraId, const char* name, double value);
    bool getCameraBoolValue(const char* cameraId, const char* name, bool* value);
    bool setCameraBoolValue(const char* cameraId, const char* name, bool value);
    bool getCameraStringValue(const char* cameraId, const char* name, _RUVO_STRING_VALUE* value);
    bool setCameraStringValue(const char* cameraId, const char* name, const char* value);

    CameraPublicInterface(const CameraPublicInterface&) = delete;
    CameraPublicInterface& operator=(const CameraPublicInterface&) = delete;

  private:
    CameraPublicInterface();
    ~CameraPublicInterface();

    using CameraCall = std::function<bool(ICamera&)>;
    // Null (after the "not opened" line at `notOpenedLevel`) when the camera is not open.
    ICamera* findOpenCamera(const char* cameraId, LogLevel notOpenedLevel) const;
    // The per-call pattern: lookup, one camera call, the failure or success line. The lines are
    // built only when written: frames are polled, and their path allocates nothing.
    bool callCamera(const char* cameraId, const CameraCall& call, std::string_view failure,
                    std::string_view success);
    bool setFixedControl(const char* cameraId, const char* operation, const char* configKey,
                         int32_t value, const CameraCall& call);
    bool getFixedControl(const char* cameraId, const char* operation, const CameraCall& call);
    bool setTypedValue(const char* cameraId, const char* name, const CameraCall& call);
    bool getTypedValue(const char* cameraId, const char* name, const CameraCall& call);

    static CameraPublicInterface* s_instance;
    std::unique_ptr<CameraManager> m_manager;
};

#endif
