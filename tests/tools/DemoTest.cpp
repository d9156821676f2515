// The README's demo command as a user runs it: it must leave valid pictures of the default rig's
// cameras, each equal to the frame the virtual camera showed.
#include <gtest/gtest.h>

#include "sim/common/TestPattern.h"
#include "support/TempDir.h"
#include "tools/Images.h"
#include "tools/RunProgram.h"

namespace telvarra::test {
namespace {

void expectPicture(const std::string& path, const Image& expected) {
    std::string problem;
    const Image saved = readPng(path, problem);
    ASSERT_TRUE(problem.empty()) << path << ": " << problem;
    EXPECT_EQ(difference(saved, expected), "") << path;
}

TEST(DemoTest, SavesEveryDefaultCameraFramesAsPicturesOfThePattern) {
    TempDir scratch;
    const std::string output = scratch.file("pictures");
    ScopedEnvironment where("TELVARRA_DEMO_OUTPUT", output);
    const ProgramRun run = runProgram("bash", {TELVARRA_DEMO_SCRIPT}, scratch.path());
    ASSERT_EQ(run.exitCode, 0) << run.out << run.err;
    EXPECT_NE(run.out.find("the pictures are in " + output), std::string::npos) << run.out;

    const std::uint32_t colourSeed = sim::seedFromId("DA0001");
    const std::uint32_t monoSeed = sim::seedFromId("DA0002");
    for (std::uint32_t frame = 1; frame <= 3; ++frame) {
        const std::string number = "000" + std::to_string(frame);
        expectPicture(output + "/DA0001-" + number + ".png",
                      cameraFrame(sim::PixelFormat::BayerRG8, colourSeed, frame, 2448, 2048));
        expectPicture(output + "/DA0002-" + number + ".png",
                      cameraFrame(sim::PixelFormat::Mono8, monoSeed, frame, 1280, 1024));
    }
    // DaHeng cameras deliver Bayer mosaics as they come, on one channel.
    for (std::uint32_t frame = 1; frame <= 3; ++frame) {
        const std::string number = "000" + std::to_string(frame);
        expectPicture(
            output + "/DH0001-" + number + ".png",
            sensorFrame(sim::PixelFormat::Mono8, sim::seedFromId("DH0001"), frame, 1280, 1024));
        expectPicture(
            output + "/DH0002-" + number + ".png",
            sensorFrame(sim::PixelFormat::BayerRG8, sim::seedFromId("DH0002"), frame, 2448, 2048));
    }
    // MindVision cameras, listed first: the program asks the colour one for RGB.
    const std::uint32_t mindVisionMonoSeed = sim::seedFromId("MV0001");
    for (std::uint32_t frame = 1; frame <= 3; ++frame) {
        const std::string number = "000" + std::to_string(frame);
        expectPicture(output + "/MV0001-" + number + ".png",
                      cameraFrame(sim::PixelFormat::Mono8, mindVisionMonoSeed, frame, 1280, 1024));
        expectPicture(
            output + "/MV0002-" + number + ".png",
            cameraFrame(sim::PixelFormat::BayerBG8, sim::seedFromId("MV0002"), frame, 2592, 1944));
    }
    // Dvp cameras: the colour one's BGR is written as RGB.
    for (std::uint32_t frame = 1; frame <= 3; ++frame) {
        const std::string number = "000" + std::to_string(frame);
        expectPicture(
            output + "/DV0001-" + number + ".png",
            cameraFrame(sim::PixelFormat::Mono8, sim::seedFromId("DV0001"), frame, 1280, 1024));
        expectPicture(
            output + "/DV0002-" + number + ".png",
            cameraFrame(sim::PixelFormat::BayerGR8, sim::seedFromId("DV0002"), frame, 2592, 1944));
    }
    // The first camera listed, turned by its device: a MindVision quarter turn is anticlockwise.
    const Image first = cameraFrame(sim::PixelFormat::Mono8, mindVisionMonoSeed, 1, 1280, 1024);
    expectPicture(output + "/turned/MV0001-0001.png",
                  turnedCounterClockwise(mirroredLeftRight(first), 1));
}

}  // namespace
}  // namespace telvarra::test
