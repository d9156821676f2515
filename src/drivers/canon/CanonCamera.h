// One Canon body, found among the attached bodies by its serial number and kept in a session
// for the camera's life. Live view is pulled on the caller's thread as JPEG files and decoded;
// stills are taken by pressing the shutter button remotely and arrive later through the body's
// events, which the SDK delivers only while someone calls EdsGetEvent. This library starts no
// thread of its own, so the camera pumps them inside the host's own calls to it: frame fetches,
// commands, the exposure lists and isConnected.
//
// The SDK delivers every body's events to whichever thread pumps, so its handlers only note
// what arrived; the camera it belongs to acts on it in its own next call, under its own lock.
#ifndef TELVARRA_DRIVERS_CANON_CANONCAMERA_H
#define TELVARRA_DRIVERS_CANON_CANONCAMERA_H

#include <chrono>
#include <mutex>
#include <string>
#include <vector>

#include "api/CameraBase.h"
#include "drivers/canon/CanonExposure.h"
#include "drivers/canon/CanonObject.h"
#include "platform/JpegDecoder.h"

namespace telvarra::canon {

class CanonCamera final : public CameraBase {
  public:
    explicit CanonCamera(const std::string& cameraId);
    ~CanonCamera() override;

    bool initialize() override;
    // Connected, and the body has not shut down: its events are pumped to find out.
    bool isConnected() override;
    bool setImageFormat(Ruvo_ImageFormat format) override;
    // A body's exposure mode is its dial's: nothing to set.
    bool setExposureMod(bool) override { return true; }
    bool getExposureMod(bool&) override { return true; }

    bool getEnumValue(const char* name, _RUVO_ENUM_VALUE* value) override;
    bool setEnumValue(const char* name, int64_t index) override;
    bool setStringValue(const char* name, const char* value) override;
    // The typed values a body does not have answer false.
    bool getIntValue(const char*, _RUVO_INT_VALUE*) override { return false; }
    bool setIntValue(const char*, int64_t) override { return false; }
    bool getFloatValue(const char*, _RUVO_FLOAT_VALUE*) override { return false; }
    bool setFloatValue(const char*, double) override { return false; }
    bool getBoolValue(const char*, bool*) override { return false; }
    bool setBoolValue(const char*, bool) override { return false; }
    bool getStringValue(const char*, _RUVO_STRING_VALUE*) override { return false; }

  private:
    // What the event handlers noted since the camera last looked.
    struct Arrivals {
        std::vector<CanonObject> stills;  // directory items waiting for their download
        std::vector<vendor::canon::EdsUInt32> changedProperties;
        bool shutDown = false;
        bool captureFailed = false;
    };

    bool closeDevice() override;
    bool startStreaming() override;
    bool stopStreaming() override;
    bool deviceOpen() const override { return m_sessionOpen; }
    bool deviceStillConnected() override;
    bool fetchFrame(ImageData& image) override;

    bool findBody();
    bool openSession();
    bool listenToEvents(bool listen);
    bool sendImagesToHost();
    bool readExposureLists();
    void readCurrentCode(ExposureSetting& setting);
    bool setLiveViewToHost(bool on);

    // Pumps the SDK's events and acts on what arrived for this body.
    void serviceEvents();
    Arrivals takeArrivals();
    void receiveStill(const CanonObject& item);
    bool downloadStill(const CanonObject& item, const std::string& path);
    bool loadStill(const std::string& path);
    void cancelWaitingStills();
    bool pullLiveView();
    bool decodeInto(const void* jpeg, vendor::canon::EdsUInt64 bytes);
    void describePicture(ImageData& image);

    bool capture(bool autofocus);
    bool autofocus();
    bool pressShutter(vendor::canon::EdsInt32 press);
    bool commandError(int code) const;
    bool downloadError(int code) const;
    bool liveViewError(const std::string& why) const;
    ExposureSetting* settingNamed(const char* name, bool setter);

    static vendor::canon::EdsError onPropertyEvent(vendor::canon::EdsUInt32 event,
                                                   vendor::canon::EdsUInt32 propertyId,
                                                   vendor::canon::EdsUInt32 parameter,
                                                   void* context);
    static vendor::canon::EdsError onObjectEvent(vendor::canon::EdsUInt32 event,
                                                 vendor::canon::EdsBaseRef item, void* context);
    static vendor::canon::EdsError onStateEvent(vendor::canon::EdsUInt32 event,
                                                vendor::canon::EdsUInt32 eventData, void* context);

    const CanonFunctions& m_eds;
    CanonObject m_camera;  // the body, one reference held while the camera is open
    bool m_sessionOpen = false;
    ExposureSetting m_shutterSpeed;
    ExposureSetting m_aperture;
    ExposureSetting m_isoSpeed;
    // A capture is being processed: its still has not arrived yet. Commands wait for it.
    bool m_busy = false;
    std::chrono::steady_clock::time_point m_busySince;
    bool m_bodyGone = false;
    // The last picture, live view or still; grows to the largest seen.
    platform::RgbPicture m_picture;

    // Taken only by the handlers and takeArrivals, never across an SDK call.
    std::mutex m_arrivalsLock;
    Arrivals m_arrivals;
};

}  // namespace telvarra::canon

#endif
