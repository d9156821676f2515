#include "sim/common/GenICamPixelCodes.h"

#include <utility>

namespace telvarra::sim {

namespace {

// Colour class << 24 | bits per pixel << 16 | id.
constexpr std::pair<PixelFormat, std::uint32_t> kCodes[] = {
    {PixelFormat::Mono8, 0x01080001},    {PixelFormat::Rgb8, 0x02180014},
    {PixelFormat::Bgr8, 0x02180015},     {PixelFormat::BayerGR8, 0x01080008},
    {PixelFormat::BayerRG8, 0x01080009}, {PixelFormat::BayerGB8, 0x0108000A},
    {PixelFormat::BayerBG8, 0x0108000B},
};

}  // namespace

std::uint32_t genicamPixelCode(PixelFormat format) {
    for (const auto& [value, code] : kCodes)
        if (value == format) return code;
    return 0;
}

std::optional<PixelFormat> formatOfGenICamCode(std::int64_t code) {
    for (const auto& [value, known] : kCodes)
        if (static_cast<std::int64_t>(known) == code) return value;
    return std::nullopt;
}

}  // namespace telvarra::sim
