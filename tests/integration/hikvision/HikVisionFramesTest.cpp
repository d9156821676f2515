// HikVision frames through the facade, checked against the simulator's pattern computed here:
// every format the sensors send, the zoom steps and the refusals of the frame calls.
#include <cstring>
#include <memory>

#include "HikVisionFixture.h"
#include "support/Pictures.h"

namespace telvarra::test {
namespace {

// Mono, RGB and BGR as the sensor sends them; each Bayer mosaic converted to RGB. The geometry
// on top of it is the same for every make and is checked by the shared suite.
TEST_F(HikVisionTest, EveryFormatIsDeliveredAsSentOrConvertedToRgb) {
    constexpr unsigned int kWidth = 33, kHeight = 17;  // odd sides catch off-by-ones
    for (auto format : {sim::PixelFormat::Mono8, sim::PixelFormat::Rgb8, sim::PixelFormat::Bgr8,
                        sim::PixelFormat::BayerGR8, sim::PixelFormat::BayerRG8,
                        sim::PixelFormat::BayerGB8, sim::PixelFormat::BayerBG8}) {
        const std::string id = "F_" + sim::formatName(format);
        SCOPED_TRACE(id);
        addDevice("id=" + id + " layer=usb3 size=33x17 format=" + sim::formatName(format));
        openStreaming(id.c_str());
        ImageData image{};
        ASSERT_TRUE(facade->getCurrentFrame(id.c_str(), image, 0));
        const Image expected = deliveredFrame(pictureOf("hikvision", id, kWidth, kHeight), format,
                                              lastFrameNumber(id.c_str()));
        ASSERT_EQ(image.dataSize, static_cast<int32_t>(expected.pixels.size()));
        const Image delivered{image.width, image.height, image.channels,
                              Bytes(image.data, image.data + image.dataSize)};
        EXPECT_EQ(difference(delivered, expected), "");
        EXPECT_EQ(image.timestamp % 1000, 0);
        ASSERT_TRUE(facade->closeCamera(id.c_str()));
    }
}

TEST_F(HikVisionTest, ZoomStepsCutTheCentreAndStopAtTheSecondStep) {
    addDevice("id=BIG layer=gige size=1280x1024 format=mono8");
    openStreaming("BIG");
    ImageData image{};
    const std::pair<int32_t, int32_t> sizes[] = {{640, 512}, {320, 256}, {320, 256}};
    for (const auto& [width, height] : sizes) {
        ASSERT_TRUE(facade->setCameraParameter("BIG", "CameraImageZoomIn", ""));
        ASSERT_TRUE(facade->getCurrentFrame("BIG", image, 0));
        EXPECT_EQ(image.width, width);
        EXPECT_EQ(image.dataSize, width * height);
    }
    ASSERT_TRUE(facade->setCameraParameter("BIG", "CameraImageZoomInReturnNormal", ""));
    ASSERT_TRUE(facade->getCurrentFrame("BIG", image, 0));
    EXPECT_EQ(image.width, 1280);

    // A frame too small for the window is the frame path's (unit tests); a sensor too small is
    // refused.
    addDevice("id=TINY layer=gige size=200x100 format=mono8");
    openStreaming("TINY");
    EXPECT_FALSE(facade->setCameraParameter("TINY", "CameraImageZoomIn", ""));
    EXPECT_FALSE(facade->setCameraParameter("TINY", "CameraImageZoomInReturnNormal", ""));
}

TEST_F(HikVisionTest, FramesIntoACallersBufferNeedABigEnoughOne) {
    addDevice("id=CAM1 layer=usb3 size=64x48 format=rgb8");
    openStreaming("CAM1");
    ImageData image{};
    Bytes buffer(64 * 48 * 3);
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
