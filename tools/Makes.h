// The five makes the library knows, by registry key. Makes join the library one by one, so the
// program asks the library which of them it can start rather than assuming any.
#ifndef TELVARRA_TOOLS_MAKES_H
#define TELVARRA_TOOLS_MAKES_H

#include <map>
#include <string>

#include "telvarra/Types.h"

namespace telvarra::cli {

struct Make {
    Ruvo_CameraType type;
    const char* name;    // as printed: "HikVision"
    const char* option;  // as typed after --type: "hikvision"
    // A colour camera of the make reports RGB while its device still delivers BGR, until RGB is
    // asked for (MindVision's image processor starts in BGR).
    bool rgbOnlyWhenAsked = false;
    // Its SDK turns frames anticlockwise (MindVision's does the turn on the device); the library
    // turns the other makes' frames clockwise.
    bool turnsAnticlockwise = false;
};

constexpr Make kMakes[] = {
    {RUVO_CAMERA_MINDVISION, "MindVision", "mindvision", true, true},
    {RUVO_CAMERA_HIKVISION, "HikVision", "hikvision"},
    {RUVO_CAMERA_DVP, "Dvp", "dvp"},
    {RUVO_CAMERA_DAHENG, "DaHeng", "daheng"},
    {RUVO_CAMERA_CANON, "Canon", "canon"},
};

// Null for a type that is none of the five.
const Make* makeOfType(Ruvo_CameraType type);

// What --type accepts (the option word or the key's number) mapped to the key.
std::map<std::string, int> makeChoices();

}  // namespace telvarra::cli

#endif
