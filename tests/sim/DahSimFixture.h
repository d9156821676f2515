// Tests of the DaHeng simulator call its exported vendor and control functions directly: the test
// program links the simulator library.
#ifndef TELVARRA_TESTS_SIM_DAHSIMFIXTURE_H
#define TELVARRA_TESTS_SIM_DAHSIMFIXTURE_H

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "sim/daheng/DaHengExports.h"
#include "sim/daheng/DahSimControl.h"

namespace telvarra::test {

using namespace telvarra::vendor::daheng;

class DahSimTest : public ::testing::Test {
  protected:
    void SetUp() override {
        DahSim_Reset();
        ASSERT_EQ(GXInitLib(), GX_STATUS_SUCCESS);
    }

    void TearDown() override { DahSim_Reset(); }

    static void addDevice(const std::string& line) {
        ASSERT_EQ(DahSim_AddDevice(line.c_str()), 0) << line << ": " << DahSim_LastError();
    }

    static std::uint32_t refresh() {
        std::uint32_t count = 0;
        EXPECT_EQ(GXUpdateAllDeviceList(&count, 1000), GX_STATUS_SUCCESS);
        return count;
    }

    static GX_STATUS open(std::string content, std::int32_t mode, void** handle,
                          std::int32_t access = GX_ACCESS_EXCLUSIVE) {
        GX_OPEN_PARAM param{content.data(), mode, access};
        return GXOpenDevice(&param, handle);
    }

    // Refreshes the list and opens `serial` exclusively.
    static void* openDevice(const std::string& serial) {
        refresh();
        void* handle = nullptr;
        EXPECT_EQ(open(serial, GX_OPEN_SN, &handle), GX_STATUS_SUCCESS) << serial;
        return handle;
    }

    static void* startAcquisition(const std::string& serial) {
        void* handle = openDevice(serial);
        EXPECT_EQ(GXSetCommandValue(handle, "AcquisitionStart"), GX_STATUS_SUCCESS);
        return handle;
    }

    static std::int64_t intValue(void* handle, const char* name) {
        GX_INT_VALUE value{};
        EXPECT_EQ(GXGetIntValue(handle, name, &value), GX_STATUS_SUCCESS) << name;
        return value.nCurValue;
    }
};

}  // namespace telvarra::test

#endif
