// The software frame path's one pass against the step-by-step way the routines of the same
// names describe: mirrors in place, then the turn, then the zoom window cut out. Both ways in,
// out of the SDK's memory and from the camera's buffer, must give the same bytes.
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "api/DigitalZoom.h"
#include "api/FrameRoutines.h"
#include "api/SoftwareFramePath.h"

namespace telvarra {
namespace {

using Bytes = std::vector<unsigned char>;

struct Picture {
    int32_t width;
    int32_t height;
    Bytes bytes;
};

Picture stepByStep(Picture picture, int32_t channels, bool leftRight, bool topBottom, int32_t turns,
                   int32_t zoom) {
    unsigned char* data = picture.bytes.data();
    const auto size = static_cast<int32_t>(picture.bytes.size());
    if (leftRight) mirrorHorizontal(picture.width, picture.height, data, size, channels);
    if (topBottom) mirrorVertical(picture.width, picture.height, data, size, channels);
    if (turns) rotateQuarterTurns(picture.width, picture.height, data, size, channels, turns);
    if (zoom == 0) return picture;
    const std::optional<ZoomWindow> window = zoomWindow(zoom, picture.width, picture.height);
    if (!window) return {0, 0, {}};
    Bytes cut;
    for (int32_t row = 0; row < window->height; ++row) {
        const auto first =
            picture.bytes.begin() + ((window->top + row) * picture.width + window->left) * channels;
        cut.insert(cut.end(), first, first + window->width * channels);
    }
    return {window->width, window->height, cut};
}

Bytes received(const ImageData& image) { return Bytes(image.data, image.data + image.dataSize); }

TEST(SoftwareFramePathTest, OnePassGivesTheStepByStepBytesUnderEveryGeometry) {
    // Turned a quarter, 1000 x 700 is 700 wide: room for the first zoom window, 640 wide.
    constexpr int32_t kWidth = 1000;
    constexpr int32_t kHeight = 700;
    for (int32_t channels : {1, 3}) {
        Bytes frame(kWidth * kHeight * channels);
        for (std::size_t i = 0; i < frame.size(); ++i)
            frame[i] = static_cast<unsigned char>(i * 13 + i / 997);
        for (int32_t geometry = 0; geometry < 48; ++geometry) {
            const bool leftRight = geometry & 1;
            const bool topBottom = geometry & 2;
            const int32_t turns = (geometry >> 2) & 3;
            const int32_t zoom = geometry >> 4;
            SCOPED_TRACE(std::to_string(channels) + " channels, geometry " +
                         std::to_string(geometry));
            SoftwareFramePath path;
            path.setSensorSize(kWidth, kHeight);
            path.setHorMirror(leftRight);
            path.setVerMirror(topBottom);
            path.setRotation(turns);
            for (int32_t step = 0; step < zoom; ++step)
                ASSERT_TRUE(path.applyZoomCommand("CameraImageZoomIn"));
            const Picture expected =
                stepByStep({kWidth, kHeight, frame}, channels, leftRight, topBottom, turns, zoom);

            FrameBuffer target;
            ImageData copied{};
            ASSERT_TRUE(path.copyFrom(frame.data(), frame.size(), kWidth, kHeight, channels, target,
                                      copied));
            EXPECT_EQ(copied.width, expected.width);
            EXPECT_EQ(copied.height, expected.height);
            EXPECT_EQ(received(copied), expected.bytes);

            Bytes inCamera = frame;
            ImageData applied{};
            applied.data = inCamera.data();
            applied.width = kWidth;
            applied.height = kHeight;
            applied.channels = channels;
            applied.dataSize = static_cast<int32_t>(inCamera.size());
            ASSERT_TRUE(path.apply(applied));
            EXPECT_EQ(received(applied), expected.bytes);
            EXPECT_EQ(inCamera, frame) << "the camera's own frame stays as the SDK left it";
        }
    }
}

TEST(SoftwareFramePathTest, WithoutGeometryTheSdkFrameIsCopiedWholeAndTheCameraFrameLeft) {
    SoftwareFramePath path;
    const Bytes frame = {1, 2, 3, 4, 5, 6, 7};  // a 2 x 3 picture and a trailing byte
    FrameBuffer target;
    ImageData image{};
    ASSERT_TRUE(path.copyFrom(frame.data(), frame.size(), 2, 3, 1, target, image));
    EXPECT_EQ(received(image), frame);

    Bytes inCamera = frame;
    image.data = inCamera.data();
    ASSERT_TRUE(path.apply(image));
    EXPECT_EQ(image.data, inCamera.data());
}

TEST(SoftwareFramePathTest, ShortFramesAreRefusedAndATooSmallFrameTurnsTheZoomOff) {
    SoftwareFramePath path;
    path.setHorMirror(true);
    const Bytes frame(2 * 3 * 3 - 1);
    FrameBuffer target;
    ImageData image{};
    EXPECT_FALSE(path.copyFrom(frame.data(), frame.size(), 2, 3, 3, target, image));
    EXPECT_FALSE(path.copyFrom(frame.data(), frame.size(), 2, 3, 4, target, image));

    path.setSensorSize(1280, 1024);
    ASSERT_TRUE(path.applyZoomCommand("CameraImageZoomIn"));
    const Bytes small(600 * 400);
    EXPECT_FALSE(path.copyFrom(small.data(), small.size(), 600, 400, 1, target, image));
    EXPECT_EQ(path.zoomLevel(), 0);
    EXPECT_TRUE(path.copyFrom(small.data(), small.size(), 600, 400, 1, target, image));
}

TEST(SoftwareFramePathTest, AFrameTakenThroughCopyFromIsFinishedAndAnyOtherIsApplied) {
    SoftwareFramePath path;
    path.setHorMirror(true);
    const Bytes frame = {1, 2, 3};
    FrameBuffer target;
    ImageData image{};
    path.startFrame();
    ASSERT_TRUE(path.copyFrom(frame.data(), frame.size(), 3, 1, 1, target, image));
    ASSERT_TRUE(path.finishFrame(image));
    EXPECT_EQ(received(image), (Bytes{3, 2, 1})) << "mirrored once, not twice";

    Bytes inCamera = frame;
    image.data = inCamera.data();
    path.startFrame();
    ASSERT_TRUE(path.finishFrame(image));
    EXPECT_EQ(received(image), (Bytes{3, 2, 1}));
}

}  // namespace
}  // namespace telvarra
