// Frames through the facade, checked pixel by pixel against the simulator's pattern computed
// here: every format, each mirror, each rotation, both zoom levels and their combinations.
#include <cstring>
#include <memory>

#include "HikVisionFixture.h"
#include "support/Pictures.h"

namespace telvarra::test {
namespace {

struct Geometry {
    const char* name;
    bool horizontal;
    bool vertical;
    int32_t turns;
    int32_t zoom;
};

struct FrameCase {
    sim::PixelFormat format;
    Geometry geometry;
};

void PrintTo(const FrameCase& c, std::ostream* out) {
    *out << sim::formatName(c.format) << "/" << c.geometry.name;
}

// What the camera should deliver: the frame with the geometry applied, then the zoom window.
Image expectedImage(const FrameCase& c, unsigned int seed, unsigned int number, unsigned int width,
                    unsigned int height) {
    Image image = deliveredFrame(c.format, seed, number, width, height);
    if (c.geometry.horizontal) image = mirroredLeftRight(image);
    if (c.geometry.vertical) image = mirroredTopBottom(image);
    if (c.geometry.turns) image = turnedClockwise(image, c.geometry.turns);
    if (c.geometry.zoom) image = zoomed(image, c.geometry.zoom);
    return image;
}

class HikVisionFramesTest : public HikVisionTest,
                            public ::testing::WithParamInterface<FrameCase> {};

TEST_P(HikVisionFramesTest, DeliveredBytesMatchThePattern) {
    const FrameCase& c = GetParam();
    // Wide enough for the first zoom step's 640-pixel window; odd sides catch off-by-ones.
    constexpr unsigned int kWidth = 661, kHeight = 487;
    addDevice("id=FRAMES layer=usb3 size=661x487 format=" + sim::formatName(c.format));
    openStreaming("FRAMES");
    EXPECT_TRUE(facade->setCameraHorMirror("FRAMES", c.geometry.horizontal));
    EXPECT_TRUE(facade->setCameraVerMirror("FRAMES", c.geometry.vertical));
    EXPECT_TRUE(facade->setCameraRotate("FRAMES", c.geometry.turns));
    for (int step = 0; step < c.geometry.zoom; ++step) {
        EXPECT_TRUE(facade->setCameraParameter("FRAMES", "CameraImageZoomIn", "1"));
    }

    for (bool intoCallerBuffer : {false, true}) {
        ImageData image{};
        Bytes callerBuffer(kWidth * kHeight * 3);
        if (intoCallerBuffer) {
            ASSERT_TRUE(facade->getCurrentFrame2("FRAMES", callerBuffer.data(),
                                                 static_cast<int32_t>(callerBuffer.size()), image,
                                                 0));
            EXPECT_EQ(image.data, callerBuffer.data());
        } else {
            ASSERT_TRUE(facade->getCurrentFrame("FRAMES", image, 0));
        }
        const Image expected =
            expectedImage(c, seedOf("FRAMES"), lastSimFrame("FRAMES"), kWidth, kHeight);
        EXPECT_EQ(image.frameNumber, static_cast<int32_t>(lastSimFrame("FRAMES")));
        EXPECT_EQ(image.timestamp % 1000, 0);
        ASSERT_EQ(image.dataSize, static_cast<int32_t>(expected.pixels.size()));
        const Image delivered{image.width, image.height, image.channels,
                              Bytes(image.data, image.data + image.dataSize)};
        EXPECT_EQ(difference(delivered, expected), "")
            << (intoCallerBuffer ? "caller's buffer" : "camera's buffer");
    }
}

std::vector<FrameCase> frameCases() {
    const Geometry geometries[] = {
        {"plain", false, false, 0, 0},          {"mirrorH", true, false, 0, 0},
        {"mirrorV", false, true, 0, 0},         {"rotate1", false, false, 1, 0},
        {"rotate2", false, false, 2, 0},        {"rotate3", false, false, 3, 0},
        {"zoom1", false, false, 0, 1},          {"zoom2", false, false, 0, 2},
        {"mirrorHV_rotate1", true, true, 1, 0}, {"mirrorH_rotate2_zoom2", true, false, 2, 2},
        {"mirrorV_zoom1", false, true, 0, 1},
    };
    std::vector<FrameCase> cases;
    for (auto format : {sim::PixelFormat::Mono8, sim::PixelFormat::Rgb8, sim::PixelFormat::Bgr8,
                        sim::PixelFormat::BayerGR8, sim::PixelFormat::BayerRG8,
                        sim::PixelFormat::BayerGB8, sim::PixelFormat::BayerBG8}) {
        for (const Geometry& geometry : geometries) cases.push_back({format, geometry});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(EveryFormatAndGeometry, HikVisionFramesTest,
                         ::testing::ValuesIn(frameCases()), [](const auto& info) {
                             return sim::formatName(info.param.format) + "_" +
                                    info.param.geometry.name;
                         });

TEST_F(HikVisionTest, ZoomStepsCutTheCentreAndStopAtTheSecondStep) {
    addDevice("id=BIG layer=gige size=1280x1024 format=mono8");
    openStreaming("BIG");
    ImageData image{};
    const std::pair<int32_t, int32_t> sizes[] = {{640, 512}, {320, 256}, {320, 256}};
    for (const auto& [width, height] : sizes) {
        ASSERT_TRUE(facade->setCameraParameter("BIG", "CameraImageZoomIn", ""));
        ASSERT_TRUE(facade->getCurrentFrame("BIG", image, 0));
        EXPECT_EQ(image.width, width);
        EXPECT_EQ(image.height, height);
        EXPECT_EQ(image.dataSize, width * height);
    }
    ASSERT_TRUE(facade->setCameraParameter("BIG", "CameraImageZoomInReturnNormal", ""));
    ASSERT_TRUE(facade->getCurrentFrame("BIG", image, 0));
    EXPECT_EQ(image.width, 1280);
}

TEST_F(HikVisionTest, AFrameTooSmallForTheZoomFailsOnceAndResetsTheZoom) {
    addDevice("id=SMALL layer=gige size=400x400 format=mono8");
    openStreaming("SMALL");
    ASSERT_TRUE(facade->setCameraParameter("SMALL", "CameraImageZoomIn", ""));
    ImageData image{};
    EXPECT_FALSE(facade->getCurrentFrame("SMALL", image, 0));
    EXPECT_TRUE(log.contains("ERROR", "Failed to get current frame from camera: SMALL"));
    ASSERT_TRUE(facade->getCurrentFrame("SMALL", image, 0));
    EXPECT_EQ(image.width, 400);

    addDevice("id=TINY layer=gige size=200x100 format=mono8");
    openStreaming("TINY");
    EXPECT_FALSE(facade->setCameraParameter("TINY", "CameraImageZoomIn", ""));
    EXPECT_FALSE(facade->setCameraParameter("TINY", "CameraImageZoomInReturnNormal", ""));
}

TEST_F(HikVisionTest, FrameCallsNeedAStreamingCameraAndABigEnoughBuffer) {
    addDevice("id=CAM1 layer=usb3 size=64x48 format=rgb8");
    ASSERT_TRUE(facade->openCamera("CAM1", RUVO_CAMERA_HIKVISION));
    ImageData image{};
    Bytes buffer(64 * 48 * 3);
    EXPECT_FALSE(facade->getCurrentFrame("CAM1", image, 0));
    EXPECT_TRUE(log.contains("ERROR", "Camera not streaming: CAM1"));
    EXPECT_TRUE(log.contains("ERROR", "Failed to get current frame from camera: CAM1"));

    ASSERT_TRUE(facade->startCapture("CAM1"));
    EXPECT_FALSE(facade->getCurrentFrame2("CAM1", buffer.data(), 0, image, 0));
    EXPECT_TRUE(log.contains("ERROR", "Invalid buffer provided"));
    const auto oneShort = static_cast<int32_t>(buffer.size() - 1);
    buffer.back() = 0xA5;
    EXPECT_FALSE(facade->getCurrentFrame2("CAM1", buffer.data(), oneShort, image, 0));
    EXPECT_TRUE(log.contains("ERROR", "Buffer too small: CAM1"));
    EXPECT_EQ(buffer.back(), 0xA5);
    EXPECT_TRUE(facade->getCurrentFrame2("CAM1", buffer.data(), oneShort + 1, image, 0));
}

}  // namespace
}  // namespace telvarra::test
