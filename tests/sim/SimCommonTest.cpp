// The pieces every simulator shares that the integration tests cannot check on their own, since
// their expected pictures come from the same code: mosaic sites, an asymmetric mark, buffer
// bounds, rig errors and event pumping.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "sim/common/EventQueue.h"
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

Bytes render(const PictureCamera& camera, PixelFormat format, std::uint32_t frame) {
    Bytes out(frameBytes(format, camera.width, camera.height));
    renderFrame(camera, format, frame, camera.width, camera.height, out.data());
    return out;
}

// Frames of other formats are the Rgb8 picture's channels: a swapped mosaic here would be
// swapped alike in the expected pictures of every integration test.
TEST(TestPatternTest, EveryFormatIsTheColourPictureReorderedOrSampledAtItsMosaicSites) {
    const PictureCamera camera{"P1", "hikvision", 0xA1B2C3D4u, 661, 487};
    const Bytes rgb = render(camera, PixelFormat::Rgb8, 9);
    const Bytes bgr = render(camera, PixelFormat::Bgr8, 9);
    const Bytes mono = render(camera, PixelFormat::Mono8, 9);
    const std::size_t pixels = std::size_t{camera.width} * camera.height;
    for (std::size_t p = 0; p < pixels; ++p) {
        for (std::uint32_t c = 0; c < 3; ++c) ASSERT_EQ(bgr[p * 3 + 2 - c], rgb[p * 3 + c]) << p;
        ASSERT_EQ(mono[p], rgb[p * 3]) << p;
    }
    for (const Mosaic& mosaic : kMosaics) {
        const Bytes raw = render(camera, mosaic.format, 9);
        for (std::uint32_t y = 0; y < camera.height; ++y)
            for (std::uint32_t x = 0; x < camera.width; ++x)
                ASSERT_EQ(raw[y * camera.width + x],
                          rgb[(y * camera.width + x) * 3 + siteColour(mosaic.tile, x, y)])
                    << formatName(mosaic.format) << " at " << x << "," << y;
    }
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

    // Every mirror or turn but the identity: the mirrored mark under none to three quarter turns,
    // and the unmirrored one under one to three (top-bottom is mirrored and half turned).
    Bytes mirrored(mark.size());
    flipHorizontal(mark.data(), side, side, 1, mirrored.data());
    for (const bool mirror : {false, true}) {
        for (std::uint32_t turns = mirror ? 0 : 1; turns < 4; ++turns) {
            Bytes transformed(mark.size());
            rotateClockwise((mirror ? mirrored : mark).data(), side, side, 1, turns,
                            transformed.data());
            EXPECT_FALSE(transformed == mark) << (mirror ? "mirrored, " : "") << turns << " turns";
        }
    }
}

// Sizes the integration tests do not use but a rig file may: too small for the overlay, long and
// thin, and regions that cut through the overlay with a long label.
TEST(TestPatternTest, RegionsOfAnySizeStayInsideTheirBuffer) {
    const struct {
        std::uint32_t sensorWidth, sensorHeight, width, height;
        PixelFormat format;
    } cases[] = {{1, 1, 1, 1, PixelFormat::Rgb8},
                 {65535, 48, 65535, 48, PixelFormat::Rgb8},
                 {300, 300, 40, 3, PixelFormat::BayerGB8},
                 {2448, 2048, 2448, 100, PixelFormat::Mono8}};
    constexpr std::size_t guard = 64;
    for (const auto& c : cases) {
        const PictureCamera camera{"A-LONG-IDENTIFIER-THAT-RUNS-PAST-THE-EDGE", "hikvision", 5,
                                   c.sensorWidth, c.sensorHeight};
        Bytes buffer(frameBytes(c.format, c.width, c.height) + 2 * guard, 0xA5);
        renderFrame(camera, c.format, 4294967295u, c.width, c.height, buffer.data() + guard);
        const Bytes untouched(guard, 0xA5);
        EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + guard), untouched) << c.sensorWidth;
        EXPECT_EQ(Bytes(buffer.end() - guard, buffer.end()), untouched) << c.sensorWidth;
    }
}

// ---- Rig file. ----

TEST(RigTest, SkipsAndReportsEachBadLineWithItsNumber) {
    const Rig rig = parseRig(
        "hikvision id=A\n"
        "hikvision id=B size=70000x10\n"
        "hikvision id=G colour=red\n"
        "hikvison id=J\n"
        "hikvision id=A\n"
        "daheng id=A\n"
        "hikvision id=M stray\n");
    ASSERT_EQ(rig.devices.size(), 2u);
    EXPECT_EQ(rig.devices[1].device.make, "daheng");  // ids are per make

    const std::vector<std::pair<unsigned, std::string>> expected = {
        {2, "size must be WIDTHxHEIGHT, each 1..65535: 70000x10"},
        {3, "unknown key: colour"},
        {4, "unknown make: hikvison"},
        {5, "id already used by an earlier hikvision line: A"},
        {7, "expected key=value: stray"},
    };
    ASSERT_EQ(rig.errors.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(rig.errors[i].line, expected[i].first);
        EXPECT_EQ(rig.errors[i].message, expected[i].second);
    }
    EXPECT_EQ(rig.errors[0].make, "hikvision");
    EXPECT_EQ(rig.errors[2].make, "");  // an unknown make belongs to no simulator
}

// ---- Events. ----

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

}  // namespace
