// Tests of the Dvp simulator call its exported vendor and control functions directly: the test
// program links the simulator library.
#ifndef TELVARRA_TESTS_SIM_DVPSIMFIXTURE_H
#define TELVARRA_TESTS_SIM_DVPSIMFIXTURE_H

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "sim/dvp/DvpExports.h"
#include "sim/dvp/DvpSimControl.h"

namespace telvarra::test {

using namespace telvarra::vendor::dvp;

class DvpSimTest : public ::testing::Test {
  protected:
    void SetUp() override { DvpSim_Reset(); }
    void TearDown() override { DvpSim_Reset(); }

    static void addDevice(const std::string& line) {
        ASSERT_EQ(DvpSim_AddDevice(line.c_str()), 0) << line << ": " << DvpSim_LastError();
    }

    static dvpHandle open(const std::string& userId) {
        dvpHandle handle = 0;
        EXPECT_EQ(dvpOpenByUserId(userId.c_str(), OPEN_NORMAL, &handle), DVP_STATUS_OK) << userId;
        return handle;
    }

    static dvpHandle startStreaming(const std::string& userId) {
        const dvpHandle handle = open(userId);
        EXPECT_EQ(dvpStart(handle), DVP_STATUS_OK);
        return handle;
    }
};

// A value at its documented offset in a record, read without the record's type.
template <class T>
T valueAt(const void* record, std::size_t offset) {
    T value{};
    std::memcpy(&value, static_cast<const char*>(record) + offset, sizeof value);
    return value;
}

// A NUL-terminated text field at its offset, read up to `size` bytes.
inline std::string textAt(const void* record, std::size_t offset, std::size_t size = 64) {
    const char* field = static_cast<const char*>(record) + offset;
    const void* end = std::memchr(field, 0, size);
    return std::string(field, end ? static_cast<const char*>(end) - field : size);
}

}  // namespace telvarra::test

#endif
