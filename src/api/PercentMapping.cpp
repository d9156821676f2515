#include "api/PercentMapping.h"

#include <algorithm>
#include <cmath>

namespace telvarra {

int32_t clampPercent(int32_t percent) { return std::clamp(percent, 0, 100); }

double percentToRange(int32_t percent, double minimum, double maximum,
                      PercentArithmetic arithmetic) {
    const int32_t clamped = clampPercent(percent);
    if (arithmetic == PercentArithmetic::DivideThenScale)
        return minimum + (maximum - minimum) * (clamped / 100.0);
    return minimum + (maximum - minimum) * clamped / 100.0;
}

int32_t rangeToPercent(double current, double minimum, double maximum) {
    const double percent = (current - minimum) / (maximum - minimum) * 100.0;
    // An empty range divides by zero; NaN has no integer.
    if (maximum == minimum || std::isnan(percent)) return 0;
    return static_cast<int32_t>(std::clamp(percent, 0.0, 100.0));
}

bool setByPercent(const PercentControl& control, int32_t percent) {
    const std::optional<DeviceRange> range =
        control.readRange ? control.readRange() : control.read();
    // A device reporting an infinite or undefined bound has no value to give it: converting one
    // to the device's integer type would be undefined.
    if (range && (!std::isfinite(range->minimum) || !std::isfinite(range->maximum))) return false;
    return range && control.write(percentToRange(percent, range->minimum, range->maximum,
                                                 control.arithmetic));
}

bool getByPercent(const PercentControl& control, int32_t& percent) {
    const std::optional<DeviceRange> range = control.read();
    if (!range) return false;
    percent = rangeToPercent(range->current, range->minimum, range->maximum);
    return true;
}

}  // namespace telvarra
