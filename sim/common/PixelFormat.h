// The pixel formats a virtual camera can deliver: 8 bits per sample, one or three samples per
// pixel, or one sample per pixel of a Bayer colour mosaic.
#ifndef TELVARRA_SIM_COMMON_PIXELFORMAT_H
#define TELVARRA_SIM_COMMON_PIXELFORMAT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace telvarra::sim {

// Bayer names give the colours of the first two pixels of the first row; the second row holds
// the other two (RG8: R G / G B).
enum class PixelFormat { Mono8, Rgb8, Bgr8, BayerGR8, BayerRG8, BayerGB8, BayerBG8 };

constexpr std::uint32_t kRed = 0;
constexpr std::uint32_t kGreen = 1;
constexpr std::uint32_t kBlue = 2;

bool isBayer(PixelFormat format);
std::uint32_t bytesPerPixel(PixelFormat format);
std::size_t frameBytes(PixelFormat format, std::uint32_t width, std::uint32_t height);

// The colour channel (kRed, kGreen, kBlue) a Bayer mosaic samples at (x, y).
std::uint32_t bayerChannelAt(PixelFormat mosaic, std::uint32_t x, std::uint32_t y);

// The mosaic a region of `mosaic` starting at (left, top) has: an odd offset shifts the pattern
// (RG8 seen from (1, 0) is GR8).
PixelFormat bayerMosaicAt(PixelFormat mosaic, std::uint32_t left, std::uint32_t top);

// Rig-file names: mono8, rgb8, bgr8, bayer_gr8, bayer_rg8, bayer_gb8, bayer_bg8.
std::string formatName(PixelFormat format);
std::optional<PixelFormat> formatFromName(const std::string& name);

}  // namespace telvarra::sim

#endif
