// A tiny shared library for the run-time loading tests: one C function that answers, and one that
// says where the library finds itself, as the library finds its Canon runtime.
#include <string>

#include "platform/Paths.h"

extern "C" int telvarra_probe_answer() { return 42; }

extern "C" const char* telvarra_probe_module_directory() {
    static std::string directory;
    directory = telvarra::platform::moduleDirectory();
    return directory.c_str();
}
