#include "telvarra/CameraConfig.h"

#include <cstring>
#include <filesystem>
#include <fstream>

#include "core/ConfigText.h"
#include "core/FileNames.h"
#include "telvarra/CameraLogger.h"

namespace {

// Text handed to a caller goes into a buffer of this many bytes, terminator included.
constexpr std::size_t kCallerBufferSize = 255;

void logError(const std::string& message) {
    CameraLogger::getInstance().log(LogLevel::Error, message);
}

// Refuses (returns false, writes nothing) text that would not fit the caller's buffer whole;
// `tooLongMessage` names what was refused.
bool copyToCallerBuffer(const std::string& text, char** destination,
                        const std::string& tooLongMessage) {
    if (!destination || !*destination) return false;
    if (text.size() >= kCallerBufferSize) {
        logError(tooLongMessage);
        return false;
    }
    std::memcpy(*destination, text.c_str(), text.size() + 1);
    return true;
}

// A configuration larger than this is no configuration: refused rather than read without end.
constexpr std::uintmax_t kMaxConfigBytes = 1024 * 1024;

}  // namespace

CameraConfig::CameraConfig() = default;

CameraConfig::CameraConfig(const char* configFile) {
    if (configFile) m_configFile = configFile;
    loadConfig(configFile);
}

CameraConfig::CameraConfig(const CameraConfig& other) = default;

CameraConfig& CameraConfig::operator=(const CameraConfig& other) {
    if (this != &other) {
        m_configFile = other.m_configFile;
        m_values = other.m_values;
    }
    return *this;
}

CameraConfig::~CameraConfig() = default;

bool CameraConfig::chooseFile(const char* configFile) {
    if (configFile && *configFile) m_configFile = configFile;
    if (m_configFile.empty()) {
        logError("Config file path is empty");
        return false;
    }
    return true;
}

bool CameraConfig::loadConfig(const char* configFile) {
    if (!chooseFile(configFile)) return false;
    if (telvarra::notAPlainFile(m_configFile)) {
        logError("Config file is not a plain file: " + m_configFile);
        return false;
    }
    std::error_code sizeError;
    const std::uintmax_t bytes = std::filesystem::file_size(m_configFile, sizeError);
    if (!sizeError && bytes > kMaxConfigBytes) {
        logError("Config file too large: " + m_configFile);
        return false;
    }
    std::ifstream input(m_configFile);
    if (!input.is_open()) {
        logError("Failed to open config file: " + m_configFile);
        return false;
    }
    m_values.clear();
    telvarra::readConfigText(input, m_values);
    input.close();
    CameraLogger::getInstance().log(LogLevel::Info, "Loaded config from: " + m_configFile);
    return true;
}

bool CameraConfig::saveConfig(const char* configFile) {
    if (!chooseFile(configFile)) return false;
    if (telvarra::notAPlainFile(m_configFile)) {
        logError("Config file is not a plain file: " + m_configFile);
        return false;
    }
    std::ofstream output(m_configFile, std::ios::out | std::ios::trunc);
    if (!output.is_open()) {
        logError("Failed to open config file for writing: " + m_configFile);
        return false;
    }
    telvarra::writeConfigText(output, m_values);
    output.close();
    CameraLogger::getInstance().log(LogLevel::Info, "Saved config to: " + m_configFile);
    return true;
}

void CameraConfig::setValue(const char* key, const char* value) {
    if (!key || !value) {
        logError("Config key or value is null");
        return;
    }
    // A line break would end the line in the file and plant a key of its own.
    if (std::strpbrk(key, "\r\n") || std::strpbrk(value, "\r\n")) {
        logError("Config key or value holds a line break: " + std::string(key));
        return;
    }
    m_values[key] = value;
}

bool CameraConfig::getValue(const char* key, char** value) const {
    if (!key) return false;
    const auto entry = m_values.find(key);
    if (entry == m_values.end()) return false;
    return copyToCallerBuffer(entry->second, value,
                              "Config value too long for key: " + entry->first);
}

bool CameraConfig::hasKey(const char* key) const { return key && m_values.count(key) != 0; }

bool CameraConfig::getConfigFile(char** configFile) const {
    if (m_configFile.empty()) return false;
    return copyToCallerBuffer(m_configFile, configFile,
                              "Config file path too long: " + m_configFile);
}
