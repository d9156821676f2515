// What every camera shares: the state every make keeps in the same order, the accessor bodies
// that are one for all makes, and the open / close / start / stop / frame guards with their log
// lines, worded from the make's profile. A make derives from it and adds its SDK handle, its
// buffers and the calls that really differ.
#ifndef TELVARRA_API_CAMERABASE_H
#define TELVARRA_API_CAMERABASE_H

#include <atomic>
#include <optional>
#include <string>

#include "api/PercentMapping.h"
#include "api/SoftwareFramePath.h"
#include "platform/QCriticalSection.h"
#include "telvarra/ICamera.h"

namespace telvarra {

// A make's camera texts, stored whole (the makes word them irregularly), the record a new camera
// reports, and the few points where the makes' lifecycles differ.
struct CameraProfile {
    // The record before the device is opened; maximum size 1280 x 1024 for every make.
    Ruvo_CameraType type;
    const char* vendorName;
    const char* placeholderSerial;  // "222222": never the device's own serial number
    const char* modelName;

    // Lines ending in ": " are followed by the identifier.
    const char* connecting;     // "Connecting to HikVision camera: "
    const char* disconnecting;  // "Disconnecting from HikVision camera: "
    const char* starting;       // "Starting acquisition on HikVision camera: "
    const char* stopping;       // "Stopping acquisition on HikVision camera: "
    const char* reconnecting;   // "Reconnecting to HikVision camera: "
    const char* onCamera;       // " on HikVision camera: ", after "Setting parameter name=value"
    const char* fromCamera;     // " from HikVision camera: ", after "Getting parameter name"
    const char* forCamera;      // " for HikVision camera: ", after sizes, callbacks, intervals

    // The status a successful stop leaves: DaHeng goes back to connected, the others keep
    // "acquiring" until disconnect.
    Ruvo_CameraStatus statusAfterStop;
    // MindVision stays connected when its SDK refuses to close the device.
    bool closeFailureKeepsConnected;
    // DaHeng's refusals of an image size and of a short buffer name the numbers at fault, the
    // others name the camera.
    bool refusalsNameNumbers;
    // getParameter answers whether a device is open; MindVision's answers true regardless.
    bool parameterReadNeedsDevice;
};

// What some log lines keep of an old slip, a text literal advanced by a number of characters
// (" < " by a buffer's size): the rest of the literal, or nothing once the offset passes its end,
// where the slip would read past it.
std::string literalTail(const char* literal, int64_t offset);

class CameraBase : public ICamera {
  public:
    bool connect() override;
    bool disconnect() override;
    bool startAcquisition() override;
    bool stopAcquisition() override;
    bool isConnected() override;
    Ruvo_CameraStatus getStatus() override;
    DeviceInfo& getDeviceInfo(DeviceInfo& info) override;
    bool setParameter(const char* name, const char* value) override;
    bool getParameter(const char* name, char** value) override;
    bool reconnect() override;
    void setReconnectInterval(int32_t intervalMs) override;
    bool getCurrentFrame(ImageData& image, int32_t option) override;
    bool getCurrentFrameToBuffer(unsigned char* buffer, int32_t size, ImageData& image,
                                 int32_t option) override;
    bool registerFrameCallback(FrameCallback callback, void* user) override;
    bool unregisterFrameCallback() override;
    Ruvo_ImageFormat getImageFormat() override;
    _RUVO_IMAGE_FORMAT_LIST getSupportedImageFormats() override;
    bool setImageSize(int32_t width, int32_t height) override;
    bool getImageSize(int32_t& width, int32_t& height) override;

    // Mirrors and rotation through the software frame path, for an opened device.
    bool setHorMirror(bool on) override;
    bool getHorMirror(bool& on) override;
    bool setVerMirror(bool on) override;
    bool getVerMirror(bool& on) override;
    bool setRotate(int32_t quarterTurns) override;
    bool getRotate(int32_t& quarterTurns) override;

    // The percent controls through the make's PercentControl of each; a make without them (its
    // controls left empty) answers true and does nothing.
    bool setBrightnessByPercent(int32_t percent) override;
    bool getBrightnessByPercent(int32_t& percent) override;
    bool setGainByPercent(int32_t percent) override;
    bool getGainByPercent(int32_t& percent) override;
    bool setExposureByPercent(int32_t percent) override;
    bool getExposureByPercent(int32_t& percent) override;

    // Typed named values: a make without them answers true and leaves the out-argument alone.
    bool getIntValue(const char* name, _RUVO_INT_VALUE* value) override;
    bool setIntValue(const char* name, int64_t value) override;
    bool getEnumValue(const char* name, _RUVO_ENUM_VALUE* value) override;
    bool setEnumValue(const char* name, int64_t value) override;
    bool getFloatValue(const char* name, _RUVO_FLOAT_VALUE* value) override;
    bool setFloatValue(const char* name, double value) override;
    bool getBoolValue(const char* name, bool* value) override;
    bool setBoolValue(const char* name, bool value) override;
    bool getStringValue(const char* name, _RUVO_STRING_VALUE* value) override;
    bool setStringValue(const char* name, const char* value) override;

  protected:
    // A make whose SDK does not mirror, rotate and zoom for it asks for the software frame path.
    enum class FramePath { Software, Device };
    CameraBase(std::string cameraId, const CameraProfile& profile, FramePath framePath);

    // ---- What a make provides. ----
    // Releases whatever `initialize` opened, also after a failed or partial open; false when the
    // SDK refused to close the device.
    virtual bool closeDevice() = 0;
    virtual bool startStreaming() = 0;  // true when the SDK started grabbing
    virtual bool stopStreaming() = 0;   // true when the SDK stopped grabbing
    virtual bool deviceOpen() const = 0;
    // True when the open device still answers, so that reconnecting has nothing to do.
    virtual bool deviceStillConnected() { return false; }
    // One frame into the camera's own buffer, described in `image`. Runs under the frame lock.
    // A make that copies the SDK's frame out takes it through the software frame path's copyFrom,
    // which mirrors, turns and zooms on the way; otherwise the base applies the path after.
    virtual bool fetchFrame(ImageData& image) = 0;
    // A parameter after its log line; by default the software zoom commands of an open device.
    virtual bool applyParameter(const std::string& name, const std::string& value);
    // After every successful percent set: the make's save of the device's settings, if any.
    virtual void afterPercentSet() {}

    // ---- What the base offers a make. ----
    // Describes a fetched frame: data, size, format and channels, the time in whole seconds as
    // milliseconds, and the next frame number.
    void describeFrame(ImageData& image, unsigned char* data, int32_t width, int32_t height,
                       int32_t channels, int32_t dataSize);
    void logInfo(const std::string& message) const;
    void logError(const std::string& message) const;

    // The shared state, in this order for every make. Flags the frame path reads while another
    // thread may change them are atomic, so that a fetch never sees a torn value.
    std::string m_cameraId;
    DeviceInfo m_deviceInfo;
    std::atomic<Ruvo_CameraStatus> m_status{RUVO_STATUS_DISCONNECTED};
    std::atomic<bool> m_connected{false};
    std::atomic<bool> m_acquiring{false};
    std::atomic<Ruvo_ImageFormat> m_imageFormat{RUVO_FORMAT_MONO8};
    int32_t m_width = 0;
    int32_t m_height = 0;
    // Stored for the host; the makes that pull frames on demand never call it.
    FrameCallback m_frameCallback = nullptr;
    void* m_frameCallbackUser = nullptr;
    int32_t m_frameCounter = 0;
    int32_t m_reconnectIntervalMs = 0;

    // Held over every fetch and the copy out of it, so fetches on one camera are serial and the
    // frame buffer is never written twice at once. Opening, closing, starting and stopping take
    // it too, though the fetch alone needs it by the letter: a fetch on another thread must never
    // use a handle that is being closed.
    QCriticalSection m_frameLock;
    // Present when the make asked for it.
    std::optional<SoftwareFramePath> m_softwareFrames;
    // Filled by the make's constructor.
    PercentControl m_brightness;
    PercentControl m_gain;
    PercentControl m_exposure;

  private:
    // Runs `change` on the software frame path of an open device; false without either.
    template <class Change>
    bool withFramePath(Change&& change);
    bool setPercent(const PercentControl& control, int32_t percent);
    static bool getPercent(const PercentControl& control, int32_t& percent);

    const CameraProfile& m_profile;
};

}  // namespace telvarra

#endif
