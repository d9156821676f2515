#include "api/FrameRoutines.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace telvarra {

namespace {

// From this size on a frame does not stay in the caches for its reader anyway: the kernels then
// write it past them (FrameKernels, `stream`).
constexpr std::size_t kStreamingBytes = std::size_t{4} << 20;

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

void reversePixels(unsigned char* first, std::size_t pixels, int32_t channels) {
    const FrameKernels& kernels = frameKernels();
    (channels == 1 ? kernels.reverseRow1 : kernels.reverseRow3)(first, pixels);
}

}  // namespace

int32_t mirrorHorizontal(int32_t width, int32_t height, unsigned char*& buffer, int32_t dataSize,
                         int32_t channels) {
    const int32_t check = checkMirrorArguments(width, height, buffer, dataSize, channels);
    if (check != kFrameDone) return check;
    const std::size_t rowBytes = static_cast<std::size_t>(width) * channels;
    for (int32_t row = 0; row < height; ++row)
        reversePixels(buffer + row * rowBytes, static_cast<std::size_t>(width), channels);
    return kFrameDone;
}

int32_t mirrorVertical(int32_t width, int32_t height, unsigned char*& buffer, int32_t dataSize,
                       int32_t channels) {
    const int32_t check = checkMirrorArguments(width, height, buffer, dataSize, channels);
    if (check != kFrameDone) return check;
    const std::size_t rowBytes = static_cast<std::size_t>(width) * channels;
    // Rows swap through a spare piece on the stack, a piece at a time: block copies, and no
    // allocation.
    constexpr std::size_t kPiece = 4096;
    unsigned char spare[kPiece];
    unsigned char* top = buffer;
    unsigned char* bottom = buffer + (static_cast<std::size_t>(height) - 1) * rowBytes;
    for (; top < bottom; top += rowBytes, bottom -= rowBytes) {
        for (std::size_t done = 0; done < rowBytes; done += kPiece) {
            const std::size_t bytes = std::min(kPiece, rowBytes - done);
            std::memcpy(spare, top + done, bytes);
            std::memcpy(top + done, bottom + done, bytes);
            std::memcpy(bottom + done, spare, bytes);
        }
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

    const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (turns == 2) {
        // A half turn reverses the whole frame as one long row.
        reversePixels(buffer, pixels, channels);
        return kFrameDone;
    }
    // A quarter turn cannot stay in place: it goes through a block of its own and back.
    const std::size_t rowBytes = static_cast<std::size_t>(width) * channels;
    std::vector<unsigned char> turned(pixels * channels);
    orientFrame(buffer, static_cast<std::ptrdiff_t>(rowBytes), width, height, channels,
                orientationOf(false, false, turns), turned.data(),
                static_cast<std::ptrdiff_t>(height) * channels);
    std::memcpy(buffer, turned.data(), turned.size());
    std::swap(width, height);
    return kFrameDone;
}

Orientation orientationOf(bool leftRight, bool topBottom, int32_t turns) {
    // A quarter turn clockwise is the source read bottom to top, then transposed; half a turn
    // reads it both ways round; three quarters read it right to left, then transpose. Mirrors
    // before a turn add their own reversal.
    switch (turns & 3) {
        case 1:
            return {true, leftRight, !topBottom};
        case 2:
            return {false, !leftRight, !topBottom};
        case 3:
            return {true, !leftRight, topBottom};
        default:
            return {false, leftRight, topBottom};
    }
}

void orientFrame(const unsigned char* source, std::ptrdiff_t sourceStride, int32_t width,
                 int32_t height, int32_t pixelBytes, const Orientation& orientation,
                 unsigned char* target, std::ptrdiff_t targetStride, const FrameKernels& kernels) {
    if (width < 1 || height < 1) return;
    const auto columns = static_cast<std::size_t>(width);
    const auto rows = static_cast<std::size_t>(height);
    const std::size_t rowBytes = columns * static_cast<std::size_t>(pixelBytes);
    // Streamed writes paid, as measured, for 3-byte pixels only, and not with the target written
    // from its last row up.
    const bool large = pixelBytes == 3 && rowBytes * rows >= kStreamingBytes;
    if (orientation.transpose) {
        if (orientation.flipY) {
            source += (height - 1) * sourceStride;
            sourceStride = -sourceStride;
        }
        // The source read right to left is the target's rows in reverse order.
        if (orientation.flipX) {
            target += (width - 1) * targetStride;
            targetStride = -targetStride;
        }
        (pixelBytes == 1 ? kernels.transpose1 : kernels.transpose3)(
            source, sourceStride, target, targetStride, columns, rows, large);
        return;
    }
    // The source is read as one stream the processor prefetches, never a row at a time against
    // the direction of its rows: upside down, the target is written from its last row up.
    if (orientation.flipY) {
        target += (height - 1) * targetStride;
        targetStride = -targetStride;
    }
    if (!orientation.flipX) {
        if (sourceStride == targetStride && sourceStride == static_cast<std::ptrdiff_t>(rowBytes)) {
            std::memcpy(target, source, rowBytes * rows);
            return;
        }
        for (std::size_t row = 0; row < rows; ++row, source += sourceStride, target += targetStride)
            std::memcpy(target, source, rowBytes);
        return;
    }
    const auto mirrorRow = pixelBytes == 1 ? kernels.mirrorRow1 : kernels.mirrorRow3;
    for (std::size_t row = 0; row < rows; ++row, source += sourceStride, target += targetStride)
        mirrorRow(source, target, columns, large && !orientation.flipY);
}

}  // namespace telvarra
