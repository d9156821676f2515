// Shared set-up of the HikVision tests: the simulator emptied and given devices, the logger
// captured, configuration files kept in a temporary folder, and the facade started on HikVision.
#ifndef TELVARRA_TESTS_HIKVISIONFIXTURE_H
#define TELVARRA_TESTS_HIKVISIONFIXTURE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim/hikvision/HikSimControl.h"
#include "support/CurrentDirectory.h"
#include "support/LogCapture.h"
#include "telvarra/CameraPublicInterface.h"

namespace telvarra::test {

using Bytes = std::vector<unsigned char>;

class HikVisionTest : public ::testing::Test {
  protected:
    InTempDirectory directory;
    LogCapture log;
    CameraPublicInterface* facade = nullptr;

    void SetUp() override {
        HikSim_Reset();
        facade = CameraPublicInterface::getInstance();
        ASSERT_TRUE(facade->initialize(RUVO_CAMERA_HIKVISION));
    }
    void TearDown() override {
        CameraPublicInterface::releaseInstance();
        EXPECT_EQ(HikSim_OutstandingBuffers(), 0u) << "frames lent by the SDK were not returned";
    }

    static void addDevice(const std::string& rigLine) {
        ASSERT_EQ(HikSim_AddDevice(rigLine.c_str()), 0) << HikSim_LastError();
    }
    void openStreaming(const char* id) {
        ASSERT_TRUE(facade->openCamera(id, RUVO_CAMERA_HIKVISION));
        ASSERT_TRUE(facade->startCapture(id));
    }
    static unsigned int lastSimFrame(const char* id) {
        unsigned int number = 0;
        HikSim_FramesDelivered(id, &number);
        return number;
    }
    static unsigned int seedOf(const char* id) {
        unsigned int seed = 0;
        HikSim_DeviceSeed(id, &seed);
        return seed;
    }
};

}  // namespace telvarra::test

#endif
