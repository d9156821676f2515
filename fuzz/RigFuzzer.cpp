// The rig reader on any bytes: nothing crashes or reads out of bounds, every device it accepts
// keeps the grammar's rules, and each line is either a device, an error or blank.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "sim/common/Rig.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

// The lines as the reader splits them, a CR before the line end removed.
std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::stringstream input(text);
    for (std::string line; std::getline(input, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace telvarra::sim;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const Rig rig = parseRig(text);
    const std::vector<std::string> lines = linesOf(text);

    std::map<std::string, std::set<std::string>> idsByMake;
    std::set<unsigned> linesUsed;
    for (const RigDevice& entry : rig.devices) {
        const DeviceDescription& device = entry.device;
        require(entry.line >= 1 && entry.line <= lines.size());
        require(linesUsed.insert(entry.line).second);
        require(!device.id.empty());
        require(device.width >= 1 && device.width <= 65535);
        require(device.height >= 1 && device.height <= 65535);
        const auto& formats = device.supportedFormats;
        require(formats.empty() ||
                std::find(formats.begin(), formats.end(), device.format) != formats.end());
        require(idsByMake[device.make].insert(device.id).second);
        // The line on its own gives the same device.
        std::string error;
        const auto alone = parseRigLine(lines[entry.line - 1], error);
        require(alone && alone->make == device.make && alone->id == device.id &&
                alone->width == device.width && alone->height == device.height &&
                alone->format == device.format && alone->seed == device.seed);
    }
    for (const RigError& error : rig.errors) {
        require(error.line >= 1 && error.line <= lines.size());
        require(linesUsed.insert(error.line).second);
        require(!error.message.empty());
    }
    return 0;
}
