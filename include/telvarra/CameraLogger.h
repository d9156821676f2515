// The process-wide log: one time-stamped line per event, to standard output and to the attached
// file. Nothing is written, not even to standard output, while no file is attached.
// No lock: callers that need whole lines under concurrency serialise themselves.
#ifndef TELVARRA_CAMERALOGGER_H
#define TELVARRA_CAMERALOGGER_H

#include <cstdint>
#include <fstream>
#include <string>

#include "telvarra/Export.h"

enum class LogLevel : std::int32_t { Debug = 0, Info = 1, Warning = 2, Error = 3 };

class TELVARRA_API CameraLogger {
  public:
    static CameraLogger& getInstance();

    // Attaches the log to `path`, first trimming a file of more than 5000 lines to its newer
    // half. A file that cannot be opened leaves the logger silent; nothing is reported.
    void setLogFile(const std::string& path);
    void setLogLevel(LogLevel level);
    void log(LogLevel level, const std::string& message);
    void log(LogLevel level, const char* message);

    CameraLogger(const CameraLogger&) = delete;
    CameraLogger& operator=(const CameraLogger&) = delete;

  private:
    CameraLogger();
    ~CameraLogger();

    std::ofstream m_logStream;
    LogLevel m_minimumLevel = LogLevel::Info;
    std::string m_logFilePath;
};

#endif
