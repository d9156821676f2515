#include "telvarra/CameraLogger.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <system_error>

#include "core/FileNames.h"
#include "core/LoggedProblems.h"
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

// Bytes a log may keep across runs whatever its line count: a log written on one endless line
// would otherwise never be trimmed.
constexpr std::uintmax_t kMaxBytesKept = 16 * 1024 * 1024;

// The lines of a file, counted in chunks: the file is never held in memory whole.
std::size_t countLines(const std::string& path) {
    std::ifstream input(path, std::ios::binary);
    std::size_t lines = 0;
    char last = '\n';
    char chunk[1 << 16];
    while (input.read(chunk, sizeof chunk) || input.gcount() > 0) {
        const auto read = static_cast<std::size_t>(input.gcount());
        lines += static_cast<std::size_t>(std::count(chunk, chunk + read, '\n'));
        last = chunk[read - 1];
    }
    return lines + (last == '\n' ? 0 : 1);
}

// Copies `path` from line `firstLine` on into `path` + ".trim", ending every line, and puts the
// copy in the file's place. The original stays when anything fails.
void keepFromLine(const std::string& path, std::size_t firstLine) {
    const std::string copy = path + ".trim";
    {
        std::ifstream input(path, std::ios::binary);
        std::ofstream output(copy, std::ios::binary | std::ios::trunc);
        if (!input || !output) return;
        std::size_t line = 0;
        char last = '\n';
        for (char c; input.get(c);) {
            if (line >= firstLine) {
                output.put(c);
                last = c;
            }
            if (c == '\n') ++line;
        }
        if (last != '\n') output.put('\n');
        if (!output) return;
    }
    std::error_code error;
    std::filesystem::rename(copy, path, error);
    if (error) std::filesystem::remove(copy, error);
}

// The line at which the newest `bytes` of the file begin.
std::size_t lineOfNewestBytes(const std::string& path, std::uintmax_t size, std::uintmax_t bytes) {
    std::ifstream input(path, std::ios::binary);
    std::size_t line = 0;
    std::uintmax_t position = 0;
    for (char c; position < size - bytes && input.get(c); ++position)
        if (c == '\n') ++line;
    return line + 1;
}

// Over 5000 lines, the newer half of the lines stays; a file still over its byte limit then keeps
// only the lines that begin in its newest half of that limit.
void trimOldLog(const std::string& path) {
    const std::size_t lines = countLines(path);
    if (lines > kMaxLinesKept) keepFromLine(path, lines / 2);
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (!error && size > kMaxBytesKept)
        keepFromLine(path, lineOfNewestBytes(path, size, kMaxBytesKept / 2));
}

// Identical lines in a row beyond this many are dropped and counted, so a camera polled in a
// loop cannot flood the disk; the count is written before the next different line.
constexpr std::size_t kRepeatsWritten = 10;

struct Repeats {
    LogLevel level = LogLevel::Info;
    std::string message;
    std::size_t seen = 0;
};

std::string droppedLine(const Repeats& repeated) {
    return "Last message repeated " + std::to_string(repeated.seen - kRepeatsWritten) +
           " more times";
}

Repeats& repeats() {
    static auto* state = new Repeats;
    return *state;
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

// One line: time, level and message, to the standard output and the file.
void writeLine(std::ofstream& file, LogLevel level, const std::string& message) {
    const std::tm now = telvarra::platform::localTime(std::time(nullptr));
    char time[80] = {};
    std::strftime(time, sizeof time, "%Y-%m-%d %X", &now);
    const std::string line = std::string(time) + " [" + levelName(level) + "] " + message;
    std::cout << line << std::endl;
    file << line << std::endl;
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
    // The count of a flood goes to the file it flooded; the new file starts afresh.
    Repeats& last = repeats();
    if (m_logStream.is_open() && last.seen > kRepeatsWritten)
        writeLine(m_logStream, last.level, droppedLine(last));
    last = Repeats{};
    if (m_logStream.is_open()) m_logStream.close();
    // A FIFO, a device or a link in the log's place is not attached: reading it to trim could
    // hang the host before its main, and writing would go where the link points.
    if (telvarra::notAPlainFile(path)) {
        m_logFilePath = path;
        m_logStream.clear();
        m_logStream.setstate(std::ios::failbit);
        return;
    }
    trimOldLog(path);
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

namespace telvarra {

namespace {
thread_local std::string t_lastProblem;
}  // namespace

const std::string& lastLoggedProblem() { return t_lastProblem; }
void forgetLoggedProblem() { t_lastProblem.clear(); }

}  // namespace telvarra

void CameraLogger::log(LogLevel level, const std::string& message) {
    if (level >= LogLevel::Warning) telvarra::t_lastProblem = message;
    std::lock_guard<std::recursive_mutex> guard(loggerLock());
    if (!m_logStream.is_open() ||
        static_cast<std::int32_t>(level) < static_cast<std::int32_t>(m_minimumLevel)) {
        return;
    }
    Repeats& last = repeats();
    if (level == last.level && message == last.message) {
        if (++last.seen > kRepeatsWritten) return;
    } else {
        if (last.seen > kRepeatsWritten) writeLine(m_logStream, last.level, droppedLine(last));
        last = Repeats{level, message, 1};
    }
    writeLine(m_logStream, level, escapedControls(message));
}

void CameraLogger::log(LogLevel level, const char* message) {
    if (message) log(level, std::string(message));
}
