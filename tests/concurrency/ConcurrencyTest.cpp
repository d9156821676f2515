// Many threads at once: frames pulled from one camera through the facade and the C entry point,
// two cameras pulled side by side while a mirror is switched, and lines logged from eight
// threads. The ThreadSanitizer leg builds and runs this program alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <iostream>
#include <numeric>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "hikvision/HikVisionFixture.h"
#include "support/Pictures.h"
#include "telvarra/CameraLogger.h"
#include "telvarra/TelvarraC.h"

namespace telvarra::test {
namespace {

// Small frames: the sanitizer makes every instruction slow, and a torn frame shows in any size.
constexpr unsigned int kWidth = 160;
constexpr unsigned int kHeight = 120;

class ConcurrencyTest : public HikVisionTest {
  protected:
    // A mono camera whose frames the test computes on its own.
    sim::PictureCamera monoCamera(const std::string& id) {
        addDevice("id=" + id + " layer=usb3 size=" + std::to_string(kWidth) + "x" +
                  std::to_string(kHeight) + " format=mono8");
        openStreaming(id);
        return pictureOf("HikVision", id, kWidth, kHeight);
    }

    // Empty when `data` holds frame `number` of `picture`, left-right mirrored or not as allowed.
    static std::string mismatch(const sim::PictureCamera& picture, const ImageData& image,
                                const unsigned char* data, bool mirroredToo) {
        const Image expected = deliveredFrame(picture, sim::PixelFormat::Mono8,
                                              static_cast<std::uint32_t>(image.frameNumber));
        const Image received{image.width, image.height, image.channels,
                             Bytes(data, data + std::max(image.dataSize, 0))};
        std::string why = difference(received, expected);
        if (!why.empty() && mirroredToo &&
            difference(received, mirroredLeftRight(expected)).empty())
            why.clear();
        return why;
    }
};

TEST_F(ConcurrencyTest, EightThreadsPullingFromOneCameraGetWholeFramesAndNoneTwice) {
    const sim::PictureCamera picture = monoCamera("ONE");
    constexpr int kThreads = 8, kFramesEach = 25;
    std::vector<std::vector<int32_t>> numbers(kThreads);
    std::atomic<int> refused{0}, torn{0};
    auto pull = [&](int thread) {
        Bytes buffer(kWidth * kHeight);
        const auto size = static_cast<int32_t>(buffer.size());
        for (int i = 0; i < kFramesEach; ++i) {
            ImageData image{};
            // Half the threads through the C++ facade, half through the C entry point.
            const bool delivered =
                thread % 2 == 0 ? facade->getCurrentFrame2("ONE", buffer.data(), size, image, 0)
                                : GetCurrentFrameToBuffer("ONE", buffer.data(), size, &image);
            if (!delivered) {
                ++refused;
                continue;
            }
            if (!mismatch(picture, image, buffer.data(), false).empty()) ++torn;
            numbers[thread].push_back(image.frameNumber);
        }
    };
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) threads.emplace_back(pull, t);
    for (std::thread& thread : threads) thread.join();

    EXPECT_EQ(refused, 0);
    EXPECT_EQ(torn, 0);
    // Every fetch took a frame of its own: the numbers are 1 .. 200, each once.
    std::vector<int32_t> all;
    for (const auto& mine : numbers) all.insert(all.end(), mine.begin(), mine.end());
    std::sort(all.begin(), all.end());
    std::vector<int32_t> expected(kThreads * kFramesEach);
    std::iota(expected.begin(), expected.end(), 1);
    EXPECT_EQ(all, expected);
    unsigned int fromSdk = 0;
    HikSim_FramesDelivered("ONE", &fromSdk);
    EXPECT_EQ(fromSdk, static_cast<unsigned int>(kThreads * kFramesEach));
}

TEST_F(ConcurrencyTest, TwoCamerasOnTwoThreadsEachGetTheirOwnFramesWhileAMirrorIsSwitched) {
    const sim::PictureCamera left = monoCamera("LEFT");
    const sim::PictureCamera right = monoCamera("RIGHT");
    constexpr int kFrames = 60;
    std::atomic<bool> pulling{true};
    std::atomic<int> wrong{0};
    // Frames straight from the camera's own buffer, which only this thread fetches into.
    auto pull = [&](const sim::PictureCamera& picture, bool mirrored) {
        for (int expected = 1; expected <= kFrames; ++expected) {
            ImageData image{};
            if (!facade->getCurrentFrame(picture.id.c_str(), image, 0) ||
                image.frameNumber != expected ||
                !mismatch(picture, image, image.data, mirrored).empty())
                ++wrong;
        }
    };
    // The mirror is set without the frame lock while LEFT's frames go through it.
    std::thread mirror([&] {
        for (bool on = true; pulling; on = !on) {
            facade->setCameraHorMirror("LEFT", on);
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        facade->setCameraHorMirror("LEFT", false);
    });
    std::thread first(pull, std::cref(left), true), second(pull, std::cref(right), false);
    first.join();
    second.join();
    pulling = false;
    mirror.join();
    EXPECT_EQ(wrong, 0);
}

TEST(ConcurrentLoggingTest, EightThreadsLoseTearAndDoubleNoLine) {
    LogCapture capture;
    constexpr int kThreads = 8, kLinesEach = 400;
    std::vector<std::thread> threads;
    ::testing::internal::CaptureStdout();
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < kLinesEach; ++i)
                CameraLogger::getInstance().log(
                    LogLevel::Info,
                    "thread " + std::to_string(t) + " line " + std::to_string(i) + " end");
        });
    }
    for (std::thread& thread : threads) thread.join();
    ::testing::internal::GetCapturedStdout();

    const std::vector<std::string> lines = readLines(capture.path());
    const std::regex whole(
        R"(\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2} \[INFO\] thread \d line \d+ end)");
    std::set<std::string> distinct;
    int torn = 0;
    for (const std::string& line : lines) {
        if (!std::regex_match(line, whole)) {
            ++torn;
            continue;
        }
        distinct.insert(line.substr(line.find("thread")));
    }
    const int sent = kThreads * kLinesEach;
    const int lost = sent - static_cast<int>(distinct.size());
    std::cout << "8 logging threads: " << sent << " lines sent, " << lines.size() << " written, "
              << lost << " lost, " << torn << " torn\n";
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(lost, 0);
    EXPECT_EQ(lines.size(), std::size_t(sent));  // nothing doubled
}

}  // namespace
}  // namespace telvarra::test
