// The pieces every simulator shares that tests of a simulator cannot reach whole: test picture,
// demosaic, rig file, event pumping and JPEG refusals. Frame memory, the device model, call gate,
// fault plan and call log are tested through the simulators that use them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "sim/common/EventQueue.h"
#include "sim/common/ImageOps.h"
#include "sim/common/JpegEncoder.h"
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

constexpr PixelFormat kFormats[] = {
    PixelFormat::Mono8,    PixelFormat::Rgb8,     PixelFormat::Bgr8,    PixelFormat::BayerGR8,
    PixelFormat::BayerRG8, PixelFormat::BayerGB8, PixelFormat::BayerBG8};

Bytes render(const PictureCamera& camera, PixelFormat format, std::uint32_t frame) {
    Bytes out(frameBytes(format, camera.width, camera.height));
    renderFrame(camera, format, frame, camera.width, camera.height, out.data());
    return out;
}

bool inside(const PictureBox& box, std::uint32_t x, std::uint32_t y) {
    return x >= box.left && x < box.left + box.width && y >= box.top && y < box.top + box.height;
}

// The label read back the way a person reads it: each character cell sampled in the middle of
// its font pixels, white where every channel is light, and matched against the whole font.
std::vector<std::string> readLabel(const Bytes& pixels, std::uint32_t width, std::uint32_t channels,
                                   const PictureLayout& layout) {
    const std::uint64_t unit = layout.unit;
    const std::uint64_t cells = (layout.label.width / unit - 3) / 6;
    std::vector<std::string> lines;
    for (std::uint64_t line = 0; line < 3; ++line) {
        std::string text;
        for (std::uint64_t cell = 0; cell < cells; ++cell) {
            Glyph seen{};
            for (std::uint64_t row = 0; row < 7; ++row) {
                for (std::uint64_t column = 0; column < 5; ++column) {
                    const std::uint64_t x = layout.textLeft + (cell * 6 + column) * unit + unit / 2;
                    const std::uint64_t y = layout.textTop + (line * 8 + row) * unit + unit / 2;
                    bool white = true;
                    for (std::uint32_t c = 0; c < channels; ++c)
                        white = white && pixels[(y * width + x) * channels + c] > 127;
                    if (white) seen[row] |= static_cast<std::uint8_t>(0x10u >> column);
                }
            }
            char read = '~';
            for (const char candidate : fontCharacters())
                if (glyphOf(candidate) == seen) read = candidate;
            text += read;
        }
        lines.push_back(text.substr(0, text.find_last_not_of(' ') + 1));
    }
    return lines;
}

TEST(TestPatternTest, EveryFormatShowsOnePictureOverThePatternAndTinySensorsThePatternAlone) {
    constexpr std::uint32_t seed = 0xA1B2C3D4u, frame = 9;
    for (const PictureCamera& camera :
         {PictureCamera{"P1", "hikvision", seed, 661, 487},
          PictureCamera{"P2", "dvp", seed, 63, 48}, PictureCamera{"P3", "dvp", seed, 5, 3}}) {
        SCOPED_TRACE(camera.id);
        const PictureLayout layout = pictureLayout(camera, frame);
        EXPECT_EQ(layout.drawn, camera.width >= 64);
        const Bytes rgb = render(camera, PixelFormat::Rgb8, frame);
        const Bytes bgr = render(camera, PixelFormat::Bgr8, frame);
        const Bytes mono = render(camera, PixelFormat::Mono8, frame);
        std::size_t overlaid = 0;
        for (std::uint32_t y = 0; y < camera.height; ++y) {
            for (std::uint32_t x = 0; x < camera.width; ++x) {
                const std::size_t p = std::size_t{y} * camera.width + x;
                const bool overlay =
                    layout.drawn && (inside(layout.mark, x, y) || inside(layout.label, x, y) ||
                                     inside(layout.block, x, y));
                overlaid += overlay;
                for (std::uint32_t c = 0; c < 3; ++c) {
                    const std::uint8_t sample = rgb[p * 3 + c];
                    if (overlay) {
                        ASSERT_TRUE(sample == 0 || sample == 255) << x << "," << y;
                        ASSERT_EQ(sample, rgb[p * 3]) << "grey at " << x << "," << y;
                    } else {
                        ASSERT_EQ(sample, patternSample(seed, frame, x, y, c)) << x << "," << y;
                    }
                    ASSERT_EQ(bgr[p * 3 + 2 - c], sample);
                }
                ASSERT_EQ(mono[p], rgb[p * 3]);
            }
        }
        EXPECT_EQ(overlaid > 0, layout.drawn);
        for (const Mosaic& mosaic : kMosaics) {
            const Bytes raw = render(camera, mosaic.format, frame);
            for (std::uint32_t y = 0; y < camera.height; ++y)
                for (std::uint32_t x = 0; x < camera.width; ++x)
                    ASSERT_EQ(raw[y * camera.width + x],
                              rgb[(y * camera.width + x) * 3 + siteColour(mosaic.tile, x, y)])
                        << formatName(mosaic.format) << " at " << x << "," << y;
        }
    }
}

TEST(TestPatternTest, TheLabelReadsIdMakeAndFrameInColourGreyAndDemosaicedMosaics) {
    // 600 pixels high: 3-pixel font pixels, whose middles a demosaic leaves pure.
    const PictureCamera camera{"Cam-7/b", "mindvision", 99, 640, 600};
    for (const std::uint32_t frame : {12u, 13u, 4294967295u}) {
        const PictureLayout layout = pictureLayout(camera, frame);
        ASSERT_EQ(layout.unit, 3u);
        const std::vector<std::string> expected = {"CAM-7/B", "MINDVISION",
                                                   "FRAME " + std::to_string(frame)};
        EXPECT_EQ(pictureLabel(camera, frame), expected);
        EXPECT_EQ(readLabel(render(camera, PixelFormat::Rgb8, frame), 640, 3, layout), expected);
        EXPECT_EQ(readLabel(render(camera, PixelFormat::Mono8, frame), 640, 1, layout), expected);
        for (const Mosaic& mosaic : kMosaics) {
            Bytes rgb(640 * 600 * 3);
            demosaicBilinear(mosaic.format, render(camera, mosaic.format, frame).data(), 640, 600,
                             rgb.data());
            EXPECT_EQ(readLabel(rgb, 640, 3, layout), expected) << formatName(mosaic.format);
        }
    }
    EXPECT_EQ(pictureLabel({"a\tb", "", 0, 640, 600}, 1)[0], "A?B");
}

TEST(TestPatternTest, TheMarkLooksDifferentUnderEveryMirrorAndTurn) {
    const PictureCamera camera{"M1", "daheng", 1, 400, 300};
    const PictureLayout layout = pictureLayout(camera, 1);
    ASSERT_EQ(layout.mark.width, layout.mark.height);
    const auto side = static_cast<std::uint32_t>(layout.mark.width);
    const auto markOf = [&](std::uint32_t seed, std::uint32_t frame) {
        const Bytes picture = render({"M1", "daheng", seed, 400, 300}, PixelFormat::Mono8, frame);
        Bytes mark(std::size_t{side} * side);
        cropImage(picture.data(), 400, 1, static_cast<std::uint32_t>(layout.mark.left),
                  static_cast<std::uint32_t>(layout.mark.top), side, side, mark.data());
        return mark;
    };
    const Bytes mark = markOf(1, 1);
    EXPECT_TRUE(markOf(77, 8) == mark) << "the mark hides the pattern under it";

    const auto flipped = [&](const Bytes& in) {
        Bytes out(in.size());
        flipHorizontal(in.data(), side, side, 1, out.data());
        return out;
    };
    const auto turned = [&](const Bytes& in, std::uint32_t turns) {
        Bytes out(in.size());
        rotateClockwise(in.data(), side, side, 1, turns, out.data());
        return out;
    };
    Bytes upsideDown(mark.size());
    flipVertical(mark.data(), side, side, 1, upsideDown.data());
    const std::pair<const char*, Bytes> transforms[] = {
        {"left-right", flipped(mark)},
        {"top-bottom", upsideDown},
        {"quarter", turned(mark, 1)},
        {"half", turned(mark, 2)},
        {"three quarters", turned(mark, 3)},
        {"left-right, quarter", turned(flipped(mark), 1)},
        {"left-right, three quarters", turned(flipped(mark), 3)},
    };
    for (const auto& [name, transformed] : transforms) EXPECT_FALSE(transformed == mark) << name;
}

TEST(TestPatternTest, RegionsOfAnySizeStayInsideTheirBufferAndCropTheWholePicture) {
    struct Case {
        std::uint32_t sensorWidth, sensorHeight, width, height;
        PixelFormat format;
    };
    const Case cases[] = {
        // Whole frames: too small for the overlay, the smallest with it, long and thin ones.
        {1, 1, 1, 1, PixelFormat::Rgb8},
        {4, 4, 4, 4, PixelFormat::BayerRG8},
        {64, 48, 64, 48, PixelFormat::Bgr8},
        {65535, 48, 65535, 48, PixelFormat::Rgb8},
        {6000, 6000, 6000, 6000, PixelFormat::Mono8},
        // Regions of a larger sensor that cut through the overlay.
        {300, 300, 1, 1, PixelFormat::Rgb8},
        {300, 300, 40, 3, PixelFormat::BayerGB8},
        {2448, 2048, 25, 25, PixelFormat::Rgb8},
        {2448, 2048, 2448, 100, PixelFormat::Mono8},
    };
    constexpr std::size_t guard = 64;
    for (const Case& c : cases) {
        const PictureCamera camera{"A-LONG-IDENTIFIER-THAT-RUNS-PAST-THE-EDGE", "hikvision", 5,
                                   c.sensorWidth, c.sensorHeight};
        const std::size_t bytes = frameBytes(c.format, c.width, c.height);
        for (const std::uint32_t frame : {1u, 4294967295u}) {
            Bytes buffer(bytes + 2 * guard, 0xA5);
            renderFrame(camera, c.format, frame, c.width, c.height, buffer.data() + guard);
            const auto untouched = [](auto begin, auto end) {
                return std::all_of(begin, end, [](std::uint8_t b) { return b == 0xA5; });
            };
            EXPECT_TRUE(untouched(buffer.begin(), buffer.begin() + guard))
                << c.sensorWidth << "x" << c.sensorHeight << " frame " << frame;
            EXPECT_TRUE(untouched(buffer.end() - guard, buffer.end()))
                << c.sensorWidth << "x" << c.sensorHeight << " frame " << frame;
        }
    }

    // A region from the sensor's corner is the corner of the whole picture, overlay and all.
    const PictureCamera camera{"CROP1", "daheng", 3, 661, 487};
    const Bytes whole = render(camera, PixelFormat::Rgb8, 4);
    Bytes region(300 * 200 * 3), corner(300 * 200 * 3);
    renderFrame(camera, PixelFormat::Rgb8, 4, 300, 200, region.data());
    cropImage(whole.data(), 661, 3, 0, 0, 300, 200, corner.data());
    EXPECT_EQ(region, corner);
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

// ---- Events and JPEG files. ----

void record(const std::string& event, void* context) {
    static_cast<std::vector<std::string>*>(context)->push_back(event);
}

// Delivery in order, per source and kind, is seen through the Canon simulator; what a handler
// raises and a source that goes away are not.
TEST(EventQueueTest, WhatAHandlerPostsWaitsForTheNextPumpAndAGoneSourceGetsNothing) {
    constexpr std::uint32_t kObject = 0x200;
    EventQueue<std::string> queue;
    int camera = 0, gone = 0;
    std::vector<std::string> heard, goneHeard;
    // Like a host that downloads in its handler, which raises the next event.
    queue.setHandler(
        &camera, kObject,
        [&](const std::string& event, void* context) {
            record(event, context);
            if (event == "first") queue.post(&camera, kObject, "raised by the handler");
            EXPECT_EQ(queue.pump(), 0u);  // nested pumps deliver nothing
        },
        &heard);
    queue.setHandler(&gone, kObject, record, &goneHeard);
    queue.post(&camera, kObject, "first");
    queue.post(&gone, kObject, "queued before the camera went");
    queue.post(&camera, kObject, "second");
    queue.forget(&gone);
    EXPECT_EQ(queue.pump(), 2u);
    EXPECT_EQ(heard, (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(queue.pump(), 1u);
    EXPECT_EQ(heard.back(), "raised by the handler");
    EXPECT_TRUE(goneHeard.empty());
}

// Colour round trips are decoded and compared with the pattern in the Canon camera tests.
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
    EXPECT_FALSE(encodeJpeg(PixelFormat::Mono8, pixels.data(), 4, 4, 90).empty());
}

}  // namespace
