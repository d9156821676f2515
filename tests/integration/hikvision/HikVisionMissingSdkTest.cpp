// Run where no HikVision SDK can be found: the make stays unavailable and the others work on.
#include <gtest/gtest.h>

#include <memory>

#include "support/CurrentDirectory.h"
#include "support/FakeRegistry.h"
#include "support/LogCapture.h"
#include "telvarra/CameraPublicInterface.h"

namespace telvarra::test {
namespace {

TEST(HikVisionMissingSdkTest, MakeStaysUninitialisedWhileTheOthersWork) {
    FakeDrivers& fakes = fakeDrivers();
    fakes.alpha.deviceIds = {"alpha-cam"};
    InTempDirectory directory;
    LogCapture log;
    CameraPublicInterface* facade = CameraPublicInterface::getInstance();

    EXPECT_TRUE(facade->initialize());
    EXPECT_TRUE(log.contains("INFO", "Initializing HikVision driver"));
    EXPECT_TRUE(log.contains("ERROR", "Failed to initialize driver: HikVision"));
    EXPECT_TRUE(log.contains("INFO", "Initialized driver: Alpha"));
    EXPECT_FALSE(facade->initialize(RUVO_CAMERA_HIKVISION));

    auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
    EXPECT_FALSE(facade->getAvailableCamerasByType(RUVO_CAMERA_HIKVISION, list.get()));
    EXPECT_TRUE(log.contains("ERROR", "Driver not initialized for type: 2"));
    ASSERT_TRUE(facade->getAvailableCamerasAll(list.get()));
    ASSERT_EQ(list->count, 1u);
    EXPECT_TRUE(facade->openCamera("alpha-cam", RUVO_CAMERA_ANY));
    EXPECT_FALSE(facade->openCamera("GE01", RUVO_CAMERA_HIKVISION));

    CameraPublicInterface::releaseInstance();
    fakes.reset();
}

}  // namespace
}  // namespace telvarra::test
