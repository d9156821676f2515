// Pixel work an SDK does for its caller: Bayer demosaicing, conversion to RGB8, BGR8 or Mono8,
// cropping, mirroring and quarter turns. Images are 8-bit samples, rows back to back without
// padding; every function writes into a separate destination of the right size, never in place.
#ifndef TELVARRA_SIM_COMMON_IMAGEOPS_H
#define TELVARRA_SIM_COMMON_IMAGEOPS_H

#include <cstddef>
#include <cstdint>

#include "sim/common/PixelFormat.h"

namespace telvarra::sim {

// Bilinear demosaic of a Bayer mosaic into RGB8 (width * height * 3 bytes). Every output sample
// of the site's own colour is the raw sample; every other colour is the rounded mean,
// (sum + n / 2) / n, of the n raw samples of that colour in the 3 x 3 window around the site.
// Inside the image that is the classic bilinear rule (two or four neighbours); at the borders the
// window is cut at the image edge, so only samples that exist are averaged. A colour absent from
// the window (only possible in images one pixel wide or high) gives 0.
void demosaicBilinear(PixelFormat mosaic, const std::uint8_t* raw, std::uint32_t width,
                      std::uint32_t height, std::uint8_t* rgb);

// Any of the formats to RGB8: Bayer by demosaicBilinear, Mono8 by repeating the sample in the
// three channels, BGR8 by swapping red and blue, RGB8 by copying.
void convertToRgb8(PixelFormat source, const std::uint8_t* in, std::uint32_t width,
                   std::uint32_t height, std::uint8_t* rgb);

// Any of the formats to Mono8, RGB8 or BGR8 (`target`; other targets write nothing): colour
// through RGB8 as convertToRgb8 makes it, then to grey as (77 R + 150 G + 29 B + 128) >> 8, the
// integer BT.601 luma; Mono8 to Mono8 copies.
void convertImage(PixelFormat source, const std::uint8_t* in, std::uint32_t width,
                  std::uint32_t height, PixelFormat target, std::uint8_t* out);

// The region of `cropWidth` x `cropHeight` pixels whose top-left corner is (left, top) in an
// image `width` pixels wide; the region lies inside it. A Bayer mosaic cropped at an odd offset
// is the mosaic bayerMosaicAt gives.
void cropImage(const std::uint8_t* in, std::uint32_t width, std::uint32_t bytesPerPixel,
               std::uint32_t left, std::uint32_t top, std::uint32_t cropWidth,
               std::uint32_t cropHeight, std::uint8_t* out);

// Top-bottom and left-right mirrors of pixels of `bytesPerPixel` bytes.
void flipVertical(const std::uint8_t* in, std::uint32_t width, std::uint32_t height,
                  std::uint32_t bytesPerPixel, std::uint8_t* out);
void flipHorizontal(const std::uint8_t* in, std::uint32_t width, std::uint32_t height,
                    std::uint32_t bytesPerPixel, std::uint8_t* out);

// Turns the image clockwise by `quarterTurns` (1: 90, 2: 180, 3: 270 degrees; 0 copies). After an
// odd number of turns the output is `height` pixels wide and `width` pixels high.
void rotateClockwise(const std::uint8_t* in, std::uint32_t width, std::uint32_t height,
                     std::uint32_t bytesPerPixel, std::uint32_t quarterTurns, std::uint8_t* out);

// Whether two byte ranges share a byte: SDK image functions refuse to work in place.
bool buffersOverlap(const void* a, std::size_t aBytes, const void* b, std::size_t bBytes);

}  // namespace telvarra::sim

#endif
