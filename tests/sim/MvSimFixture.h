// Tests of the MindVision simulator call its exported vendor and control functions directly: the
// test program links the simulator library.
#ifndef TELVARRA_TESTS_SIM_MVSIMFIXTURE_H
#define TELVARRA_TESTS_SIM_MVSIMFIXTURE_H

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "sim/common/RecordFields.h"
#include "sim/mindvision/MindVisionExports.h"
#include "sim/mindvision/MvSimControl.h"

namespace telvarra::test {

using namespace telvarra::vendor::mindvision;

class MvSimTest : public ::testing::Test {
  protected:
    void SetUp() override {
        MvSim_Reset();
        ASSERT_EQ(CameraSdkInit(0), CAMERA_STATUS_SUCCESS);
    }

    void TearDown() override { MvSim_Reset(); }

    static void addDevice(const std::string& line) {
        ASSERT_EQ(MvSim_AddDevice(line.c_str()), 0) << line << ": " << MvSim_LastError();
    }

    // CameraInit reads the serial number only.
    static tSdkCameraDevInfo recordNaming(const std::string& id) {
        tSdkCameraDevInfo record{};
        sim::writeField(record.acSn, id);
        return record;
    }

    static CameraHandle open(const std::string& id) {
        tSdkCameraDevInfo record = recordNaming(id);
        CameraHandle handle = 0;
        EXPECT_EQ(CameraInit(&record, PARAM_MODE_LAST_EXIT, PARAM_MODE_LAST_EXIT, &handle),
                  CAMERA_STATUS_SUCCESS)
            << id;
        return handle;
    }

    static CameraHandle startPlaying(const std::string& id) {
        const CameraHandle handle = open(id);
        EXPECT_EQ(CameraPlay(handle), CAMERA_STATUS_SUCCESS);
        return handle;
    }
};

}  // namespace telvarra::test

#endif
