// Whether standard error is a terminal: the progress bar is drawn only for a person watching,
// never into a file or a pipe. And standard output kept for this program's own words.
#ifndef TELVARRA_TOOLS_TERMINAL_H
#define TELVARRA_TOOLS_TERMINAL_H

namespace telvarra::cli {

bool standardErrorIsTerminal();

// While it lives, what the process writes to standard output is discarded: the Canon driver
// prints every body it finds, which would break into this program's tables and reports. Standard
// error still shows.
class StandardOutputSilenced {
  public:
    StandardOutputSilenced();
    ~StandardOutputSilenced();
    StandardOutputSilenced(const StandardOutputSilenced&) = delete;
    StandardOutputSilenced& operator=(const StandardOutputSilenced&) = delete;

  private:
    int m_saved = -1;
};

}  // namespace telvarra::cli

#endif
