// The Dvp simulator's frames: the sensor's picture processed to the target format, the frame
// record at its documented offsets, the stream-state refusals, and frame memory that stays valid
// only until the handle's next call. Geometry and faults are driven through the camera by the
// shared suite.
#include <vector>

#include "DvpSimFixture.h"
#include "sim/common/FrameMemory.h"
#include "sim/common/ImageOps.h"
#include "sim/common/PixelFormat.h"
#include "sim/common/TestPattern.h"

namespace telvarra::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using sim::PixelFormat;

struct Grab {
    dvpFrame frame{};
    void* buffer = nullptr;
    const std::uint8_t* data() const { return static_cast<const std::uint8_t*>(buffer); }
    Bytes bytes() const { return Bytes(data(), data() + frame.uBytes); }
};

Grab grab(dvpHandle handle) {
    Grab got;
    EXPECT_EQ(dvpGetFrame(handle, &got.frame, &got.buffer, 1000), DVP_STATUS_OK);
    return got;
}

// Frame `number` of device `id` as the sensor sends it, converted as the SDK would.
Bytes expected(const char* id, PixelFormat sensor, std::uint32_t number, std::uint32_t width,
               std::uint32_t height, PixelFormat output) {
    unsigned int seed = 0;
    EXPECT_EQ(DvpSim_DeviceSeed(id, &seed), 0);
    Bytes raw(sim::frameBytes(sensor, width, height));
    sim::renderFrame({id, "dvp", seed, width, height}, sensor, number, width, height, raw.data());
    Bytes out(sim::frameBytes(output, width, height));
    sim::convertImage(sensor, raw.data(), width, height, output, out.data());
    return out;
}

bool isPoison(const std::uint8_t* data, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i)
        if (data[i] != sim::NextCallBuffers::poisonAt(i)) return false;
    return true;
}

TEST_F(DvpSimTest, FramesAreTheSensorsPictureInTheTargetFormatWithTheirRecord) {
    addDevice("id=F1 size=6x4 format=bayer_gr8");
    addDevice("id=F2 size=5x3 format=mono8");
    const dvpHandle colour = startStreaming("F1");
    ASSERT_EQ(dvpSetExposure(colour, 2500.0), DVP_STATUS_OK);
    ASSERT_EQ(dvpSetAnalogGain(colour, 2.5f), DVP_STATUS_OK);
    dvpEnum32 target = -1;
    ASSERT_EQ(dvpGetTargetFormat(colour, &target), DVP_STATUS_OK);
    EXPECT_EQ(target, S_BGR24);

    std::vector<unsigned char> record(sizeof(dvpFrame), 0xEE);
    void* buffer = nullptr;
    ASSERT_EQ(dvpGetFrame(colour, reinterpret_cast<dvpFrame*>(record.data()), &buffer, 0),
              DVP_STATUS_OK);
    EXPECT_EQ(valueAt<dvpEnum32>(record.data(), 0), FORMAT_BGR24);
    EXPECT_EQ(valueAt<dvpEnum32>(record.data(), 4), BITS_8);
    EXPECT_EQ(valueAt<dvpUint32>(record.data(), 8), 72u);
    EXPECT_EQ(valueAt<dvpInt32>(record.data(), 12), 6);
    EXPECT_EQ(valueAt<dvpInt32>(record.data(), 16), 4);
    EXPECT_EQ(valueAt<dvpUint64>(record.data(), 24), 1u);
    EXPECT_EQ(valueAt<dvpUint64>(record.data(), 32), 40000u);
    EXPECT_EQ(valueAt<double>(record.data(), 40), 2500.0);
    EXPECT_EQ(valueAt<float>(record.data(), 48), 2.5f);
    EXPECT_EQ(valueAt<dvpUint32>(record.data(), 56), 0u);  // no flip or rotation flags
    const auto* bgr = static_cast<const std::uint8_t*>(buffer);
    EXPECT_EQ(Bytes(bgr, bgr + 72),
              expected("F1", PixelFormat::BayerGR8, 1, 6, 4, PixelFormat::Bgr8));

    // The target changes while streaming; the next frame has it.
    ASSERT_EQ(dvpSetTargetFormat(colour, S_RGB24), DVP_STATUS_OK);
    Grab got = grab(colour);
    EXPECT_EQ(got.frame.format, FORMAT_RGB24);
    EXPECT_EQ(got.frame.uFrameID, 2u);
    EXPECT_EQ(got.frame.uTimestamp, 80000u);
    EXPECT_EQ(got.bytes(), expected("F1", PixelFormat::BayerGR8, 2, 6, 4, PixelFormat::Rgb8));
    ASSERT_EQ(dvpSetTargetFormat(colour, S_MONO8), DVP_STATUS_OK);
    got = grab(colour);
    EXPECT_EQ(got.frame.format, FORMAT_MONO);
    EXPECT_EQ(got.frame.uBytes, 24u);
    EXPECT_EQ(got.bytes(), expected("F1", PixelFormat::BayerGR8, 3, 6, 4, PixelFormat::Mono8));
    EXPECT_EQ(dvpSetTargetFormat(colour, S_RAW8), DVP_STATUS_NOT_SUPPORTED);
    unsigned int delivered = 0;
    ASSERT_EQ(DvpSim_FramesDelivered("F1", &delivered), 0);
    EXPECT_EQ(delivered, 3u);

    // A mono sensor hands on grey only.
    const dvpHandle mono = startStreaming("F2");
    for (const dvpEnum32 colourTarget : {S_BGR24, S_RGB24})
        EXPECT_EQ(dvpSetTargetFormat(mono, colourTarget), DVP_STATUS_NOT_SUPPORTED);
    got = grab(mono);
    EXPECT_EQ(got.frame.format, FORMAT_MONO);
    EXPECT_EQ(got.bytes(), expected("F2", PixelFormat::Mono8, 1, 5, 3, PixelFormat::Mono8));
}

TEST_F(DvpSimTest, FramesComeOnlyWhileStartedAndFreeRunning) {
    addDevice("id=S1 size=4x4");
    const dvpHandle handle = open("S1");
    Grab got;
    EXPECT_EQ(dvpGetFrame(handle, &got.frame, &got.buffer, 0), DVP_STATUS_NOT_STARTED);
    EXPECT_EQ(dvpStop(handle), DVP_STATUS_DEVICE_IS_STOPPED);
    ASSERT_EQ(dvpStart(handle), DVP_STATUS_OK);
    EXPECT_EQ(dvpStart(handle), DVP_STATUS_DEVICE_IS_STARTED);
    EXPECT_EQ(dvpGetFrame(handle, nullptr, &got.buffer, 0), DVP_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(dvpGetFrame(handle, &got.frame, nullptr, 0), DVP_STATUS_PARAMETER_INVALID);

    // With trigger mode on no frame can come, and the time-out is not waited for.
    ASSERT_EQ(dvpSetTriggerState(handle, true), DVP_STATUS_OK);
    bool on = false;
    ASSERT_EQ(dvpGetTriggerState(handle, &on), DVP_STATUS_OK);
    EXPECT_TRUE(on);
    EXPECT_EQ(dvpGetFrame(handle, &got.frame, &got.buffer, 60000), DVP_STATUS_TIME_OUT);
    ASSERT_EQ(dvpSetTriggerState(handle, false), DVP_STATUS_OK);
    got = grab(handle);
    EXPECT_EQ(got.frame.uFrameID, 1u);

    // The device stops on its own: the handle stays open, the stream is stopped.
    EXPECT_EQ(DvpSim_StopStream("S9"), -1);
    ASSERT_EQ(DvpSim_StopStream("S1"), 0);
    EXPECT_EQ(DvpSim_IsOpen("S1"), 1);
    dvpEnum32 state = -1;
    ASSERT_EQ(dvpGetStreamState(handle, &state), DVP_STATUS_OK);
    EXPECT_EQ(state, STATE_STOPED);
    EXPECT_EQ(dvpGetFrame(handle, &got.frame, &got.buffer, 0), DVP_STATUS_NOT_STARTED);
    EXPECT_EQ(dvpStop(handle), DVP_STATUS_DEVICE_IS_STOPPED);
    ASSERT_EQ(dvpStart(handle), DVP_STATUS_OK);
    ASSERT_EQ(dvpGetStreamState(handle, &state), DVP_STATUS_OK);
    EXPECT_EQ(state, STATE_STARTED);
    ASSERT_EQ(dvpClose(handle), DVP_STATUS_OK);
    EXPECT_EQ(DvpSim_StopStream("S1"), -1);  // not open
}

TEST_F(DvpSimTest, AFrameIsValidOnlyUntilTheHandlesNextCallThenReadsPoison) {
    addDevice("id=P1 size=8x8");
    addDevice("id=P2 size=8x8");
    const dvpHandle first = startStreaming("P1");
    const dvpHandle second = startStreaming("P2");
    const Grab a = grab(first);
    const Grab other = grab(second);
    const Bytes otherBytes = other.bytes();
    EXPECT_EQ(DvpSim_OutstandingBuffers(), 2u);
    const Grab b = grab(first);
    EXPECT_NE(b.buffer, a.buffer);  // never where a stale pointer points
    EXPECT_TRUE(isPoison(a.data(), 64));
    EXPECT_EQ(b.bytes(), expected("P1", PixelFormat::Mono8, 2, 8, 8, PixelFormat::Mono8));
    EXPECT_EQ(other.bytes(), otherBytes);  // another handle's frame is untouched
    EXPECT_EQ(DvpSim_OutstandingBuffers(), 2u);

    // A call that gives no frame ends the last one's validity all the same.
    DvpSim_FailCall("dvpGetFrame", DVP_STATUS_TIME_OUT, 1);
    Grab failed;
    EXPECT_EQ(dvpGetFrame(first, &failed.frame, &failed.buffer, 0), DVP_STATUS_TIME_OUT);
    EXPECT_TRUE(isPoison(b.data(), 64));
    EXPECT_EQ(DvpSim_OutstandingBuffers(), 1u);

    // Stopping frees the stream's frame; so does closing, also after an unplug.
    const Grab c = grab(first);
    ASSERT_EQ(dvpStop(first), DVP_STATUS_OK);
    EXPECT_TRUE(isPoison(c.data(), 64));
    ASSERT_EQ(DvpSim_Unplug("P2"), 0);
    EXPECT_EQ(other.bytes(), otherBytes);
    EXPECT_EQ(DvpSim_OutstandingBuffers(), 1u);
    ASSERT_EQ(dvpClose(second), DVP_STATUS_OK);
    EXPECT_TRUE(isPoison(other.data(), 64));
    EXPECT_EQ(DvpSim_OutstandingBuffers(), 0u);
}

}  // namespace
}  // namespace telvarra::test
