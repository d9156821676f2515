// The picture every virtual camera shows: a pure function of the device's seed, the frame
// number and the position, so that a test can compute the bytes of frame N on its own and tell
// frame N from N + 1, a mirrored frame from a plain one, and one crop from another.
//
// Each colour channel is a diagonal ramp with its own slopes in x, y and time (mod 256), plus a
// fixed 16-pixel checkerboard that breaks the ramps' translation symmetry:
//   sample = x * kx[c] + y * ky[c] + frame * kf[c] + seedByte[c] + 64 * checker(x, y)   (mod 256)
// with kx = {1, 3, 2}, ky = {2, 1, 5}, kf = {3, 5, 7}, seedByte[c] = byte c of the seed and
// checker(x, y) = ((x / 16) xor (y / 16)) & 1. Every sample changes from one frame to the next.
#ifndef TELVARRA_SIM_COMMON_TESTPATTERN_H
#define TELVARRA_SIM_COMMON_TESTPATTERN_H

#include <cstdint>
#include <string>

#include "sim/common/PixelFormat.h"

namespace telvarra::sim {

// The pattern's value of colour channel `channel` (kRed, kGreen, kBlue) at (x, y) in frame
// `frame`. Mono cameras show channel kRed; other channels give 0.
std::uint8_t patternSample(std::uint32_t seed, std::uint32_t frame, std::uint32_t x,
                           std::uint32_t y, std::uint32_t channel);

// Frame `frame` as a camera delivering `format` sends it, rows back to back without padding:
// Mono8 one sample of kRed per pixel; RGB8 and BGR8 three samples in their order; a Bayer
// mosaic one sample per pixel, of the colour the mosaic has at that site.
// `out` holds frameBytes(format, width, height) bytes.
void renderFrame(PixelFormat format, std::uint32_t seed, std::uint32_t frame, std::uint32_t width,
                 std::uint32_t height, std::uint8_t* out);

// The default seed of a device: the 32-bit FNV-1a hash of its identifier.
std::uint32_t seedFromId(const std::string& id);

}  // namespace telvarra::sim

#endif
