// The platform's JPEG decoder on files our encoder wrote: colour and grey pictures come back
// close to what was encoded, and anything that is not a whole JPEG file is refused with a reason
// and the picture left alone.
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "platform/JpegDecoder.h"
#include "sim/common/JpegEncoder.h"

namespace telvarra::platform {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Smooth ramps in three directions, with a sharp edge down the middle.
Bytes rgbPattern(std::uint32_t width, std::uint32_t height) {
    Bytes pixels;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            pixels.push_back(static_cast<std::uint8_t>(x * 255 / width));
            pixels.push_back(static_cast<std::uint8_t>(y * 255 / height));
            pixels.push_back(x < width / 2 ? 40 : 220);
        }
    }
    return pixels;
}

// The mean absolute difference per sample: JPEG is lossy, and two decoders may round apart.
double meanDifference(const Bytes& a, const std::vector<unsigned char>& b) {
    double total = 0;
    for (std::size_t i = 0; i < a.size(); ++i) total += std::abs(int(a[i]) - int(b[i]));
    return total / double(a.size());
}

TEST(JpegDecoderTest, DecodesColourAndGreyFilesCloseToWhatWasEncoded) {
    const std::uint32_t width = 96, height = 40;  // not a multiple of the 16-pixel blocks
    const Bytes rgb = rgbPattern(width, height);
    const Bytes file = sim::encodeJpeg(sim::PixelFormat::Rgb8, rgb.data(), width, height, 95);
    ASSERT_FALSE(file.empty());
    RgbPicture picture;
    std::string problem;
    ASSERT_TRUE(decodeJpeg(file.data(), file.size(), picture, problem)) << problem;
    EXPECT_EQ(picture.width, 96);
    EXPECT_EQ(picture.height, 40);
    ASSERT_EQ(picture.pixels.size(), rgb.size());
    EXPECT_LT(meanDifference(rgb, picture.pixels), 6.0);

    Bytes grey(std::size_t(width) * height);
    for (std::size_t i = 0; i < grey.size(); ++i) grey[i] = rgb[i * 3];
    const Bytes greyFile = sim::encodeJpeg(sim::PixelFormat::Mono8, grey.data(), width, height, 95);
    ASSERT_TRUE(decodeJpeg(greyFile.data(), greyFile.size(), picture, problem)) << problem;
    Bytes greyAsRgb(grey.size() * 3);
    for (std::size_t i = 0; i < grey.size(); ++i)
        greyAsRgb[i * 3] = greyAsRgb[i * 3 + 1] = greyAsRgb[i * 3 + 2] = grey[i];
    EXPECT_LT(meanDifference(greyAsRgb, picture.pixels), 6.0);
}

TEST(JpegDecoderTest, RefusesWhatIsNotAWholeJpegFileAndKeepsThePicture) {
    const Bytes rgb = rgbPattern(32, 32);
    const Bytes file = sim::encodeJpeg(sim::PixelFormat::Rgb8, rgb.data(), 32, 32, 90);
    RgbPicture picture;
    std::string problem;
    ASSERT_TRUE(decodeJpeg(file.data(), file.size(), picture, problem)) << problem;
    const std::vector<unsigned char> before = picture.pixels;

    const Bytes notJpeg(500, 0x42);
    const Bytes headOnly(file.begin(), file.begin() + 20);
    struct {
        const unsigned char* data;
        std::size_t size;
        const char* what;
    } refused[] = {{nullptr, 10, "null"},
                   {file.data(), 0, "empty"},
                   {notJpeg.data(), notJpeg.size(), "not a JPEG file"},
                   {headOnly.data(), headOnly.size(), "cut after its start"}};
    for (const auto& bad : refused) {
        problem.clear();
        EXPECT_FALSE(decodeJpeg(bad.data, bad.size, picture, problem)) << bad.what;
        EXPECT_FALSE(problem.empty()) << bad.what;
        EXPECT_EQ(picture.pixels, before) << bad.what;
        EXPECT_EQ(picture.width, 32) << bad.what;
    }
    // A picture larger than the caller allows is refused before it is decoded.
    EXPECT_FALSE(decodeJpeg(file.data(), file.size(), picture, problem, 32 * 31));
    EXPECT_NE(problem.find("32 x 32"), std::string::npos) << problem;
}

}  // namespace
}  // namespace telvarra::platform
