// Test control of a feature's range, the same for every make: a feature is any record with
// `min`, `max` and `current` members.
#ifndef TELVARRA_SIM_COMMON_FEATURERANGE_H
#define TELVARRA_SIM_COMMON_FEATURERANGE_H

#include <algorithm>
#include <string>

namespace telvarra::sim {

// Gives `feature` the range min..max and clamps its current value into it. Returns the reason to
// refuse (NaN or min above max), empty when done, as SimulatorCore::changeDevice takes it.
template <class Feature, class T>
std::string setFeatureRange(Feature& feature, T min, T max) {
    if (!(min <= max)) return "min above max";
    feature.min = min;
    feature.max = max;
    feature.current = std::clamp<decltype(feature.current)>(feature.current, min, max);
    return {};
}

}  // namespace telvarra::sim

#endif
