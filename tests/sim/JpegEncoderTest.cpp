// JPEG files of test-pattern frames decode, with stb_image, to pictures close to the frames.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "sim/common/JpegEncoder.h"
#include "sim/common/TestPattern.h"

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_JPEG
#define STBI_NO_STDIO
#include <stb/stb_image.h>

using namespace telvarra::sim;

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Decoded {
    int width = 0;
    int height = 0;
    int components = 0;  // as the file holds them
    Bytes pixels;        // in the components asked for
};

Decoded decode(const Bytes& file, int components) {
    Decoded image;
    stbi_uc* pixels =
        stbi_load_from_memory(file.data(), static_cast<int>(file.size()), &image.width,
                              &image.height, &image.components, components);
    if (pixels) {
        image.pixels.assign(pixels, pixels + image.width * image.height * components);
        stbi_image_free(pixels);
    }
    return image;
}

double meanDifference(const Bytes& a, const Bytes& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += std::abs(int{a[i]} - int{b[i]});
    return sum / static_cast<double>(a.size());
}

TEST(JpegEncoderTest, ColourAndMonoFramesRoundTripWithinTheLossOfTheirQuality) {
    // Odd sides, so that partial blocks and chroma subsampling at the edges are covered.
    constexpr std::uint32_t w = 77, h = 45;
    for (const PixelFormat format : {PixelFormat::Rgb8, PixelFormat::Mono8}) {
        Bytes frame(frameBytes(format, w, h));
        renderFrame({"J1", "hikvision", 0x12345678u, w, h}, format, 3, w, h, frame.data());
        const Bytes file = encodeJpeg(format, frame.data(), w, h, 95);
        ASSERT_GE(file.size(), 4u);
        EXPECT_EQ(file[0], 0xFF);  // start of image
        EXPECT_EQ(file[1], 0xD8);
        const int components = static_cast<int>(bytesPerPixel(format));
        const Decoded image = decode(file, components);
        ASSERT_EQ(image.width, static_cast<int>(w));
        ASSERT_EQ(image.height, static_cast<int>(h));
        EXPECT_EQ(image.components, 3);  // YCbCr, grey too
        EXPECT_LT(meanDifference(image.pixels, frame), 4.0) << formatName(format);

        // A lower quality loses more and takes fewer bytes.
        const Bytes rough = encodeJpeg(format, frame.data(), w, h, 10);
        EXPECT_LT(rough.size(), file.size());
        EXPECT_GT(meanDifference(decode(rough, components).pixels, frame),
                  meanDifference(image.pixels, frame));
    }
}

TEST(JpegEncoderTest, RefusesWhatAJpegFileCannotHold) {
    const Bytes pixels(3 * 4 * 4, 128);
    EXPECT_TRUE(encodeJpeg(PixelFormat::Bgr8, pixels.data(), 4, 4, 90).empty());
    EXPECT_TRUE(encodeJpeg(PixelFormat::BayerRG8, pixels.data(), 4, 4, 90).empty());
    EXPECT_TRUE(encodeJpeg(PixelFormat::Rgb8, pixels.data(), 0, 4, 90).empty());
    EXPECT_TRUE(encodeJpeg(PixelFormat::Mono8, pixels.data(), 70000, 1, 90).empty());
    EXPECT_TRUE(encodeJpeg(PixelFormat::Rgb8, nullptr, 4, 4, 90).empty());
    // Quality 0 is the lowest, not stb's default of 90.
    EXPECT_EQ(encodeJpeg(PixelFormat::Rgb8, pixels.data(), 4, 4, 0),
              encodeJpeg(PixelFormat::Rgb8, pixels.data(), 4, 4, 1));
}

}  // namespace
