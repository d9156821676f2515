// Runs a program the way a user at a shell would, and keeps what it printed and returned.
#ifndef TELVARRA_TESTS_TOOLS_RUNPROGRAM_H
#define TELVARRA_TESTS_TOOLS_RUNPROGRAM_H

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace telvarra::test {

struct ProgramRun {
    int exitCode = -1;
    std::string out;  // standard output
    std::string err;  // standard error
};

// Runs `program` with `arguments` through the system's command interpreter, its output captured
// in files under `scratch`. The program inherits this process's environment and directory.
ProgramRun runProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::filesystem::path& scratch);

// Sets (or, with nullopt, removes) an environment variable for the life of the object.
class ScopedEnvironment {
  public:
    ScopedEnvironment(std::string name, const std::optional<std::string>& value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    std::string m_name;
    std::optional<std::string> m_previous;
};

}  // namespace telvarra::test

#endif
