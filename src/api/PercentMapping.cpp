#include "api/PercentMapping.h"

#include <algorithm>

namespace telvarra {

int32_t clampPercent(int32_t percent) { return std::clamp(percent, 0, 100); }

double percentToRange(int32_t percent, double minimum, double maximum) {
    return minimum + (maximum - minimum) * clampPercent(percent) / 100.0;
}

int32_t rangeToPercent(double current, double minimum, double maximum) {
    if (!(maximum > minimum)) return 0;
    const double percent = (current - minimum) / (maximum - minimum) * 100.0;
    return static_cast<int32_t>(std::clamp(percent, 0.0, 100.0));
}

}  // namespace telvarra
