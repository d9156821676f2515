#include "sim/common/Rig.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <utility>

#include "sim/common/TestPattern.h"

namespace telvarra::sim {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t'; }

bool isMakeName(const std::string& word) {
    static const std::set<std::string> kMakes = {"hikvision", "daheng", "mindvision", "dvp",
                                                 "canon"};
    return kMakes.count(word) != 0;
}

std::optional<std::uint64_t> parseUnsigned(const std::string& text, std::uint64_t max) {
    if (text.empty() || text.size() > 10) return std::nullopt;
    std::uint64_t value = 0;
    for (const char c : text) {
        if (!std::isdigit(static_cast<unsigned char>(c))) return std::nullopt;
        value = value * 10 + static_cast<std::uint64_t>(c - '0');
    }
    if (value > max) return std::nullopt;
    return value;
}

// Splits a line into words, honouring quotes and dropping a trailing comment. Quotes are kept
// out of the words; a quoted value may be empty or hold blanks and '#'.
bool splitWords(const std::string& line, std::vector<std::string>& words, std::string& error) {
    std::size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && isBlank(line[i])) ++i;
        if (i == line.size() || line[i] == '#') break;
        std::string word;
        while (i < line.size() && !isBlank(line[i]) && line[i] != '#') {
            if (line[i] == '"') {
                const std::size_t close = line.find('"', i + 1);
                if (close == std::string::npos) {
                    error = "unterminated quote";
                    return false;
                }
                word.append(line, i + 1, close - i - 1);
                i = close + 1;
            } else {
                word += line[i++];
            }
        }
        words.push_back(std::move(word));
    }
    return true;
}

bool parseSize(const std::string& text, DeviceDescription& device) {
    const std::size_t cross = text.find('x');
    if (cross == std::string::npos) return false;
    const auto width = parseUnsigned(text.substr(0, cross), 65535);
    const auto height = parseUnsigned(text.substr(cross + 1), 65535);
    if (!width || !height || *width == 0 || *height == 0) return false;
    device.width = static_cast<std::uint32_t>(*width);
    device.height = static_cast<std::uint32_t>(*height);
    return true;
}

bool parseFormats(const std::string& text, std::vector<PixelFormat>& formats) {
    std::stringstream list(text);
    for (std::string name; std::getline(list, name, ',');) {
        const auto format = formatFromName(name);
        if (!format) return false;
        formats.push_back(*format);
    }
    return !formats.empty() && text.back() != ',';
}

}  // namespace

std::vector<RigDevice> Rig::devicesOf(const std::string& make) const {
    std::vector<RigDevice> found;
    for (const RigDevice& entry : devices)
        if (entry.device.make == make) found.push_back(entry);
    return found;
}

std::optional<DeviceDescription> parseRigLine(const std::string& line, std::string& error) {
    std::vector<std::string> words;
    if (!splitWords(line, words, error)) return std::nullopt;
    if (words.empty()) {
        error = "no device";
        return std::nullopt;
    }
    DeviceDescription device;
    device.make = words.front();
    if (!isMakeName(device.make)) {
        error = "unknown make: " + device.make;
        return std::nullopt;
    }
    std::set<std::string> seen;
    bool seedGiven = false;
    for (std::size_t w = 1; w < words.size(); ++w) {
        const std::string& word = words[w];
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos || equals == 0) {
            error = "expected key=value: " + word;
            return std::nullopt;
        }
        const std::string key = word.substr(0, equals);
        const std::string value = word.substr(equals + 1);
        if (!seen.insert(key).second) {
            error = "repeated key: " + key;
            return std::nullopt;
        }
        if (key == "id") {
            device.id = value;
        } else if (key == "user") {
            device.userName = value;
        } else if (key == "model") {
            device.model = value;
        } else if (key == "layer") {
            device.layer = value;
        } else if (key == "size") {
            if (!parseSize(value, device)) {
                error = "size must be WIDTHxHEIGHT, each 1..65535: " + value;
                return std::nullopt;
            }
        } else if (key == "format") {
            const auto format = formatFromName(value);
            if (!format) {
                error = "unknown format: " + value;
                return std::nullopt;
            }
            device.format = *format;
        } else if (key == "formats") {
            if (!parseFormats(value, device.supportedFormats)) {
                error = "formats must be a comma-separated list of formats: " + value;
                return std::nullopt;
            }
        } else if (key == "seed") {
            const auto seed = parseUnsigned(value, 0xFFFFFFFFu);
            if (!seed) {
                error = "seed must be 0..4294967295: " + value;
                return std::nullopt;
            }
            device.seed = static_cast<std::uint32_t>(*seed);
            seedGiven = true;
        } else {
            error = "unknown key: " + key;
            return std::nullopt;
        }
    }
    if (device.id.empty()) {
        error = "missing id";
        return std::nullopt;
    }
    const auto& formats = device.supportedFormats;
    // Canon bodies are colour cameras.
    if (device.make == "canon" && !seen.count("format") && formats.empty())
        device.format = PixelFormat::Rgb8;
    if (!formats.empty()) {
        if (!seen.count("format")) {
            device.format = formats.front();
        } else if (std::find(formats.begin(), formats.end(), device.format) == formats.end()) {
            error = "formats must include format " + formatName(device.format);
            return std::nullopt;
        }
    }
    if (!seedGiven) device.seed = seedFromId(device.id);
    return device;
}

Rig parseRig(const std::string& text) {
    Rig rig;
    std::map<std::string, std::set<std::string>> idsByMake;
    std::stringstream lines(text);
    unsigned number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::vector<std::string> words;
        std::string error;
        if (splitWords(line, words, error) && words.empty()) continue;  // blank or comment
        const std::string make = !words.empty() && isMakeName(words.front()) ? words.front() : "";
        auto device = parseRigLine(line, error);
        if (!device) {
            rig.errors.push_back({number, make, error});
        } else if (!idsByMake[device->make].insert(device->id).second) {
            rig.errors.push_back(
                {number, make, "id already used by an earlier " + make + " line: " + device->id});
        } else {
            rig.devices.push_back({number, std::move(*device)});
        }
    }
    return rig;
}

Rig readRigFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        Rig rig;
        rig.errors.push_back({0, "", "cannot read " + path});
        return rig;
    }
    std::ostringstream text;
    text << file.rdbuf();
    return parseRig(text.str());
}

}  // namespace telvarra::sim
