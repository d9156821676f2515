// The fixed controls by the names the program uses for them (get, set, info and grab's options),
// each with the values it takes and the facade calls that read and write it.
#ifndef TELVARRA_TOOLS_CONTROLS_H
#define TELVARRA_TOOLS_CONTROLS_H

#include <optional>
#include <string>
#include <vector>

#include "telvarra/Telvarra.h"

namespace telvarra::cli {

enum class ValueKind {
    Switch,  // on | off
    Number,  // minimum..maximum
    Format,  // mono8 | rgb8 | bgr8
};

struct Control {
    const char* name;
    ValueKind kind;
    int minimum;
    int maximum;
    const char* about;
    // Null when the library offers no way to read the control back.
    bool (*read)(CameraPublicInterface& library, const char* id, int& value);
    bool (*write)(CameraPublicInterface& library, const char* id, int value);
};

const std::vector<Control>& controls();
const Control* findControl(const std::string& name);

// The value `text` stands for, when the control takes it.
std::optional<int> parseValue(const Control& control, const std::string& text);
std::string valueText(const Control& control, int value);
// What the control takes, for messages and help: "on|off", "0..100".
std::string valuesAccepted(const Control& control);

std::string formatName(Ruvo_ImageFormat format);

}  // namespace telvarra::cli

#endif
