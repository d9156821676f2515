// The pieces every simulator shares that tests of a simulator cannot reach whole: test pattern,
// demosaic and the rig file. The device model, call gate, fault plan,
// call log and lent buffers are tested through the HikVision simulator.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "sim/common/ImageOps.h"
#include "sim/common/Rig.h"
#include "sim/common/TestPattern.h"

using namespace telvarra::sim;

namespace {

using Bytes = std::vector<std::uint8_t>;

// Each mosaic written out independently of the code under test: the colours of (0,0), (1,0),
// (0,1), (1,1).
std::uint32_t siteColour(const char* tile, std::uint32_t x, std::uint32_t y) {
    const char colour = tile[(y % 2) * 2 + x % 2];
    return colour == 'R' ? kRed : colour == 'G' ? kGreen : kBlue;
}

struct Mosaic {
    PixelFormat format;
    const char* tile;
};
constexpr Mosaic kMosaics[] = {{PixelFormat::BayerGR8, "GRBG"},
                               {PixelFormat::BayerRG8, "RGGB"},
                               {PixelFormat::BayerGB8, "GBRG"},
                               {PixelFormat::BayerBG8, "BGGR"}};

// ---- Test pattern. ----

TEST(TestPatternTest, RendersEachFormatFromThePatternInItsSampleOrder) {
    constexpr std::uint32_t w = 5, h = 3, seed = 0xA1B2C3D4u, frame = 9;
    Bytes rgb(w * h * 3), bgr(w * h * 3), mono(w * h);
    renderFrame(PixelFormat::Rgb8, seed, frame, w, h, rgb.data());
    renderFrame(PixelFormat::Bgr8, seed, frame, w, h, bgr.data());
    renderFrame(PixelFormat::Mono8, seed, frame, w, h, mono.data());
    for (std::uint32_t y = 0; y < h; ++y) {
        for (std::uint32_t x = 0; x < w; ++x) {
            const std::size_t p = y * w + x;
            for (std::uint32_t c = 0; c < 3; ++c) {
                EXPECT_EQ(rgb[p * 3 + c], patternSample(seed, frame, x, y, c));
                EXPECT_EQ(bgr[p * 3 + 2 - c], patternSample(seed, frame, x, y, c));
            }
            EXPECT_EQ(mono[p], patternSample(seed, frame, x, y, kRed));
        }
    }
    for (const Mosaic& mosaic : kMosaics) {
        Bytes raw(w * h);
        renderFrame(mosaic.format, seed, frame, w, h, raw.data());
        for (std::uint32_t y = 0; y < h; ++y)
            for (std::uint32_t x = 0; x < w; ++x)
                ASSERT_EQ(raw[y * w + x],
                          patternSample(seed, frame, x, y, siteColour(mosaic.tile, x, y)))
                    << formatName(mosaic.format) << " at " << x << "," << y;
    }
}

// ---- Demosaic and conversion. ----

TEST(DemosaicTest, InterpolatesALinearRampExactlyInsideAndCutsTheWindowAtTheEdges) {
    // RGGB mosaic of the ramp 10 * (4y + x + 1): inside, every colour averages to the ramp.
    constexpr std::uint32_t w = 4, h = 4;
    Bytes raw(w * h), rgb(w * h * 3);
    for (std::uint32_t i = 0; i < w * h; ++i) raw[i] = static_cast<std::uint8_t>(10 * (i + 1));
    demosaicBilinear(PixelFormat::BayerRG8, raw.data(), w, h, rgb.data());
    for (std::uint32_t y = 1; y <= 2; ++y)
        for (std::uint32_t x = 1; x <= 2; ++x)
            for (std::uint32_t c = 0; c < 3; ++c)
                EXPECT_EQ(rgb[(y * w + x) * 3 + c], raw[y * w + x]) << x << "," << y << " " << c;
    // (0,0) red site: green from (1,0)=20 and (0,1)=50, blue from (1,1)=60 only.
    EXPECT_EQ(rgb[0], 10);
    EXPECT_EQ(rgb[1], 35);
    EXPECT_EQ(rgb[2], 60);
    // (3,3) blue site: red from (2,2)=110 only, green from (3,2)=120 and (2,3)=150.
    const std::size_t last = (3 * w + 3) * 3;
    EXPECT_EQ(rgb[last], 110);
    EXPECT_EQ(rgb[last + 1], 135);
    EXPECT_EQ(rgb[last + 2], 160);
    // (3,0) green site on the right edge: red from (2,0)=30, blue from (3,1)=80.
    EXPECT_EQ(rgb[3 * 3], 30);
    EXPECT_EQ(rgb[3 * 3 + 1], 40);
    EXPECT_EQ(rgb[3 * 3 + 2], 80);
}


// ---- Rig file. ----

TEST(RigTest, SkipsAndReportsEachBadLineWithItsNumber) {
    const Rig rig = parseRig(
        "hikvision id=A\n"
        "hikvision id=B size=0x10\n"
        "hikvision id=C size=70000x10\n"
        "hikvision id=D size=12by4\n"
        "hikvision id=E format=yuv422\n"
        "hikvision id=F format=mono8 formats=rgb8,bgr8\n"
        "hikvision id=G colour=red\n"
        "hikvision id=H id=H2\n"
        "hikvision user=nobody\n"
        "hikvision id=\"I\n"
        "hikvison id=J\n"
        "hikvision id=A\n"
        "daheng id=A\n"
        "hikvision id=K seed=-1\n"
        "hikvision id=L formats=mono8,\n"
        "hikvision id=M stray\n");
    ASSERT_EQ(rig.devices.size(), 2u);
    EXPECT_EQ(rig.devices[0].device.id, "A");
    EXPECT_EQ(rig.devices[1].device.make, "daheng");  // ids are per make

    const std::vector<std::pair<unsigned, std::string>> expected = {
        {2, "size must be WIDTHxHEIGHT, each 1..65535: 0x10"},
        {3, "size must be WIDTHxHEIGHT, each 1..65535: 70000x10"},
        {4, "size must be WIDTHxHEIGHT, each 1..65535: 12by4"},
        {5, "unknown format: yuv422"},
        {6, "formats must include format mono8"},
        {7, "unknown key: colour"},
        {8, "repeated key: id"},
        {9, "missing id"},
        {10, "unterminated quote"},
        {11, "unknown make: hikvison"},
        {12, "id already used by an earlier hikvision line: A"},
        {14, "seed must be 0..4294967295: -1"},
        {15, "formats must be a comma-separated list of formats: mono8,"},
        {16, "expected key=value: stray"},
    };
    ASSERT_EQ(rig.errors.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(rig.errors[i].line, expected[i].first);
        EXPECT_EQ(rig.errors[i].message, expected[i].second);
    }
    EXPECT_EQ(rig.errors[0].make, "hikvision");
    EXPECT_EQ(rig.errors[9].make, "");  // an unknown make belongs to no simulator
}

}  // namespace
