#include "Makes.h"

namespace telvarra::cli {

const Make* makeOfType(Ruvo_CameraType type) {
    for (const Make& make : kMakes) {
        if (make.type == type) return &make;
    }
    return nullptr;
}

std::map<std::string, int> makeChoices() {
    std::map<std::string, int> choices;
    for (const Make& make : kMakes) choices[make.option] = static_cast<int>(make.type);
    return choices;
}

}  // namespace telvarra::cli
