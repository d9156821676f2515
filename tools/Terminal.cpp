#include "Terminal.h"

#include <cstdio>

// The one call the standard library lacks; the toolchain test is the one Export.h uses.
#if defined(__MINGW32__) || defined(_MSC_VER)
#include <io.h>
#define TELVARRA_ISATTY _isatty
#define TELVARRA_FILENO _fileno
#else
#include <unistd.h>
#define TELVARRA_ISATTY isatty
#define TELVARRA_FILENO fileno
#endif

namespace telvarra::cli {

bool standardErrorIsTerminal() { return TELVARRA_ISATTY(TELVARRA_FILENO(stderr)) != 0; }

}  // namespace telvarra::cli
