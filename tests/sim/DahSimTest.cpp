// What the DaHeng simulator promises beyond what the camera tests see: the library start rule,
// the device list's buffer protocol, open refusals, the whole enum record, frames never waited
// for and incomplete frames. The test program links the simulator and calls its vendor and
// control functions directly.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "sim/common/PixelFormat.h"
#include "sim/common/TestPattern.h"
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
    EXPECT_EQ(GXFlushQueue(), GX_STATUS_NOT_INIT_API);       // uncalled names too
    EXPECT_EQ(GXGetLastError(), GX_STATUS_NOT_IMPLEMENTED);  // allowed before the start
    EXPECT_EQ(GXCloseLib(), GX_STATUS_SUCCESS);              // without a start

    ASSERT_EQ(GXInitLib(), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXInitLib(), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXCloseDevice(handle), GX_STATUS_INVALID_HANDLE);  // gone with the old start
}

TEST_F(DahSimTest, BaseInfoRecordsFollowTheLastRefreshWithTheirSizeInBytes) {
    constexpr std::size_t kRecord = sizeof(GX_DEVICE_BASE_INFO);
    addDevice("id=B1 user=Left model=MER-131-210U3M");
    addDevice("id=B2 layer=gige");
    addDevice("id=B3 user=Right layer=usb2");
    DahSim_Unplug("B2");
    std::size_t bytes = 0;
    EXPECT_EQ(GXGetAllDeviceBaseInfo(nullptr, &bytes), GX_STATUS_SUCCESS);
    EXPECT_EQ(bytes, 0u);  // nothing refreshed yet
    std::uint32_t count = 0;
    EXPECT_EQ(GXUpdateAllDeviceList(nullptr, 10), GX_STATUS_INVALID_PARAMETER);
    ASSERT_EQ(GXUpdateAllDeviceList(&count, 10), GX_STATUS_SUCCESS);
    ASSERT_EQ(count, 2u);
    addDevice("id=B4");  // not listed until the next refresh
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
    EXPECT_STREQ(infos[0].szDisplayName, "MER-131-210U3M(B1)");
    EXPECT_STREQ(infos[1].szSN, "B3");
    EXPECT_STREQ(infos[1].szUserID, "Right");
    EXPECT_EQ(infos[1].deviceClass, GX_DEVICE_CLASS_USB2);
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

TEST_F(DahSimTest, EnumValueWritesTheWholeRecordSoAPlainIntegerWouldOverrun) {
    addDevice("id=E1 format=bayer_rg8");
    void* handle = openDevice("E1");
    // Filled with a pattern, the record shows which bytes the call wrote: all of them, up to the
    // reserved words at its end, far beyond the 8 bytes of a plain integer.
    std::vector<unsigned char> record(sizeof(GX_ENUM_VALUE), 0xAB);
    auto* value = reinterpret_cast<GX_ENUM_VALUE*>(record.data());
    ASSERT_EQ(GXGetEnumValue(handle, "PixelFormat", value), GX_STATUS_SUCCESS);
    EXPECT_EQ(record.back(), 0);
    EXPECT_EQ(value->stCurValue.nCurValue, GX_PIXEL_FORMAT_BAYER_RG8);
    EXPECT_STREQ(value->stCurValue.szSymbolic, "BayerRG8");
    ASSERT_EQ(value->nSupportedNum, 4u);
    EXPECT_EQ(value->nArrySupportedValue[1].nCurValue, GX_PIXEL_FORMAT_MONO8);
    EXPECT_STREQ(value->nArrySupportedValue[3].szSymbolic, "BGR8");
    EXPECT_EQ(GXGetEnumValue(handle, "Gain", value), GX_STATUS_ERROR_TYPE);
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

TEST_F(DahSimTest, AnIncompleteFrameSucceedsWithStatusMinusOneAndItsLowerRowsMissing) {
    addDevice("id=I1 size=6x4");
    void* handle = openDevice("I1");
    ASSERT_EQ(GXSetCommandValue(handle, "AcquisitionStart"), GX_STATUS_SUCCESS);
    EXPECT_EQ(DahSim_MakeNextFrameIncomplete("I9"), -1);
    ASSERT_EQ(DahSim_MakeNextFrameIncomplete("I1"), 0);
    Bytes buffer(24, 0x5A);
    GX_FRAME_DATA frame{};
    frame.pImgBuf = buffer.data();
    ASSERT_EQ(GXGetImage(handle, &frame, 100), GX_STATUS_SUCCESS);
    EXPECT_EQ(frame.nStatus, GX_FRAME_STATUS_INCOMPLETE);
    unsigned int seed = 0;
    ASSERT_EQ(DahSim_DeviceSeed("I1", &seed), 0);
    Bytes full(24);
    sim::renderFrame({"I1", "daheng", seed, 6, 4}, sim::PixelFormat::Mono8, 1, 6, 4, full.data());
    EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + 12), Bytes(full.begin(), full.begin() + 12));
    EXPECT_EQ(Bytes(buffer.begin() + 12, buffer.end()), Bytes(12, 0x5A));

    ASSERT_EQ(GXGetImage(handle, &frame, 100), GX_STATUS_SUCCESS);  // once only
    EXPECT_EQ(frame.nStatus, GX_FRAME_STATUS_SUCCESS);
    EXPECT_EQ(frame.nFrameID, 2u);
}

}  // namespace
}  // namespace telvarra::test
