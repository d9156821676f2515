#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "support/FakeDriver.h"
#include "support/LogCapture.h"
#include "telvarra/CameraFactory.h"

using telvarra::test::FakeDriver;
using telvarra::test::LogCapture;
using telvarra::test::LogEntry;

namespace {

// The registry is process-wide and keeps what it is given until unload, so each test uses its
// own type keys and hands over drivers it never deletes itself.
CameraFactory& registry() { return CameraFactory::getInstance(); }

Ruvo_CameraType typeKey(int value) { return static_cast<Ruvo_CameraType>(value); }

TEST(FactoryTest, SecondRegistrationOfATypeIsRefusedAndTheFirstDriverStays) {
    LogCapture log;
    auto* first = new FakeDriver(RUVO_CAMERA_DVP, "Dvp");
    auto second = std::make_unique<FakeDriver>(RUVO_CAMERA_DVP, "Dvp again");

    EXPECT_TRUE(registry().registerDriver(RUVO_CAMERA_DVP, first));
    EXPECT_FALSE(registry().registerDriver(RUVO_CAMERA_DVP, second.get()));
    EXPECT_EQ(registry().getDriver(RUVO_CAMERA_DVP), first);
    const std::vector<LogEntry> expected = {{"INFO", "Registered driver for type: 3"},
                                            {"WARNING", "Driver already registered for type: 3"}};
    EXPECT_EQ(log.entries(), expected);
}

TEST(FactoryTest, DriversComeBackInAscendingTypeOrderWhateverTheRegistrationOrder) {
    auto* high = new FakeDriver(typeKey(203), "high");
    auto* low = new FakeDriver(typeKey(201), "low");
    auto* middle = new FakeDriver(typeKey(202), "middle");
    registry().registerDriver(typeKey(203), high);
    registry().registerDriver(typeKey(201), low);
    registry().registerDriver(typeKey(202), middle);

    std::vector<ICameraDriver*> ours;
    for (ICameraDriver* driver : registry().getAllDrivers()) {
        if (driver == low || driver == middle || driver == high) ours.push_back(driver);
    }
    EXPECT_EQ(ours, (std::vector<ICameraDriver*>{low, middle, high}));
}

TEST(FactoryTest, UnknownTypeHasNoDriver) {
    EXPECT_EQ(registry().getDriver(typeKey(999)), nullptr);
    EXPECT_EQ(registry().getDriver(RUVO_CAMERA_MINDVISION_DRIVER), nullptr);
}

TEST(FactoryTest, KeyIsWhatTheCallerPassesNotTheDriversOwnType) {
    auto* driver = new FakeDriver(RUVO_CAMERA_MINDVISION_DRIVER, "MindVision");
    ASSERT_TRUE(registry().registerDriver(typeKey(301), driver));
    EXPECT_EQ(registry().getDriver(typeKey(301)), driver);
    EXPECT_EQ(driver->calls["getDriverType"], 0);
}

TEST(FactoryTest, InitializedDriversIsEmptyEvenWhenDriversAreInitialized) {
    auto* driver = new FakeDriver(typeKey(401), "initialized");
    registry().registerDriver(typeKey(401), driver);
    ASSERT_TRUE(driver->initialize());
    EXPECT_TRUE(registry().getInitializedDrivers().empty());
}

TEST(FactoryTest, NullDriverIsStoredAsNull) {
    EXPECT_TRUE(registry().registerDriver(typeKey(501), nullptr));
    EXPECT_EQ(registry().getDriver(typeKey(501)), nullptr);
    const auto all = registry().getAllDrivers();
    EXPECT_NE(std::find(all.begin(), all.end(), nullptr), all.end());
    EXPECT_FALSE(registry().registerDriver(typeKey(501), nullptr));
}

}  // namespace
