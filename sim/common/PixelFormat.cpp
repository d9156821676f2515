#include "sim/common/PixelFormat.h"

#include <array>
#include <utility>

namespace telvarra::sim {

namespace {

constexpr std::array<std::pair<PixelFormat, const char*>, 7> kNames{{
    {PixelFormat::Mono8, "mono8"},
    {PixelFormat::Rgb8, "rgb8"},
    {PixelFormat::Bgr8, "bgr8"},
    {PixelFormat::BayerGR8, "bayer_gr8"},
    {PixelFormat::BayerRG8, "bayer_rg8"},
    {PixelFormat::BayerGB8, "bayer_gb8"},
    {PixelFormat::BayerBG8, "bayer_bg8"},
}};

}  // namespace

bool isBayer(PixelFormat format) {
    return format == PixelFormat::BayerGR8 || format == PixelFormat::BayerRG8 ||
           format == PixelFormat::BayerGB8 || format == PixelFormat::BayerBG8;
}

std::uint32_t bytesPerPixel(PixelFormat format) {
    return format == PixelFormat::Rgb8 || format == PixelFormat::Bgr8 ? 3 : 1;
}

std::size_t frameBytes(PixelFormat format, std::uint32_t width, std::uint32_t height) {
    return std::size_t{width} * height * bytesPerPixel(format);
}

std::uint32_t bayerChannelAt(PixelFormat mosaic, std::uint32_t x, std::uint32_t y) {
    // Colours of the 2 x 2 tile, row by row: (0,0) (1,0) (0,1) (1,1).
    static constexpr std::uint32_t kTiles[4][4] = {
        {kGreen, kRed, kBlue, kGreen},  // GR
        {kRed, kGreen, kGreen, kBlue},  // RG
        {kGreen, kBlue, kRed, kGreen},  // GB
        {kBlue, kGreen, kGreen, kRed},  // BG
    };
    std::size_t tile = 0;
    switch (mosaic) {
        case PixelFormat::BayerGR8:
            tile = 0;
            break;
        case PixelFormat::BayerRG8:
            tile = 1;
            break;
        case PixelFormat::BayerGB8:
            tile = 2;
            break;
        case PixelFormat::BayerBG8:
            tile = 3;
            break;
        default:
            return kGreen;  // not a mosaic: callers check isBayer first
    }
    return kTiles[tile][(y & 1u) * 2 + (x & 1u)];
}

PixelFormat bayerMosaicAt(PixelFormat mosaic, std::uint32_t left, std::uint32_t top) {
    for (const PixelFormat candidate : {PixelFormat::BayerGR8, PixelFormat::BayerRG8,
                                        PixelFormat::BayerGB8, PixelFormat::BayerBG8}) {
        // The first two sites tell the four mosaics apart.
        if (bayerChannelAt(candidate, 0, 0) == bayerChannelAt(mosaic, left, top) &&
            bayerChannelAt(candidate, 1, 0) == bayerChannelAt(mosaic, left + 1, top))
            return candidate;
    }
    return mosaic;  // not a mosaic
}

std::string formatName(PixelFormat format) {
    for (const auto& [value, name] : kNames)
        if (value == format) return name;
    return {};
}

std::optional<PixelFormat> formatFromName(const std::string& name) {
    for (const auto& [value, text] : kNames)
        if (name == text) return value;
    return std::nullopt;
}

}  // namespace telvarra::sim
