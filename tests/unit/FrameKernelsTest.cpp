// The vector kernels against a plain reference written here, on every instruction set this
// processor runs: widths that are no multiple of any vector, single pixels, padded and upward
// strides, and nothing written outside the target.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "api/FrameKernels.h"
#include "api/FrameRoutines.h"

namespace telvarra {
namespace {

using Bytes = std::vector<unsigned char>;
constexpr unsigned char kUntouched = 0xA5;

Bytes noise(std::size_t size, std::uint32_t seed) {
    std::mt19937 random(seed);
    Bytes bytes(size);
    for (auto& byte : bytes) byte = static_cast<unsigned char>(random());
    return bytes;
}

// Sizes around every vector width and block: 1, 3 and 4 pixels, 16 and 32 bytes, 8 x 8 and
// 16 x 32 blocks, 64-pixel tiles.
const std::vector<int> kSides = {1,  2,  3,  4,  5,  7,  8,  9,  11, 15, 16,
                                 17, 31, 32, 33, 47, 48, 63, 64, 65, 97, 130};

std::string nameOf(InstructionSet set) { return frameKernels(set).name; }

TEST(FrameKernelsTest, EveryInstructionSetMirrorsRowsAsTheReference) {
    for (InstructionSet set : runnableInstructionSets()) {
        const FrameKernels& kernels = frameKernels(set);
        for (int pixelBytes : {1, 3}) {
            for (std::size_t width = 1; width <= 200; ++width) {
                SCOPED_TRACE(nameOf(set) + ", " + std::to_string(pixelBytes) + " bytes, width " +
                             std::to_string(width));
                const Bytes row = noise(width * pixelBytes, static_cast<std::uint32_t>(width));
                Bytes expected(row.size());
                for (std::size_t x = 0; x < width; ++x)
                    for (int b = 0; b < pixelBytes; ++b)
                        expected[x * pixelBytes + b] = row[(width - 1 - x) * pixelBytes + b];

                // Streamed, the kernels first write single pixels up to an aligned address:
                // targets start at every offset in a vector.
                for (bool stream : {false, true}) {
                    for (std::size_t offset : {0, 1, 7, 13}) {
                        Bytes mirrored(offset + row.size() + 1, kUntouched);
                        (pixelBytes == 1 ? kernels.mirrorRow1 : kernels.mirrorRow3)(
                            row.data(), mirrored.data() + offset, width, stream);
                        EXPECT_EQ(mirrored.back(), kUntouched);
                        EXPECT_EQ(Bytes(mirrored.begin() + offset, mirrored.end() - 1), expected)
                            << (stream ? "streamed" : "") << " at offset " << offset;
                    }
                }

                Bytes reversed = row;
                (pixelBytes == 1 ? kernels.reverseRow1 : kernels.reverseRow3)(reversed.data(),
                                                                              width);
                EXPECT_EQ(reversed, expected);
            }
        }
    }
}

// Transposes a width x height picture held in a frame with spare bytes at every row end, read
// downwards or upwards, into a target with spare bytes of its own, and compares pixel by pixel.
// Streaming needs target rows at multiples of 16 bytes; the other targets must not stream.
TEST(FrameKernelsTest, EveryInstructionSetTransposesAsTheReference) {
    for (InstructionSet set : runnableInstructionSets()) {
        const FrameKernels& kernels = frameKernels(set);
        for (int pixelBytes : {1, 3}) {
            const auto transpose = pixelBytes == 1 ? kernels.transpose1 : kernels.transpose3;
            for (int width : kSides) {
                for (int height : kSides) {
                    for (int variant = 0; variant < 4; ++variant) {
                        const bool upwards = variant & 1;
                        const bool stream = variant & 2;
                        SCOPED_TRACE(nameOf(set) + ", " + std::to_string(pixelBytes) + " bytes, " +
                                     std::to_string(width) + " x " + std::to_string(height) +
                                     (upwards ? ", read upwards" : "") +
                                     (stream ? ", streamed" : ""));
                        const std::ptrdiff_t sourceStride = width * pixelBytes + 5;
                        const std::ptrdiff_t targetStride =
                            stream ? (height * pixelBytes + 15) / 16 * 16 + 16
                                   : height * pixelBytes + 7;
                        const Bytes source = noise(sourceStride * height, width * 131 + height);
                        Bytes target(targetStride * width, kUntouched);
                        // Upwards: row y of the picture is source row height - 1 - y.
                        const unsigned char* first =
                            upwards ? source.data() + (height - 1) * sourceStride : source.data();
                        transpose(first, upwards ? -sourceStride : sourceStride, target.data(),
                                  targetStride, width, height, stream);

                        int wrong = 0;
                        for (int x = 0; x < width; ++x) {
                            for (int y = 0; y < targetStride; ++y) {
                                const unsigned char got = target[x * targetStride + y];
                                if (y >= height * pixelBytes) {
                                    wrong += got != kUntouched;
                                    continue;
                                }
                                const int row =
                                    upwards ? height - 1 - y / pixelBytes : y / pixelBytes;
                                wrong +=
                                    got !=
                                    source[row * sourceStride + x * pixelBytes + y % pixelBytes];
                            }
                        }
                        EXPECT_EQ(wrong, 0);
                    }
                }
            }
        }
    }
}

// The reference picture of a mirror and turn, by coordinates: the source pixel each target
// pixel shows.
Bytes orientedByCoordinates(const Bytes& source, int width, int height, int pixelBytes,
                            bool leftRight, bool topBottom, int turns, int& outWidth,
                            int& outHeight) {
    Bytes picture = source;
    int w = width;
    int h = height;
    const auto at = [&](auto& p, int pw, int x, int y) {
        return p.begin() + (y * pw + x) * pixelBytes;
    };
    if (leftRight) {
        Bytes next(picture.size());
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                std::copy_n(at(picture, w, w - 1 - x, y), pixelBytes, at(next, w, x, y));
        picture = next;
    }
    if (topBottom) {
        Bytes next(picture.size());
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                std::copy_n(at(picture, w, x, h - 1 - y), pixelBytes, at(next, w, x, y));
        picture = next;
    }
    for (int turn = 0; turn < turns; ++turn) {  // clockwise: source (x, y) to (h - 1 - y, x)
        Bytes next(picture.size());
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                std::copy_n(at(picture, w, x, y), pixelBytes, at(next, h, h - 1 - y, x));
        picture = next;
        std::swap(w, h);
    }
    outWidth = w;
    outHeight = h;
    return picture;
}

TEST(FrameKernelsTest, OrientFrameGivesEveryMirrorAndTurnFromACropOfALargerFrame) {
    constexpr int kFrameWidth = 41;
    constexpr int kFrameHeight = 37;
    for (InstructionSet set : runnableInstructionSets()) {
        for (int pixelBytes : {1, 3}) {
            const Bytes frame = noise(kFrameWidth * kFrameHeight * pixelBytes, 7 * pixelBytes);
            // A crop of 35 x 33 pixels at (3, 2): the rows around it must not be read into it.
            const int left = 3, top = 2, width = 35, height = 33;
            Bytes crop(width * height * pixelBytes);
            for (int y = 0; y < height; ++y)
                std::copy_n(frame.begin() + ((top + y) * kFrameWidth + left) * pixelBytes,
                            width * pixelBytes, crop.begin() + y * width * pixelBytes);
            for (int turns = 0; turns < 4; ++turns) {
                for (bool leftRight : {false, true}) {
                    for (bool topBottom : {false, true}) {
                        SCOPED_TRACE(nameOf(set) + ", " + std::to_string(pixelBytes) +
                                     " bytes, turns " + std::to_string(turns) +
                                     (leftRight ? ", left-right" : "") +
                                     (topBottom ? ", top-bottom" : ""));
                        int w = 0, h = 0;
                        const Bytes expected = orientedByCoordinates(
                            crop, width, height, pixelBytes, leftRight, topBottom, turns, w, h);
                        Bytes target(expected.size(), kUntouched);
                        orientFrame(frame.data() + (top * kFrameWidth + left) * pixelBytes,
                                    kFrameWidth * pixelBytes, width, height, pixelBytes,
                                    orientationOf(leftRight, topBottom, turns), target.data(),
                                    w * pixelBytes, frameKernels(set));
                        EXPECT_EQ(target, expected);
                    }
                }
            }
        }
    }
}

TEST(FrameKernelsTest, SinglePixelFramesAreCopiedUnderEveryOrientation) {
    const unsigned char pixel[3] = {1, 2, 3};
    for (InstructionSet set : runnableInstructionSets()) {
        for (int turns = 0; turns < 4; ++turns) {
            unsigned char target[4] = {0, 0, 0, kUntouched};
            orientFrame(pixel, 3, 1, 1, 3, orientationOf(true, true, turns), target, 3,
                        frameKernels(set));
            EXPECT_EQ(Bytes(target, target + 4), (Bytes{1, 2, 3, kUntouched})) << nameOf(set);
        }
    }
}

}  // namespace
}  // namespace telvarra
