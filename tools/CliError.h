// The program's exit codes, and the error that carries one from wherever a command fails to
// main, which prints its message and returns the code.
#ifndef TELVARRA_TOOLS_CLIERROR_H
#define TELVARRA_TOOLS_CLIERROR_H

#include <stdexcept>
#include <string>

namespace telvarra::cli {

enum ExitCode : int {
    kExitOk = 0,
    kExitFailed = 1,           // the camera refused a setting, a frame or a file failed
    kExitUsage = 2,            // bad arguments
    kExitNoSuchCamera = 3,     // unknown or ambiguous identifier
    kExitMakeUnavailable = 4,  // the make has no driver, or its SDK could not be loaded or started
};

class CliError : public std::runtime_error {
  public:
    CliError(ExitCode code, const std::string& message)
        : std::runtime_error(message), m_code(code) {}
    ExitCode code() const { return m_code; }

  private:
    ExitCode m_code;
};

}  // namespace telvarra::cli

#endif
