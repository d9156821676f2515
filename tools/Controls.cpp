#include "Controls.h"

#include <algorithm>

namespace telvarra::cli {

namespace {

using Library = CameraPublicInterface;

// The two text parameters behind the digital zoom: one step in, and back to the whole frame.
constexpr char kZoomIn[] = "CameraImageZoomIn";
constexpr char kZoomReset[] = "CameraImageZoomInReturnNormal";

constexpr Ruvo_ImageFormat kSettableFormats[] = {RUVO_FORMAT_MONO8, RUVO_FORMAT_RGB8,
                                                 RUVO_FORMAT_BGR8};

template <bool (Library::*Get)(const char*, bool&)>
bool readSwitch(Library& library, const char* id, int& value) {
    bool on = false;
    if (!(library.*Get)(id, on)) return false;
    value = on ? 1 : 0;
    return true;
}

template <bool (Library::*Set)(const char*, bool)>
bool writeSwitch(Library& library, const char* id, int value) {
    return (library.*Set)(id, value != 0);
}

template <bool (Library::*Get)(const char*, int32_t&)>
bool readNumber(Library& library, const char* id, int& value) {
    int32_t number = 0;
    if (!(library.*Get)(id, number)) return false;
    value = number;
    return true;
}

template <bool (Library::*Set)(const char*, int32_t)>
bool writeNumber(Library& library, const char* id, int value) {
    return (library.*Set)(id, value);
}

bool readFormat(Library& library, const char* id, int& value) {
    value = library.getImageFormat(id);
    return true;
}

bool writeFormat(Library& library, const char* id, int value) {
    return library.setImageFormat(id, static_cast<Ruvo_ImageFormat>(value));
}

bool writeZoom(Library& library, const char* id, int level) {
    const bool reset = library.setCameraParameter(id, kZoomReset, "1");
    // A camera too small to zoom refuses the reset too, yet shows the whole frame as asked.
    if (level == 0) return true;
    if (!reset) return false;
    for (int step = 0; step < level; ++step) {
        if (!library.setCameraParameter(id, kZoomIn, "1")) return false;
    }
    return true;
}

}  // namespace

const std::vector<Control>& controls() {
    static const std::vector<Control> table = {
        {"format", ValueKind::Format, 0, 0, "pixel format of the delivered frames", readFormat,
         writeFormat},
        {"hmirror", ValueKind::Switch, 0, 1, "left-right mirror",
         readSwitch<&Library::getCameraHorMirror>, writeSwitch<&Library::setCameraHorMirror>},
        {"vmirror", ValueKind::Switch, 0, 1, "top-bottom mirror",
         readSwitch<&Library::getCameraVerMirror>, writeSwitch<&Library::setCameraVerMirror>},
        {"rotate", ValueKind::Number, 0, 3, "quarter turns clockwise",
         readNumber<&Library::getCameraRotate>, writeNumber<&Library::setCameraRotate>},
        {"zoom", ValueKind::Number, 0, 2, "digital zoom steps (not readable)", nullptr, writeZoom},
        {"auto-exposure", ValueKind::Switch, 0, 1, "automatic exposure",
         readSwitch<&Library::getCameraExposureMod>, writeSwitch<&Library::setCameraExposureMod>},
        {"exposure", ValueKind::Number, 0, 100, "exposure time, percent of the camera's range",
         readNumber<&Library::getCameraExposureByPercent>,
         writeNumber<&Library::setCameraExposureByPercent>},
        {"gain", ValueKind::Number, 0, 100, "gain, percent of the camera's range",
         readNumber<&Library::getCameraGainByPercent>,
         writeNumber<&Library::setCameraGainByPercent>},
        {"brightness", ValueKind::Number, 0, 100, "brightness, percent of the camera's range",
         readNumber<&Library::getCameraBrightnessByPercent>,
         writeNumber<&Library::setCameraBrightnessByPercent>},
    };
    return table;
}

const Control* findControl(const std::string& name) {
    for (const Control& control : controls()) {
        if (name == control.name) return &control;
    }
    return nullptr;
}

std::optional<int> parseValue(const Control& control, const std::string& text) {
    switch (control.kind) {
        case ValueKind::Switch:
            if (text == "on" || text == "1") return 1;
            if (text == "off" || text == "0") return 0;
            return std::nullopt;
        case ValueKind::Format:
            for (Ruvo_ImageFormat format : kSettableFormats) {
                if (text == formatName(format)) return static_cast<int>(format);
            }
            return std::nullopt;
        case ValueKind::Number: {
            const bool digits =
                !text.empty() && text.size() <= 9 &&
                std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
            if (!digits) return std::nullopt;
            const int value = std::stoi(text);
            if (value < control.minimum || value > control.maximum) return std::nullopt;
            return value;
        }
    }
    return std::nullopt;
}

std::string valueText(const Control& control, int value) {
    switch (control.kind) {
        case ValueKind::Switch:
            return value ? "on" : "off";
        case ValueKind::Format:
            return formatName(static_cast<Ruvo_ImageFormat>(value));
        case ValueKind::Number:
            return std::to_string(value);
    }
    return "";
}

std::string valuesAccepted(const Control& control) {
    switch (control.kind) {
        case ValueKind::Switch:
            return "on|off";
        case ValueKind::Format: {
            std::string text;
            for (Ruvo_ImageFormat format : kSettableFormats) {
                text += (text.empty() ? "" : "|") + formatName(format);
            }
            return text;
        }
        case ValueKind::Number:
            return std::to_string(control.minimum) + ".." + std::to_string(control.maximum);
    }
    return "";
}

std::string formatName(Ruvo_ImageFormat format) {
    switch (format) {
        case RUVO_FORMAT_UNKNOWN:
            return "unknown";
        case RUVO_FORMAT_MONO8:
            return "mono8";
        case RUVO_FORMAT_RGB8:
            return "rgb8";
        case RUVO_FORMAT_BGR8:
            return "bgr8";
        case RUVO_FORMAT_BAYER_GR8:
            return "bayer_gr8";
        case RUVO_FORMAT_BAYER_RG8:
            return "bayer_rg8";
        case RUVO_FORMAT_BAYER_GB8:
            return "bayer_gb8";
        case RUVO_FORMAT_BAYER_BG8:
            return "bayer_bg8";
        default:
            return "format " + std::to_string(static_cast<int>(format));
    }
}

}  // namespace telvarra::cli
