// What every test of a make through the facade sets up: the make's simulator emptied, the logger
// captured, configuration files kept in a temporary folder, the facade started on the make, and
// at the end nothing the SDK handed out left outstanding.
#ifndef TELVARRA_TESTS_INTEGRATION_MAKEFIXTURE_H
#define TELVARRA_TESTS_INTEGRATION_MAKEFIXTURE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "sim/common/TestPattern.h"
#include "suite/MakeTraits.h"
#include "support/CurrentDirectory.h"
#include "support/LogCapture.h"
#include "telvarra/CameraPublicInterface.h"

namespace telvarra::test {

class MakeFixture {
  protected:
    MakeFixture(const SimulatorControl& simulator, Ruvo_CameraType type)
        : simulator(simulator), type(type) {}

    void startMake() {
        simulator.reset();
        facade = CameraPublicInterface::getInstance();
        ASSERT_TRUE(facade->initialize(type));
    }
    void stopMake() {
        CameraPublicInterface::releaseInstance();
        EXPECT_EQ(simulator.outstandingBuffers(), 0u) << "frame memory the SDK handed out is lost";
    }

    void addDevice(const std::string& rigLine) const {
        ASSERT_EQ(simulator.addDevice(rigLine.c_str()), 0) << simulator.lastError();
    }
    void open(const std::string& id) { ASSERT_TRUE(facade->openCamera(id.c_str(), type)); }
    void openStreaming(const std::string& id) {
        open(id);
        ASSERT_TRUE(facade->startCapture(id.c_str()));
    }
    bool deviceOpen(const std::string& id) const { return simulator.isOpen(id.c_str()) == 1; }
    unsigned int lastFrameNumber(const std::string& id) const {
        unsigned int number = 0;
        simulator.framesDelivered(id.c_str(), &number);
        return number;
    }
    unsigned int seedOf(const std::string& id) const {
        unsigned int seed = 0;
        simulator.deviceSeed(id.c_str(), &seed);
        return seed;
    }
    std::string lastArguments(const char* function) const {
        char text[512] = {};
        return simulator.lastArguments(function, text, sizeof text) < 0 ? "(never called)" : text;
    }
    std::unique_ptr<_RUVO_DEVICE_INFO_LIST> listed() const {
        auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
        list->count = 7;  // stale: a listing must set the count whatever it finds
        EXPECT_TRUE(facade->getAvailableCamerasByType(type, list.get()));
        return list;
    }
    // What the frames of camera `id` show, for computing them here; `make` in any case.
    sim::PictureCamera pictureOf(const std::string& make, const std::string& id,
                                 std::uint32_t width, std::uint32_t height) const {
        return {id, make, seedOf(id), width, height};
    }

    const SimulatorControl& simulator;
    const Ruvo_CameraType type;
    InTempDirectory directory;
    LogCapture log;
    CameraPublicInterface* facade = nullptr;
};

// A test of one make.
class MakeFixtureTest : public ::testing::Test, public MakeFixture {
  protected:
    using MakeFixture::MakeFixture;
    void SetUp() override { startMake(); }
    void TearDown() override { stopMake(); }
};

}  // namespace telvarra::test

#endif
