// Whether standard error is a terminal: the progress bar is drawn only for a person watching,
// never into a file or a pipe.
#ifndef TELVARRA_TOOLS_TERMINAL_H
#define TELVARRA_TOOLS_TERMINAL_H

namespace telvarra::cli {

bool standardErrorIsTerminal();

}  // namespace telvarra::cli

#endif
