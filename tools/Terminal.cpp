#include "Terminal.h"

#include <cstdio>

// The one call the standard library lacks; the toolchain test is the one Export.h uses.
#if defined(__MINGW32__) || defined(_MSC_VER)
#include <fcntl.h>
#include <io.h>
#define TELVARRA_ISATTY _isatty
#define TELVARRA_FILENO _fileno
#define TELVARRA_DUP _dup
#define TELVARRA_DUP2 _dup2
#define TELVARRA_CLOSE _close
#define TELVARRA_OPEN_NULL() _open("NUL", _O_WRONLY)
#else
#include <fcntl.h>
#include <unistd.h>
#define TELVARRA_ISATTY isatty
#define TELVARRA_FILENO fileno
#define TELVARRA_DUP dup
#define TELVARRA_DUP2 dup2
#define TELVARRA_CLOSE close
#define TELVARRA_OPEN_NULL() open("/dev/null", O_WRONLY)
#endif
#include <iostream>

namespace telvarra::cli {

bool standardErrorIsTerminal() { return TELVARRA_ISATTY(TELVARRA_FILENO(stderr)) != 0; }

StandardOutputSilenced::StandardOutputSilenced() {
    std::cout.flush();
    std::fflush(stdout);
    const int output = TELVARRA_FILENO(stdout);
    const int discard = TELVARRA_OPEN_NULL();
    if (discard < 0) return;
    m_saved = TELVARRA_DUP(output);
    if (m_saved >= 0 && TELVARRA_DUP2(discard, output) < 0) {
        TELVARRA_CLOSE(m_saved);
        m_saved = -1;
    }
    TELVARRA_CLOSE(discard);
}

StandardOutputSilenced::~StandardOutputSilenced() {
    if (m_saved < 0) return;
    std::cout.flush();
    std::fflush(stdout);
    TELVARRA_DUP2(m_saved, TELVARRA_FILENO(stdout));
    TELVARRA_CLOSE(m_saved);
}

}  // namespace telvarra::cli
