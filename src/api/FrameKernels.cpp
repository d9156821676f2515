#include "api/FrameKernels.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace telvarra {

namespace {

template <std::size_t PixelBytes>
void mirrorRow(const unsigned char* source, unsigned char* target, std::size_t width, bool) {
    const unsigned char* pixel = source + width * PixelBytes;
    for (std::size_t x = 0; x < width; ++x, target += PixelBytes) {
        pixel -= PixelBytes;
        std::memcpy(target, pixel, PixelBytes);
    }
}

template <std::size_t PixelBytes>
void reverseRow(unsigned char* row, std::size_t width) {
    if (width < 2) return;
    unsigned char* first = row;
    unsigned char* last = row + (width - 1) * PixelBytes;
    for (; first < last; first += PixelBytes, last -= PixelBytes)
        std::swap_ranges(first, first + PixelBytes, last);
}

// Square tiles keep both the reads and the writes in cache: inside a tile each target row is
// written front to back while the source is read down a column.
template <std::size_t PixelBytes>
void transpose(const unsigned char* source, std::ptrdiff_t sourceStride, unsigned char* target,
               std::ptrdiff_t targetStride, std::size_t width, std::size_t height, bool) {
    constexpr std::size_t kTile = 32;
    for (std::size_t tileX = 0; tileX < width; tileX += kTile) {
        const std::size_t endX = std::min(tileX + kTile, width);
        for (std::size_t tileY = 0; tileY < height; tileY += kTile) {
            const std::size_t endY = std::min(tileY + kTile, height);
            for (std::size_t x = tileX; x < endX; ++x) {
                unsigned char* out =
                    target + static_cast<std::ptrdiff_t>(x) * targetStride + tileY * PixelBytes;
                const unsigned char* in =
                    source + static_cast<std::ptrdiff_t>(tileY) * sourceStride + x * PixelBytes;
                for (std::size_t y = tileY; y < endY; ++y, out += PixelBytes, in += sourceStride)
                    std::memcpy(out, in, PixelBytes);
            }
        }
    }
}

}  // namespace

namespace detail {

const FrameKernels& portableKernels() {
    static const FrameKernels kernels{"portable",    mirrorRow<1>, mirrorRow<3>, reverseRow<1>,
                                      reverseRow<3>, transpose<1>, transpose<3>};
    return kernels;
}

}  // namespace detail

std::vector<InstructionSet> runnableInstructionSets() {
    std::vector<InstructionSet> sets = {InstructionSet::Portable};
#ifdef TELVARRA_X86_KERNELS
    for (InstructionSet set : {InstructionSet::Sse2, InstructionSet::Ssse3, InstructionSet::Avx2})
        if (detail::x86Kernels(set)) sets.push_back(set);
#endif
    return sets;
}

const FrameKernels& frameKernels(InstructionSet set) {
#ifdef TELVARRA_X86_KERNELS
    if (const FrameKernels* kernels = detail::x86Kernels(set)) return *kernels;
#endif
    (void)set;
    return detail::portableKernels();
}

const FrameKernels& frameKernels() {
    static const FrameKernels& best = frameKernels(runnableInstructionSets().back());
    return best;
}

}  // namespace telvarra
