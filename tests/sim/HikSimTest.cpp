// Where the HikVision simulator must be as strict as the SDK, so that the driver cannot come to
// rely on leniency: enumeration records owned and replaced by the SDK, exclusive opening,
// destroyed handles refused, no waiting when no frame can come, and lent buffers counted until
// given back to their borrower.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "sim/hikvision/HikSimControl.h"
#include "sim/hikvision/HikVisionExports.h"

namespace telvarra::test {
namespace {

using namespace telvarra::vendor::hikvision;

// The serial number by layer, at the offsets the vendor notes give (not through our structs).
std::string serialOf(const MV_CC_DEVICE_INFO* record) {
    const auto* bytes = reinterpret_cast<const char*>(record);
    const bool gige =
        record->nTLayerType == MV_GIGE_DEVICE || record->nTLayerType == MV_GENTL_GIGE_DEVICE;
    const char* field = bytes + (gige ? 196 : record->nTLayerType == MV_USB_DEVICE ? 428 : 352);
    return std::string(field, strnlen(field, gige ? 16 : 64));
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

    // A handle on a copy of the enumerated record of `id`, as the camera keeps one.
    void* createHandle(const std::string& id) {
        MV_CC_DEVICE_INFO_LIST list{};
        EXPECT_EQ(MV_CC_EnumDevices(0x3C5, &list), MV_OK);
        MV_CC_DEVICE_INFO copy{};
        for (unsigned i = 0; i < list.nDeviceNum; ++i)
            if (serialOf(list.pDeviceInfo[i]) == id)
                std::memcpy(&copy, list.pDeviceInfo[i], kDeviceInfoBytesInEveryVersion);
        void* handle = nullptr;
        EXPECT_EQ(MV_CC_CreateHandle(&handle, &copy), MV_OK) << id;
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
};

TEST_F(HikSimTest, RecordsBelongToTheSdkAndAreReplacedByTheNextEnumeration) {
    addDevice("id=A1");
    addDevice("id=A2 layer=usb3");
    MV_CC_DEVICE_INFO_LIST first{}, second{};
    ASSERT_EQ(MV_CC_EnumDevices(0x3C5, &first), MV_OK);
    ASSERT_EQ(MV_CC_EnumDevices(0x3C5, &second), MV_OK);
    // New records at new addresses: the old ones are freed, reading them is a use after free.
    ASSERT_EQ(second.nDeviceNum, 2u);
    for (std::uint32_t i = 0; i < 2; ++i)
        for (std::uint32_t j = 0; j < 2; ++j)
            EXPECT_NE(second.pDeviceInfo[i], first.pDeviceInfo[j]);
}

TEST_F(HikSimTest, OpenIsExclusiveAndADestroyedHandleStaysInvalid) {
    addDevice("id=E1 layer=usb3");
    void* first = openDevice("E1");
    void* second = createHandle("E1");
    EXPECT_EQ(MV_CC_OpenDevice(second, MV_ACCESS_Exclusive, 0), MV_E_ACCESS_DENIED);
    EXPECT_EQ(MV_CC_OpenDevice(second, MV_ACCESS_Monitor, 0), MV_E_ACCESS_DENIED);
    EXPECT_EQ(MV_CC_OpenDevice(first, MV_ACCESS_Exclusive, 0), MV_E_CALLORDER);
    EXPECT_EQ(MV_CC_CloseDevice(first), MV_OK);
    EXPECT_EQ(MV_CC_CloseDevice(first), MV_E_CALLORDER);
    EXPECT_EQ(MV_CC_OpenDevice(second, MV_ACCESS_Exclusive, 0), MV_OK);

    ASSERT_EQ(MV_CC_DestroyHandle(second), MV_OK);
    EXPECT_EQ(HikSim_IsOpen("E1"), 0);  // destroying an open handle closes its session
    EXPECT_EQ(MV_CC_OpenDevice(second, MV_ACCESS_Exclusive, 0), MV_E_HANDLE);
    EXPECT_EQ(MV_CC_DestroyHandle(second), MV_E_HANDLE);
}

TEST_F(HikSimTest, NoFrameIsNoDataAtOnceInsteadOfWaitingForTheTimeOut) {
    addDevice("id=T1 size=4x4");
    void* handle = openDevice("T1");
    MV_FRAME_OUT frame{};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);  // not streaming
    ASSERT_EQ(MV_CC_StartGrabbing(handle), MV_OK);
    EXPECT_EQ(MV_CC_StartGrabbing(handle), MV_E_CALLORDER);
    ASSERT_EQ(MV_CC_SetEnumValue(handle, "TriggerMode", MV_TRIGGER_MODE_ON), MV_OK);
    EXPECT_EQ(MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);  // no trigger
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
    EXPECT_EQ(frame.pBufAddr, nullptr);
    EXPECT_EQ(HikSim_OutstandingBuffers(), 0u);
    EXPECT_EQ(MV_CC_GetImageBuffer(handle, nullptr, 2000), MV_E_PARAMETER);
    ASSERT_EQ(MV_CC_StopGrabbing(handle), MV_OK);
    EXPECT_EQ(MV_CC_StopGrabbing(handle), MV_E_CALLORDER);
}

TEST_F(HikSimTest, AtMostTheNodeCountIsLentAndUnreturnedBuffersStayCounted) {
    addDevice("id=T4 size=4x2");
    addDevice("id=T5 size=4x2");
    void* handle = startStreaming("T4");
    void* other = startStreaming("T5");
    std::vector<MV_FRAME_OUT> frames(HIKSIM_IMAGE_NODE_COUNT);
    for (MV_FRAME_OUT& frame : frames) ASSERT_EQ(MV_CC_GetImageBuffer(handle, &frame, 2000), MV_OK);
    EXPECT_EQ(HikSim_OutstandingBuffers(), HIKSIM_IMAGE_NODE_COUNT);
    MV_FRAME_OUT extra{};
    EXPECT_EQ(MV_CC_GetImageBuffer(handle, &extra, 2000), MV_E_NODATA);
    // Another handle has nodes of its own; a buffer goes back only to its borrower.
    ASSERT_EQ(MV_CC_GetImageBuffer(other, &extra, 2000), MV_OK);
    EXPECT_EQ(MV_CC_FreeImageBuffer(other, &frames[0]), MV_E_PARAMETER);
    EXPECT_EQ(MV_CC_FreeImageBuffer(other, &extra), MV_OK);

    EXPECT_EQ(MV_CC_FreeImageBuffer(handle, &frames[0]), MV_OK);
    EXPECT_EQ(MV_CC_FreeImageBuffer(handle, &frames[0]), MV_E_PARAMETER);  // twice
    MV_FRAME_OUT empty{};
    EXPECT_EQ(MV_CC_FreeImageBuffer(handle, &empty), MV_E_PARAMETER);
    ASSERT_EQ(MV_CC_GetImageBuffer(handle, &frames[0], 2000), MV_OK);
    EXPECT_EQ(frames[0].stFrameInfo.nFrameNum, HIKSIM_IMAGE_NODE_COUNT + 1);

    // Giving back is still possible after closing; after destroying, the rest is a leak.
    ASSERT_EQ(MV_CC_CloseDevice(handle), MV_OK);
    EXPECT_EQ(MV_CC_FreeImageBuffer(handle, &frames[1]), MV_OK);
    ASSERT_EQ(MV_CC_DestroyHandle(handle), MV_OK);
    EXPECT_EQ(MV_CC_FreeImageBuffer(handle, &frames[2]), MV_E_HANDLE);
    EXPECT_EQ(HikSim_OutstandingBuffers(), HIKSIM_IMAGE_NODE_COUNT - 1);
    HikSim_Reset();
    EXPECT_EQ(HikSim_OutstandingBuffers(), 0u);
}

}  // namespace
}  // namespace telvarra::test
