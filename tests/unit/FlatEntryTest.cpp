#include <gtest/gtest.h>

#include "support/CurrentDirectory.h"
#include "support/FakeRegistry.h"
#include "support/LogCapture.h"
#include "telvarra/CameraPublicInterface.h"
#include "telvarra/TelvarraC.h"

using namespace telvarra::test;

namespace {

class FlatEntryTest : public ::testing::Test {
  protected:
    FakeDrivers& fakes = fakeDrivers();
    InTempDirectory directory;
    LogCapture log;

    void SetUp() override { fakes.alpha.deviceIds = {"cam"}; }
    void TearDown() override {
        CleanupCameraSystem();
        fakes.reset();
    }
    FakeCamera& openAndStart() {
        EXPECT_TRUE(InitializeCameraSystemByType(kAlphaType));
        auto* facade = static_cast<CameraPublicInterface*>(CreateCameraManager());
        EXPECT_TRUE(facade->openCamera("cam", kAlphaType));
        EXPECT_TRUE(facade->startCapture("cam"));
        return *fakes.alpha.lastCreated;
    }
};

TEST_F(FlatEntryTest, NullPointersAreRefusedSilently) {
    FakeCamera& camera = openAndStart();
    const auto lines = log.entries().size();
    ImageData image{};
    unsigned char buffer[16];
    EXPECT_FALSE(GetCurrentFrame(nullptr, &image));
    EXPECT_FALSE(GetCurrentFrame("cam", nullptr));
    EXPECT_FALSE(GetCurrentFrameToBuffer(nullptr, buffer, sizeof buffer, &image));
    EXPECT_FALSE(GetCurrentFrameToBuffer("cam", nullptr, sizeof buffer, &image));
    EXPECT_FALSE(GetCurrentFrameToBuffer("cam", buffer, sizeof buffer, nullptr));
    ReleaseImageData(nullptr);
    DestroyCameraManager(nullptr);
    EXPECT_EQ(camera.calls["getCurrentFrame"] + camera.calls["getCurrentFrameToBuffer"], 0);
    EXPECT_EQ(log.entries().size(), lines);
    EXPECT_TRUE(CameraPublicInterface::getInstance()->isCameraConnected("cam"));
}

// Building a facade registers the standard drivers again, which the process-wide registry
// refuses with a warning: the one visible trace of a construction.
bool facadeWasBuilt(const LogCapture& log) {
    return log.contains("WARNING", "Driver already registered for type: 2");
}

TEST_F(FlatEntryTest, RefusedFrameCallsBuildNoFacade) {
    CreateCameraManager();  // the registry is filled once
    CleanupCameraSystem();
    {
        LogCapture quiet;
        ImageData image{};
        unsigned char buffer[4];
        EXPECT_FALSE(GetCurrentFrame(nullptr, &image));
        EXPECT_FALSE(GetCurrentFrame("cam", nullptr));
        EXPECT_FALSE(GetCurrentFrameToBuffer("cam", buffer, 4, nullptr));
        ReleaseImageData(nullptr);
        DestroyCameraManager(nullptr);
        EXPECT_FALSE(facadeWasBuilt(quiet));
    }
    LogCapture built;
    ImageData image{};
    ReleaseImageData(&image);  // creates the facade as a side effect
    EXPECT_TRUE(facadeWasBuilt(built));
}

TEST_F(FlatEntryTest, FramesGoThroughTheSingletonWithATrailingZero) {
    FakeCamera& camera = openAndStart();
    ImageData image{};
    ASSERT_TRUE(GetCurrentFrame("cam", &image));
    EXPECT_EQ(camera.lastOption, 0);
    EXPECT_EQ(image.data, camera.frame.data());

    unsigned char buffer[FakeCamera::kFrameWidth * FakeCamera::kFrameHeight];
    camera.lastOption = -1;
    ASSERT_TRUE(GetCurrentFrameToBuffer("cam", buffer, sizeof buffer, &image));
    EXPECT_EQ(camera.lastOption, 0);
    EXPECT_EQ(image.data, buffer);
    EXPECT_EQ(buffer[1], 21);

    EXPECT_FALSE(GetCurrentFrameToBuffer("cam", buffer, 3, &image));
    EXPECT_FALSE(GetCurrentFrame("ghost", &image));
    EXPECT_TRUE(log.contains("ERROR", "Camera not opened: ghost"));
}

TEST_F(FlatEntryTest, DestroyCleansTheFacadeAndAFreshOneStartsFromNothing) {
    openAndStart();
    void* handle = CreateCameraManager();
    DestroyCameraManager(handle);
    EXPECT_TRUE(fakes.alpha.live.empty());
    EXPECT_FALSE(fakes.alpha.initialized);

    EXPECT_TRUE(InitializeCameraSystem());
    EXPECT_FALSE(CameraPublicInterface::getInstance()->isCameraConnected("cam"));
    DestroyCameraManager(handle);  // a stale handle: the live facade is released, nothing else
    EXPECT_TRUE(InitializeCameraSystemByType(kAlphaType));

    // With no facade live, a stale handle builds none (whose drivers would log registering).
    CleanupCameraSystem();
    const std::size_t lines = log.entries().size();
    DestroyCameraManager(handle);
    EXPECT_EQ(log.entries().size(), lines);
}

TEST_F(FlatEntryTest, CleanupTwiceIsHarmlessAndCyclesLeakNothing) {
    CleanupCameraSystem();
    CleanupCameraSystem();
    for (int round = 0; round < 100; ++round) {
        openAndStart();
        if (round % 2) {
            DestroyCameraManager(CreateCameraManager());
        } else {
            CleanupCameraSystem();
        }
        ASSERT_TRUE(fakes.alpha.live.empty());
    }
}

}  // namespace
