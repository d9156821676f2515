// The 0-100 % scale of the percent controls mapped onto a device's own range, in double
// arithmetic. Conversions to integers truncate toward zero.
#ifndef TELVARRA_API_PERCENTMAPPING_H
#define TELVARRA_API_PERCENTMAPPING_H

#include <cstdint>

namespace telvarra {

// A device setting's current value and its range.
struct DeviceRange {
    double current;
    double minimum;
    double maximum;
};

int32_t clampPercent(int32_t percent);

// min + (max - min) * p / 100, with p clamped to 0..100 first.
double percentToRange(int32_t percent, double minimum, double maximum);

// trunc((current - min) / (max - min) * 100), clamped to 0..100; 0 for an empty range.
int32_t rangeToPercent(double current, double minimum, double maximum);

}  // namespace telvarra

#endif
