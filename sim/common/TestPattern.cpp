#include "sim/common/TestPattern.h"

namespace telvarra::sim {

namespace {

constexpr std::uint32_t kSlopeX[3] = {1, 3, 2};
constexpr std::uint32_t kSlopeY[3] = {2, 1, 5};
constexpr std::uint32_t kSlopeFrame[3] = {3, 5, 7};

}  // namespace

std::uint8_t patternSample(std::uint32_t seed, std::uint32_t frame, std::uint32_t x,
                           std::uint32_t y, std::uint32_t channel) {
    if (channel > kBlue) return 0;
    // Unsigned arithmetic wraps modulo 2^32, which keeps the value modulo 256 exact.
    const std::uint32_t checker = ((x >> 4) ^ (y >> 4)) & 1u;
    const std::uint32_t value = x * kSlopeX[channel] + y * kSlopeY[channel] +
                                frame * kSlopeFrame[channel] + (seed >> (8 * channel)) +
                                64 * checker;
    return static_cast<std::uint8_t>(value & 0xFFu);
}

void renderFrame(PixelFormat format, std::uint32_t seed, std::uint32_t frame, std::uint32_t width,
                 std::uint32_t height, std::uint8_t* out) {
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            switch (format) {
                case PixelFormat::Mono8:
                    *out++ = patternSample(seed, frame, x, y, kRed);
                    break;
                case PixelFormat::Rgb8:
                    *out++ = patternSample(seed, frame, x, y, kRed);
                    *out++ = patternSample(seed, frame, x, y, kGreen);
                    *out++ = patternSample(seed, frame, x, y, kBlue);
                    break;
                case PixelFormat::Bgr8:
                    *out++ = patternSample(seed, frame, x, y, kBlue);
                    *out++ = patternSample(seed, frame, x, y, kGreen);
                    *out++ = patternSample(seed, frame, x, y, kRed);
                    break;
                default:
                    *out++ = patternSample(seed, frame, x, y, bayerChannelAt(format, x, y));
                    break;
            }
        }
    }
}

std::uint32_t seedFromId(const std::string& id) {
    std::uint32_t hash = 2166136261u;
    for (const char c : id) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 16777619u;
    }
    return hash;
}

}  // namespace telvarra::sim
