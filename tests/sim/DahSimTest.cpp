// Where the DaHeng simulator must be as strict as the SDK, so that the driver cannot come to rely
// on leniency: the library start rule, the device list's buffer protocol, open refusals and
// frames never waited for. Typed function pointers keep the enum record whole.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "sim/daheng/DaHengExports.h"
#include "sim/daheng/DahSimControl.h"

namespace telvarra::test {
namespace {

using namespace telvarra::vendor::daheng;
using Bytes = std::vector<std::uint8_t>;

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
    static void* openDevice(const std::string& serial) {
        refresh();
        void* handle = nullptr;
        EXPECT_EQ(open(serial, GX_OPEN_SN, &handle), GX_STATUS_SUCCESS) << serial;
        return handle;
    }
};

TEST_F(DahSimTest, EveryCallButCloseAndLastErrorNeedsTheLibraryStarted) {
    addDevice("id=S1 size=8x8");
    void* handle = openDevice("S1");
    ASSERT_EQ(GXCloseLib(), GX_STATUS_SUCCESS);
    EXPECT_EQ(DahSim_IsOpen("S1"), 0);  // closing the library ended the session
    std::uint32_t count = 0;
    EXPECT_EQ(GXUpdateAllDeviceList(&count, 10), GX_STATUS_NOT_INIT_API);
    EXPECT_EQ(GXCloseDevice(handle), GX_STATUS_NOT_INIT_API);
    EXPECT_EQ(GXGetLastError(), GX_STATUS_NOT_IMPLEMENTED);  // allowed before the start

    ASSERT_EQ(GXInitLib(), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXInitLib(), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXCloseDevice(handle), GX_STATUS_INVALID_HANDLE);  // gone with the old start
}

TEST_F(DahSimTest, BaseInfoRecordsFollowTheLastRefreshWithTheirSizeInBytes) {
    constexpr std::size_t kRecord = sizeof(GX_DEVICE_BASE_INFO);
    addDevice("id=B1");
    addDevice("id=B2 layer=gige");
    addDevice("id=B3");
    DahSim_Unplug("B2");
    std::size_t bytes = 0;
    EXPECT_EQ(GXGetAllDeviceBaseInfo(nullptr, &bytes), GX_STATUS_SUCCESS);
    EXPECT_EQ(bytes, 0u);  // nothing refreshed yet
    std::uint32_t count = 0;
    ASSERT_EQ(GXUpdateAllDeviceList(&count, 10), GX_STATUS_SUCCESS);
    ASSERT_EQ(count, 2u);
    EXPECT_EQ(GXGetAllDeviceBaseInfo(nullptr, nullptr), GX_STATUS_INVALID_PARAMETER);
    ASSERT_EQ(GXGetAllDeviceBaseInfo(nullptr, &bytes), GX_STATUS_SUCCESS);
    EXPECT_EQ(bytes, 2 * kRecord);

    std::vector<unsigned char> records(255 * kRecord, 0xEE);
    auto* infos = reinterpret_cast<GX_DEVICE_BASE_INFO*>(records.data());
    bytes = 2 * kRecord - 1;
    EXPECT_EQ(GXGetAllDeviceBaseInfo(infos, &bytes), GX_STATUS_NEED_MORE_BUFFER);
    EXPECT_EQ(records[0], 0xEE);
    bytes = records.size();
    ASSERT_EQ(GXGetAllDeviceBaseInfo(infos, &bytes), GX_STATUS_SUCCESS);
    EXPECT_EQ(bytes, 2 * kRecord);
    EXPECT_EQ(records[2 * kRecord], 0xEE);
    EXPECT_STREQ(infos[1].szSN, "B3");
}

TEST_F(DahSimTest, OpeningRefusesBadParametersAndUnknownDevices) {
    addDevice("id=R1");
    refresh();
    void* handle = nullptr;
    EXPECT_EQ(GXOpenDevice(nullptr, &handle), GX_STATUS_INVALID_PARAMETER);
    EXPECT_EQ(open("R1", GX_OPEN_SN, nullptr), GX_STATUS_INVALID_PARAMETER);
    const struct {
        const char* content;
        std::int32_t mode, access;
        GX_STATUS status;
    } refusals[] = {
        {"", GX_OPEN_SN, GX_ACCESS_EXCLUSIVE, GX_STATUS_INVALID_PARAMETER},
        {"R1", GX_OPEN_SN, 1, GX_STATUS_INVALID_PARAMETER},
        {"R1", GX_OPEN_SN, 5, GX_STATUS_INVALID_PARAMETER},
        {"R1", 5, GX_ACCESS_EXCLUSIVE, GX_STATUS_INVALID_PARAMETER},
        {"one", GX_OPEN_INDEX, GX_ACCESS_EXCLUSIVE, GX_STATUS_INVALID_PARAMETER},
        {"0", GX_OPEN_INDEX, GX_ACCESS_EXCLUSIVE, GX_STATUS_NOT_FOUND_DEVICE},  // from 1
        {"2", GX_OPEN_INDEX, GX_ACCESS_EXCLUSIVE, GX_STATUS_NOT_FOUND_DEVICE},
        {"R2", GX_OPEN_SN, GX_ACCESS_EXCLUSIVE, GX_STATUS_NOT_FOUND_DEVICE},
        {"192.168.1.2", GX_OPEN_IP, GX_ACCESS_EXCLUSIVE, GX_STATUS_NOT_FOUND_DEVICE},
    };
    for (const auto& r : refusals)
        EXPECT_EQ(open(r.content, r.mode, &handle, r.access), r.status)
            << r.content << " " << r.mode;
    DahSim_Unplug("R1");  // listed, but gone since
    EXPECT_EQ(open("R1", GX_OPEN_SN, &handle), GX_STATUS_NOT_FOUND_DEVICE);
    EXPECT_EQ(handle, nullptr);
}

TEST_F(DahSimTest, NoFrameWithoutAcquisitionOrWithTriggerAndNoWaitingForIt) {
    addDevice("id=N1 size=8x4");
    void* handle = openDevice("N1");
    Bytes buffer(32, 0x5A);
    GX_FRAME_DATA frame{};
    frame.pImgBuf = buffer.data();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(GXGetImage(handle, &frame, 2000), GX_STATUS_TIMEOUT);
    ASSERT_EQ(GXSetCommandValue(handle, "AcquisitionStart"), GX_STATUS_SUCCESS);
    ASSERT_EQ(GXSetEnumValue(handle, "TriggerMode", GX_TRIGGER_MODE_ON), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXGetImage(handle, &frame, 2000), GX_STATUS_TIMEOUT);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
    EXPECT_EQ(buffer[0], 0x5A);
    EXPECT_EQ(GXGetImage(handle, nullptr, 100), GX_STATUS_INVALID_PARAMETER);
    frame.pImgBuf = nullptr;
    EXPECT_EQ(GXGetImage(handle, &frame, 100), GX_STATUS_INVALID_PARAMETER);
}

}  // namespace
}  // namespace telvarra::test
