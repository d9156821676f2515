// Mirror and quarter-turn rotation of packed 8-bit frames of 1 or 3 bytes per pixel.
//
// The three in-place routines keep the frame in its buffer, rows stored back to back. Each
// returns 1 on success or a negative code and then changes nothing:
//   -1 null buffer, -2 width or height below 1, -3 bad channel count or data size too small,
//   -4 (rotation only) turns not 1, 2 or 3.
//
// orientFrame does any mirror and turn, with a crop, in one pass from one buffer into another:
// the frame path's way, straight out of the SDK's memory.
#ifndef TELVARRA_API_FRAMEROUTINES_H
#define TELVARRA_API_FRAMEROUTINES_H

#include <cstddef>
#include <cstdint>

#include "api/FrameKernels.h"

namespace telvarra {

constexpr int32_t kFrameDone = 1;
constexpr int32_t kFrameNullBuffer = -1;
constexpr int32_t kFrameBadSize = -2;
constexpr int32_t kFrameBadLayout = -3;
constexpr int32_t kFrameBadTurns = -4;

// Left-right mirror: reverses the pixels of every row.
int32_t mirrorHorizontal(int32_t width, int32_t height, unsigned char*& buffer, int32_t dataSize,
                         int32_t channels);

// Top-bottom mirror: reverses the order of the rows.
int32_t mirrorVertical(int32_t width, int32_t height, unsigned char*& buffer, int32_t dataSize,
                       int32_t channels);

// Turns 1: 90 degrees clockwise, 2: 180 degrees, 3: 90 degrees counter-clockwise. Writes the new
// width and height back; the data size is unchanged.
int32_t rotateQuarterTurns(int32_t& width, int32_t& height, unsigned char*& buffer,
                           int32_t dataSize, int32_t channels, int32_t turns);

// Every mirror and turn of a picture is one of eight orientations: the source read right to
// left and/or bottom to top, then rows and columns swapped or not.
struct Orientation {
    bool transpose = false;
    bool flipX = false;
    bool flipY = false;
    bool operator==(const Orientation& other) const {
        return transpose == other.transpose && flipX == other.flipX && flipY == other.flipY;
    }
};

// A left-right mirror, then a top-bottom one, then `turns` quarter turns clockwise (0..3), as
// the one orientation they add up to.
Orientation orientationOf(bool leftRight, bool topBottom, int32_t turns);

// Writes the `width` x `height` pixels of `pixelBytes` (1 or 3) bytes at `source`, rows
// `sourceStride` bytes apart, into `target`, rows `targetStride` bytes apart, in `orientation`:
// `height` pixels wide and `width` rows high when it transposes. The two must not overlap. The
// kernels are the best this processor runs, unless the caller names others.
void orientFrame(const unsigned char* source, std::ptrdiff_t sourceStride, int32_t width,
                 int32_t height, int32_t pixelBytes, const Orientation& orientation,
                 unsigned char* target, std::ptrdiff_t targetStride,
                 const FrameKernels& kernels = frameKernels());

}  // namespace telvarra

#endif
