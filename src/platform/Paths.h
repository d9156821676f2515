// Where things are on disk: the host program's directory and this library's own directory.
#ifndef TELVARRA_PLATFORM_PATHS_H
#define TELVARRA_PLATFORM_PATHS_H

#include <string>

namespace telvarra::platform {

// The directory of the running program's executable, ending in the path separator; empty when
// the system cannot tell.
std::string executableDirectory();

// The directory of the module (shared library or program) that holds this code, ending in the
// path separator; empty when the system cannot tell.
std::string moduleDirectory();

}  // namespace telvarra::platform

#endif
