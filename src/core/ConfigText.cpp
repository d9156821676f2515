#include "core/ConfigText.h"

#include <istream>
#include <ostream>

namespace telvarra {

void readConfigText(std::istream& input, ConfigValues& values) {
    for (std::string line; std::getline(input, line);) {
        // Files written on Windows end their lines in CR LF; text mode removes the CR there, so
        // do the same everywhere for one result on every platform.
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line.front() == '#') continue;
        const std::string::size_type equals = line.find('=');
        if (equals == std::string::npos) continue;
        values[line.substr(0, equals)] = line.substr(equals + 1);
    }
}

void writeConfigText(std::ostream& output, const ConfigValues& values) {
    for (const auto& [key, value] : values) {
        output << key << "=" << value;
        // A value's own last CR would pass for half of a CR LF line end and be lost on reading:
        // one CR more is the one the reader takes away.
        if (!value.empty() && value.back() == '\r') output << '\r';
        output << std::endl;
    }
}

}  // namespace telvarra
