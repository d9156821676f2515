// The grab's progress bar on standard error: redrawn in place after every frame, finished with a
// line end when the object goes, so that whatever is printed next starts on a line of its own.
#ifndef TELVARRA_TOOLS_PROGRESS_H
#define TELVARRA_TOOLS_PROGRESS_H

#include <ostream>
#include <string>

namespace telvarra::cli {

class ProgressBar {
  public:
    // Draws nothing at all when `enabled` is false.
    ProgressBar(std::ostream& out, bool enabled, std::string label, int total);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void update(int done, int failed, double framesPerSecond);

  private:
    std::ostream& m_out;
    bool m_enabled;
    bool m_drawn = false;
    std::string m_label;
    int m_total;
};

}  // namespace telvarra::cli

#endif
