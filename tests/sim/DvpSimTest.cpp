// Where the Dvp simulator must be as strict as the SDK, so that the driver cannot come to rely on
// leniency: enumeration from the last refresh only, opening by exact user id, handles after an
// unplug, range and stream-state refusals, and frame memory poisoned at the handle's next call.
// Frame contents and formats are compared with the pattern by the integration tests.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim/dvp/DvpExports.h"
#include "sim/dvp/DvpSimControl.h"

namespace telvarra::test {
namespace {

using namespace telvarra::vendor::dvp;
using Bytes = std::vector<std::uint8_t>;

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

// The poison pattern, written out here on its own.
bool isPoison(const std::uint8_t* data, std::size_t bytes) {
    const std::uint8_t pattern[] = {0xDE, 0xAD, 0xBE, 0xEF};
    for (std::size_t i = 0; i < bytes; ++i)
        if (data[i] != pattern[i % 4]) return false;
    return true;
}

TEST_F(DvpSimTest, EnumReadsTheLastRefreshOnly) {
    dvpUint32 count = 99;
    dvpCameraInfo record{};
    addDevice("id=R1");
    addDevice("id=R2");
    addDevice("id=R3");
    ASSERT_EQ(DvpSim_Unplug("R2"), 0);
    EXPECT_EQ(dvpRefresh(nullptr), DVP_STATUS_PARAMETER_INVALID);
    ASSERT_EQ(dvpRefresh(&count), DVP_STATUS_OK);
    ASSERT_EQ(count, 2u);
    ASSERT_EQ(DvpSim_Replug("R2"), 0);  // listed at the next refresh only
    EXPECT_EQ(dvpEnum(2, &record), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(dvpEnum(0, nullptr), DVP_STATUS_PARAMETER_INVALID);
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
    dvpHandle second = 0;
    EXPECT_EQ(dvpOpenByUserId("Press", OPEN_NORMAL, &second), DVP_STATUS_DEVICE_IS_OPENED);
}

TEST_F(DvpSimTest, HandlesStayValidAfterAnUnplugAndOnlyCloseWorksOnThem) {
    addDevice("id=H1");
    const dvpHandle handle = startStreaming("H1");
    ASSERT_EQ(DvpSim_Unplug("H1"), 0);
    ASSERT_EQ(DvpSim_Replug("H1"), 0);  // the lost session does not come back
    bool valid = false;
    ASSERT_EQ(dvpIsValid(handle, &valid), DVP_STATUS_OK);
    EXPECT_TRUE(valid);
    ASSERT_EQ(dvpIsOnline(handle, &valid), DVP_STATUS_OK);
    EXPECT_FALSE(valid);
    dvpEnum32 state = -1;
    EXPECT_EQ(dvpGetStreamState(handle, &state), DVP_STATUS_DEVICE_IS_DISCONNECTED);
    EXPECT_EQ(dvpStop(handle), DVP_STATUS_DEVICE_IS_DISCONNECTED);
    ASSERT_EQ(dvpClose(handle), DVP_STATUS_OK);

    for (const dvpHandle dead : {handle, dvpHandle{0}, handle + 100}) {
        ASSERT_EQ(dvpIsValid(dead, &valid), DVP_STATUS_OK) << dead;
        EXPECT_FALSE(valid) << dead;
        EXPECT_EQ(dvpIsOnline(dead, &valid), DVP_STATUS_INVALID_HANDLE) << dead;
        EXPECT_EQ(dvpClose(dead), DVP_STATUS_INVALID_HANDLE) << dead;
    }
}

TEST_F(DvpSimTest, SettersRefuseWhatLiesOutsideTheRangesAndChangeNothing) {
    addDevice("id=D1 size=40x10");
    ASSERT_EQ(DvpSim_SetAeTargetRange("D1", 10, 100), 0);
    ASSERT_EQ(DvpSim_SetAnalogGainRange("D1", 2.0f, 8.0f), 0);
    const dvpHandle handle = open("D1");
    EXPECT_EQ(dvpSetAnalogGain(handle, 8.5f), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(dvpSetAeTarget(handle, 9), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(dvpSetExposure(handle, 9.5), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    ASSERT_EQ(dvpSetExposure(handle, 1000000.0), DVP_STATUS_OK);
    ASSERT_EQ(dvpSetAeOperation(handle, AE_OP_CONTINUOUS), DVP_STATUS_OK);
    EXPECT_EQ(dvpSetExposure(handle, 20.0), DVP_STATUS_IN_AUTO);
    EXPECT_EQ(dvpSetAeOperation(handle, 3), DVP_STATUS_PARAMETER_INVALID);
    double exposure = 0;
    ASSERT_EQ(dvpGetExposure(handle, &exposure), DVP_STATUS_OK);
    EXPECT_EQ(exposure, 1000000.0);
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
    EXPECT_FALSE(isPoison(b.data(), 64));
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
    ASSERT_EQ(dvpClose(second), DVP_STATUS_OK);
    EXPECT_TRUE(isPoison(other.data(), 64));
    EXPECT_EQ(DvpSim_OutstandingBuffers(), 0u);
}

}  // namespace
}  // namespace telvarra::test
