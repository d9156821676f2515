// The GenICam (PFNC) pixel-format codes that the HikVision, DaHeng and MindVision SDKs share,
// matched with the library's image formats, and the texts our log lines give those formats.
#ifndef TELVARRA_API_PIXELCODES_H
#define TELVARRA_API_PIXELCODES_H

#include <cstdint>
#include <optional>

#include "telvarra/Types.h"

namespace telvarra {

// The format a code stands for: mono, RGB and BGR 8-bit, RGBA and BGRA 8-bit (formats 4 and 5),
// and the four 8-bit Bayer mosaics. None for any other code.
std::optional<Ruvo_ImageFormat> formatOfPixelCode(std::uint32_t code);
// The code of one of those formats; 0 for a format without one.
std::uint32_t pixelCodeOf(Ruvo_ImageFormat format);

// Mono, RGB or BGR 8-bit: what the cameras deliver as they come, without conversion.
bool isPackedFormat(Ruvo_ImageFormat format);
// What a delivered frame of `format` has: 1 channel for mono, otherwise 3.
int32_t deliveredChannels(Ruvo_ImageFormat format);
// "MONO8", "RGB8", "BGR8", or "UNKNOWN" for any other format.
const char* formatText(Ruvo_ImageFormat format);

}  // namespace telvarra

#endif
