// One opened device. The slot order is part of the binary interface: do not reorder, insert or
// remove operations.
#ifndef TELVARRA_ICAMERA_H
#define TELVARRA_ICAMERA_H

#include <cstdint>

#include "telvarra/Callbacks.h"
#include "telvarra/Types.h"

// Nothing to export: a pure interface has no out-of-line members, and every module that
// implements or uses it emits its own copy of the table.
class ICamera {
  public:
    virtual ~ICamera() = default;                                        // 0
    virtual bool initialize() = 0;                                       // 1
    virtual bool connect() = 0;                                          // 2
    virtual bool disconnect() = 0;                                       // 3
    virtual bool startAcquisition() = 0;                                 // 4
    virtual bool stopAcquisition() = 0;                                  // 5
    virtual bool isConnected() = 0;                                      // 6
    virtual Ruvo_CameraStatus getStatus() = 0;                           // 7
    virtual DeviceInfo& getDeviceInfo(DeviceInfo& info) = 0;             // 8
    virtual bool setParameter(const char* name, const char* value) = 0;  // 9
    virtual bool getParameter(const char* name, char** value) = 0;       // 10
    virtual bool reconnect() = 0;                                        // 11
    virtual void setReconnectInterval(int32_t intervalMs) = 0;           // 12
    virtual bool getCurrentFrame(ImageData& image, int32_t option) = 0;  // 13
    virtual bool getCurrentFrameToBuffer(unsigned char* buffer, int32_t size, ImageData& image,
                                         int32_t option) = 0;                      // 14
    virtual bool registerFrameCallback(FrameCallback callback, void* user) = 0;    // 15
    virtual bool unregisterFrameCallback() = 0;                                    // 16
    virtual bool setImageFormat(Ruvo_ImageFormat format) = 0;                      // 17
    virtual Ruvo_ImageFormat getImageFormat() = 0;                                 // 18
    virtual _RUVO_IMAGE_FORMAT_LIST getSupportedImageFormats() = 0;                // 19
    virtual bool setImageSize(int32_t width, int32_t height) = 0;                  // 20
    virtual bool getImageSize(int32_t& width, int32_t& height) = 0;                // 21
    virtual bool setHorMirror(bool on) = 0;                                        // 22
    virtual bool getHorMirror(bool& on) = 0;                                       // 23
    virtual bool setVerMirror(bool on) = 0;                                        // 24
    virtual bool getVerMirror(bool& on) = 0;                                       // 25
    virtual bool setRotate(int32_t quarterTurns) = 0;                              // 26
    virtual bool getRotate(int32_t& quarterTurns) = 0;                             // 27
    virtual bool setExposureMod(bool automatic) = 0;                               // 28
    virtual bool getExposureMod(bool& automatic) = 0;                              // 29
    virtual bool setBrightnessByPercent(int32_t percent) = 0;                      // 30
    virtual bool getBrightnessByPercent(int32_t& percent) = 0;                     // 31
    virtual bool setGainByPercent(int32_t percent) = 0;                            // 32
    virtual bool getGainByPercent(int32_t& percent) = 0;                           // 33
    virtual bool setExposureByPercent(int32_t percent) = 0;                        // 34
    virtual bool getExposureByPercent(int32_t& percent) = 0;                       // 35
    virtual bool getIntValue(const char* name, _RUVO_INT_VALUE* value) = 0;        // 36
    virtual bool setIntValue(const char* name, int64_t value) = 0;                 // 37
    virtual bool getEnumValue(const char* name, _RUVO_ENUM_VALUE* value) = 0;      // 38
    virtual bool setEnumValue(const char* name, int64_t value) = 0;                // 39
    virtual bool getFloatValue(const char* name, _RUVO_FLOAT_VALUE* value) = 0;    // 40
    virtual bool setFloatValue(const char* name, double value) = 0;                // 41
    virtual bool getBoolValue(const char* name, bool* value) = 0;                  // 42
    virtual bool setBoolValue(const char* name, bool value) = 0;                   // 43
    virtual bool getStringValue(const char* name, _RUVO_STRING_VALUE* value) = 0;  // 44
    virtual bool setStringValue(const char* name, const char* value) = 0;          // 45
};

#endif
