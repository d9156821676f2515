// The DaHeng simulator's frames: written into the caller's buffer, never waited for, incomplete
// on request, and none once the device is gone.
#include <chrono>

#include "DahSimFixture.h"
#include "sim/common/PixelFormat.h"
#include "sim/common/TestPattern.h"

namespace telvarra::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using sim::PixelFormat;

Bytes expectedFrame(PixelFormat format, const char* id, std::uint32_t number, std::uint32_t width,
                    std::uint32_t height) {
    unsigned int seed = 0;
    EXPECT_EQ(DahSim_DeviceSeed(id, &seed), 0);
    Bytes frame(sim::frameBytes(format, width, height));
    sim::renderFrame(format, seed, number, width, height, frame.data());
    return frame;
}

// A frame record with the tail the SDK leaves alone marked, over a buffer of `bytes` plus a
// guard.
struct Capture {
    explicit Capture(std::size_t bytes) : buffer(bytes + 16, 0x5A) {
        std::memset(&frame, 0x77, sizeof frame);
        frame.pImgBuf = buffer.data();
    }
    Bytes image(std::size_t bytes) const { return Bytes(buffer.begin(), buffer.begin() + bytes); }
    Bytes buffer;
    GX_FRAME_DATA frame;
};

TEST_F(DahSimTest, NoFrameWithoutAcquisitionOrWithTriggerAndNoWaitingForIt) {
    addDevice("id=N1 size=8x4");
    void* handle = openDevice("N1");
    Capture capture(32);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(GXGetImage(handle, &capture.frame, 2000), GX_STATUS_TIMEOUT);
    ASSERT_EQ(GXSetCommandValue(handle, "AcquisitionStart"), GX_STATUS_SUCCESS);
    ASSERT_EQ(GXSetEnumValue(handle, "TriggerMode", GX_TRIGGER_MODE_ON), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXGetImage(handle, &capture.frame, 2000), GX_STATUS_TIMEOUT);
    ASSERT_EQ(GXSetEnumValue(handle, "TriggerMode", GX_TRIGGER_MODE_OFF), GX_STATUS_SUCCESS);
    ASSERT_EQ(GXSetCommandValue(handle, "AcquisitionStop"), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXGetImage(handle, &capture.frame, 2000), GX_STATUS_TIMEOUT);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
    EXPECT_EQ(capture.buffer[0], 0x5A);
    unsigned int delivered = 99;
    ASSERT_EQ(DahSim_FramesDelivered("N1", &delivered), 0);
    EXPECT_EQ(delivered, 0u);

    ASSERT_EQ(GXSetCommandValue(handle, "AcquisitionStart"), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXGetImage(handle, nullptr, 100), GX_STATUS_INVALID_PARAMETER);
    capture.frame.pImgBuf = nullptr;
    EXPECT_EQ(GXGetImage(handle, &capture.frame, 100), GX_STATUS_INVALID_PARAMETER);
}

TEST_F(DahSimTest, FramesGoIntoTheCallersBufferWithTheirRecordFilled) {
    addDevice("id=C1 size=24x10 format=bayer_rg8");
    void* handle = openDevice("C1");
    ASSERT_EQ(GXSetEnumValueByString(handle, "PixelFormat", "RGB8"), GX_STATUS_SUCCESS);
    const auto payload = static_cast<std::size_t>(intValue(handle, "PayloadSize"));
    ASSERT_EQ(payload, 24u * 10 * 3);
    ASSERT_EQ(GXSetCommandValue(handle, "AcquisitionStart"), GX_STATUS_SUCCESS);

    std::uint64_t lastTimestamp = 0;
    for (std::uint32_t number = 1; number <= 2; ++number) {
        Capture capture(payload);
        ASSERT_EQ(GXGetImage(handle, &capture.frame, 500), GX_STATUS_SUCCESS);
        const GX_FRAME_DATA& frame = capture.frame;
        EXPECT_EQ(frame.nStatus, GX_FRAME_STATUS_SUCCESS);
        EXPECT_EQ(frame.pImgBuf, capture.buffer.data());
        EXPECT_EQ(frame.nWidth, 24);
        EXPECT_EQ(frame.nHeight, 10);
        EXPECT_EQ(frame.nPixelFormat, GX_PIXEL_FORMAT_RGB8);
        EXPECT_EQ(frame.nImgSize, static_cast<std::int32_t>(payload));
        EXPECT_EQ(frame.nFrameID, number);
        EXPECT_GT(frame.nTimestamp, lastTimestamp);
        lastTimestamp = frame.nTimestamp;
        for (unsigned char byte : frame.tail) EXPECT_EQ(byte, 0x77);
        EXPECT_EQ(capture.image(payload), expectedFrame(PixelFormat::Rgb8, "C1", number, 24, 10));
        EXPECT_EQ(capture.buffer[payload], 0x5A);  // nothing beyond the payload
    }

    // A smaller region is the top-left crop of the sensor; single-frame mode stops after one.
    ASSERT_EQ(GXSetCommandValue(handle, "AcquisitionStop"), GX_STATUS_SUCCESS);
    ASSERT_EQ(GXSetIntValue(handle, "Width", 5), GX_STATUS_SUCCESS);
    ASSERT_EQ(GXSetEnumValue(handle, "AcquisitionMode", GX_ACQ_MODE_SINGLE_FRAME),
              GX_STATUS_SUCCESS);
    ASSERT_EQ(GXSetCommandValue(handle, "AcquisitionStart"), GX_STATUS_SUCCESS);
    Capture crop(5 * 10 * 3);
    ASSERT_EQ(GXGetImage(handle, &crop.frame, 500), GX_STATUS_SUCCESS);
    EXPECT_EQ(crop.frame.nWidth, 5);
    EXPECT_EQ(crop.image(150), expectedFrame(PixelFormat::Rgb8, "C1", 3, 5, 10));
    EXPECT_EQ(GXGetImage(handle, &crop.frame, 500), GX_STATUS_TIMEOUT);
    EXPECT_EQ(DahSim_IsGrabbing("C1"), 0);
    EXPECT_EQ(DahSim_OutstandingBuffers(), 0u);
}

TEST_F(DahSimTest, AnIncompleteFrameSucceedsWithStatusMinusOneAndItsLowerRowsMissing) {
    addDevice("id=I1 size=6x4");
    void* handle = startAcquisition("I1");
    EXPECT_EQ(DahSim_MakeNextFrameIncomplete("I9"), -1);
    ASSERT_EQ(DahSim_MakeNextFrameIncomplete("I1"), 0);
    Capture capture(24);
    ASSERT_EQ(GXGetImage(handle, &capture.frame, 100), GX_STATUS_SUCCESS);
    EXPECT_EQ(capture.frame.nStatus, GX_FRAME_STATUS_INCOMPLETE);
    const Bytes full = expectedFrame(PixelFormat::Mono8, "I1", 1, 6, 4);
    const Bytes image = capture.image(24);
    EXPECT_EQ(Bytes(image.begin(), image.begin() + 12), Bytes(full.begin(), full.begin() + 12));
    EXPECT_EQ(Bytes(image.begin() + 12, image.end()), Bytes(12, 0x5A));

    ASSERT_EQ(GXGetImage(handle, &capture.frame, 100), GX_STATUS_SUCCESS);  // once only
    EXPECT_EQ(capture.frame.nStatus, GX_FRAME_STATUS_SUCCESS);
    EXPECT_EQ(capture.frame.nFrameID, 2u);
}

TEST_F(DahSimTest, AnUnpluggedDeviceAnswersOfflineUntilItsHandleIsClosed) {
    addDevice("id=U1 size=4x4");
    void* handle = startAcquisition("U1");
    ASSERT_EQ(DahSim_Unplug("U1"), 0);
    Capture capture(16);
    GX_INT_VALUE width{};
    EXPECT_EQ(GXGetImage(handle, &capture.frame, 100), GX_STATUS_OFFLINE);
    EXPECT_EQ(GXGetIntValue(handle, "Width", &width), GX_STATUS_OFFLINE);
    EXPECT_EQ(GXSetCommandValue(handle, "AcquisitionStop"), GX_STATUS_OFFLINE);
    EXPECT_EQ(GXFeatureSave(handle, nullptr), GX_STATUS_OFFLINE);
    EXPECT_EQ(refresh(), 0u);
    EXPECT_EQ(GXCloseDevice(handle), GX_STATUS_SUCCESS);
    EXPECT_EQ(GXCloseDevice(handle), GX_STATUS_INVALID_HANDLE);

    ASSERT_EQ(DahSim_Replug("U1"), 0);
    void* again = openDevice("U1");
    EXPECT_EQ(GXGetIntValue(again, "Width", &width), GX_STATUS_SUCCESS);
}

}  // namespace
}  // namespace telvarra::test
