// Attaches the library's logger to a temporary file for the life of the object and reads the
// lines back as (level, message) pairs, the time stamp removed.
#ifndef TELVARRA_TESTS_LOGCAPTURE_H
#define TELVARRA_TESTS_LOGCAPTURE_H

#include <ostream>
#include <string>
#include <vector>

#include "support/TempDir.h"

namespace telvarra::test {

struct LogEntry {
    std::string level;
    std::string message;
    bool operator==(const LogEntry& other) const {
        return level == other.level && message == other.message;
    }
};

inline std::ostream& operator<<(std::ostream& out, const LogEntry& entry) {
    return out << "[" << entry.level << "] " << entry.message;
}

class LogCapture {
  public:
    LogCapture();
    // Detaches the logger (it goes silent) so that the file can be removed on every platform.
    ~LogCapture();

    std::vector<LogEntry> entries() const;
    bool contains(const std::string& level, const std::string& message) const;
    const std::string& path() const { return m_path; }

  private:
    TempDir m_directory;
    std::string m_path;
};

// Points the logger at a file it cannot open: from then on it writes nothing.
void detachLogger();

}  // namespace telvarra::test

#endif
