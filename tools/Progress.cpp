#include "Progress.h"

#include <cstdio>
#include <utility>

namespace telvarra::cli {

namespace {

constexpr int kBarWidth = 30;

}  // namespace

ProgressBar::ProgressBar(std::ostream& out, bool enabled, std::string label, int total)
    : m_out(out), m_enabled(enabled && total > 0), m_label(std::move(label)), m_total(total) {}

ProgressBar::~ProgressBar() {
    if (m_drawn) m_out << '\n' << std::flush;
}

void ProgressBar::update(int done, int failed, double framesPerSecond) {
    if (!m_enabled) return;
    const int filled = static_cast<int>(static_cast<long long>(done) * kBarWidth / m_total);
    char rate[32];
    std::snprintf(rate, sizeof rate, "%.1f", framesPerSecond);
    m_out << '\r' << m_label << " [" << std::string(filled, '#')
          << std::string(kBarWidth - filled, '.') << "] " << done << '/' << m_total << "  " << rate
          << " frames/s";
    if (failed > 0) m_out << "  " << failed << " failed";
    // Blanks over whatever a longer previous line left (a rate that lost a digit).
    m_out << "   " << std::flush;
    m_drawn = true;
}

}  // namespace telvarra::cli
