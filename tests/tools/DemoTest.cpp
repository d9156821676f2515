// The README's demo command as a user runs it: it must leave valid pictures of the default rig's
// cameras, each equal to the frame the virtual camera showed.
#include <gtest/gtest.h>

#include "sim/common/TestPattern.h"
#include "support/TempDir.h"
#include "tools/Images.h"
#include "tools/RunProgram.h"

namespace telvarra::test {
namespace {

void expectPicture(const std::string& path, const Image& expected, double jpegTolerance = 0) {
    std::string problem;
    const Image saved = readPicture(path, problem);
    ASSERT_TRUE(problem.empty()) << path << ": " << problem;
    EXPECT_EQ(difference(saved, expected, jpegTolerance), "") << path;
}

// The default rig's cameras, in the order the demo grabs them.
struct DemoCamera {
    const char* id;
    const char* make;
    sim::PixelFormat sensor;
    std::uint32_t width, height;
    // DaHeng cameras deliver Bayer mosaics as they come, on one channel.
    bool mosaicAsSent = false;
    // Canon's live view comes as JPEG files.
    double jpegTolerance = 0;
};
const DemoCamera kCameras[] = {
    // MindVision first: the program asks the colour one for RGB.
    {"MV0001", "MindVision", sim::PixelFormat::Mono8, 1280, 1024},
    {"MV0002", "MindVision", sim::PixelFormat::BayerBG8, 2592, 1944},
    {"DA0001", "HikVision", sim::PixelFormat::BayerRG8, 2448, 2048},
    {"DA0002", "HikVision", sim::PixelFormat::Mono8, 1280, 1024},
    // Dvp: the colour one's BGR is written as RGB.
    {"DV0001", "Dvp", sim::PixelFormat::Mono8, 1280, 1024},
    {"DV0002", "Dvp", sim::PixelFormat::BayerGR8, 2592, 1944},
    {"DH0001", "DaHeng", sim::PixelFormat::Mono8, 1280, 1024, true},
    {"DH0002", "DaHeng", sim::PixelFormat::BayerRG8, 2448, 2048, true},
    {"EOS0001", "Canon", sim::PixelFormat::Rgb8, 960, 640, false, 4},
};

Image savedFrame(const DemoCamera& camera, std::uint32_t frame) {
    const sim::PictureCamera picture{camera.id, camera.make, sim::seedFromId(camera.id),
                                     camera.width, camera.height};
    return camera.mosaicAsSent ? sensorFrame(picture, camera.sensor, frame)
                               : cameraFrame(picture, camera.sensor, frame);
}

TEST(DemoTest, SavesEveryDefaultCameraFramesAsPicturesOfThePatternAndSaysWhatTheyShow) {
    TempDir scratch;
    const std::string output = scratch.file("pictures");
    ScopedEnvironment where("TELVARRA_DEMO_OUTPUT", output);
    const ProgramRun run = runProgram("bash", {TELVARRA_DEMO_SCRIPT}, scratch.path());
    ASSERT_EQ(run.exitCode, 0) << run.out << run.err;
    EXPECT_NE(run.out.find("the pictures are in " + output), std::string::npos) << run.out;
    // What the Canon driver prints of the bodies it finds stays out of the program's output.
    EXPECT_EQ(run.out.find("Camera Index:"), std::string::npos) << run.out;

    for (const DemoCamera& camera : kCameras) {
        const std::string id = camera.id;
        for (std::uint32_t frame = 1; frame <= 3; ++frame) {
            expectPicture(output + "/" + id + "-000" + std::to_string(frame) + ".png",
                          savedFrame(camera, frame), camera.jpegTolerance);
        }
        const std::string shown = "  " + id + "-0001.png .. " + id + "-0003.png show " + id + " (" +
                                  camera.make + ") frames 1 .. 3, upright";
        EXPECT_NE(run.out.find(shown), std::string::npos) << shown << "\n" << run.out;
    }
    // The Canon body's still, the first frame of its own session, at twice live view's size.
    const DemoCamera& canon = kCameras[std::size(kCameras) - 1];
    expectPicture(output + "/EOS0001-still.png",
                  cameraFrame({canon.id, canon.make, sim::seedFromId(canon.id), 2 * canon.width,
                               2 * canon.height},
                              canon.sensor, 1),
                  canon.jpegTolerance);
    EXPECT_NE(run.out.find("EOS0001-still.png: still of 1920 x 1280 colour written to"),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("  EOS0001-still.png shows EOS0001 (Canon) frame 1, upright"),
              std::string::npos)
        << run.out;
    // The first camera listed, turned by its device: a MindVision quarter turn is anticlockwise,
    // which brings the mirrored mark back to the top-left corner.
    expectPicture(output + "/turned/MV0001-0001.png",
                  turnedCounterClockwise(mirroredLeftRight(savedFrame(kCameras[0], 1)), 1));
    EXPECT_NE(run.out.find("  MV0001-0001.png shows MV0001 (MindVision) frame 1, mirrored "
                           "left-right, turned a quarter anticlockwise; the F mark in the "
                           "top-left corner\n"),
              std::string::npos)
        << run.out;
}

}  // namespace
}  // namespace telvarra::test
