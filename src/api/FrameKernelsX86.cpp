// The x86-64 versions of the frame kernels. SSE2 is part of x86-64; the SSSE3 and AVX2 functions
// carry their instruction set as a target attribute and run only where the processor reports
// it. Each loop does whole vectors and leaves the ragged edge to the portable kernels, so every
// version writes exactly the portable kernels' bytes.
#include "api/FrameKernels.h"

#ifdef TELVARRA_X86_KERNELS

#include <immintrin.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#define TELVARRA_SSSE3 __attribute__((target("ssse3")))
#define TELVARRA_AVX2 __attribute__((target("avx2")))
#define TELVARRA_INLINE inline __attribute__((always_inline))

namespace telvarra::detail {

namespace {

using Stride = std::ptrdiff_t;

inline __m128i load16(const unsigned char* at) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}
inline void store16(unsigned char* at, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(at), value);
}
TELVARRA_AVX2 TELVARRA_INLINE __m256i load32(const unsigned char* at) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}
TELVARRA_AVX2 TELVARRA_INLINE void store32(unsigned char* at, __m256i value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), value);
}

// ---- Transposing by tiles ----

// A function transposing a `width` x `height` part of a frame whose sides are whole blocks.
using TileFunction = void (*)(const unsigned char* source, Stride sourceStride,
                              unsigned char* target, Stride targetStride, std::size_t width,
                              std::size_t height);

// `bytes` from `from` to `to` (16-byte aligned) past the caches, the last odd bytes plainly.
inline void copyStreaming(unsigned char* to, const unsigned char* from, std::size_t bytes) {
    std::size_t done = 0;
    for (; done + 16 <= bytes; done += 16)
        _mm_stream_si128(reinterpret_cast<__m128i*>(to + done), load16(from + done));
    std::memcpy(to + done, from + done, bytes - done);
}

inline bool aligned16(const void* at) { return (reinterpret_cast<std::uintptr_t>(at) & 15) == 0; }

// Square tiles of `Tile` pixels keep a tile's source rows and target rows in the first-level
// cache. `blockColumns` (a multiple of the block width) is where blocks may read; the columns
// right of it and the rows below the last whole block go to the portable kernel. Streaming, a
// tile is transposed into a buffer on the stack and its target rows then written whole, so that
// every line leaves the processor at once rather than a vector at a time.
template <std::size_t PixelBytes, std::size_t BlockRows, std::size_t Tile>
void transposeByTiles(const unsigned char* source, Stride sourceStride, unsigned char* target,
                      Stride targetStride, std::size_t width, std::size_t height,
                      std::size_t blockColumns, TileFunction tile, bool stream) {
    // Tiles start at multiples of Tile x PixelBytes bytes in their target rows, which are
    // multiples of 16: aligned when the rows are.
    stream = stream && aligned16(target) && targetStride % 16 == 0;
    alignas(64) unsigned char buffer[Tile * Tile * PixelBytes];
    const std::size_t blockRows = height - height % BlockRows;
    for (std::size_t tileY = 0; tileY < blockRows; tileY += Tile) {
        const std::size_t rows = std::min(Tile, blockRows - tileY);
        for (std::size_t tileX = 0; tileX < blockColumns; tileX += Tile) {
            const std::size_t columns = std::min(Tile, blockColumns - tileX);
            const unsigned char* in =
                source + static_cast<Stride>(tileY) * sourceStride + tileX * PixelBytes;
            unsigned char* out =
                target + static_cast<Stride>(tileX) * targetStride + tileY * PixelBytes;
            // A tile reads as many rows as it is high, more streams than the processor's own
            // prefetcher follows: the next tile's source lines are asked for now.
            if (tileX + Tile < blockColumns) {
                const std::size_t nextBytes =
                    std::min(Tile, blockColumns - tileX - Tile) * PixelBytes;
                for (std::size_t row = 0; row < rows; ++row) {
                    const unsigned char* next =
                        in + static_cast<Stride>(row) * sourceStride + Tile * PixelBytes;
                    for (std::size_t byte = 0; byte < nextBytes; byte += 64)
                        _mm_prefetch(reinterpret_cast<const char*>(next + byte), _MM_HINT_T0);
                }
            }
            if (!stream) {
                tile(in, sourceStride, out, targetStride, columns, rows);
                continue;
            }
            const std::size_t piece = rows * PixelBytes;
            tile(in, sourceStride, buffer, static_cast<Stride>(piece), columns, rows);
            for (std::size_t c = 0; c < columns; ++c, out += targetStride)
                copyStreaming(out, buffer + c * piece, piece);
        }
    }
    if (stream) _mm_sfence();
    const FrameKernels& portable = portableKernels();
    const auto rest = PixelBytes == 1 ? portable.transpose1 : portable.transpose3;
    if (blockColumns < width) {
        rest(source + blockColumns * PixelBytes, sourceStride,
             target + static_cast<Stride>(blockColumns) * targetStride, targetStride,
             width - blockColumns, height, false);
    }
    if (blockRows < height && blockColumns > 0) {
        rest(source + static_cast<Stride>(blockRows) * sourceStride, sourceStride,
             target + blockRows * PixelBytes, targetStride, blockColumns, height - blockRows,
             false);
    }
}

// How many pixels wide the whole blocks of `blockWidth` pixels reach when each block reads
// `loadBytes` from its first pixel on, without reading past the row.
std::size_t blockColumnsFor(std::size_t width, std::size_t pixelBytes, std::size_t blockWidth,
                            std::size_t loadBytes) {
    const std::size_t rowBytes = width * pixelBytes;
    if (rowBytes < loadBytes) return 0;
    const std::size_t blocks = (rowBytes - loadBytes) / (blockWidth * pixelBytes) + 1;
    return std::min(blocks * blockWidth, width - width % blockWidth);
}

// ---- SSE2 ----

// Bytes 15..0 of `v` as bytes 0..15, with SSE2 alone.
inline __m128i reverseBytes(__m128i v) {
    v = _mm_shuffle_epi32(v, _MM_SHUFFLE(0, 1, 2, 3));
    v = _mm_shufflelo_epi16(v, _MM_SHUFFLE(2, 3, 0, 1));
    v = _mm_shufflehi_epi16(v, _MM_SHUFFLE(2, 3, 0, 1));
    return _mm_or_si128(_mm_slli_epi16(v, 8), _mm_srli_epi16(v, 8));
}

// Source pixels [first, last) into their mirrored places in a `width`-pixel target row.
template <std::size_t PixelBytes>
void mirrorPortably(const unsigned char* source, unsigned char* target, std::size_t width,
                    std::size_t first, std::size_t last) {
    if (first >= last) return;
    const FrameKernels& portable = portableKernels();
    (PixelBytes == 1 ? portable.mirrorRow1 : portable.mirrorRow3)(
        source + first * PixelBytes, target + (width - last) * PixelBytes, last - first, false);
}

// The mirrors read the source forwards, a stream the processor prefetches, and write the
// target backwards; measured clearly faster than the other way round.
void mirrorRow1Sse2(const unsigned char* source, unsigned char* target, std::size_t width, bool) {
    std::size_t x = 0;
    for (; x + 16 <= width; x += 16)
        store16(target + width - 16 - x, reverseBytes(load16(source + x)));
    mirrorPortably<1>(source, target, width, x, width);
}

void reverseRow1Sse2(unsigned char* row, std::size_t width) {
    std::size_t left = 0;
    std::size_t right = width;
    for (; right - left >= 32; left += 16, right -= 16) {
        const __m128i first = load16(row + left);
        const __m128i last = load16(row + right - 16);
        store16(row + left, reverseBytes(last));
        store16(row + right - 16, reverseBytes(first));
    }
    std::reverse(row + left, row + right);
}

// One 16 x 16 block: pixel x of source row y to pixel y of target row x. Four rounds of
// interleaving, bytes, then pairs, fours and eights.
inline void transposeBlock16(const unsigned char* source, Stride sourceStride,
                             unsigned char* target, Stride targetStride) {
    __m128i r[16];
    __m128i a[16];
#pragma GCC unroll 16
    for (int i = 0; i < 16; ++i) r[i] = load16(source + i * sourceStride);
#pragma GCC unroll 8
    for (int i = 0; i < 16; i += 2) {  // rows i, i+1: columns 0-7, then 8-15
        a[i] = _mm_unpacklo_epi8(r[i], r[i + 1]);
        a[i + 1] = _mm_unpackhi_epi8(r[i], r[i + 1]);
    }
#pragma GCC unroll 4
    for (int g = 0; g < 16; g += 4) {  // rows g..g+3: columns 0-3, 4-7, 8-11, 12-15
        r[g] = _mm_unpacklo_epi16(a[g], a[g + 2]);
        r[g + 1] = _mm_unpackhi_epi16(a[g], a[g + 2]);
        r[g + 2] = _mm_unpacklo_epi16(a[g + 1], a[g + 3]);
        r[g + 3] = _mm_unpackhi_epi16(a[g + 1], a[g + 3]);
    }
#pragma GCC unroll 2
    for (int h = 0; h < 16; h += 8) {  // rows h..h+7: columns 2m, 2m+1 in a[h + m]
#pragma GCC unroll 4
        for (int q = 0; q < 4; ++q) {
            a[h + 2 * q] = _mm_unpacklo_epi32(r[h + q], r[h + 4 + q]);
            a[h + 2 * q + 1] = _mm_unpackhi_epi32(r[h + q], r[h + 4 + q]);
        }
    }
#pragma GCC unroll 8
    for (int m = 0; m < 8; ++m) {
        store16(target + (2 * m) * targetStride, _mm_unpacklo_epi64(a[m], a[8 + m]));
        store16(target + (2 * m + 1) * targetStride, _mm_unpackhi_epi64(a[m], a[8 + m]));
    }
}

void transposeTile1Sse2(const unsigned char* source, Stride sourceStride, unsigned char* target,
                        Stride targetStride, std::size_t width, std::size_t height) {
    for (std::size_t x = 0; x < width; x += 16)
        for (std::size_t y = 0; y < height; y += 16)
            transposeBlock16(source + static_cast<Stride>(y) * sourceStride + x, sourceStride,
                             target + static_cast<Stride>(x) * targetStride + y, targetStride);
}

void transpose1Sse2(const unsigned char* source, Stride sourceStride, unsigned char* target,
                    Stride targetStride, std::size_t width, std::size_t height, bool stream) {
    transposeByTiles<1, 16, 64>(source, sourceStride, target, targetStride, width, height,
                                width - width % 16, transposeTile1Sse2, stream);
}

// ---- SSSE3: 3-byte pixels ----

// Masks reversing 16 pixels of 3 bytes held in three registers: output register k takes from
// input register s the bytes mask[k][s] names (0x80: none).
struct ReverseMasks {
    unsigned char mask[3][3][16];
};
constexpr ReverseMasks makeReverseMasks() {
    ReverseMasks masks{};
    for (int k = 0; k < 3; ++k) {
        for (int i = 0; i < 16; ++i) {
            const int out = 16 * k + i;
            const int in = 3 * (15 - out / 3) + out % 3;
            for (int s = 0; s < 3; ++s)
                masks.mask[k][s][i] = static_cast<unsigned char>(in / 16 == s ? in % 16 : 0x80);
        }
    }
    return masks;
}
constexpr ReverseMasks kReverse3 = makeReverseMasks();

TELVARRA_SSSE3 TELVARRA_INLINE __m128i pick(__m128i from, int k, int s) {
    return _mm_shuffle_epi8(from, load16(kReverse3.mask[k][s]));
}

// 16 pixels at `source` written reversed at `target` (aligned when streaming).
template <bool Stream>
TELVARRA_SSSE3 TELVARRA_INLINE void reverse16Pixels3(const unsigned char* source,
                                                     unsigned char* target) {
    const __m128i a = load16(source);
    const __m128i b = load16(source + 16);
    const __m128i c = load16(source + 32);
    const __m128i out[3] = {_mm_or_si128(pick(b, 0, 1), pick(c, 0, 2)),
                            _mm_or_si128(_mm_or_si128(pick(a, 1, 0), pick(b, 1, 1)), pick(c, 1, 2)),
                            _mm_or_si128(pick(a, 2, 0), pick(b, 2, 1))};
    for (int k = 0; k < 3; ++k) {
        if (Stream)
            _mm_stream_si128(reinterpret_cast<__m128i*>(target + 16 * k), out[k]);
        else
            store16(target + 16 * k, out[k]);
    }
}

// The pixels before `first` of the source, so that the target blocks that follow start at
// multiples of `alignment` bytes (blocks of `block` pixels, a multiple of the alignment in bytes).
std::size_t pixelsBeforeAlignment(const unsigned char* target, std::size_t width, std::size_t block,
                                  std::size_t alignment) {
    std::size_t first = 0;
    while (first + block <= width &&
           (reinterpret_cast<std::uintptr_t>(target + (width - block - first) * 3) % alignment) !=
               0)
        ++first;
    return first;
}

TELVARRA_SSSE3 void mirrorRow3Ssse3(const unsigned char* source, unsigned char* target,
                                    std::size_t width, bool stream) {
    std::size_t x = 0;
    if (stream) {
        x = pixelsBeforeAlignment(target, width, 16, 16);
        mirrorPortably<3>(source, target, width, 0, x);
        for (; x + 16 <= width; x += 16)
            reverse16Pixels3<true>(source + x * 3, target + (width - 16 - x) * 3);
        _mm_sfence();
    }
    for (; x + 16 <= width; x += 16)
        reverse16Pixels3<false>(source + x * 3, target + (width - 16 - x) * 3);
    mirrorPortably<3>(source, target, width, x, width);
}

TELVARRA_SSSE3 void reverseRow3Ssse3(unsigned char* row, std::size_t width) {
    std::size_t left = 0;
    std::size_t right = width;
    for (; right - left >= 32; left += 16, right -= 16) {
        unsigned char first[48];
        std::memcpy(first, row + left * 3, 48);
        reverse16Pixels3<false>(row + (right - 16) * 3, row + left * 3);
        reverse16Pixels3<false>(first, row + (right - 16) * 3);
    }
    portableKernels().reverseRow3(row + left * 3, right - left);
}

// 4 x 4 pixels of 3 bytes: each row widened to 4-byte pixels, transposed as 32-bit values, and
// narrowed again. The loads read 16 bytes from each row's first pixel.
constexpr unsigned char kWiden3[16] = {0, 1, 2, 0x80, 3, 4,  5,  0x80,
                                       6, 7, 8, 0x80, 9, 10, 11, 0x80};
constexpr unsigned char kNarrow3[16] = {0,  1,  2,  4,  5,    6,    8,    9,
                                        10, 12, 13, 14, 0x80, 0x80, 0x80, 0x80};

TELVARRA_SSSE3 TELVARRA_INLINE void store12(unsigned char* at, __m128i value) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(at), value);
    const std::uint32_t last =
        static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(value, 8)));
    std::memcpy(at + 8, &last, 4);
}

TELVARRA_SSSE3 void transposeTile3Ssse3(const unsigned char* source, Stride sourceStride,
                                        unsigned char* target, Stride targetStride,
                                        std::size_t width, std::size_t height) {
    const __m128i widen = load16(kWiden3);
    const __m128i narrow = load16(kNarrow3);
    for (std::size_t x = 0; x < width; x += 4) {
        for (std::size_t y = 0; y < height; y += 4) {
            const unsigned char* in = source + static_cast<Stride>(y) * sourceStride + x * 3;
            const __m128i e0 = _mm_shuffle_epi8(load16(in), widen);
            const __m128i e1 = _mm_shuffle_epi8(load16(in + sourceStride), widen);
            const __m128i e2 = _mm_shuffle_epi8(load16(in + 2 * sourceStride), widen);
            const __m128i e3 = _mm_shuffle_epi8(load16(in + 3 * sourceStride), widen);
            const __m128i t0 = _mm_unpacklo_epi32(e0, e1);
            const __m128i t1 = _mm_unpackhi_epi32(e0, e1);
            const __m128i t2 = _mm_unpacklo_epi32(e2, e3);
            const __m128i t3 = _mm_unpackhi_epi32(e2, e3);
            unsigned char* out = target + static_cast<Stride>(x) * targetStride + y * 3;
            store12(out, _mm_shuffle_epi8(_mm_unpacklo_epi64(t0, t2), narrow));
            store12(out + targetStride, _mm_shuffle_epi8(_mm_unpackhi_epi64(t0, t2), narrow));
            store12(out + 2 * targetStride, _mm_shuffle_epi8(_mm_unpacklo_epi64(t1, t3), narrow));
            store12(out + 3 * targetStride, _mm_shuffle_epi8(_mm_unpackhi_epi64(t1, t3), narrow));
        }
    }
}

void transpose3Ssse3(const unsigned char* source, Stride sourceStride, unsigned char* target,
                     Stride targetStride, std::size_t width, std::size_t height, bool stream) {
    transposeByTiles<3, 4, 32>(source, sourceStride, target, targetStride, width, height,
                               blockColumnsFor(width, 3, 4, 16), transposeTile3Ssse3, stream);
}

// ---- AVX2 ----

constexpr unsigned char kReverseLanes[32] = {15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0,
                                             15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0};

TELVARRA_AVX2 TELVARRA_INLINE __m256i reverseBytes32(__m256i v, __m256i lanes) {
    return _mm256_permute4x64_epi64(_mm256_shuffle_epi8(v, lanes), _MM_SHUFFLE(1, 0, 3, 2));
}

TELVARRA_AVX2 void mirrorRow1Avx2(const unsigned char* source, unsigned char* target,
                                  std::size_t width, bool) {
    const __m256i lanes = load32(kReverseLanes);
    std::size_t x = 0;
    for (; x + 64 <= width; x += 64) {
        const __m256i first = load32(source + x);
        const __m256i second = load32(source + x + 32);
        store32(target + width - 32 - x, reverseBytes32(first, lanes));
        store32(target + width - 64 - x, reverseBytes32(second, lanes));
    }
    for (; x + 32 <= width; x += 32)
        store32(target + width - 32 - x, reverseBytes32(load32(source + x), lanes));
    mirrorPortably<1>(source, target, width, x, width);
}

TELVARRA_AVX2 void reverseRow1Avx2(unsigned char* row, std::size_t width) {
    const __m256i lanes = load32(kReverseLanes);
    std::size_t left = 0;
    std::size_t right = width;
    for (; right - left >= 64; left += 32, right -= 32) {
        const __m256i first = load32(row + left);
        const __m256i last = load32(row + right - 32);
        store32(row + left, reverseBytes32(last, lanes));
        store32(row + right - 32, reverseBytes32(first, lanes));
    }
    std::reverse(row + left, row + right);
}

TELVARRA_AVX2 TELVARRA_INLINE __m256i pick32(__m256i from, int k, int s) {
    return _mm256_shuffle_epi8(from, _mm256_broadcastsi128_si256(load16(kReverse3.mask[k][s])));
}

// 32 pixels of 3 bytes at `source` written reversed at `target` (32-byte aligned when
// streaming): the SSSE3 shuffles on both halves at once, one half in each lane.
template <bool Stream>
TELVARRA_AVX2 TELVARRA_INLINE void reverse32Pixels3(const unsigned char* source,
                                                    unsigned char* target) {
    const __m256i l0 = load32(source);       // lanes: first half bytes 0-15 | 16-31
    const __m256i l1 = load32(source + 32);  // first half 32-47 | second half 0-15
    const __m256i l2 = load32(source + 64);  // second half 16-31 | 32-47
    const __m256i in[3] = {_mm256_permute2x128_si256(l0, l1, 0x30),
                           _mm256_permute2x128_si256(l0, l2, 0x21),
                           _mm256_permute2x128_si256(l1, l2, 0x30)};
    // Each lane holds its half reversed: output register k of the first half in lane 0, of the
    // second in lane 1.
    const __m256i r0 = _mm256_or_si256(pick32(in[1], 0, 1), pick32(in[2], 0, 2));
    const __m256i r1 = _mm256_or_si256(_mm256_or_si256(pick32(in[0], 1, 0), pick32(in[1], 1, 1)),
                                       pick32(in[2], 1, 2));
    const __m256i r2 = _mm256_or_si256(pick32(in[0], 2, 0), pick32(in[1], 2, 1));
    // The second half comes first: r0 r1 r2 of lane 1, then of lane 0.
    const __m256i out[3] = {_mm256_permute2x128_si256(r0, r1, 0x31),
                            _mm256_permute2x128_si256(r2, r0, 0x21),
                            _mm256_permute2x128_si256(r1, r2, 0x20)};
    for (int k = 0; k < 3; ++k) {
        if (Stream)
            _mm256_stream_si256(reinterpret_cast<__m256i*>(target + 32 * k), out[k]);
        else
            store32(target + 32 * k, out[k]);
    }
}

TELVARRA_AVX2 void mirrorRow3Avx2(const unsigned char* source, unsigned char* target,
                                  std::size_t width, bool stream) {
    std::size_t x = 0;
    if (stream) {
        x = pixelsBeforeAlignment(target, width, 32, 32);
        mirrorPortably<3>(source, target, width, 0, x);
        for (; x + 32 <= width; x += 32)
            reverse32Pixels3<true>(source + x * 3, target + (width - 32 - x) * 3);
        _mm_sfence();
    }
    for (; x + 32 <= width; x += 32)
        reverse32Pixels3<false>(source + x * 3, target + (width - 32 - x) * 3);
    mirrorPortably<3>(source, target, width, x, width);
}

TELVARRA_AVX2 void reverseRow3Avx2(unsigned char* row, std::size_t width) {
    std::size_t left = 0;
    std::size_t right = width;
    for (; right - left >= 64; left += 32, right -= 32) {
        unsigned char first[96];
        std::memcpy(first, row + left * 3, 96);
        reverse32Pixels3<false>(row + (right - 32) * 3, row + left * 3);
        reverse32Pixels3<false>(first, row + (right - 32) * 3);
    }
    reverseRow3Ssse3(row + left * 3, right - left);
}

// 16 rows of 32 pixels: the SSE2 block's rounds in both lanes at once, so that lane 0 of the
// result holds target rows 0-15 and lane 1 target rows 16-31.
TELVARRA_AVX2 TELVARRA_INLINE void transposeBlock16x32(const unsigned char* source,
                                                       Stride sourceStride, unsigned char* target,
                                                       Stride targetStride) {
    __m256i r[16];
    __m256i a[16];
#pragma GCC unroll 16
    for (int i = 0; i < 16; ++i) r[i] = load32(source + i * sourceStride);
#pragma GCC unroll 8
    for (int i = 0; i < 16; i += 2) {
        a[i] = _mm256_unpacklo_epi8(r[i], r[i + 1]);
        a[i + 1] = _mm256_unpackhi_epi8(r[i], r[i + 1]);
    }
#pragma GCC unroll 4
    for (int g = 0; g < 16; g += 4) {
        r[g] = _mm256_unpacklo_epi16(a[g], a[g + 2]);
        r[g + 1] = _mm256_unpackhi_epi16(a[g], a[g + 2]);
        r[g + 2] = _mm256_unpacklo_epi16(a[g + 1], a[g + 3]);
        r[g + 3] = _mm256_unpackhi_epi16(a[g + 1], a[g + 3]);
    }
#pragma GCC unroll 2
    for (int h = 0; h < 16; h += 8) {
#pragma GCC unroll 4
        for (int q = 0; q < 4; ++q) {
            a[h + 2 * q] = _mm256_unpacklo_epi32(r[h + q], r[h + 4 + q]);
            a[h + 2 * q + 1] = _mm256_unpackhi_epi32(r[h + q], r[h + 4 + q]);
        }
    }
#pragma GCC unroll 8
    for (int m = 0; m < 8; ++m) {
        const __m256i even = _mm256_unpacklo_epi64(a[m], a[8 + m]);
        const __m256i odd = _mm256_unpackhi_epi64(a[m], a[8 + m]);
        store16(target + (2 * m) * targetStride, _mm256_castsi256_si128(even));
        store16(target + (2 * m + 1) * targetStride, _mm256_castsi256_si128(odd));
        store16(target + (16 + 2 * m) * targetStride, _mm256_extracti128_si256(even, 1));
        store16(target + (16 + 2 * m + 1) * targetStride, _mm256_extracti128_si256(odd, 1));
    }
}

TELVARRA_AVX2 void transposeTile1Avx2(const unsigned char* source, Stride sourceStride,
                                      unsigned char* target, Stride targetStride, std::size_t width,
                                      std::size_t height) {
    for (std::size_t x = 0; x < width; x += 32)
        for (std::size_t y = 0; y < height; y += 16)
            transposeBlock16x32(source + static_cast<Stride>(y) * sourceStride + x, sourceStride,
                                target + static_cast<Stride>(x) * targetStride + y, targetStride);
}

void transpose1Avx2(const unsigned char* source, Stride sourceStride, unsigned char* target,
                    Stride targetStride, std::size_t width, std::size_t height, bool stream) {
    transposeByTiles<1, 16, 64>(source, sourceStride, target, targetStride, width, height,
                                width - width % 32, transposeTile1Avx2, stream);
}

// 8 x 8 pixels of 3 bytes: each row's two halves widened in the two lanes, an 8 x 8 transpose of
// 32-bit values, narrowed and packed to 24 bytes. Each row is read from its first pixel to 28
// bytes on.
constexpr unsigned char kWiden3Lanes[32] = {0,    1,    2,  0x80, 3,    4,    5, 0x80, 6,    7,   8,
                                            0x80, 9,    10, 11,   0x80, 0,    1, 2,    0x80, 3,   4,
                                            5,    0x80, 6,  7,    8,    0x80, 9, 10,   11,   0x80};
constexpr unsigned char kNarrow3Lanes[32] = {
    0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 0x80, 0x80, 0x80, 0x80,
    0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 0x80, 0x80, 0x80, 0x80};

TELVARRA_AVX2 TELVARRA_INLINE __m256i loadRow8Pixels3(const unsigned char* at, __m256i widen) {
    const __m256i both =
        _mm256_inserti128_si256(_mm256_castsi128_si256(load16(at)), load16(at + 12), 1);
    return _mm256_shuffle_epi8(both, widen);
}

TELVARRA_AVX2 TELVARRA_INLINE void storeRow8Pixels3(unsigned char* at, __m256i pixels,
                                                    __m256i narrow, __m256i pack) {
    const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(pixels, narrow), pack);
    store16(at, _mm256_castsi256_si128(packed));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(at + 16), _mm256_extracti128_si256(packed, 1));
}

TELVARRA_AVX2 void transposeTile3Avx2(const unsigned char* source, Stride sourceStride,
                                      unsigned char* target, Stride targetStride, std::size_t width,
                                      std::size_t height) {
    const __m256i widen = load32(kWiden3Lanes);
    const __m256i narrow = load32(kNarrow3Lanes);
    const __m256i pack = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
    for (std::size_t x = 0; x < width; x += 8) {
        for (std::size_t y = 0; y < height; y += 8) {
            const unsigned char* in = source + static_cast<Stride>(y) * sourceStride + x * 3;
            __m256i e[8];
#pragma GCC unroll 8
            for (int i = 0; i < 8; ++i) e[i] = loadRow8Pixels3(in + i * sourceStride, widen);
            __m256i t[8];
#pragma GCC unroll 4
            for (int i = 0; i < 8; i += 2) {
                t[i] = _mm256_unpacklo_epi32(e[i], e[i + 1]);
                t[i + 1] = _mm256_unpackhi_epi32(e[i], e[i + 1]);
            }
#pragma GCC unroll 2
            for (int i = 0; i < 8; i += 4) {  // columns 0,4 / 1,5 / 2,6 / 3,7 of rows i..i+3
                e[i] = _mm256_unpacklo_epi64(t[i], t[i + 2]);
                e[i + 1] = _mm256_unpackhi_epi64(t[i], t[i + 2]);
                e[i + 2] = _mm256_unpacklo_epi64(t[i + 1], t[i + 3]);
                e[i + 3] = _mm256_unpackhi_epi64(t[i + 1], t[i + 3]);
            }
            unsigned char* out = target + static_cast<Stride>(x) * targetStride + y * 3;
#pragma GCC unroll 4
            for (int c = 0; c < 4; ++c) {
                storeRow8Pixels3(out + c * targetStride,
                                 _mm256_permute2x128_si256(e[c], e[4 + c], 0x20), narrow, pack);
                storeRow8Pixels3(out + (4 + c) * targetStride,
                                 _mm256_permute2x128_si256(e[c], e[4 + c], 0x31), narrow, pack);
            }
        }
    }
}

void transpose3Avx2(const unsigned char* source, Stride sourceStride, unsigned char* target,
                    Stride targetStride, std::size_t width, std::size_t height, bool stream) {
    transposeByTiles<3, 8, 32>(source, sourceStride, target, targetStride, width, height,
                               blockColumnsFor(width, 3, 8, 28), transposeTile3Avx2, stream);
}

}  // namespace

const FrameKernels* x86Kernels(InstructionSet set) {
    static const FrameKernels sse2{"SSE2",
                                   mirrorRow1Sse2,
                                   portableKernels().mirrorRow3,
                                   reverseRow1Sse2,
                                   portableKernels().reverseRow3,
                                   transpose1Sse2,
                                   portableKernels().transpose3};
    static const FrameKernels ssse3{"SSSE3",         mirrorRow1Sse2,   mirrorRow3Ssse3,
                                    reverseRow1Sse2, reverseRow3Ssse3, transpose1Sse2,
                                    transpose3Ssse3};
    static const FrameKernels avx2{"AVX2",          mirrorRow1Avx2, mirrorRow3Avx2, reverseRow1Avx2,
                                   reverseRow3Avx2, transpose1Avx2, transpose3Avx2};
    switch (set) {
        case InstructionSet::Sse2:
            return &sse2;
        case InstructionSet::Ssse3:
            return __builtin_cpu_supports("ssse3") ? &ssse3 : nullptr;
        case InstructionSet::Avx2:
            return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("ssse3") ? &avx2
                                                                                     : nullptr;
        case InstructionSet::Portable:
            break;
    }
    return nullptr;
}

}  // namespace telvarra::detail

#endif
