// The complete C interface: each function checks its pointers, makes one or a few facade calls
// and turns the outcome into 1 / 0 (or a count) and this thread's last error. No exception
// leaves: a C, Python or C# host could not catch it.
#include "telvarra/TelvarraApi.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "api/Doctor.h"
#include "core/LoggedProblems.h"
#include "telvarra/CameraPublicInterface.h"

namespace {

thread_local std::string t_lastError;

// The zoom commands the cameras take as text parameters.
constexpr char kZoomIn[] = "CameraImageZoomIn";
constexpr char kZoomOut[] = "CameraImageZoomInReturnNormal";
constexpr int kMaxZoomLevel = 2;
// A configuration value fits a buffer of this size (the store refuses longer ones).
constexpr std::size_t kConfigValueSize = 256;

CameraPublicInterface& facade() { return *CameraPublicInterface::getInstance(); }

class Refusal : public std::exception {
  public:
    explicit Refusal(std::string why) : m_why(std::move(why)) {}
    const char* what() const noexcept override { return m_why.c_str(); }

  private:
    std::string m_why;
};

// A failed call's reason: what the library logged while serving it, else `fallback`.
void fail(const std::string& fallback) {
    const std::string& logged = telvarra::lastLoggedProblem();
    t_lastError = logged.empty() ? fallback : logged;
}

// Runs a call whose body answers done or not: 1 or 0, with the reason kept for the thread.
template <class Body>
int act(const char* operation, Body&& body) {
    t_lastError.clear();
    telvarra::forgetLoggedProblem();
    try {
        if (body()) return 1;
        fail(std::string(operation) + " was refused");
    } catch (const Refusal& refusal) {
        t_lastError = std::string(operation) + ": " + refusal.what();
    } catch (const std::exception& error) {
        t_lastError = std::string(operation) + ": unexpected failure: " + error.what();
    } catch (...) {
        t_lastError = std::string(operation) + ": unexpected failure";
    }
    return 0;
}

// The same for a call that answers a count or a length: -1 when it failed.
template <class Body>
int measure(const char* operation, Body&& body) {
    int result = -1;
    act(operation, [&] {
        result = body();
        return result >= 0;
    });
    return result;
}

void require(bool condition, const char* why) {
    if (!condition) throw Refusal(why);
}

// The conventions' copy of a text: cut to the buffer, terminated, the whole length answered.
int copyOut(const std::string& text, char* buffer, int size) {
    require(size >= 0 && (size == 0 || buffer), "no buffer for the text");
    if (size > 0) {
        const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
        std::memcpy(buffer, text.data(), length);
        buffer[length] = '\0';
    }
    return static_cast<int>(std::min<std::size_t>(text.size(), INT32_MAX));
}

// The frame callbacks hosts registered, by camera, and the trampoline that hands their frame on
// by pointer.
struct FrameListener {
    telvarra_frame_callback callback;
    void* user;
    static void relay(const ImageData& frame, void* listener) {
        const auto& self = *static_cast<FrameListener*>(listener);
        self.callback(&frame, self.user);
    }
};
std::mutex g_listenersLock;
std::map<std::string, std::unique_ptr<FrameListener>> g_listeners;

void forgetListener(const std::string& id) {
    std::lock_guard<std::mutex> guard(g_listenersLock);
    g_listeners.erase(id);
}

CameraConfig& configOf(const char* id) {
    CameraConfig* config = facade().getCameraConfigById(id);
    require(config != nullptr, "the camera is not open");
    return *config;
}

}  // namespace

const char* telvarra_version(void) { return TELVARRA_VERSION_TEXT; }

const char* telvarra_last_error(void) { return t_lastError.c_str(); }

int telvarra_initialize(int make) {
    return act("telvarra_initialize", [&] {
        return make == RUVO_CAMERA_ANY ? facade().initialize()
                                       : facade().initialize(static_cast<Ruvo_CameraType>(make));
    });
}

void telvarra_shutdown(void) {
    act("telvarra_shutdown", [] {
        facade().cleanup();
        CameraPublicInterface::releaseInstance();
        std::lock_guard<std::mutex> guard(g_listenersLock);
        g_listeners.clear();
        return true;
    });
}

int telvarra_doctor(char* buffer, int size) {
    return measure("telvarra_doctor",
                   [&] { return copyOut(telvarra::doctorReport(), buffer, size); });
}

int telvarra_list_cameras(int make, DeviceInfo* cameras, int capacity) {
    return measure("telvarra_list_cameras", [&] {
        require(capacity >= 0 && (capacity == 0 || cameras), "no room for the records");
        // 409 KiB: not for the stack.
        auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
        list->count = 0;
        const bool listed = make == RUVO_CAMERA_ANY
                                ? facade().getAvailableCamerasAll(list.get())
                                : facade().getAvailableCamerasByType(
                                      static_cast<Ruvo_CameraType>(make), list.get());
        if (!listed) return -1;
        const int count = static_cast<int>(std::min<uint32_t>(list->count, RUVO_MAX_DEVICES));
        std::copy(list->devices, list->devices + std::min(count, capacity), cameras);
        return count;
    });
}

int telvarra_open(const char* id, int make) {
    return act("telvarra_open",
               [&] { return facade().openCamera(id, static_cast<Ruvo_CameraType>(make)); });
}

int telvarra_close(const char* id) {
    return act("telvarra_close", [&] {
        const bool closed = facade().closeCamera(id);
        if (closed) forgetListener(id);
        return closed;
    });
}

int telvarra_start(const char* id) {
    return act("telvarra_start", [&] { return facade().startCapture(id); });
}

int telvarra_stop(const char* id) {
    return act("telvarra_stop", [&] { return facade().stopCapture(id); });
}

int telvarra_status(const char* id) {
    int status = RUVO_STATUS_NONE;
    act("telvarra_status", [&] {
        status = static_cast<int>(facade().getCameraStatus(id));
        return true;
    });
    return status;
}

int telvarra_is_connected(const char* id) {
    return act("telvarra_is_connected", [&] { return facade().isCameraConnected(id); });
}

int telvarra_reconnect(const char* id) {
    return act("telvarra_reconnect", [&] { return facade().reconnectCamera(id); });
}

int telvarra_frame(const char* id, ImageData* image) {
    return act("telvarra_frame", [&] {
        require(image != nullptr, "no frame record");
        return facade().getCurrentFrame(id, *image, 0);
    });
}

int telvarra_frame_to_buffer(const char* id, void* buffer, int64_t size, ImageData* image) {
    return act("telvarra_frame_to_buffer", [&] {
        require(image != nullptr && buffer != nullptr, "no frame record or buffer");
        require(size >= 0, "a negative buffer size");
        // The facade counts in 32 bits; no frame is larger.
        const auto bounded = static_cast<int32_t>(std::min<int64_t>(size, INT32_MAX));
        return facade().getCurrentFrame2(id, static_cast<unsigned char*>(buffer), bounded, *image,
                                         0);
    });
}

int telvarra_set_frame_callback(const char* id, telvarra_frame_callback callback, void* user) {
    return act("telvarra_set_frame_callback", [&] {
        require(id != nullptr, "no camera identifier");
        std::lock_guard<std::mutex> guard(g_listenersLock);
        if (!callback) {
            const bool cleared = facade().unregisterFrameCallback(id);
            g_listeners.erase(id);
            return cleared;
        }
        auto listener = std::make_unique<FrameListener>(FrameListener{callback, user});
        if (!facade().registerFrameCallback(id, FrameListener::relay, listener.get())) return false;
        // The previous listener goes only now: until the line above it could still be called.
        g_listeners[id] = std::move(listener);
        return true;
    });
}

int telvarra_get_format(const char* id) {
    int format = RUVO_FORMAT_UNKNOWN;
    act("telvarra_get_format", [&] {
        format = static_cast<int>(facade().getImageFormat(id));
        return true;
    });
    return format;
}

int telvarra_set_format(const char* id, int format) {
    return act("telvarra_set_format",
               [&] { return facade().setImageFormat(id, static_cast<Ruvo_ImageFormat>(format)); });
}

int telvarra_supported_formats(const char* id, int* formats, int capacity) {
    return measure("telvarra_supported_formats", [&] {
        require(capacity >= 0 && (capacity == 0 || formats), "no room for the formats");
        require(id != nullptr, "no camera identifier");
        const _RUVO_IMAGE_FORMAT_LIST list = facade().getSupportedImageFormats(id);
        const int count = static_cast<int>(std::min<uint32_t>(list.count, RUVO_MAX_IMAGE_FORMATS));
        for (int i = 0; i < std::min(count, capacity); ++i) formats[i] = list.formats[i];
        return count;
    });
}

int telvarra_get_size(const char* id, int* width, int* height) {
    return act("telvarra_get_size", [&] {
        require(width && height, "nowhere to put the size");
        int32_t w = 0, h = 0;
        if (!facade().getImageSize(id, w, h)) return false;
        *width = w;
        *height = h;
        return true;
    });
}

int telvarra_set_size(const char* id, int width, int height) {
    return act("telvarra_set_size", [&] { return facade().setImageSize(id, width, height); });
}

int telvarra_get_mirror(const char* id, int* leftRight, int* topBottom) {
    return act("telvarra_get_mirror", [&] {
        require(leftRight && topBottom, "nowhere to put the mirrors");
        bool horizontal = false, vertical = false;
        if (!facade().getCameraHorMirror(id, horizontal) ||
            !facade().getCameraVerMirror(id, vertical))
            return false;
        *leftRight = horizontal;
        *topBottom = vertical;
        return true;
    });
}

int telvarra_set_mirror(const char* id, int leftRight, int topBottom) {
    return act("telvarra_set_mirror", [&] {
        return facade().setCameraHorMirror(id, leftRight != 0) &&
               facade().setCameraVerMirror(id, topBottom != 0);
    });
}

int telvarra_get_rotation(const char* id, int* quarterTurns) {
    return act("telvarra_get_rotation", [&] {
        require(quarterTurns != nullptr, "nowhere to put the rotation");
        int32_t turns = 0;
        if (!facade().getCameraRotate(id, turns)) return false;
        *quarterTurns = turns;
        return true;
    });
}

int telvarra_set_rotation(const char* id, int quarterTurns) {
    return act("telvarra_set_rotation", [&] { return facade().setCameraRotate(id, quarterTurns); });
}

int telvarra_set_zoom(const char* id, int level) {
    return act("telvarra_set_zoom", [&] {
        require(level >= 0 && level <= kMaxZoomLevel, "zoom levels are 0, 1 and 2");
        require(facade().getCameraConfigById(id) != nullptr, "the camera is not open");
        // Back to the whole picture is always done, also where a zoom would be refused.
        const bool zoomable = facade().setCameraParameter(id, kZoomOut, "");
        if (level == 0) return true;
        require(zoomable, "the camera's picture is too small to zoom");
        for (int step = 0; step < level; ++step)
            if (!facade().setCameraParameter(id, kZoomIn, "")) return false;
        return true;
    });
}

// ---- Percent controls: one shape for the four.

namespace {

// A percent (int32_t) or a flag (bool) read through the facade into the caller's int.
template <typename Value>
int readInto(const char* operation, const char* id, int* out,
             bool (CameraPublicInterface::*getter)(const char*, Value&)) {
    return act(operation, [&] {
        require(out != nullptr, "nowhere to put the value");
        Value value{};
        if (!(facade().*getter)(id, value)) return false;
        *out = value;
        return true;
    });
}

}  // namespace

int telvarra_get_gain(const char* id, int* percent) {
    return readInto("telvarra_get_gain", id, percent,
                    &CameraPublicInterface::getCameraGainByPercent);
}

int telvarra_set_gain(const char* id, int percent) {
    return act("telvarra_set_gain", [&] { return facade().setCameraGainByPercent(id, percent); });
}

int telvarra_get_exposure(const char* id, int* percent) {
    return readInto("telvarra_get_exposure", id, percent,
                    &CameraPublicInterface::getCameraExposureByPercent);
}

int telvarra_set_exposure(const char* id, int percent) {
    return act("telvarra_set_exposure",
               [&] { return facade().setCameraExposureByPercent(id, percent); });
}

int telvarra_get_brightness(const char* id, int* percent) {
    return readInto("telvarra_get_brightness", id, percent,
                    &CameraPublicInterface::getCameraBrightnessByPercent);
}

int telvarra_set_brightness(const char* id, int percent) {
    return act("telvarra_set_brightness",
               [&] { return facade().setCameraBrightnessByPercent(id, percent); });
}

int telvarra_get_auto_exposure(const char* id, int* on) {
    return readInto("telvarra_get_auto_exposure", id, on,
                    &CameraPublicInterface::getCameraExposureMod);
}

int telvarra_set_auto_exposure(const char* id, int on) {
    return act("telvarra_set_auto_exposure",
               [&] { return facade().setCameraExposureMod(id, on != 0); });
}

// ---- Named values.

int telvarra_get_parameter(const char* id, const char* name, char* buffer, int size) {
    return measure("telvarra_get_parameter", [&]() -> int {
        char* value = nullptr;
        if (!facade().getCameraParameter(id, name, &value)) return -1;
        return copyOut(value ? value : "", buffer, size);
    });
}

int telvarra_set_parameter(const char* id, const char* name, const char* value) {
    return act("telvarra_set_parameter",
               [&] { return facade().setCameraParameter(id, name, value); });
}

int telvarra_get_int(const char* id, const char* name, _RUVO_INT_VALUE* value) {
    return act("telvarra_get_int", [&] {
        require(value != nullptr, "no record for the value");
        return facade().getCameraIntValue(id, name, value);
    });
}

int telvarra_set_int(const char* id, const char* name, int64_t value) {
    return act("telvarra_set_int", [&] { return facade().setCameraIntValue(id, name, value); });
}

int telvarra_get_float(const char* id, const char* name, _RUVO_FLOAT_VALUE* value) {
    return act("telvarra_get_float", [&] {
        require(value != nullptr, "no record for the value");
        return facade().getCameraFloatValue(id, name, value);
    });
}

int telvarra_set_float(const char* id, const char* name, double value) {
    return act("telvarra_set_float", [&] { return facade().setCameraFloatValue(id, name, value); });
}

int telvarra_get_bool(const char* id, const char* name, int* value) {
    return act("telvarra_get_bool", [&] {
        require(value != nullptr, "nowhere to put the value");
        bool flag = *value != 0;  // a make that answers without touching it keeps the host's
        if (!facade().getCameraBoolValue(id, name, &flag)) return false;
        *value = flag;
        return true;
    });
}

int telvarra_set_bool(const char* id, const char* name, int value) {
    return act("telvarra_set_bool",
               [&] { return facade().setCameraBoolValue(id, name, value != 0); });
}

int telvarra_get_string(const char* id, const char* name, char* buffer, int size) {
    return measure("telvarra_get_string", [&]() -> int {
        _RUVO_STRING_VALUE value{};
        if (!facade().getCameraStringValue(id, name, &value)) return -1;
        return copyOut(std::string(value.current, strnlen(value.current, sizeof value.current)),
                       buffer, size);
    });
}

int telvarra_set_string(const char* id, const char* name, const char* value) {
    return act("telvarra_set_string",
               [&] { return facade().setCameraStringValue(id, name, value); });
}

int telvarra_get_enum(const char* id, const char* name, _RUVO_ENUM_VALUE* value) {
    return act("telvarra_get_enum", [&] {
        require(value != nullptr, "no record for the value");
        return facade().getCameraEnumValue(id, name, value);
    });
}

int telvarra_set_enum(const char* id, const char* name, int64_t index) {
    return act("telvarra_set_enum", [&] { return facade().setCameraEnumValue(id, name, index); });
}

int telvarra_canon_capture(const char* id, int autofocus) {
    return act("telvarra_canon_capture", [&] {
        return facade().setCameraStringValue(
            id, autofocus ? "sendCommandGrabFrame_1" : "sendCommandGrabFrame_0", "");
    });
}

int telvarra_canon_autofocus(const char* id) {
    return act("telvarra_canon_autofocus",
               [&] { return facade().setCameraStringValue(id, "sendCommandAutofocus", ""); });
}

// ---- Configuration files.

int telvarra_config_get(const char* id, const char* key, char* buffer, int size) {
    return measure("telvarra_config_get", [&]() -> int {
        require(key != nullptr, "no key");
        char value[kConfigValueSize] = {};
        char* out = value;
        if (!configOf(id).getValue(key, &out)) throw Refusal(std::string("no value for ") + key);
        return copyOut(value, buffer, size);
    });
}

int telvarra_config_set(const char* id, const char* key, const char* value) {
    return act("telvarra_config_set", [&] {
        require(key && value, "no key or value");
        // A line break would plant a line of its own in the file.
        require(!std::strpbrk(key, "\r\n=") && !std::strpbrk(value, "\r\n"),
                "keys and values are one line, and keys hold no '='");
        configOf(id).setValue(key, value);
        return true;
    });
}

int telvarra_config_save(const char* id, const char* path) {
    return act("telvarra_config_save", [&] { return configOf(id).saveConfig(path ? path : ""); });
}

int telvarra_config_load(const char* id, const char* path) {
    return act("telvarra_config_load", [&] { return configOf(id).loadConfig(path ? path : ""); });
}
