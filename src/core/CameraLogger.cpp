#include "telvarra/CameraLogger.h"

#include <algorithm>
#include <ctime>
#include <iostream>
#include <mutex>
#include <vector>

#include "core/FileNames.h"
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

// One lock for the one logger: cameras log from every thread that pulls frames, and a line must
// never be torn, lost or doubled. Outside the exported class, which keeps its layout, and never
// destroyed: drivers still log while the module unloads.
std::recursive_mutex& loggerLock() {
    static auto* lock = new std::recursive_mutex;
    return *lock;
}

// A message with its control characters written out (a line break as "\n"), so no text from a
// device or a host can start a line of its own.
std::string escapedControls(const std::string& message) {
    if (std::find_if(message.begin(), message.end(),
                     [](unsigned char c) { return c < 0x20 || c == 0x7F; }) == message.end())
        return message;
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string escaped;
    for (const unsigned char c : message) {
        if (c == '\n') {
            escaped += "\\n";
        } else if (c == '\r') {
            escaped += "\\r";
        } else if (c == '\t') {
            escaped += "\\t";
        } else if (c < 0x20 || c == 0x7F) {
            escaped += "\\x";
            escaped += kHex[c >> 4];
            escaped += kHex[c & 0xF];
        } else {
            escaped += static_cast<char>(c);
        }
    }
    return escaped;
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
    std::lock_guard<std::recursive_mutex> guard(loggerLock());
    if (m_logStream.is_open()) m_logStream.close();
    // A FIFO, a device or a link in the log's place is not attached: reading it to trim could
    // hang the host before its main, and writing would go where the link points.
    if (telvarra::notAPlainFile(path)) {
        m_logFilePath = path;
        m_logStream.clear();
        m_logStream.setstate(std::ios::failbit);
        return;
    }
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

void CameraLogger::setLogLevel(LogLevel level) {
    std::lock_guard<std::recursive_mutex> guard(loggerLock());
    m_minimumLevel = level;
}

void CameraLogger::log(LogLevel level, const std::string& message) {
    std::lock_guard<std::recursive_mutex> guard(loggerLock());
    if (!m_logStream.is_open() ||
        static_cast<std::int32_t>(level) < static_cast<std::int32_t>(m_minimumLevel)) {
        return;
    }
    const std::tm now = telvarra::platform::localTime(std::time(nullptr));
    char time[80] = {};
    std::strftime(time, sizeof time, "%Y-%m-%d %X", &now);
    const std::string line =
        std::string(time) + " [" + levelName(level) + "] " + escapedControls(message);
    std::cout << line << std::endl;
    m_logStream << line << std::endl;
}

void CameraLogger::log(LogLevel level, const char* message) {
    if (message) log(level, std::string(message));
}
