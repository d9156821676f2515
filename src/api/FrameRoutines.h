// In-place mirror and quarter-turn rotation of packed 8-bit frames of 1 or 3 bytes per pixel,
// rows stored back to back. Each returns 1 on success or a negative code and then changes
// nothing:
//   -1 null buffer, -2 width or height below 1, -3 bad channel count or data size too small,
//   -4 (rotation only) turns not 1, 2 or 3.
#ifndef TELVARRA_API_FRAMEROUTINES_H
#define TELVARRA_API_FRAMEROUTINES_H

#include <cstdint>

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

}  // namespace telvarra

#endif
