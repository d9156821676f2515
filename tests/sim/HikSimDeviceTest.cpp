// The HikVision simulator's set-up, enumeration, handles, feature nodes, fault plan, unplugging
// and rig loading, through the bound function table.
#include <cmath>
#include <limits>

#include "HikSimFixture.h"
#include "support/TempDir.h"

namespace telvarra::test {
namespace {

std::string lastArguments(const char* function) {
    char buffer[128] = {};
    if (HikSim_LastArguments(function, buffer, sizeof buffer) < 0) return "(never called)";
    return buffer;
}

// ---- Set-up and call order. ----

using HikSimCallOrderTest = HikSimTest;

TEST_F(HikSimCallOrderTest, EverythingButTheVersionWaitsForInitialize) {
    addDevice("id=C1");
    void* handle = openDevice("C1");
    ASSERT_EQ(sdk().MV_CC_Finalize(), MV_OK);

    MV_CC_DEVICE_INFO_LIST list{};
    MVCC_ENUMVALUE value{};
    EXPECT_EQ(sdk().MV_CC_EnumDevices(0x3C5, &list), MV_E_CALLORDER);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, 1, 0), MV_E_CALLORDER);
    EXPECT_EQ(sdk().MV_CC_GetEnumValue(handle, "TriggerMode", &value), MV_E_CALLORDER);
    EXPECT_EQ(sdk().MV_CC_Finalize(), MV_E_CALLORDER);
    EXPECT_FALSE(sdk().MV_CC_IsDeviceConnected(handle));
    EXPECT_EQ(sdk().MV_CC_GetSDKVersion(), HIKSIM_SDK_VERSION);

    // Finalize let go of every handle: the device is free again after a new Initialize.
    EXPECT_EQ(HikSim_IsOpen("C1"), 0);
    ASSERT_EQ(sdk().MV_CC_Initialize(), MV_OK);
    ASSERT_EQ(sdk().MV_CC_Initialize(), MV_OK);  // repeating it is harmless
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, 1, 0), MV_E_HANDLE);
    openDevice("C1");
}

// Every exported name is counted under its own name: calling each once (with arguments every
// function refuses) counts each once.
TEST_F(HikSimCallOrderTest, CountsEveryFunctionUnderItsExportedName) {
    HikSim_ClearCallCounts();
    const auto& f = sdk();
    void* none = nullptr;
    f.MV_CC_Initialize();
    f.MV_CC_CreateHandle(nullptr, nullptr);
    f.MV_CC_OpenDevice(none, 1, 0);
    f.MV_CC_DestroyHandle(none);
    f.MV_CC_GetEnumValue(none, "TriggerMode", nullptr);
    f.MV_CC_SetEnumValue(none, "TriggerMode", 0);
    f.MV_CC_GetIntValueEx(none, "Width", nullptr);
    f.MV_CC_SetIntValueEx(none, "Width", 8);
    f.MV_CC_IsDeviceConnected(none);
    f.MV_CC_CloseDevice(none);
    f.MV_CC_StartGrabbing(none);
    f.MV_CC_StopGrabbing(none);
    f.MV_CC_GetImageBuffer(none, nullptr, 1);
    f.MV_CC_FreeImageBuffer(none, nullptr);
    f.MV_CC_EnumDevices(0, nullptr);
    f.MV_CC_GetGainMode(none, nullptr);
    f.MV_CC_SetGainMode(none, 0);
    f.MV_CC_GetBrightness(none, nullptr);
    f.MV_CC_SetBrightness(none, 0);
    f.MV_CC_GetFloatValue(none, "Gain", nullptr);
    f.MV_CC_SetFloatValue(none, "Gain", 1.0f);
    f.MV_CC_GetExposureTime(none, nullptr);
    f.MV_CC_SetExposureTime(none, 1.0f);
    f.MV_CC_GetSDKVersion();
    f.MV_CC_GetExposureAutoMode(none, nullptr);
    f.MV_CC_SetExposureAutoMode(none, 0);
    f.MV_CC_FlipImage(none, nullptr);
    f.MV_CC_RotateImage(none, nullptr);
    f.MV_CC_ConvertPixelTypeEx(none, nullptr);
    f.MV_CC_GetGain(none, nullptr);
    f.MV_CC_SetGain(none, 1.0f);
    f.MV_CC_SetCommandValue(none, "UserDataSave");
    f.MV_CC_Finalize();
    for (const char* name : kHikVisionFunctionNames) EXPECT_EQ(HikSim_CallCount(name), 1u) << name;
}

// ---- Enumeration. ----

using HikSimEnumerationTest = HikSimTest;

TEST_F(HikSimEnumerationTest, WritesEachLayersTextsWhereTheVendorRecordHasThem) {
    addDevice("id=GIGE0123456789AB user=UserName-16bytes model=MV-CA013-20GM layer=gige");
    addDevice("id=USB001 user=Line2 model=MV-CA050-10UC layer=usb3");
    addDevice("id=CXP001 model=MV-CH250-90XC layer=gentl-cxp");
    const auto records = enumerate();
    ASSERT_EQ(records.size(), 3u);

    const MV_CC_DEVICE_INFO* gige = records[0];
    EXPECT_EQ(gige->nTLayerType, MV_GIGE_DEVICE);
    EXPECT_EQ(textAt(gige, 212, 16), "UserName-16bytes");
    EXPECT_EQ(textAt(gige, 84, 32), "MV-CA013-20GM");
    // 16-character texts fill their fields: no terminator follows them.
    EXPECT_EQ(textAt(gige, 196, 16), "GIGE0123456789AB");
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(gige);
    EXPECT_NE(bytes[196 + 15], 0);
    EXPECT_NE(bytes[212 + 15], 0);

    EXPECT_EQ(records[1]->nTLayerType, MV_USB_DEVICE);
    EXPECT_EQ(textAt(records[1], 492, 64), "Line2");
    EXPECT_EQ(textAt(records[1], 172, 64), "MV-CA050-10UC");
    EXPECT_EQ(textAt(records[1], 428, 64), "USB001");

    EXPECT_EQ(records[2]->nTLayerType, MV_GENTL_CXP_DEVICE);
    EXPECT_EQ(textAt(records[2], 416, 64), "");
    EXPECT_EQ(textAt(records[2], 160, 64), "MV-CH250-90XC");
    EXPECT_EQ(textAt(records[2], 352, 64), "CXP001");
}

TEST_F(HikSimEnumerationTest, HonoursTheLayerMaskAndTheGigEBitTakesGenTLGigEToo) {
    addDevice("id=G1 layer=gige");
    addDevice("id=U1 layer=usb3");
    addDevice("id=T1 layer=gentl-gige");
    addDevice("id=L1 layer=gentl-cml");
    addDevice("id=X1 layer=gentl-xof");
    auto serials = [&](unsigned int mask) {
        std::vector<std::string> found;
        for (const MV_CC_DEVICE_INFO* record : enumerate(mask)) found.push_back(serialOf(record));
        return found;
    };
    EXPECT_EQ(serials(0x3C5), (std::vector<std::string>{"G1", "U1", "T1", "L1", "X1"}));
    EXPECT_EQ(serials(MV_GIGE_DEVICE), (std::vector<std::string>{"G1", "T1"}));
    EXPECT_EQ(serials(MV_GENTL_GIGE_DEVICE), (std::vector<std::string>{"T1"}));
    EXPECT_EQ(serials(MV_USB_DEVICE | MV_GENTL_XOF_DEVICE), (std::vector<std::string>{"U1", "X1"}));
    EXPECT_TRUE(serials(0).empty());
    EXPECT_EQ(enumerate(MV_GENTL_GIGE_DEVICE).front()->nTLayerType, MV_GENTL_GIGE_DEVICE);
}

TEST_F(HikSimEnumerationTest, NoDevicesIsSuccessWithCountZero) {
    m_list.nDeviceNum = 99;
    EXPECT_EQ(sdk().MV_CC_EnumDevices(0x3C5, &m_list), MV_OK);
    EXPECT_EQ(m_list.nDeviceNum, 0u);
    EXPECT_EQ(sdk().MV_CC_EnumDevices(0x3C5, nullptr), MV_E_PARAMETER);
}

TEST_F(HikSimEnumerationTest, RecordsBelongToTheSdkAndAreReplacedByTheNextEnumeration) {
    addDevice("id=A1");
    addDevice("id=A2 layer=usb3");
    MV_CC_DEVICE_INFO_LIST first{}, second{};
    ASSERT_EQ(sdk().MV_CC_EnumDevices(0x3C5, &first), MV_OK);
    const std::string firstSerial = serialOf(first.pDeviceInfo[0]);
    ASSERT_EQ(sdk().MV_CC_EnumDevices(0x3C5, &second), MV_OK);
    // New records at new addresses (the old ones are freed: reading them is a use after free).
    ASSERT_EQ(second.nDeviceNum, 2u);
    for (std::uint32_t i = 0; i < 2; ++i)
        for (std::uint32_t j = 0; j < 2; ++j)
            EXPECT_NE(second.pDeviceInfo[i], first.pDeviceInfo[j]);
    EXPECT_EQ(serialOf(second.pDeviceInfo[0]), firstSerial);
    EXPECT_EQ(serialOf(second.pDeviceInfo[1]), "A2");
}

TEST_F(HikSimEnumerationTest, ListsAtMostTheListsCapacity) {
    for (int i = 0; i < 257; ++i) addDevice("id=N" + std::to_string(i));
    const auto records = enumerate();
    ASSERT_EQ(records.size(), MV_MAX_DEVICE_NUM);
    EXPECT_EQ(serialOf(records.back()), "N255");
}

TEST_F(HikSimEnumerationTest, RefusesDevicesItsRecordsCannotHold) {
    const char* refused[] = {
        "id=G2345678901234567 layer=gige",  // 17 bytes: more than a GigE serial field
        "id=U layer=usb3 user="
        "12345678901234567890123456789012345678901234567890123456789012345",
        "id=Y layer=firewire",
        "daheng id=D",
        "id=Z size=0x0",
        "id=W size=65535x65535",  // a frame longer than the 32-bit frame length
    };
    for (const char* line : refused) {
        EXPECT_EQ(HikSim_AddDevice(line), -1) << line;
        EXPECT_STRNE(HikSim_LastError(), "") << line;
    }
    addDevice("id=DUP");
    EXPECT_EQ(HikSim_AddDevice("hikvision id=DUP layer=usb3"), -1);
    EXPECT_STREQ(HikSim_LastError(), "id already present: DUP");
    EXPECT_TRUE(enumerate().size() == 1);
}

// ---- Handles and sessions. ----

using HikSimHandleTest = HikSimTest;

TEST_F(HikSimHandleTest, OpenIsExclusiveUntilClosed) {
    addDevice("id=E1 layer=usb3");
    void* first = openDevice("E1");
    void* second = createHandle("E1");
    EXPECT_EQ(sdk().MV_CC_OpenDevice(second, MV_ACCESS_Exclusive, 0), MV_E_ACCESS_DENIED);
    EXPECT_EQ(static_cast<unsigned int>(MV_E_ACCESS_DENIED), 0x80000203u);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(second, MV_ACCESS_Monitor, 0), MV_E_ACCESS_DENIED);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(first, MV_ACCESS_Exclusive, 0), MV_E_CALLORDER);

    EXPECT_EQ(sdk().MV_CC_CloseDevice(first), MV_OK);
    EXPECT_EQ(sdk().MV_CC_CloseDevice(first), MV_E_CALLORDER);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(second, MV_ACCESS_Exclusive, 0), MV_OK);
    EXPECT_EQ(lastArguments("MV_CC_OpenDevice"), "1, 0");
}

TEST_F(HikSimHandleTest, ConnectedOnlyBetweenOpenAndClose) {
    addDevice("id=E2");
    void* handle = createHandle("E2");
    EXPECT_FALSE(sdk().MV_CC_IsDeviceConnected(handle));
    ASSERT_EQ(sdk().MV_CC_OpenDevice(handle, MV_ACCESS_Exclusive, 0), MV_OK);
    EXPECT_TRUE(sdk().MV_CC_IsDeviceConnected(handle));
    EXPECT_EQ(HikSim_IsOpen("E2"), 1);
    ASSERT_EQ(sdk().MV_CC_CloseDevice(handle), MV_OK);
    EXPECT_FALSE(sdk().MV_CC_IsDeviceConnected(handle));
    EXPECT_EQ(HikSim_IsOpen("E2"), 0);
}

TEST_F(HikSimHandleTest, DestroyingAnOpenHandleReleasesTheDeviceAndInvalidatesTheHandle) {
    addDevice("id=E3");
    void* handle = openDevice("E3");
    ASSERT_EQ(sdk().MV_CC_DestroyHandle(handle), MV_OK);
    EXPECT_EQ(HikSim_IsOpen("E3"), 0);
    EXPECT_EQ(sdk().MV_CC_DestroyHandle(handle), MV_E_HANDLE);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, MV_ACCESS_Exclusive, 0), MV_E_HANDLE);
    EXPECT_FALSE(sdk().MV_CC_IsDeviceConnected(handle));
    void* next = openDevice("E3");
    EXPECT_NE(next, handle);  // handle values are not reused
}

TEST_F(HikSimHandleTest, RefusesBadRecordsAndAccessModes) {
    addDevice("id=E4");
    void* handle = nullptr;
    MV_CC_DEVICE_INFO record = recordOf("E4");
    EXPECT_EQ(sdk().MV_CC_CreateHandle(nullptr, &record), MV_E_PARAMETER);
    EXPECT_EQ(sdk().MV_CC_CreateHandle(&handle, nullptr), MV_E_PARAMETER);
    MV_CC_DEVICE_INFO unknown = record;
    std::memcpy(unknown.SpecialInfo.stGigEInfo.chSerialNumber, "NOPE", 5);
    EXPECT_EQ(sdk().MV_CC_CreateHandle(&handle, &unknown), MV_E_PARAMETER);
    MV_CC_DEVICE_INFO wrongLayer = record;
    wrongLayer.nTLayerType = MV_USB_DEVICE;
    EXPECT_EQ(sdk().MV_CC_CreateHandle(&handle, &wrongLayer), MV_E_PARAMETER);

    ASSERT_EQ(sdk().MV_CC_CreateHandle(&handle, &record), MV_OK);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, 0, 0), MV_E_PARAMETER);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, 8, 0), MV_E_PARAMETER);
}

// ---- Feature nodes. ----

using HikSimNodeTest = HikSimTest;

TEST_F(HikSimNodeTest, TriggerModeReadsAndWritesOffAndOn) {
    addDevice("id=N1");
    void* handle = openDevice("N1");
    MVCC_ENUMVALUE value{};
    ASSERT_EQ(sdk().MV_CC_GetEnumValue(handle, "TriggerMode", &value), MV_OK);
    EXPECT_EQ(value.nCurValue, MV_TRIGGER_MODE_OFF);
    ASSERT_EQ(value.nSupportedNum, 2u);
    EXPECT_EQ(value.nSupportValue[1], MV_TRIGGER_MODE_ON);
    ASSERT_EQ(sdk().MV_CC_SetEnumValue(handle, "TriggerMode", 1), MV_OK);
    ASSERT_EQ(sdk().MV_CC_GetEnumValue(handle, "TriggerMode", &value), MV_OK);
    EXPECT_EQ(value.nCurValue, 1u);
    EXPECT_EQ(sdk().MV_CC_SetEnumValue(handle, "TriggerMode", 2), MV_E_GC_RANGE);
    EXPECT_EQ(lastArguments("MV_CC_SetEnumValue"), "TriggerMode, 2");
    unsigned int last = 0;
    ASSERT_EQ(HikSim_LastSetEnumValue("TriggerMode", &last), 0);
    EXPECT_EQ(last, 2u);
    EXPECT_EQ(HikSim_LastSetEnumValue("PixelFormat", &last), -1);
}

TEST_F(HikSimNodeTest, PixelFormatListsTheOfferedTypesAndIsReadOnlyWhileStreaming) {
    addDevice("id=N2 format=bayer_rg8 size=8x4");
    void* handle = openDevice("N2");
    MVCC_ENUMVALUE value{};
    ASSERT_EQ(sdk().MV_CC_GetEnumValue(handle, "PixelFormat", &value), MV_OK);
    EXPECT_EQ(value.nCurValue, PixelType_Gvsp_BayerRG8);
    ASSERT_EQ(value.nSupportedNum, 4u);
    EXPECT_EQ(std::vector<std::uint32_t>(value.nSupportValue, value.nSupportValue + 4),
              (std::vector<std::uint32_t>{PixelType_Gvsp_BayerRG8, PixelType_Gvsp_Mono8,
                                          PixelType_Gvsp_RGB8_Packed, PixelType_Gvsp_BGR8_Packed}));
    EXPECT_EQ(sdk().MV_CC_SetEnumValue(handle, "PixelFormat", PixelType_Gvsp_BayerGB8),
              MV_E_GC_RANGE);
    EXPECT_EQ(sdk().MV_CC_SetEnumValue(handle, "PixelFormat", PixelType_Gvsp_Jpeg), MV_E_GC_RANGE);
    ASSERT_EQ(sdk().MV_CC_SetEnumValue(handle, "PixelFormat", PixelType_Gvsp_RGB8_Packed), MV_OK);

    ASSERT_EQ(sdk().MV_CC_StartGrabbing(handle), MV_OK);
    EXPECT_EQ(sdk().MV_CC_SetEnumValue(handle, "PixelFormat", PixelType_Gvsp_Mono8),
              MV_E_GC_ACCESS);
    MV_FRAME_OUT frame{};
    ASSERT_EQ(sdk().MV_CC_GetImageBuffer(handle, &frame, 100), MV_OK);
    EXPECT_EQ(static_cast<std::uint32_t>(frame.stFrameInfo.enPixelType),
              PixelType_Gvsp_RGB8_Packed);
    EXPECT_EQ(frame.stFrameInfo.nFrameLen, 8u * 4 * 3);
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(handle, &frame), MV_OK);

    addDevice("id=N3 formats=mono8");
    void* mono = openDevice("N3");
    ASSERT_EQ(sdk().MV_CC_GetEnumValue(mono, "PixelFormat", &value), MV_OK);
    EXPECT_EQ(value.nSupportedNum, 1u);
    EXPECT_EQ(value.nSupportValue[0], PixelType_Gvsp_Mono8);
}

TEST_F(HikSimNodeTest, UnknownNodesAndClosedDevicesAreRefused) {
    addDevice("id=N5");
    void* closed = createHandle("N5");
    MVCC_ENUMVALUE value{};
    MVCC_INTVALUE_EX number{};
    EXPECT_EQ(sdk().MV_CC_GetEnumValue(closed, "TriggerMode", &value), MV_E_CALLORDER);
    void* handle = openDevice("N5");
    EXPECT_EQ(sdk().MV_CC_GetEnumValue(handle, "AcquisitionMode", &value), MV_E_GC_PROPERTY);
    EXPECT_EQ(sdk().MV_CC_GetEnumValue(handle, "Width", &value), MV_E_GC_PROPERTY);
    EXPECT_EQ(sdk().MV_CC_GetIntValueEx(handle, "TriggerMode", &number), MV_E_GC_PROPERTY);
    EXPECT_EQ(sdk().MV_CC_GetEnumValue(handle, nullptr, &value), MV_E_PARAMETER);
    EXPECT_EQ(sdk().MV_CC_SetCommandValue(handle, "UserDataSave"), MV_OK);
    EXPECT_EQ(sdk().MV_CC_SetCommandValue(handle, "UserSetSave"), MV_E_GC_PROPERTY);
    // Bound but never called by our code: present, and "not supported".
    MVCC_FLOATVALUE real{};
    EXPECT_EQ(sdk().MV_CC_SetIntValueEx(handle, "Width", 8), MV_E_SUPPORT);
    EXPECT_EQ(sdk().MV_CC_SetGainMode(handle, 0), MV_E_SUPPORT);
    EXPECT_EQ(sdk().MV_CC_GetFloatValue(handle, "Gain", &real), MV_E_SUPPORT);
    EXPECT_EQ(sdk().MV_CC_SetFloatValue(handle, "Gain", 1.0f), MV_E_SUPPORT);
}

TEST_F(HikSimNodeTest, BrightnessKeepsToItsRangeAndTheRangeIsSettable) {
    addDevice("id=N6");
    void* handle = openDevice("N6");
    MVCC_INTVALUE value{};
    ASSERT_EQ(sdk().MV_CC_GetBrightness(handle, &value), MV_OK);
    EXPECT_EQ(value.nMin, 0u);
    EXPECT_EQ(value.nMax, 255u);
    EXPECT_EQ(value.nInc, 1u);
    ASSERT_EQ(sdk().MV_CC_SetBrightness(handle, 255), MV_OK);
    EXPECT_EQ(sdk().MV_CC_SetBrightness(handle, 256), MV_E_GC_RANGE);
    unsigned int last = 0;
    ASSERT_EQ(HikSim_LastSetBrightness(&last), 0);
    EXPECT_EQ(last, 256u);  // recorded although refused

    ASSERT_EQ(HikSim_SetBrightnessRange("N6", 40, 40), 0);
    ASSERT_EQ(sdk().MV_CC_GetBrightness(handle, &value), MV_OK);
    EXPECT_EQ(value.nMin, 40u);
    EXPECT_EQ(value.nMax, 40u);
    EXPECT_EQ(value.nCurValue, 40u);  // clamped into the new range
    EXPECT_EQ(sdk().MV_CC_SetBrightness(handle, 39), MV_E_GC_RANGE);
    EXPECT_EQ(HikSim_SetBrightnessRange("N6", 41, 40), -1);
    EXPECT_EQ(HikSim_SetBrightnessRange("nobody", 0, 1), -1);
}

TEST_F(HikSimNodeTest, GainAndExposureTakeFloatsWithinTheirRanges) {
    addDevice("id=N7");
    void* handle = openDevice("N7");
    ASSERT_EQ(HikSim_SetGainRange("N7", 1.5f, 24.0f), 0);
    ASSERT_EQ(HikSim_SetExposureRange("N7", 20.0f, 1000000.0f), 0);
    MVCC_FLOATVALUE gain{}, exposure{};
    ASSERT_EQ(sdk().MV_CC_GetGain(handle, &gain), MV_OK);
    EXPECT_EQ(gain.fMin, 1.5f);
    EXPECT_EQ(gain.fMax, 24.0f);
    EXPECT_EQ(gain.fCurValue, 1.5f);  // the old 0 dB clamped into the range

    ASSERT_EQ(sdk().MV_CC_SetGain(handle, 12.25f), MV_OK);
    ASSERT_EQ(sdk().MV_CC_GetGain(handle, &gain), MV_OK);
    EXPECT_EQ(gain.fCurValue, 12.25f);
    EXPECT_EQ(sdk().MV_CC_SetGain(handle, 24.5f), MV_E_GC_RANGE);
    EXPECT_EQ(sdk().MV_CC_SetGain(handle, std::numeric_limits<float>::quiet_NaN()), MV_E_GC_RANGE);

    ASSERT_EQ(sdk().MV_CC_SetExposureTime(handle, 100010.0f), MV_OK);
    ASSERT_EQ(sdk().MV_CC_GetExposureTime(handle, &exposure), MV_OK);
    EXPECT_EQ(exposure.fCurValue, 100010.0f);
    EXPECT_EQ(exposure.fMax, 1000000.0f);
    EXPECT_EQ(sdk().MV_CC_SetExposureTime(handle, 19.5f), MV_E_GC_RANGE);
    float last = 0;
    ASSERT_EQ(HikSim_LastSetExposureTime(&last), 0);
    EXPECT_EQ(last, 19.5f);
    ASSERT_EQ(HikSim_LastSetGain(&last), 0);
    EXPECT_TRUE(std::isnan(last));
    EXPECT_EQ(lastArguments("MV_CC_SetExposureTime"), "19.5");
}

TEST_F(HikSimNodeTest, AutomaticExposureOwnsTheExposureTimeAndOnceFallsBackToOff) {
    addDevice("id=N8");
    void* handle = openDevice("N8");
    MVCC_ENUMVALUE mode{};
    ASSERT_EQ(sdk().MV_CC_GetExposureAutoMode(handle, &mode), MV_OK);
    EXPECT_EQ(mode.nCurValue, MV_EXPOSURE_AUTO_MODE_OFF);
    EXPECT_EQ(mode.nSupportedNum, 3u);

    ASSERT_EQ(sdk().MV_CC_SetExposureAutoMode(handle, MV_EXPOSURE_AUTO_MODE_CONTINUOUS), MV_OK);
    ASSERT_EQ(sdk().MV_CC_GetExposureAutoMode(handle, &mode), MV_OK);
    EXPECT_EQ(mode.nCurValue, MV_EXPOSURE_AUTO_MODE_CONTINUOUS);
    EXPECT_EQ(sdk().MV_CC_SetExposureTime(handle, 5000.0f), MV_E_GC_ACCESS);

    ASSERT_EQ(sdk().MV_CC_SetExposureAutoMode(handle, MV_EXPOSURE_AUTO_MODE_ONCE), MV_OK);
    ASSERT_EQ(sdk().MV_CC_GetExposureAutoMode(handle, &mode), MV_OK);
    EXPECT_EQ(mode.nCurValue, MV_EXPOSURE_AUTO_MODE_OFF);
    EXPECT_EQ(sdk().MV_CC_SetExposureTime(handle, 5000.0f), MV_OK);
    EXPECT_EQ(sdk().MV_CC_SetExposureAutoMode(handle, 3), MV_E_GC_RANGE);
    unsigned int last = 0;
    ASSERT_EQ(HikSim_LastSetExposureAutoMode(&last), 0);
    EXPECT_EQ(last, 3u);

    ASSERT_EQ(sdk().MV_CC_GetGainMode(handle, &mode), MV_OK);
    EXPECT_EQ(mode.nCurValue, MV_GAIN_MODE_OFF);
    ASSERT_EQ(sdk().MV_CC_SetEnumValue(handle, "GainAuto", MV_GAIN_MODE_CONTINUOUS), MV_OK);
    ASSERT_EQ(sdk().MV_CC_GetGainMode(handle, &mode), MV_OK);
    EXPECT_EQ(mode.nCurValue, MV_GAIN_MODE_CONTINUOUS);
    EXPECT_EQ(sdk().MV_CC_SetGain(handle, 1.0f), MV_E_GC_ACCESS);
}

// ---- Fault plan. ----

using HikSimFaultTest = HikSimTest;

TEST_F(HikSimFaultTest, FailsTheNthCallOnceAndAStandingFaultUntilCleared) {
    addDevice("id=F1");
    void* handle = createHandle("F1");
    HikSim_FailCall("MV_CC_OpenDevice", MV_E_BUSY, 2);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, 1, 0), MV_OK);
    ASSERT_EQ(sdk().MV_CC_CloseDevice(handle), MV_OK);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, 1, 0), MV_E_BUSY);
    EXPECT_EQ(HikSim_IsOpen("F1"), 0);  // a failing call does nothing else
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, 1, 0), MV_OK);

    HikSim_FailAlways("MV_CC_IsDeviceConnected", MV_E_NETER);
    HikSim_FailAlways("MV_CC_GetSDKVersion", MV_E_UNKNOW);
    HikSim_FailAlways("MV_CC_EnumDevices", MV_E_RESOURCE);
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(sdk().MV_CC_IsDeviceConnected(handle));
        EXPECT_EQ(sdk().MV_CC_GetSDKVersion(), static_cast<unsigned int>(MV_E_UNKNOW));
        MV_CC_DEVICE_INFO_LIST list{};
        EXPECT_EQ(sdk().MV_CC_EnumDevices(0x3C5, &list), MV_E_RESOURCE);
    }
    HikSim_ClearFaults();
    EXPECT_TRUE(sdk().MV_CC_IsDeviceConnected(handle));
    EXPECT_EQ(sdk().MV_CC_GetSDKVersion(), HIKSIM_SDK_VERSION);
    EXPECT_EQ(HikSim_CallCount("MV_CC_IsDeviceConnected"), 4u);  // failed calls count too
}

TEST_F(HikSimFaultTest, ArgumentsAreKeptAsText) {
    enumerate(0x3C5);
    EXPECT_EQ(lastArguments("MV_CC_EnumDevices"), "0x3c5");
    EXPECT_EQ(lastArguments("MV_CC_GetGain"), "(never called)");
    char small[4] = {};
    EXPECT_EQ(HikSim_LastArguments("MV_CC_EnumDevices", small, sizeof small), 5);
    EXPECT_STREQ(small, "0x3");
}

// ---- Unplug and replug. ----

using HikSimUnplugTest = HikSimTest;

TEST_F(HikSimUnplugTest, UnpluggingKillsTheSessionAndReplugLetsANewOneOpen) {
    addDevice("id=P1 layer=usb3 size=4x4");
    void* old = startStreaming("P1");
    ASSERT_EQ(HikSim_Unplug("P1"), 0);

    EXPECT_FALSE(sdk().MV_CC_IsDeviceConnected(old));
    MV_FRAME_OUT frame{};
    EXPECT_EQ(sdk().MV_CC_GetImageBuffer(old, &frame, 2000), MV_E_NODATA);
    EXPECT_EQ(sdk().MV_CC_StopGrabbing(old), MV_E_USB_DEVICE);
    MVCC_FLOATVALUE gain{};
    EXPECT_EQ(sdk().MV_CC_GetGain(old, &gain), MV_E_USB_DEVICE);
    EXPECT_TRUE(enumerate().empty());
    EXPECT_EQ(HikSim_IsOpen("P1"), 0);
    EXPECT_EQ(HikSim_IsGrabbing("P1"), 0);

    ASSERT_EQ(HikSim_Replug("P1"), 0);
    EXPECT_FALSE(sdk().MV_CC_IsDeviceConnected(old));  // the old session stays dead
    ASSERT_EQ(enumerate().size(), 1u);
    void* fresh = startStreaming("P1");
    EXPECT_TRUE(sdk().MV_CC_IsDeviceConnected(fresh));
    ASSERT_EQ(sdk().MV_CC_GetImageBuffer(fresh, &frame, 2000), MV_OK);
    EXPECT_EQ(frame.stFrameInfo.nFrameNum, 1u);
    EXPECT_EQ(sdk().MV_CC_FreeImageBuffer(fresh, &frame), MV_OK);

    // Closing and destroying the dead handle leaves the new session alone.
    EXPECT_EQ(sdk().MV_CC_CloseDevice(old), MV_OK);
    EXPECT_EQ(sdk().MV_CC_DestroyHandle(old), MV_OK);
    EXPECT_TRUE(sdk().MV_CC_IsDeviceConnected(fresh));
}

TEST_F(HikSimUnplugTest, AnUnpluggedDeviceCannotBeOpened) {
    addDevice("id=P2 layer=gige");
    void* handle = createHandle("P2");
    ASSERT_EQ(HikSim_Unplug("P2"), 0);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, MV_ACCESS_Exclusive, 0), MV_E_NETER);
    ASSERT_EQ(HikSim_Replug("P2"), 0);
    EXPECT_EQ(sdk().MV_CC_OpenDevice(handle, MV_ACCESS_Exclusive, 0), MV_OK);
    EXPECT_EQ(HikSim_Unplug("nobody"), -1);
}

TEST_F(HikSimUnplugTest, ARemovedDeviceIsGoneForGood) {
    addDevice("id=P3 layer=gentl-cml");
    const MV_CC_DEVICE_INFO record = recordOf("P3");
    void* handle = openDevice("P3");
    ASSERT_EQ(HikSim_RemoveDevice("P3"), 0);
    EXPECT_FALSE(sdk().MV_CC_IsDeviceConnected(handle));
    EXPECT_EQ(sdk().MV_CC_StartGrabbing(handle), MV_E_PRECONDITION);
    void* again = nullptr;
    EXPECT_EQ(sdk().MV_CC_CreateHandle(&again, &record), MV_E_PARAMETER);
    EXPECT_EQ(sdk().MV_CC_DestroyHandle(handle), MV_OK);
    EXPECT_EQ(HikSim_RemoveDevice("P3"), -1);
}

// ---- Rig file. ----

using HikSimRigTest = HikSimTest;

TEST_F(HikSimRigTest, LoadsItsOwnLinesAndReportsItsBadOnes) {
    TempDir directory;
    const std::string path = directory.file("test.rig");
    writeFile(path,
              "# two good, three bad for us, one bad for another make\n"
              "hikvision id=R1 user=Left layer=usb3 size=64x48 format=bayer_bg8\n"
              "daheng id=R1\n"
              "hikvision id=R2 layer=gentl-xof\n"
              "hikvision id=R3 layer=coax\n"
              "hikvision id=R4 size=big\n"
              "daheng id=R5 size=big\n"
              "canonn id=R6\n");
    EXPECT_EQ(HikSim_LoadRig(path.c_str()), 2);
    EXPECT_STREQ(HikSim_LastError(),
                 "line 6: size must be WIDTHxHEIGHT, each 1..65535: big\n"
                 "line 8: unknown make: canonn\n"
                 "line 5: unknown layer (gige, usb3, gentl-gige, gentl-cml, gentl-cxp, "
                 "gentl-xof): coax\n");
    const auto records = enumerate();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(textAt(records[0], 492, 64), "Left");
    EXPECT_EQ(records[1]->nTLayerType, MV_GENTL_XOF_DEVICE);

    void* handle = openDevice("R1");
    MVCC_ENUMVALUE format{};
    ASSERT_EQ(sdk().MV_CC_GetEnumValue(handle, "PixelFormat", &format), MV_OK);
    EXPECT_EQ(format.nCurValue, PixelType_Gvsp_BayerBG8);

    EXPECT_EQ(HikSim_LoadRig(directory.file("missing.rig").c_str()), -1);
}

}  // namespace
}  // namespace telvarra::test
