#include "telvarra/CameraLogger.h"

#include <ctime>
#include <iostream>
#include <vector>

#include "platform/Clock.h"

namespace {

// An attach trims a log of more than this many lines to its newer half.
constexpr std::size_t kMaxLinesKept = 5000;

const char* levelName(LogLevel level) {
    switch (level) {
        case LogLevel::Debug:
            return "DEBUG";
        case LogLevel::Info:
            return "INFO";
        case LogLevel::Warning:
            return "WARNING";
        case LogLevel::Error:
            return "ERROR";
    }
    return "";
}

std::vector<std::string> readLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream input(path);
    for (std::string line; std::getline(input, line);) lines.push_back(std::move(line));
    return lines;
}

void trimToNewerHalf(const std::string& path) {
    std::vector<std::string> lines = readLines(path);
    if (lines.size() <= kMaxLinesKept) return;
    const auto firstKept = lines.begin() + static_cast<std::ptrdiff_t>(lines.size() / 2);
    std::ofstream output(path, std::ios::out | std::ios::trunc);
    for (auto line = firstKept; line != lines.end(); ++line) output << *line << std::endl;
}

}  // namespace

CameraLogger& CameraLogger::getInstance() {
    static CameraLogger instance;
    return instance;
}

CameraLogger::CameraLogger() = default;

CameraLogger::~CameraLogger() {
    if (m_logStream.is_open()) m_logStream.close();
}

void CameraLogger::setLogFile(const std::string& path) {
    if (m_logStream.is_open()) m_logStream.close();
    trimToNewerHalf(path);
    m_logFilePath = path;
    m_logStream.clear();
    m_logStream.open(path, std::ios::out | std::ios::app);
    if (m_logStream.is_open()) {
        m_logStream.clear();
    } else {
        m_logStream.setstate(std::ios::failbit);
    }
}

void CameraLogger::setLogLevel(LogLevel level) { m_minimumLevel = level; }

void CameraLogger::log(LogLevel level, const std::string& message) {
    if (!m_logStream.is_open() ||
        static_cast<std::int32_t>(level) < static_cast<std::int32_t>(m_minimumLevel)) {
        return;
    }
    const std::tm now = telvarra::platform::localTime(std::time(nullptr));
    char time[80] = {};
    std::strftime(time, sizeof time, "%Y-%m-%d %X", &now);
    const std::string line = std::string(time) + " [" + levelName(level) + "] " + message;
    std::cout << line << std::endl;
    m_logStream << line << std::endl;
}

void CameraLogger::log(LogLevel level, const char* message) {
    if (message) log(level, std::string(message));
}
