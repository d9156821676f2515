// The Dvp simulator's device list and record in both SDK versions, opening by user id, handle
// validity around unplugs and closes, descriptors and range refusals: what the library's own
// suite does not reach.
#include <vector>

#include "DvpSimFixture.h"

namespace telvarra::test {
namespace {

TEST_F(DvpSimTest, RefreshListsPluggedDevicesAndEnumFillsTheRecordOfEitherSdkVersion) {
    dvpUint32 count = 99;
    dvpCameraInfo record{};
    ASSERT_EQ(dvpRefresh(&count), DVP_STATUS_OK);  // no camera is no error
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(dvpEnum(0, &record), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    addDevice("id=R1 user=Press model=DVP-U3M130 layer=gige format=bayer_gr8 size=32x16");
    addDevice("id=R2");  // no user id: the id stands in
    addDevice("id=R3 layer=usb2");
    ASSERT_EQ(DvpSim_Unplug("R2"), 0);
    EXPECT_EQ(dvpRefresh(nullptr), DVP_STATUS_PARAMETER_INVALID);
    ASSERT_EQ(dvpRefresh(&count), DVP_STATUS_OK);
    ASSERT_EQ(count, 2u);
    EXPECT_EQ(dvpEnum(2, &record), DVP_STATUS_PARAMETER_OUT_OF_BOUND);
    EXPECT_EQ(dvpEnum(0, nullptr), DVP_STATUS_PARAMETER_INVALID);
    // Enumeration reads the last refresh, not the devices of now.
    ASSERT_EQ(DvpSim_Replug("R2"), 0);

    std::vector<unsigned char> bytes(sizeof(dvpCameraInfo), 0xEE);
    ASSERT_EQ(dvpEnum(0, reinterpret_cast<dvpCameraInfo*>(bytes.data())), DVP_STATUS_OK);
    EXPECT_EQ(textAt(bytes.data(), 0), "Do3think");
    EXPECT_EQ(textAt(bytes.data(), 64), "Do3think");
    EXPECT_EQ(textAt(bytes.data(), 128), "DVP-U3M130");
    EXPECT_EQ(textAt(bytes.data(), 192), "DVP2");
    EXPECT_EQ(textAt(bytes.data(), 256), "GigE");
    EXPECT_EQ(textAt(bytes.data(), 640), "DVP-U3M130#R1");
    EXPECT_EQ(textAt(bytes.data(), 704), "GigE");
    EXPECT_EQ(textAt(bytes.data(), 768), "R1");
    EXPECT_EQ(textAt(bytes.data(), 960, 128), "Press");
    EXPECT_EQ(textAt(bytes.data(), 1088), "R1");
    EXPECT_EQ(std::vector<unsigned char>(bytes.begin() + 1152, bytes.end()),
              std::vector<unsigned char>(64, 0));
    ASSERT_EQ(dvpEnum(1, reinterpret_cast<dvpCameraInfo*>(bytes.data())), DVP_STATUS_OK);
    EXPECT_EQ(textAt(bytes.data(), 128), "DVP-SIM");
    EXPECT_EQ(textAt(bytes.data(), 256), "USB2.0");
    EXPECT_EQ(textAt(bytes.data(), 960, 128), "R3");

    // SDK 2.16 records have reserved bytes where 2.21 puts the original serial number.
    EXPECT_EQ(DvpSim_SetSdkVersion(17), -1);
    ASSERT_EQ(DvpSim_SetSdkVersion(16), 0);
    ASSERT_EQ(dvpRefresh(&count), DVP_STATUS_OK);
    ASSERT_EQ(count, 3u);
    ASSERT_EQ(dvpEnum(1, reinterpret_cast<dvpCameraInfo*>(bytes.data())), DVP_STATUS_OK);
    EXPECT_EQ(textAt(bytes.data(), 768), "R2");
    EXPECT_EQ(textAt(bytes.data(), 960, 128), "R2");
    EXPECT_EQ(std::vector<unsigned char>(bytes.begin() + 1088, bytes.end()),
              std::vector<unsigned char>(128, 0));
    DvpSim_Reset();  // back to 2.21
    addDevice("id=R4");
    ASSERT_EQ(dvpRefresh(&count), DVP_STATUS_OK);
    ASSERT_EQ(dvpEnum(0, &record), DVP_STATUS_OK);
    EXPECT_STREQ(record.OriginalSerialNumber, "R4");
}

TEST_F(DvpSimTest, RigLimitsFollowTheRecordsFieldSizes) {
    const std::string id63(63, 'i'), model63(63, 'm'), user127(127, 'u');
    addDevice("id=" + id63 + " model=" + model63 + " user=" + user127);
    for (const std::string& line :
         {"id=" + id63 + "x", "id=L1 model=" + model63 + "x", "id=L2 user=" + user127 + "x",
          std::string("id=L3 layer=gentl-gige")})
        EXPECT_EQ(DvpSim_AddDevice(line.c_str()), -1) << line;
    dvpUint32 count = 0;
    dvpCameraInfo record{};
    ASSERT_EQ(dvpRefresh(&count), DVP_STATUS_OK);
    ASSERT_EQ(dvpEnum(0, &record), DVP_STATUS_OK);
    EXPECT_EQ(textAt(&record, 960, 128), user127);
    // The friendly name is cut to keep its terminator.
    EXPECT_EQ(textAt(&record, 640), model63);
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
    EXPECT_NE(handle, 0u);
    EXPECT_EQ(DvpSim_IsOpen("O1"), 1);
    EXPECT_EQ(DvpSim_IsOpen("O2"), 0);
    dvpHandle second = 0;
    EXPECT_EQ(dvpOpenByUserId("Press", OPEN_NORMAL, &second), DVP_STATUS_DEVICE_IS_OPENED);
    EXPECT_EQ(open("Press2"), handle + 1);  // the refusal took no number
    char arguments[32] = {};
    ASSERT_GT(DvpSim_LastArguments("dvpOpenByUserId", arguments, sizeof arguments), 0);
    EXPECT_STREQ(arguments, "Press2, 1");
}

TEST_F(DvpSimTest, HandlesStayValidAfterAnUnplugAndOnlyCloseWorksOnThem) {
    addDevice("id=H1");
    const dvpHandle handle = startStreaming("H1");
    // The bool is one byte: its neighbours stay as they were.
    unsigned char flags[3] = {0x55, 0x55, 0x55};
    ASSERT_EQ(dvpIsOnline(handle, reinterpret_cast<bool*>(&flags[1])), DVP_STATUS_OK);
    EXPECT_EQ(flags[1], 1);
    ASSERT_EQ(DvpSim_Unplug("H1"), 0);
    ASSERT_EQ(DvpSim_Replug("H1"), 0);  // the lost session does not come back
    ASSERT_EQ(dvpIsValid(handle, reinterpret_cast<bool*>(&flags[1])), DVP_STATUS_OK);
    EXPECT_EQ(flags[1], 1);
    ASSERT_EQ(dvpIsOnline(handle, reinterpret_cast<bool*>(&flags[1])), DVP_STATUS_OK);
    EXPECT_EQ(flags[1], 0);
    EXPECT_EQ(flags[0], 0x55);
    EXPECT_EQ(flags[2], 0x55);
    dvpEnum32 state = -1;
    EXPECT_EQ(dvpGetStreamState(handle, &state), DVP_STATUS_DEVICE_IS_DISCONNECTED);
    EXPECT_EQ(dvpStop(handle), DVP_STATUS_DEVICE_IS_DISCONNECTED);
    EXPECT_EQ(dvpIsOnline(handle, nullptr), DVP_STATUS_PARAMETER_INVALID);
    ASSERT_EQ(dvpClose(handle), DVP_STATUS_OK);

    bool valid = true;
    for (const dvpHandle dead : {handle, dvpHandle{0}, handle + 100}) {
        ASSERT_EQ(dvpIsValid(dead, &valid), DVP_STATUS_OK) << dead;
        EXPECT_FALSE(valid) << dead;
        EXPECT_EQ(dvpIsOnline(dead, &valid), DVP_STATUS_INVALID_HANDLE) << dead;
        EXPECT_EQ(dvpClose(dead), DVP_STATUS_INVALID_HANDLE) << dead;
        EXPECT_EQ(dvpStart(dead), DVP_STATUS_INVALID_HANDLE) << dead;
    }
    EXPECT_EQ(dvpIsValid(handle, nullptr), DVP_STATUS_PARAMETER_INVALID);
    // The names the library only looks up answer "not supported", through the call gate.
    EXPECT_EQ(dvpGetRoi(), DVP_STATUS_NOT_SUPPORTED);
    EXPECT_EQ(DvpSim_CallCount("dvpGetRoi"), 1u);
}

TEST_F(DvpSimTest, DescriptorsCarryTheRangesAndSettersRefuseWhatLiesOutside) {
    addDevice("id=D1 size=40x10 format=bayer_bg8");
    ASSERT_EQ(DvpSim_SetAeTargetRange("D1", 10, 100), 0);
    ASSERT_EQ(DvpSim_SetAnalogGainRange("D1", 2.0f, 8.0f), 0);  // clamps the current 1.0
    EXPECT_EQ(DvpSim_SetExposureRange("D1", 500.0, 100.0), -1);
    EXPECT_EQ(DvpSim_SetExposureRange("D9", 1.0, 2.0), -1);
    const dvpHandle handle = open("D1");

    std::vector<unsigned char> record(sizeof(dvpDoubleDescr), 0xEE);
    ASSERT_EQ(dvpGetAeTargetDescr(handle, reinterpret_cast<dvpIntDescr*>(record.data())),
              DVP_STATUS_OK);
    EXPECT_EQ(valueAt<dvpInt32>(record.data(), 0), 1);
    EXPECT_EQ(valueAt<dvpInt32>(record.data(), 4), 10);
    EXPECT_EQ(valueAt<dvpInt32>(record.data(), 8), 100);
    EXPECT_EQ(valueAt<dvpInt32>(record.data(), 12), 100);  // 128, clamped into the range
    ASSERT_EQ(dvpGetAnalogGainDescr(handle, reinterpret_cast<dvpFloatDescr*>(record.data())),
              DVP_STATUS_OK);
    EXPECT_EQ(valueAt<float>(record.data(), 0), 0.125f);
    EXPECT_EQ(valueAt<float>(record.data(), 4), 2.0f);
    EXPECT_EQ(valueAt<float>(record.data(), 8), 8.0f);
    EXPECT_EQ(valueAt<dvpUint32>(record.data(), 16), 0u);  // reserved
    ASSERT_EQ(dvpGetExposureDescr(handle, reinterpret_cast<dvpDoubleDescr*>(record.data())),
              DVP_STATUS_OK);
    EXPECT_EQ(valueAt<double>(record.data(), 8), 10.0);
    EXPECT_EQ(valueAt<double>(record.data(), 16), 1000000.0);
    EXPECT_EQ(valueAt<double>(record.data(), 24), 10000.0);
    EXPECT_EQ(dvpGetExposureDescr(handle, nullptr), DVP_STATUS_PARAMETER_INVALID);

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
    EXPECT_EQ(operation, AE_OP_OFF);
    double exposure = 0;
    ASSERT_EQ(dvpGetExposure(handle, &exposure), DVP_STATUS_OK);
    EXPECT_EQ(exposure, 1000000.0);  // refusals changed nothing

    std::vector<unsigned char> sensor(sizeof(dvpSensorInfo), 0xEE);
    ASSERT_EQ(dvpGetSensorInfo(handle, reinterpret_cast<dvpSensorInfo*>(sensor.data())),
              DVP_STATUS_OK);
    EXPECT_EQ(textAt(sensor.data(), 0), "SIM");
    EXPECT_EQ(valueAt<dvpEnum32>(sensor.data(), 64), 0);  // CMOS
    EXPECT_EQ(valueAt<dvpEnum32>(sensor.data(), 68), SENSOR_PIXEL_BAYER_BG);
    const dvpInt32 region[6] = {16, 10, 40, 10, 2, 2};  // minimum, maximum, steps
    for (int i = 0; i < 6; ++i) EXPECT_EQ(valueAt<dvpInt32>(sensor.data(), 72 + 4 * i), region[i]);
}

}  // namespace
}  // namespace telvarra::test
