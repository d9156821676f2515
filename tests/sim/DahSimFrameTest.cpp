// The DaHeng simulator's frames: never waited for, and incomplete on request. Their contents in
// the caller's buffer are checked through the library by the shared suite.
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
    sim::renderFrame({id, "daheng", seed, width, height}, format, number, width, height,
                     frame.data());
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

}  // namespace
}  // namespace telvarra::test
