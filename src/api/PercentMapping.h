// The 0-100 % scale of the percent controls mapped onto a device's own range, in double
// arithmetic. Conversions to integers truncate toward zero.
#ifndef TELVARRA_API_PERCENTMAPPING_H
#define TELVARRA_API_PERCENTMAPPING_H

#include <cstdint>
#include <functional>
#include <optional>

namespace telvarra {

// A device setting's current value and its range.
struct DeviceRange {
    double current;
    double minimum;
    double maximum;
};

int32_t clampPercent(int32_t percent);

// Where the percentage becomes a fraction of the range. The makes differ, and in double
// arithmetic the two orders can differ in the last bit, which a truncation then shows.
enum class PercentArithmetic {
    ScaleThenDivide,  // min + (max - min) * p / 100: HikVision, MindVision
    DivideThenScale,  // min + (max - min) * (p / 100.0): DaHeng, Dvp
};

// The device value of p %, with p clamped to 0..100 first.
double percentToRange(int32_t percent, double minimum, double maximum,
                      PercentArithmetic arithmetic = PercentArithmetic::ScaleThenDivide);

// trunc((current - min) / (max - min) * 100), clamped to 0..100; an inverted range answers by
// the same formula, an empty one 0.
int32_t rangeToPercent(double current, double minimum, double maximum);

// One percent control of a device: reading its value and range (none when the SDK cannot say)
// and writing a device value (true when the SDK took it).
struct PercentControl {
    std::function<std::optional<DeviceRange>()> read;
    std::function<bool(double value)> write;
    PercentArithmetic arithmetic = PercentArithmetic::ScaleThenDivide;
    // The range alone, for a set, where the device reads it without the current value; empty
    // when only `read` can tell.
    std::function<std::optional<DeviceRange>()> readRange = nullptr;
};

// Reads the range, then writes the mapped value.
bool setByPercent(const PercentControl& control, int32_t percent);
// Reads the current value as a percentage; `percent` is untouched when the read fails.
bool getByPercent(const PercentControl& control, int32_t& percent);

}  // namespace telvarra

#endif
