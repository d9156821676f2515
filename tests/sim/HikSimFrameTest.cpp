// The HikVision simulator's frames: no waiting when no frame can come, lending and giving back,
// and the direction of the SDK's own rotation. (Pixel data and conversion are checked through
// the camera in the HikVision integration tests.)
#include <chrono>

#include "HikSimFixture.h"

namespace telvarra::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// ---- Streaming and lending. ----

using HikSimFrameTest = HikSimTest;

TEST_F(HikSimFrameTest, NoFrameIsNoDataAtOnceInsteadOfWaitingForTheTimeOut) {
    addDevice("id=T1 size=4x4");
    void* handle = openDevice("T1");
    MV_FRAME_OUT frame{};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);  // not streaming
    ASSERT_EQ(MV_CC_StartGrabbing(handle), MV_OK);
    EXPECT_EQ(MV_CC_StartGrabbing(handle), MV_E_CALLORDER);
    ASSERT_EQ(MV_CC_SetEnumValue(handle, "TriggerMode", MV_TRIGGER_MODE_ON), MV_OK);
    EXPECT_EQ(MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);  // no trigger
    ASSERT_EQ(MV_CC_SetEnumValue(handle, "TriggerMode", MV_TRIGGER_MODE_OFF), MV_OK);
    HikSim_FailCall("MV_CC_GetImageBuffer", MV_E_NODATA, 1);
    EXPECT_EQ(MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);  // planned
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
    EXPECT_EQ(frame.pBufAddr, nullptr);
    EXPECT_EQ(HikSim_OutstandingBuffers(), 0u);

    ASSERT_EQ(MV_CC_GetImageBuffer(handle, &frame, 2000), MV_OK);
    EXPECT_EQ(MV_CC_FreeImageBuffer(handle, &frame), MV_OK);
    ASSERT_EQ(MV_CC_StopGrabbing(handle), MV_OK);
    EXPECT_EQ(MV_CC_StopGrabbing(handle), MV_E_CALLORDER);
    EXPECT_EQ(MV_CC_GetImageBuffer(handle, &frame, 2000), MV_E_NODATA);
    EXPECT_EQ(MV_CC_GetImageBuffer(handle, nullptr, 2000), MV_E_PARAMETER);
    char arguments[16] = {};
    HikSim_LastArguments("MV_CC_GetImageBuffer", arguments, sizeof arguments);
    EXPECT_STREQ(arguments, "2000");
}

TEST_F(HikSimFrameTest, AtMostTheNodeCountIsLentAndUnreturnedBuffersStayCounted) {
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

// Every simulator draws through the same device model: one make shows the mode for all.
TEST_F(HikSimFrameTest, PreparedFramesRepeatOnePictureWhileTheNumbersCount) {
    addDevice("id=T6 size=40x30 format=rgb8");
    void* handle = startStreaming("T6");
    const auto grab = [&](unsigned int& number) {
        MV_FRAME_OUT frame{};
        EXPECT_EQ(MV_CC_GetImageBuffer(handle, &frame, 2000), MV_OK);
        const Bytes bytes(frame.pBufAddr, frame.pBufAddr + frame.stFrameInfo.nFrameLen);
        number = frame.stFrameInfo.nFrameNum;
        EXPECT_EQ(MV_CC_FreeImageBuffer(handle, &frame), MV_OK);
        return bytes;
    };
    unsigned int number = 0;
    const Bytes first = grab(number);
    EXPECT_EQ(HikSim_PrepareFrames("T6", 1), 0);
    const Bytes second = grab(number);
    EXPECT_NE(second, first);
    EXPECT_EQ(grab(number), second);
    EXPECT_EQ(number, 3u);
    EXPECT_EQ(HikSim_PrepareFrames("T6", 0), 0);
    EXPECT_NE(grab(number), second);
    EXPECT_EQ(HikSim_PrepareFrames("nobody", 1), -1);
}

}  // namespace
}  // namespace telvarra::test
