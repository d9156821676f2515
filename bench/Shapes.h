// The frame sizes both tables measure: a mono machine-vision sensor, a 5 MP colour one after
// demosaicing, and a 20 MP mono one.
#ifndef TELVARRA_BENCH_SHAPES_H
#define TELVARRA_BENCH_SHAPES_H

#include <cstddef>
#include <cstdint>

namespace telvarra::bench {

struct Shape {
    int32_t width;
    int32_t height;
    int32_t channels;
    const char* label;  // in the tables
    const char* key;    // in the benchmarks' names
    std::size_t bytes() const { return std::size_t(width) * height * channels; }
};

constexpr Shape kSmallMono{1280, 1024, 1, "1280×1024 mono", "1280x1024x1"};
constexpr Shape kColour{2448, 2048, 3, "2448×2048 RGB", "2448x2048x3"};
constexpr Shape kLargeMono{5472, 3648, 1, "5472×3648 mono", "5472x3648x1"};
constexpr Shape kShapes[] = {kSmallMono, kColour, kLargeMono};

}  // namespace telvarra::bench

#endif
