#include "tools/RunProgram.h"

#include <cstdlib>
#include <stdexcept>

#include "support/TempDir.h"

// The command interpreter, its quoting and its exit status differ between the two toolchains;
// the test is the one include/telvarra/Export.h uses.
#if defined(__MINGW32__) || defined(_MSC_VER)
#define TELVARRA_WINDOWS_SHELL 1
#else
#include <sys/wait.h>
#endif

namespace telvarra::test {

namespace {

std::string quoted(const std::string& word) {
#ifdef TELVARRA_WINDOWS_SHELL
    if (word.find('"') != std::string::npos) throw std::invalid_argument("quote in " + word);
    return "\"" + word + "\"";
#else
    std::string text = "'";
    for (char c : word) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
#endif
}

int exitCodeOf(int status) {
#ifdef TELVARRA_WINDOWS_SHELL
    return status;
#else
    return status != -1 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
}

void setVariable(const std::string& name, const std::optional<std::string>& value) {
#ifdef TELVARRA_WINDOWS_SHELL
    _putenv_s(name.c_str(), value ? value->c_str() : "");
#else
    if (value) {
        setenv(name.c_str(), value->c_str(), 1);
    } else {
        unsetenv(name.c_str());
    }
#endif
}

}  // namespace

ProgramRun runProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const std::filesystem::path& scratch) {
    const std::string outFile = (scratch / "stdout.txt").string();
    const std::string errFile = (scratch / "stderr.txt").string();
    std::string command = quoted(program);
    for (const std::string& argument : arguments) command += " " + quoted(argument);
    command += " >" + quoted(outFile) + " 2>" + quoted(errFile);
#ifdef TELVARRA_WINDOWS_SHELL
    // cmd.exe drops the first and last quote of a line that holds more than two.
    command = "\"" + command + "\"";
#endif
    ProgramRun run;
    run.exitCode = exitCodeOf(std::system(command.c_str()));
    run.out = readFile(outFile);
    run.err = readFile(errFile);
    return run;
}

ScopedEnvironment::ScopedEnvironment(std::string name, const std::optional<std::string>& value)
    : m_name(std::move(name)) {
    if (const char* previous = std::getenv(m_name.c_str())) m_previous = previous;
    setVariable(m_name, value);
}

ScopedEnvironment::~ScopedEnvironment() { setVariable(m_name, m_previous); }

}  // namespace telvarra::test
