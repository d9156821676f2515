// A scriptable camera for tests: every slot's result is settable (default true), every call is
// counted, and the getters answer from plain fields. Frames are a small pattern in the camera's
// own buffer that changes with each fetch.
#ifndef TELVARRA_TESTS_FAKECAMERA_H
#define TELVARRA_TESTS_FAKECAMERA_H

#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "telvarra/ICamera.h"

namespace telvarra::test {

class FakeCamera : public ICamera {
  public:
    FakeCamera(const std::string& cameraId, Ruvo_CameraType type) {
        std::memset(&info, 0, sizeof info);
        std::strncpy(info.cameraId, cameraId.c_str(), sizeof info.cameraId - 1);
        info.cameraType = type;
    }

    // Result of the slot named by its operation; counts the call.
    bool answer(const char* operation) {
        ++calls[operation];
        const auto scripted = results.find(operation);
        return scripted == results.end() || scripted->second;
    }

    bool initialize() override { return answer("initialize"); }
    bool connect() override {
        connected = answer("connect");
        status = connected ? RUVO_STATUS_CONNECTED : RUVO_STATUS_DISCONNECTED;
        return connected;
    }
    bool disconnect() override {
        connected = false;
        status = RUVO_STATUS_DISCONNECTED;
        return answer("disconnect");
    }
    bool startAcquisition() override { return answer("startAcquisition"); }
    bool stopAcquisition() override { return answer("stopAcquisition"); }
    bool isConnected() override {
        ++calls["isConnected"];
        return connected;
    }
    Ruvo_CameraStatus getStatus() override {
        ++calls["getStatus"];
        return status;
    }
    DeviceInfo& getDeviceInfo(DeviceInfo& out) override {
        out = info;
        return out;
    }
    bool setParameter(const char* name, const char* value) override {
        lastText = std::string(name) + "=" + value;
        return answer("setParameter");
    }
    bool getParameter(const char*, char** value) override {
        static const char kAnswer[] = "100";
        *value = const_cast<char*>(kAnswer);
        return answer("getParameter");
    }
    bool reconnect() override { return answer("reconnect"); }
    void setReconnectInterval(int32_t intervalMs) override {
        ++calls["setReconnectInterval"];
        reconnectInterval = intervalMs;
    }
    bool getCurrentFrame(ImageData& image, int32_t option) override {
        lastOption = option;
        if (!answer("getCurrentFrame")) return false;
        fillFrame(image);
        return true;
    }
    bool getCurrentFrameToBuffer(unsigned char* buffer, int32_t size, ImageData& image,
                                 int32_t option) override {
        lastOption = option;
        if (!answer("getCurrentFrameToBuffer")) return false;
        fillFrame(image);
        if (size < image.dataSize) return false;
        std::memcpy(buffer, frame.data(), frame.size());
        image.data = buffer;
        return true;
    }
    bool registerFrameCallback(FrameCallback callback, void* user) override {
        frameCallback = callback;
        frameCallbackUser = user;
        return answer("registerFrameCallback");
    }
    bool unregisterFrameCallback() override { return answer("unregisterFrameCallback"); }
    bool setImageFormat(Ruvo_ImageFormat value) override {
        format = value;
        return answer("setImageFormat");
    }
    Ruvo_ImageFormat getImageFormat() override { return format; }
    _RUVO_IMAGE_FORMAT_LIST getSupportedImageFormats() override { return info.supportedFormats; }
    bool setImageSize(int32_t w, int32_t h) override {
        width = w;
        height = h;
        return answer("setImageSize");
    }
    bool getImageSize(int32_t& w, int32_t& h) override {
        if (!answer("getImageSize")) return false;
        w = width;
        h = height;
        return true;
    }
    bool setHorMirror(bool on) override { return set("setHorMirror", horMirror, on); }
    bool getHorMirror(bool& on) override { return get("getHorMirror", horMirror, on); }
    bool setVerMirror(bool on) override { return set("setVerMirror", verMirror, on); }
    bool getVerMirror(bool& on) override { return get("getVerMirror", verMirror, on); }
    bool setRotate(int32_t turns) override { return set("setRotate", rotate, turns); }
    bool getRotate(int32_t& turns) override { return get("getRotate", rotate, turns); }
    bool setExposureMod(bool on) override { return set("setExposureMod", autoExposure, on); }
    bool getExposureMod(bool& on) override { return get("getExposureMod", autoExposure, on); }
    bool setBrightnessByPercent(int32_t p) override {
        return set("setBrightnessByPercent", brightness, p);
    }
    bool getBrightnessByPercent(int32_t& p) override {
        return get("getBrightnessByPercent", brightness, p);
    }
    bool setGainByPercent(int32_t p) override { return set("setGainByPercent", gain, p); }
    bool getGainByPercent(int32_t& p) override { return get("getGainByPercent", gain, p); }
    bool setExposureByPercent(int32_t p) override {
        return set("setExposureByPercent", exposure, p);
    }
    bool getExposureByPercent(int32_t& p) override {
        return get("getExposureByPercent", exposure, p);
    }
    bool getIntValue(const char*, _RUVO_INT_VALUE* v) override {
        if (v) v->current = 77;
        return answer("getIntValue");
    }
    bool setIntValue(const char*, int64_t) override { return answer("setIntValue"); }
    bool getEnumValue(const char*, _RUVO_ENUM_VALUE* v) override {
        if (v) v->count = 3;
        return answer("getEnumValue");
    }
    bool setEnumValue(const char*, int64_t) override { return answer("setEnumValue"); }
    bool getFloatValue(const char*, _RUVO_FLOAT_VALUE* v) override {
        if (v) v->current = 2.5;
        return answer("getFloatValue");
    }
    bool setFloatValue(const char*, double) override { return answer("setFloatValue"); }
    bool getBoolValue(const char*, bool* v) override {
        if (v) *v = true;
        return answer("getBoolValue");
    }
    bool setBoolValue(const char*, bool) override { return answer("setBoolValue"); }
    bool getStringValue(const char*, _RUVO_STRING_VALUE* v) override {
        if (v) std::strcpy(v->current, "fake");
        return answer("getStringValue");
    }
    bool setStringValue(const char*, const char*) override { return answer("setStringValue"); }

    // A 4 x 2 mono frame whose bytes are frameNumber * 10 + index.
    static constexpr int32_t kFrameWidth = 4;
    static constexpr int32_t kFrameHeight = 2;

    DeviceInfo info;
    std::map<std::string, bool> results;
    std::map<std::string, int> calls;
    bool connected = false;
    Ruvo_CameraStatus status = RUVO_STATUS_DISCONNECTED;
    Ruvo_ImageFormat format = RUVO_FORMAT_MONO8;
    int32_t width = 0, height = 0, rotate = 0, brightness = 0, gain = 0, exposure = 0;
    int32_t reconnectInterval = 0, lastOption = -1, frameNumber = 0;
    bool horMirror = false, verMirror = false, autoExposure = false;
    std::string lastText;
    FrameCallback frameCallback = nullptr;
    void* frameCallbackUser = nullptr;
    std::vector<unsigned char> frame;

  private:
    template <typename T>
    bool set(const char* operation, T& field, T value) {
        if (!answer(operation)) return false;
        field = value;
        return true;
    }
    template <typename T>
    bool get(const char* operation, const T& field, T& out) {
        if (!answer(operation)) return false;
        out = field;
        return true;
    }
    void fillFrame(ImageData& image) {
        ++frameNumber;
        frame.resize(kFrameWidth * kFrameHeight);
        for (std::size_t i = 0; i < frame.size(); ++i) {
            frame[i] = static_cast<unsigned char>(frameNumber * 10 + static_cast<int>(i));
        }
        image = ImageData{frame.data(),
                          kFrameWidth,
                          kFrameHeight,
                          1,
                          RUVO_FORMAT_MONO8,
                          static_cast<int32_t>(frame.size()),
                          0,
                          frameNumber};
    }
};

}  // namespace telvarra::test

#endif
