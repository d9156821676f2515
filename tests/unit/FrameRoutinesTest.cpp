#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "api/FrameRoutines.h"

using telvarra::mirrorHorizontal;
using telvarra::mirrorVertical;
using telvarra::rotateQuarterTurns;

namespace {

using Bytes = std::vector<unsigned char>;

// A frame whose every pixel is distinct, so that any misplaced pixel shows.
struct Frame {
    int32_t width;
    int32_t height;
    int32_t channels;
    Bytes bytes;

    Frame(int32_t w, int32_t h, int32_t c) : width(w), height(h), channels(c), bytes(w * h * c) {
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<unsigned char>(i * 7 + 3);
    }
    int32_t size() const { return static_cast<int32_t>(bytes.size()); }
    Bytes pixel(int32_t x, int32_t y) const {
        const auto start = bytes.begin() + (y * width + x) * channels;
        return Bytes(start, start + channels);
    }
};

int32_t mirrorH(Frame& f) {
    unsigned char* data = f.bytes.data();
    return mirrorHorizontal(f.width, f.height, data, f.size(), f.channels);
}
int32_t mirrorV(Frame& f) {
    unsigned char* data = f.bytes.data();
    return mirrorVertical(f.width, f.height, data, f.size(), f.channels);
}
int32_t rotate(Frame& f, int32_t turns) {
    unsigned char* data = f.bytes.data();
    return rotateQuarterTurns(f.width, f.height, data, f.size(), f.channels, turns);
}

TEST(FrameRoutinesTest, MirrorsAndRotationsMovePixelsWhereTheGeometrySays) {
    for (int32_t channels : {1, 3}) {
        const Frame source(5, 3, channels);
        Frame h = source, v = source, cw = source, half = source, ccw = source;
        ASSERT_EQ(mirrorH(h), 1);
        ASSERT_EQ(mirrorV(v), 1);
        ASSERT_EQ(rotate(cw, 1), 1);
        ASSERT_EQ(rotate(half, 2), 1);
        ASSERT_EQ(rotate(ccw, 3), 1);
        EXPECT_EQ(cw.width, 3);
        EXPECT_EQ(cw.height, 5);
        EXPECT_EQ(half.width, 5);
        EXPECT_EQ(ccw.width, 3);
        for (int32_t y = 0; y < source.height; ++y) {
            for (int32_t x = 0; x < source.width; ++x) {
                const Bytes p = source.pixel(x, y);
                EXPECT_EQ(h.pixel(source.width - 1 - x, y), p);
                EXPECT_EQ(v.pixel(x, source.height - 1 - y), p);
                EXPECT_EQ(cw.pixel(source.height - 1 - y, x), p);
                EXPECT_EQ(half.pixel(source.width - 1 - x, source.height - 1 - y), p);
                EXPECT_EQ(ccw.pixel(y, source.width - 1 - x), p);
            }
        }
    }
}

TEST(FrameRoutinesTest, SingleColumnAndSingleRowFramesMirrorToThemselves) {
    Frame column(1, 6, 3);
    const Bytes columnBefore = column.bytes;
    EXPECT_EQ(mirrorH(column), 1);
    EXPECT_EQ(column.bytes, columnBefore);

    Frame row(6, 1, 1);
    const Bytes rowBefore = row.bytes;
    EXPECT_EQ(mirrorV(row), 1);
    EXPECT_EQ(row.bytes, rowBefore);
}

TEST(FrameRoutinesTest, RefusalsReturnTheirCodeInOrderAndChangeNothing) {
    Frame frame(4, 4, 3);
    const Bytes before = frame.bytes;
    unsigned char* data = frame.bytes.data();
    unsigned char* none = nullptr;
    int32_t w = 4, h = 4;

    EXPECT_EQ(mirrorHorizontal(4, 4, none, 48, 3), -1);
    EXPECT_EQ(mirrorVertical(0, 0, none, 48, 3), -1);
    EXPECT_EQ(mirrorHorizontal(0, 4, data, 48, 3), -2);
    EXPECT_EQ(mirrorVertical(4, -1, data, 48, 3), -2);
    EXPECT_EQ(mirrorHorizontal(4, 4, data, 64, 4), -3);
    EXPECT_EQ(mirrorVertical(4, 4, data, 64, 4), -3);
    EXPECT_EQ(mirrorHorizontal(4, 4, data, 47, 3), -3);
    EXPECT_EQ(mirrorVertical(4, 4, data, 47, 3), -3);

    EXPECT_EQ(rotateQuarterTurns(w, h, data, 64, 4, 1), -3);
    EXPECT_EQ(rotateQuarterTurns(w, h, data, 48, 3, 0), -4);
    EXPECT_EQ(rotateQuarterTurns(w, h, data, 48, 3, 4), -4);
    EXPECT_EQ(rotateQuarterTurns(w, h, data, 47, 3, 1), -3);
    EXPECT_EQ(rotateQuarterTurns(w, h, data, 47, 3, 0), -4);  // turns are tested before size
    EXPECT_EQ(rotateQuarterTurns(w, h, data, 48, 5, 0), -3);  // channels before turns
    int32_t zero = 0;
    EXPECT_EQ(rotateQuarterTurns(zero, h, data, 48, 3, 1), -2);
    EXPECT_EQ(rotateQuarterTurns(w, h, none, 48, 3, 1), -1);

    EXPECT_EQ(frame.bytes, before);
    EXPECT_EQ(w, 4);
    EXPECT_EQ(h, 4);
    EXPECT_EQ(data, frame.bytes.data());
}

TEST(FrameRoutinesTest, HugeDimensionsAreRefusedNotOverflowed) {
    Bytes small(16);
    unsigned char* data = small.data();
    int32_t w = 65536, h = 65536;
    EXPECT_EQ(mirrorHorizontal(w, h, data, 16, 1), -3);
    EXPECT_EQ(rotateQuarterTurns(w, h, data, 16, 3, 1), -3);
}

TEST(FrameRoutinesTest, LargerDataSizeRotatesOnlyTheFrameBytes) {
    Frame frame(3, 2, 1);
    frame.bytes.push_back(0xEE);
    unsigned char* data = frame.bytes.data();
    int32_t w = 3, h = 2;
    ASSERT_EQ(rotateQuarterTurns(w, h, data, 7, 1, 1), 1);
    EXPECT_EQ(frame.bytes.back(), 0xEE);
}

}  // namespace
