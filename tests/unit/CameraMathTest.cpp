#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "api/DigitalZoom.h"
#include "api/FrameBuffer.h"
#include "api/PercentMapping.h"

namespace {

using telvarra::DeviceRange;
using telvarra::PercentControl;
using telvarra::percentToRange;
using telvarra::rangeToPercent;
using telvarra::setByPercent;
using telvarra::zoomWindow;

TEST(PercentMappingTest, PercentIsClampedThenMappedOntoTheRange) {
    EXPECT_DOUBLE_EQ(percentToRange(25, 2.0, 22.0), 7.0);
    EXPECT_DOUBLE_EQ(percentToRange(-10, 2.0, 22.0), 2.0);
    EXPECT_DOUBLE_EQ(percentToRange(250, 2.0, 22.0), 22.0);
    EXPECT_DOUBLE_EQ(percentToRange(50, 5.0, 5.0), 5.0);
}

TEST(PercentMappingTest, RangeBackToPercentTruncatesClampsAndSurvivesEmptyAndInvertedRanges) {
    EXPECT_EQ(rangeToPercent(7.0, 2.0, 22.0), 25);
    EXPECT_EQ(rangeToPercent(7.9, 2.0, 22.0), 29);  // 29.5 truncated
    EXPECT_EQ(rangeToPercent(-3.0, 2.0, 22.0), 0);
    EXPECT_EQ(rangeToPercent(99.0, 2.0, 22.0), 100);
    EXPECT_EQ(rangeToPercent(5.0, 5.0, 5.0), 0);
    EXPECT_EQ(rangeToPercent(6.0, 9.0, 5.0), 75);  // an inverted range answers by the formula
    EXPECT_EQ(rangeToPercent(4.0, 9.0, 5.0), 100);
    // Double arithmetic then truncation: 290 / 1000 * 100 is 28.999..., so 29 % reads back 28.
    EXPECT_EQ(rangeToPercent(percentToRange(29, 0, 1000), 0, 1000), 28);
}

TEST(PercentMappingTest, ADeviceRangeThatIsNotFiniteIsRefusedBeforeAnyWrite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (const DeviceRange& range :
         {DeviceRange{1, nan, 10}, DeviceRange{1, 0, inf}, DeviceRange{1, -inf, 10}}) {
        bool written = false;
        const PercentControl control{[&] { return std::optional<DeviceRange>(range); },
                                     [&](double) { return written = true; }};
        EXPECT_FALSE(setByPercent(control, 50));
        EXPECT_FALSE(written);
    }
}

TEST(DigitalZoomTest, WindowsAreCentredWithTheFramesAspect) {
    const auto first = zoomWindow(1, 1280, 1024);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->width, 640);
    EXPECT_EQ(first->height, 512);
    EXPECT_EQ(first->left, 320);
    EXPECT_EQ(first->top, 256);
    const auto second = zoomWindow(2, 2448, 2048);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->width, 320);
    EXPECT_EQ(second->height, 267);  // trunc(2048 / 2448 * 320)
    EXPECT_EQ(second->left, 1064);
    EXPECT_EQ(second->top, 1024 - 133);
}

TEST(DigitalZoomTest, FramesWithoutRoomForTheWindowAreRefused) {
    EXPECT_FALSE(zoomWindow(1, 319, 1000));
    EXPECT_FALSE(zoomWindow(2, 1000, 319));
    EXPECT_FALSE(zoomWindow(1, 639, 480));  // the 640-pixel window does not fit
    EXPECT_TRUE(zoomWindow(2, 320, 320));
    EXPECT_TRUE(zoomWindow(1, 640, 480));
    EXPECT_FALSE(zoomWindow(0, 1280, 1024));
    EXPECT_FALSE(zoomWindow(3, 1280, 1024));
}

TEST(FrameBufferTest, GrowsToTheLargestFrameAndRefusesAnImpossibleOneWithoutLosingIt) {
    telvarra::FrameBuffer buffer;
    ASSERT_TRUE(buffer.reserve(100));
    buffer.data()[99] = 0x5A;
    ASSERT_TRUE(buffer.reserve(10));
    EXPECT_EQ(buffer.size(), 100u);
    // Far more than any machine has: false rather than an exception out of a camera.
    EXPECT_FALSE(buffer.reserve(SIZE_MAX));
    EXPECT_EQ(buffer.size(), 100u);
    EXPECT_EQ(buffer.data()[99], 0x5A);
}

}  // namespace
