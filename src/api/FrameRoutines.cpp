#include "api/FrameRoutines.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace telvarra {

namespace {

bool channelsSupported(int32_t channels) { return channels == 1 || channels == 3; }

bool fitsInData(int32_t width, int32_t height, int32_t channels, int32_t dataSize) {
    return static_cast<int64_t>(width) * height * channels <= dataSize;
}

int32_t checkMirrorArguments(int32_t width, int32_t height, const unsigned char* buffer,
                             int32_t dataSize, int32_t channels) {
    if (!buffer) return kFrameNullBuffer;
    if (width < 1 || height < 1) return kFrameBadSize;
    if (!channelsSupported(channels) || !fitsInData(width, height, channels, dataSize)) {
        return kFrameBadLayout;
    }
    return kFrameDone;
}

// Swaps pixels first/last moving inwards; the bytes inside a pixel keep their order.
template <std::size_t PixelBytes>
void reversePixels(unsigned char* first, std::size_t pixelCount) {
    unsigned char* last = first + (pixelCount - 1) * PixelBytes;
    for (; first < last; first += PixelBytes, last -= PixelBytes) {
        std::swap_ranges(first, first + PixelBytes, last);
    }
}

template <>
void reversePixels<1>(unsigned char* first, std::size_t pixelCount) {
    std::reverse(first, first + pixelCount);
}

template <std::size_t PixelBytes>
void reverseEveryRow(unsigned char* buffer, std::size_t width, std::size_t height) {
    const std::size_t rowBytes = width * PixelBytes;
    for (std::size_t row = 0; row < height; ++row) {
        reversePixels<PixelBytes>(buffer + row * rowBytes, width);
    }
}

// Walks the frame in square tiles so that both the reads and the writes stay in cache. Inside a
// tile each destination row is written front to back while the source is read down a column.
// The destination frame is `height` pixels wide and `width` rows high.
template <std::size_t PixelBytes, bool Clockwise>
void rotateInto(const unsigned char* source, unsigned char* destination, std::size_t width,
                std::size_t height) {
    constexpr std::size_t kTile = 64;
    const std::ptrdiff_t sourceRow = static_cast<std::ptrdiff_t>(width * PixelBytes);
    const std::ptrdiff_t sourceStep = Clockwise ? -sourceRow : sourceRow;
    for (std::size_t tileX = 0; tileX < width; tileX += kTile) {
        const std::size_t endX = std::min(tileX + kTile, width);
        for (std::size_t tileY = 0; tileY < height; tileY += kTile) {
            const std::size_t endY = std::min(tileY + kTile, height);
            // Clockwise, source row y lands in column height - 1 - y: walk the rows upwards.
            const std::size_t firstColumn = Clockwise ? height - endY : tileY;
            const std::size_t firstSourceRow = Clockwise ? endY - 1 : tileY;
            for (std::size_t x = tileX; x < endX; ++x) {
                const std::size_t row = Clockwise ? x : width - 1 - x;
                unsigned char* target = destination + (row * height + firstColumn) * PixelBytes;
                const unsigned char* pixel = source + (firstSourceRow * width + x) * PixelBytes;
                for (std::size_t n = endY - tileY; n > 0; --n, target += PixelBytes) {
                    std::memcpy(target, pixel, PixelBytes);
                    pixel += sourceStep;
                }
            }
        }
    }
}

template <std::size_t PixelBytes>
void rotate(unsigned char* buffer, std::size_t width, std::size_t height, int32_t turns) {
    if (turns == 2) {
        reversePixels<PixelBytes>(buffer, width * height);
        return;
    }
    const std::size_t frameBytes = width * height * PixelBytes;
    std::vector<unsigned char> rotated(frameBytes);
    if (turns == 1) {
        rotateInto<PixelBytes, true>(buffer, rotated.data(), width, height);
    } else {
        rotateInto<PixelBytes, false>(buffer, rotated.data(), width, height);
    }
    std::memcpy(buffer, rotated.data(), frameBytes);
}

}  // namespace

int32_t mirrorHorizontal(int32_t width, int32_t height, unsigned char*& buffer, int32_t dataSize,
                         int32_t channels) {
    const int32_t check = checkMirrorArguments(width, height, buffer, dataSize, channels);
    if (check != kFrameDone) return check;
    if (channels == 1) {
        reverseEveryRow<1>(buffer, static_cast<std::size_t>(width),
                           static_cast<std::size_t>(height));
    } else {
        reverseEveryRow<3>(buffer, static_cast<std::size_t>(width),
                           static_cast<std::size_t>(height));
    }
    return kFrameDone;
}

int32_t mirrorVertical(int32_t width, int32_t height, unsigned char*& buffer, int32_t dataSize,
                       int32_t channels) {
    const int32_t check = checkMirrorArguments(width, height, buffer, dataSize, channels);
    if (check != kFrameDone) return check;
    const std::size_t rowBytes =
        static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
    // Whole rows swap through one spare row: three block copies beat a byte-wise swap.
    std::vector<unsigned char> spare(rowBytes);
    unsigned char* top = buffer;
    unsigned char* bottom = buffer + (static_cast<std::size_t>(height) - 1) * rowBytes;
    for (; top < bottom; top += rowBytes, bottom -= rowBytes) {
        std::memcpy(spare.data(), top, rowBytes);
        std::memcpy(top, bottom, rowBytes);
        std::memcpy(bottom, spare.data(), rowBytes);
    }
    return kFrameDone;
}

int32_t rotateQuarterTurns(int32_t& width, int32_t& height, unsigned char*& buffer,
                           int32_t dataSize, int32_t channels, int32_t turns) {
    if (width < 1 || height < 1) return kFrameBadSize;
    if (!channelsSupported(channels)) return kFrameBadLayout;
    if (turns < 1 || turns > 3) return kFrameBadTurns;
    if (!fitsInData(width, height, channels, dataSize)) return kFrameBadLayout;
    // Not among the refusals callers rely on, but a null frame must never be touched.
    if (!buffer) return kFrameNullBuffer;

    const auto sourceWidth = static_cast<std::size_t>(width);
    const auto sourceHeight = static_cast<std::size_t>(height);
    if (channels == 1) {
        rotate<1>(buffer, sourceWidth, sourceHeight, turns);
    } else {
        rotate<3>(buffer, sourceWidth, sourceHeight, turns);
    }
    if (turns != 2) std::swap(width, height);
    return kFrameDone;
}

}  // namespace telvarra
