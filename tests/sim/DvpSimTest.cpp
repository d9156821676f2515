// What the Dvp simulator promises beyond what the camera tests see: enumeration from the last
// refresh, opening by exact user id, handles that stay valid after an unplug, one-byte bools,
// range refusals, frames in the target format, stream-state refusals, and frame memory valid
// only until the handle's next call. The test program links the simulator and calls its vendor
// and control functions directly.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim/common/ImageOps.h"
#include "sim/common/PixelFormat.h"
#include "sim/common/TestPattern.h"
#include "sim/dvp/DvpExports.h"
#include "sim/dvp/DvpSimControl.h"

namespace telvarra::test {
namespace {

using namespace telvarra::vendor::dvp;
using Bytes = std::vector<std::uint8_t>;
using sim::PixelFormat;

struct Grab {
    dvpFrame frame{};
    void* buffer = nullptr;
    const std::uint8_t* data() const { return static_cast<const std::uint8_t*>(buffer); }
    Bytes bytes() const { return Bytes(data(), data() + frame.uBytes); }
};

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
    static Grab grab(dvpHandle handle) {
        Grab got;
        EXPECT_EQ(dvpGetFrame(handle, &got.frame, &got.buffer, 1000), DVP_STATUS_OK);
        return got;
    }
};

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

// The poison pattern, written out here on its own.
bool isPoison(const std::uint8_t* data, std::size_t bytes) {
    const std::uint8_t pattern[] = {0xDE, 0xAD, 0xBE, 0xEF};
    for (std::size_t i = 0; i < bytes; ++i)
        if (data[i] != pattern[i % 4]) return false;
    return true;
}

TEST_F(DvpSimTest, EnumReadsTheLastRefreshAndRigLimitsFollowTheFieldSizes) {
    dvpUint32 count = 99;
    dvpCameraInfo record{};
    ASSERT_EQ(dvpRefresh(&count), DVP_STATUS_OK);  // no camera is no error
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(dvpEnum(0, &record), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    const std::string id63(63, 'i'), user127(127, 'u');
    addDevice("id=" + id63 + " user=" + user127);
    for (const std::string& line :
         {"id=" + id63 + "x", "id=L2 user=" + user127 + "x", std::string("id=L3 layer=gentl-gige")})
        EXPECT_EQ(DvpSim_AddDevice(line.c_str()), -1) << line;
    addDevice("id=R2");
    addDevice("id=R3");
    ASSERT_EQ(DvpSim_Unplug("R2"), 0);
    EXPECT_EQ(dvpRefresh(nullptr), DVP_STATUS_PARAMETER_INVALID);
    ASSERT_EQ(dvpRefresh(&count), DVP_STATUS_OK);
    ASSERT_EQ(count, 2u);
    ASSERT_EQ(DvpSim_Replug("R2"), 0);  // listed at the next refresh only
    EXPECT_EQ(dvpEnum(2, &record), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(dvpEnum(0, nullptr), DVP_STATUS_PARAMETER_INVALID);
    ASSERT_EQ(dvpEnum(0, &record), DVP_STATUS_OK);
    EXPECT_EQ(record.UserID, user127);
    ASSERT_EQ(dvpEnum(1, &record), DVP_STATUS_OK);
    EXPECT_STREQ(record.SerialNumber, "R3");
}

TEST_F(DvpSimTest, OpeningByUserIdMatchesExactlyChecksTheModeAndIsExclusive) {
    addDevice("id=O1 user=Press");
    addDevice("id=O2 user=Press2");
    addDevice("id=O3 user=Gone");
    ASSERT_EQ(DvpSim_Unplug("O3"), 0);
    dvpHandle handle = 0;
    EXPECT_EQ(dvpOpenByUserId(nullptr, OPEN_NORMAL, &handle), DVP_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(dvpOpenByUserId("Press", OPEN_NORMAL, nullptr), DVP_STATUS_PARAMETER_INVALID);
    EXPECT_EQ(dvpOpenByUserId("", OPEN_NORMAL, &handle), DVP_STATUS_PARAMETER_INVALID);
    for (const dvpEnum32 mode : {OPEN_OFFLINE, 8, 1 | 2, 1 | 32})
        EXPECT_EQ(dvpOpenByUserId("Press", mode, &handle), DVP_STATUS_NOT_SUPPORTED) << mode;
    for (const char* near : {"press", "Pres", "Press ", "O1", "Gone"})
        EXPECT_EQ(dvpOpenByUserId(near, OPEN_NORMAL, &handle), DVP_STATUS_NO_DEVICE_FOUND) << near;
    EXPECT_EQ(handle, 0u);  // nothing written by a refusal

    // No dvpRefresh before: the open refreshes by itself.
    ASSERT_EQ(dvpOpenByUserId("Press", OPEN_NORMAL | 8 | 16, &handle), DVP_STATUS_OK);
    EXPECT_EQ(DvpSim_IsOpen("O1"), 1);
    EXPECT_EQ(DvpSim_IsOpen("O2"), 0);
    dvpHandle second = 0;
    EXPECT_EQ(dvpOpenByUserId("Press", OPEN_NORMAL, &second), DVP_STATUS_DEVICE_IS_OPENED);
    EXPECT_EQ(open("Press2"), handle + 1);  // the refusal took no number
}

TEST_F(DvpSimTest, HandlesStayValidAfterAnUnplugAndOnlyCloseWorksOnThem) {
    addDevice("id=H1");
    const dvpHandle handle = startStreaming("H1");
    ASSERT_EQ(DvpSim_Unplug("H1"), 0);
    ASSERT_EQ(DvpSim_Replug("H1"), 0);  // the lost session does not come back
    // The bool is one byte: its neighbours stay as they were.
    unsigned char flags[3] = {0x55, 0x55, 0x55};
    ASSERT_EQ(dvpIsValid(handle, reinterpret_cast<bool*>(&flags[1])), DVP_STATUS_OK);
    EXPECT_EQ(flags[1], 1);
    ASSERT_EQ(dvpIsOnline(handle, reinterpret_cast<bool*>(&flags[1])), DVP_STATUS_OK);
    EXPECT_EQ(flags[1], 0);
    EXPECT_EQ(flags[0], 0x55);
    EXPECT_EQ(flags[2], 0x55);
    dvpEnum32 state = -1;
    EXPECT_EQ(dvpGetStreamState(handle, &state), DVP_STATUS_DEVICE_IS_DISCONNECTED);
    EXPECT_EQ(dvpStop(handle), DVP_STATUS_DEVICE_IS_DISCONNECTED);
    ASSERT_EQ(dvpClose(handle), DVP_STATUS_OK);

    bool valid = true;
    for (const dvpHandle dead : {handle, dvpHandle{0}, handle + 100}) {
        ASSERT_EQ(dvpIsValid(dead, &valid), DVP_STATUS_OK) << dead;
        EXPECT_FALSE(valid) << dead;
        EXPECT_EQ(dvpIsOnline(dead, &valid), DVP_STATUS_INVALID_HANDLE) << dead;
        EXPECT_EQ(dvpClose(dead), DVP_STATUS_INVALID_HANDLE) << dead;
    }
    // The names the library only looks up answer "not supported", through the call gate.
    EXPECT_EQ(dvpGetRoi(), DVP_STATUS_NOT_SUPPORTED);
    EXPECT_EQ(DvpSim_CallCount("dvpGetRoi"), 1u);
}

TEST_F(DvpSimTest, SettersRefuseWhatLiesOutsideTheRangesAndChangeNothing) {
    addDevice("id=D1 size=40x10");
    ASSERT_EQ(DvpSim_SetAeTargetRange("D1", 10, 100), 0);
    ASSERT_EQ(DvpSim_SetAnalogGainRange("D1", 2.0f, 8.0f), 0);  // clamps the current 1.0
    EXPECT_EQ(DvpSim_SetExposureRange("D1", 500.0, 100.0), -1);
    const dvpHandle handle = open("D1");
    float gain = 0;
    ASSERT_EQ(dvpGetAnalogGain(handle, &gain), DVP_STATUS_OK);
    EXPECT_EQ(gain, 2.0f);
    EXPECT_EQ(dvpSetAnalogGain(handle, 8.5f), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(dvpSetAeTarget(handle, 9), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(dvpSetExposure(handle, 9.5), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    ASSERT_EQ(dvpSetExposure(handle, 1000000.0), DVP_STATUS_OK);
    ASSERT_EQ(dvpSetAeOperation(handle, AE_OP_CONTINUOUS), DVP_STATUS_OK);
    EXPECT_EQ(dvpSetExposure(handle, 20.0), DVP_STATUS_IN_AUTO);
    EXPECT_EQ(dvpSetAeOperation(handle, 3), DVP_STATUS_PARAMETER_INVALID);
    ASSERT_EQ(dvpSetAeOperation(handle, AE_OP_ONCE), DVP_STATUS_OK);
    dvpEnum32 operation = -1;
    ASSERT_EQ(dvpGetAeOperation(handle, &operation), DVP_STATUS_OK);
    EXPECT_EQ(operation, AE_OP_OFF);  // a single pass ends at once
    double exposure = 0;
    ASSERT_EQ(dvpGetExposure(handle, &exposure), DVP_STATUS_OK);
    EXPECT_EQ(exposure, 1000000.0);
}

// Pixels under every format and geometry are checked through the camera by the shared suite.
TEST_F(DvpSimTest, TheTargetFormatChangesWhileStreamingAndMonoSensorsHandOnGreyOnly) {
    addDevice("id=F1 size=6x4 format=bayer_gr8");
    addDevice("id=F2 size=5x3 format=mono8");
    const dvpHandle colour = startStreaming("F1");
    Grab got = grab(colour);  // BGR by default
    EXPECT_EQ(got.frame.format, FORMAT_BGR24);
    EXPECT_EQ(got.frame.uBytes, 72u);
    EXPECT_EQ(got.frame.uTimestamp, 40000u);
    ASSERT_EQ(dvpSetTargetFormat(colour, S_RGB24), DVP_STATUS_OK);
    got = grab(colour);
    EXPECT_EQ(got.frame.format, FORMAT_RGB24);
    EXPECT_EQ(got.bytes(), expected("F1", PixelFormat::BayerGR8, 2, 6, 4, PixelFormat::Rgb8));
    ASSERT_EQ(dvpSetTargetFormat(colour, S_MONO8), DVP_STATUS_OK);
    EXPECT_EQ(grab(colour).frame.format, FORMAT_MONO);
    EXPECT_EQ(dvpSetTargetFormat(colour, S_RAW8), DVP_STATUS_NOT_SUPPORTED);
    const dvpHandle mono = startStreaming("F2");
    for (const dvpEnum32 colourTarget : {S_BGR24, S_RGB24})
        EXPECT_EQ(dvpSetTargetFormat(mono, colourTarget), DVP_STATUS_NOT_SUPPORTED);
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
    EXPECT_EQ(dvpGetFrame(handle, &got.frame, &got.buffer, 60000), DVP_STATUS_TIME_OUT);
    ASSERT_EQ(dvpSetTriggerState(handle, false), DVP_STATUS_OK);
    EXPECT_EQ(grab(handle).frame.uFrameID, 1u);
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
    ASSERT_EQ(dvpClose(second), DVP_STATUS_OK);
    EXPECT_TRUE(isPoison(other.data(), 64));
    EXPECT_EQ(DvpSim_OutstandingBuffers(), 0u);
}

}  // namespace
}  // namespace telvarra::test
