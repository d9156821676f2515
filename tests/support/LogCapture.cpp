#include "support/LogCapture.h"

#include <algorithm>

#include "telvarra/CameraLogger.h"

namespace telvarra::test {

LogCapture::LogCapture() : m_path(m_directory.file("capture.log")) {
    CameraLogger::getInstance().setLogFile(m_path);
}

LogCapture::~LogCapture() { detachLogger(); }

std::vector<LogEntry> LogCapture::entries() const {
    std::vector<LogEntry> result;
    for (const std::string& line : readLines(m_path)) {
        const auto open = line.find(" [");
        const auto close = line.find("] ", open);
        if (open == std::string::npos || close == std::string::npos) continue;
        result.push_back({line.substr(open + 2, close - open - 2), line.substr(close + 2)});
    }
    return result;
}

bool LogCapture::contains(const std::string& level, const std::string& message) const {
    const auto all = entries();
    return std::find(all.begin(), all.end(), LogEntry{level, message}) != all.end();
}

void detachLogger() {
    static TempDir nowhere;
    // A directory cannot be opened as a file, on any platform and for any user.
    CameraLogger::getInstance().setLogFile(nowhere.path().string());
}

}  // namespace telvarra::test
