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

// Walks the source in square tiles so that both the reads and the scattered writes stay in
// cache; the destination frame is `height` pixels wide and `width` rows high.
template <std::size_t PixelBytes>
void rotateInto(const unsigned char* source, unsigned char* destination, std::size_t width,
                std::size_t height, bool clockwise) {
    constexpr std::size_t kTile = 32;
    for (std::size_t tileY = 0; tileY < height; tileY += kTile) {
        const std::size_t endY = std::min(tileY + kTile, height);
        for (std::size_t tileX = 0; tileX < width; tileX += kTile) {
            const std::size_t endX = std::min(tileX + kTile, width);
            for (std::size_t y = tileY; y < endY; ++y) {
                const unsigned char* sourcePixel = source + (y * width + tileX) * PixelBytes;
                for (std::size_t x = tileX; x < endX; ++x, sourcePixel += PixelBytes) {
                    const std::size_t row = clockwise ? x : width - 1 - x;
                    const std::size_t column = clockwise ? height - 1 - y : y;
                    std::memcpy(destination + (row * height + column) * PixelBytes, sourcePixel,
                                PixelBytes);
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
    rotateInto<PixelBytes>(buffer, rotated.data(), width, height, turns == 1);
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
    unsigned char* top = buffer;
    unsigned char* bottom = buffer + (static_cast<std::size_t>(height) - 1) * rowBytes;
    for (; top < bottom; top += rowBytes, bottom -= rowBytes) {
        std::swap_ranges(top, top + rowBytes, bottom);
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
