// JPEG files of frames, for makes whose SDK hands out compressed pictures (Canon's live view).
#ifndef TELVARRA_SIM_COMMON_JPEGENCODER_H
#define TELVARRA_SIM_COMMON_JPEGENCODER_H

#include <cstdint>
#include <vector>

#include "sim/common/PixelFormat.h"

namespace telvarra::sim {

// A baseline JPEG file of `pixels`: Mono8 or RGB8 rows back to back. The file is always YCbCr,
// as cameras send it; grey pictures carry neutral colour. `quality` runs from 1 to 100; values
// outside are taken as the nearest end. Other formats, an empty image and sides above 65535
// (JPEG's limit) give an empty result.
std::vector<std::uint8_t> encodeJpeg(PixelFormat format, const std::uint8_t* pixels,
                                     std::uint32_t width, std::uint32_t height, int quality);

}  // namespace telvarra::sim

#endif
