// The common control functions and call gate, through the HikVision prefix, where the camera
// tests do not reach them: rig files, removing devices, calls before the SDK start, call counts
// and argument texts.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "HikSimFixture.h"

namespace telvarra::test {
namespace {

using HikSimControlTest = HikSimTest;

TEST_F(HikSimControlTest, LoadRigAddsThisMakesLinesAndListsTheBadOnesWithTheirNumbers) {
    const auto path = std::filesystem::temp_directory_path() / "telvarra-hiksim-control.rig";
    {
        std::ofstream rig(path, std::ios::binary);
        rig << "# two good cameras, one of another make, and three bad lines\n"
               "hikvision id=R1 layer=usb3 size=8x4\n"
               "daheng id=R2\n"
               "hikvision id=R3 layer=firewire\n"
               "hikvision id=R1\n"
               "hikvision id=TOO-LONG-FOR-GIGE-1 layer=gige\n"
               "hikvision id=R4 user=\"Line 4\"   # the last good one\n";
    }
    EXPECT_EQ(HikSim_LoadRig(path.string().c_str()), 2);
    std::filesystem::remove(path);
    EXPECT_STREQ(HikSim_LastError(),
                 "line 5: id already used by an earlier hikvision line: R1\n"
                 "line 4: unknown layer (gige, usb3, gentl-gige, gentl-cml, gentl-cxp, "
                 "gentl-xof): firewire\n"
                 "line 6: id, user or model too long for a gige device record\n");
    EXPECT_EQ(HikSim_IsOpen("R1"), 0);
    EXPECT_EQ(HikSim_IsOpen("R4"), 0);
    EXPECT_EQ(HikSim_IsOpen("R2"), -1);
    ASSERT_EQ(enumerate().size(), 2u);  // in rig order
    EXPECT_EQ(serialOf(enumerate()[1]), "R4");

    EXPECT_EQ(HikSim_LoadRig(path.string().c_str()), -1);
    EXPECT_EQ(std::string(HikSim_LastError()).rfind("line 0: cannot read ", 0), 0u);
    EXPECT_EQ(HikSim_AddDevice("hikvision id=R5"), 0);
    EXPECT_STREQ(HikSim_LastError(), "");
    EXPECT_EQ(HikSim_AddDevice("daheng id=R6"), -1);
    EXPECT_STREQ(HikSim_LastError(), "not a hikvision line: daheng");
}

TEST_F(HikSimControlTest, ARemovedDeviceLeavesItsHandleDeadUntilClosed) {
    addDevice("id=G1 layer=gige");
    void* handle = startStreaming("G1");
    EXPECT_EQ(HikSim_IsGrabbing("G1"), 1);
    ASSERT_EQ(HikSim_RemoveDevice("G1"), 0);
    EXPECT_EQ(HikSim_IsGrabbing("G1"), -1);
    EXPECT_FALSE(MV_CC_IsDeviceConnected(handle));
    EXPECT_EQ(MV_CC_StopGrabbing(handle), MV_E_NETER);  // GigE's link error
    EXPECT_EQ(MV_CC_CloseDevice(handle), MV_OK);
    EXPECT_EQ(MV_CC_StopGrabbing(handle), MV_E_CALLORDER);
    EXPECT_EQ(MV_CC_DestroyHandle(handle), MV_OK);
    EXPECT_TRUE(enumerate().empty());

    EXPECT_EQ(HikSim_RemoveDevice("G1"), -1);
    EXPECT_STREQ(HikSim_LastError(), "no device G1");
    EXPECT_EQ(HikSim_Unplug(nullptr), -1);
    EXPECT_STREQ(HikSim_LastError(), "no device ");
}

TEST_F(HikSimControlTest, CallsBeforeInitializeAreCountedAndRefusedButFaultsComeFirst) {
    HikSim_Reset();
    MV_CC_DEVICE_INFO_LIST list{};
    EXPECT_EQ(MV_CC_EnumDevices(0x3C5, &list), MV_E_CALLORDER);
    EXPECT_EQ(MV_CC_GetSDKVersion(), HIKSIM_SDK_VERSION);  // allowed at any time
    HikSim_FailAlways("MV_CC_GetSDKVersion", MV_E_RESOURCE);
    EXPECT_EQ(MV_CC_GetSDKVersion(), static_cast<unsigned int>(MV_E_RESOURCE));
    HikSim_FailCall("MV_CC_EnumDevices", MV_E_BUSY, 1);
    EXPECT_EQ(MV_CC_EnumDevices(0x3C5, &list), MV_E_BUSY);
    HikSim_FailCall("MV_CC_Initialize", MV_E_RESOURCE, 1);
    EXPECT_EQ(MV_CC_Initialize(), MV_E_RESOURCE);
    EXPECT_EQ(MV_CC_EnumDevices(0x3C5, &list), MV_E_CALLORDER);  // a failed start starts nothing
    EXPECT_EQ(HikSim_CallCount("MV_CC_EnumDevices"), 3u);
    EXPECT_EQ(HikSim_CallCount("MV_CC_GetSDKVersion"), 2u);

    ASSERT_EQ(MV_CC_Initialize(), MV_OK);
    ASSERT_EQ(MV_CC_EnumDevices(0x3C5, &list), MV_OK);
    ASSERT_EQ(MV_CC_Finalize(), MV_OK);
    EXPECT_EQ(MV_CC_EnumDevices(0x3C5, &list), MV_E_CALLORDER);
    HikSim_ClearCallCounts();
    EXPECT_EQ(HikSim_CallCount("MV_CC_EnumDevices"), 0u);
    EXPECT_EQ(HikSim_LastArguments("MV_CC_EnumDevices", nullptr, 0), -1);
}

TEST_F(HikSimControlTest, LastArgumentsAreCutToTheBufferButReportTheirWholeLength) {
    addDevice("id=A1 size=4x4");
    void* handle = openDevice("A1");
    ASSERT_EQ(MV_CC_SetEnumValue(handle, "TriggerMode", 1), MV_OK);
    char small[8];
    std::memset(small, 'x', sizeof small);
    EXPECT_EQ(HikSim_LastArguments("MV_CC_SetEnumValue", small, sizeof small), 14);
    EXPECT_STREQ(small, "Trigger");
    EXPECT_EQ(HikSim_LastArguments("MV_CC_SetEnumValue", nullptr, 0), 14);
    EXPECT_EQ(MV_CC_SetGain(handle, 2.5f), MV_OK);
    EXPECT_EQ(lastArguments("MV_CC_SetGain"), "2.5");
    EXPECT_EQ(MV_CC_SetEnumValue(handle, nullptr, 3), MV_E_PARAMETER);
    EXPECT_EQ(lastArguments("MV_CC_SetEnumValue"), "(null), 3");
    EXPECT_EQ(lastArguments("MV_CC_Nothing"), "(never called)");
}

}  // namespace
}  // namespace telvarra::test
