// Tests of the HikVision simulator call its exported vendor and control functions directly: the
// test program links the simulator library.
#ifndef TELVARRA_TESTS_SIM_HIKSIMFIXTURE_H
#define TELVARRA_TESTS_SIM_HIKSIMFIXTURE_H

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "sim/hikvision/HikSimControl.h"
#include "sim/hikvision/HikVisionExports.h"

namespace telvarra::test {

using namespace telvarra::vendor::hikvision;

// A text field read at its absolute offset in the record, bounded by the field size.
inline std::string textAt(const void* record, std::size_t offset, std::size_t size) {
    const char* field = static_cast<const char*>(record) + offset;
    const void* end = std::memchr(field, 0, size);
    return std::string(field, end ? static_cast<const char*>(end) - field : size);
}

// The serial number by layer, at the offsets the vendor notes give (not through our structs).
inline std::string serialOf(const MV_CC_DEVICE_INFO* record) {
    switch (record->nTLayerType) {
        case MV_GIGE_DEVICE:
        case MV_GENTL_GIGE_DEVICE:
            return textAt(record, 196, 16);
        case MV_USB_DEVICE:
            return textAt(record, 428, 64);
        default:
            return textAt(record, 352, 64);
    }
}

class HikSimTest : public ::testing::Test {
  protected:
    void SetUp() override {
        HikSim_Reset();
        ASSERT_EQ(MV_CC_Initialize(), MV_OK);
    }

    void TearDown() override { HikSim_Reset(); }

    static void addDevice(const std::string& line) {
        ASSERT_EQ(HikSim_AddDevice(line.c_str()), 0) << line << ": " << HikSim_LastError();
    }

    static std::string lastArguments(const char* function) {
        char buffer[128] = {};
        if (HikSim_LastArguments(function, buffer, sizeof buffer) < 0) return "(never called)";
        return buffer;
    }

    std::vector<const MV_CC_DEVICE_INFO*> enumerate(unsigned int mask = 0x3C5) {
        m_list = MV_CC_DEVICE_INFO_LIST{};
        EXPECT_EQ(MV_CC_EnumDevices(mask, &m_list), MV_OK);
        return {m_list.pDeviceInfo, m_list.pDeviceInfo + m_list.nDeviceNum};
    }

    // A copy of the enumerated record of `id`, as the camera keeps one.
    MV_CC_DEVICE_INFO recordOf(const std::string& id) {
        MV_CC_DEVICE_INFO copy{};
        for (const MV_CC_DEVICE_INFO* record : enumerate())
            if (serialOf(record) == id) std::memcpy(&copy, record, kDeviceInfoBytesInEveryVersion);
        EXPECT_NE(copy.nTLayerType, 0u) << "no enumerated device " << id;
        return copy;
    }

    void* createHandle(const std::string& id) {
        const MV_CC_DEVICE_INFO record = recordOf(id);
        void* handle = nullptr;
        EXPECT_EQ(MV_CC_CreateHandle(&handle, &record), MV_OK);
        return handle;
    }

    void* openDevice(const std::string& id) {
        void* handle = createHandle(id);
        EXPECT_EQ(MV_CC_OpenDevice(handle, MV_ACCESS_Exclusive, 0), MV_OK);
        return handle;
    }

    void* startStreaming(const std::string& id) {
        void* handle = openDevice(id);
        EXPECT_EQ(MV_CC_StartGrabbing(handle), MV_OK);
        return handle;
    }

    MV_CC_DEVICE_INFO_LIST m_list{};
};

}  // namespace telvarra::test

#endif
