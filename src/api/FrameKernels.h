// The inner loops of the frame routines, on packed 8-bit pixels of 1 or 3 bytes, in one version
// per instruction set: portable C++ everywhere, and on x86-64 SSE2 (always there), SSSE3 and
// AVX2, picked at first use by what the processor runs. Every version gives the same bytes.
#ifndef TELVARRA_API_FRAMEKERNELS_H
#define TELVARRA_API_FRAMEKERNELS_H

#include <cstddef>
#include <vector>

// The one toolchain test of the vector code: GCC-compatible compilers targeting x86-64 (gcc and
// mingw-w64 alike), which offer __attribute__((target)) and __builtin_cpu_supports.
#if defined(__GNUC__) && defined(__x86_64__)
#define TELVARRA_X86_KERNELS 1
#endif

namespace telvarra {

// `stream`: the target is too large to stay in cache for its reader, so a kernel that can writes
// whole aligned vectors past the caches, which spares the memory the read of each target line
// before it is written; it fences before returning.
struct FrameKernels {
    const char* name;
    // `width` pixels from `source` into `target` in reverse order; the two do not overlap.
    void (*mirrorRow1)(const unsigned char* source, unsigned char* target, std::size_t width,
                       bool stream);
    void (*mirrorRow3)(const unsigned char* source, unsigned char* target, std::size_t width,
                       bool stream);
    // The `width` pixels of `row` reversed in place.
    void (*reverseRow1)(unsigned char* row, std::size_t width);
    void (*reverseRow3)(unsigned char* row, std::size_t width);
    // Rows and columns swapped: pixel x of source row y becomes pixel y of target row x, for a
    // source `width` pixels wide and `height` rows high. Strides are in bytes and may be
    // negative (rows upwards); the two frames do not overlap.
    void (*transpose1)(const unsigned char* source, std::ptrdiff_t sourceStride,
                       unsigned char* target, std::ptrdiff_t targetStride, std::size_t width,
                       std::size_t height, bool stream);
    void (*transpose3)(const unsigned char* source, std::ptrdiff_t sourceStride,
                       unsigned char* target, std::ptrdiff_t targetStride, std::size_t width,
                       std::size_t height, bool stream);
};

enum class InstructionSet { Portable, Sse2, Ssse3, Avx2 };

// The versions this processor runs, the portable one first and the best last.
std::vector<InstructionSet> runnableInstructionSets();
// The kernels of `set`, which must be runnable here.
const FrameKernels& frameKernels(InstructionSet set);
// The best runnable kernels, chosen once.
const FrameKernels& frameKernels();

namespace detail {
const FrameKernels& portableKernels();
#ifdef TELVARRA_X86_KERNELS
// Null when the processor lacks the instructions.
const FrameKernels* x86Kernels(InstructionSet set);
#endif
}  // namespace detail

}  // namespace telvarra

#endif
