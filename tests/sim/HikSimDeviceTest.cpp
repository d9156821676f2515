// What the HikVision simulator promises beyond what the camera tests see: enumeration records
// owned and replaced by the SDK, exclusive opening, and handles that are never reused.
#include "HikSimFixture.h"

namespace telvarra::test {
namespace {

// ---- Enumeration. ----

using HikSimEnumerationTest = HikSimTest;

TEST_F(HikSimEnumerationTest, RecordsBelongToTheSdkAndAreReplacedByTheNextEnumeration) {
    addDevice("id=A1");
    addDevice("id=A2 layer=usb3");
    MV_CC_DEVICE_INFO_LIST first{}, second{};
    ASSERT_EQ(MV_CC_EnumDevices(0x3C5, &first), MV_OK);
    const std::string firstSerial = serialOf(first.pDeviceInfo[0]);
    ASSERT_EQ(MV_CC_EnumDevices(0x3C5, &second), MV_OK);
    // New records at new addresses (the old ones are freed: reading them is a use after free).
    ASSERT_EQ(second.nDeviceNum, 2u);
    for (std::uint32_t i = 0; i < 2; ++i)
        for (std::uint32_t j = 0; j < 2; ++j)
            EXPECT_NE(second.pDeviceInfo[i], first.pDeviceInfo[j]);
    EXPECT_EQ(serialOf(second.pDeviceInfo[0]), firstSerial);
    EXPECT_EQ(serialOf(second.pDeviceInfo[1]), "A2");
}

// ---- Handles and sessions. ----

using HikSimHandleTest = HikSimTest;

TEST_F(HikSimHandleTest, OpenIsExclusiveUntilClosed) {
    addDevice("id=E1 layer=usb3");
    void* first = openDevice("E1");
    void* second = createHandle("E1");
    EXPECT_EQ(MV_CC_OpenDevice(second, MV_ACCESS_Exclusive, 0), MV_E_ACCESS_DENIED);
    EXPECT_EQ(static_cast<unsigned int>(MV_E_ACCESS_DENIED), 0x80000203u);
    EXPECT_EQ(MV_CC_OpenDevice(second, MV_ACCESS_Monitor, 0), MV_E_ACCESS_DENIED);
    EXPECT_EQ(MV_CC_OpenDevice(first, MV_ACCESS_Exclusive, 0), MV_E_CALLORDER);

    EXPECT_EQ(MV_CC_CloseDevice(first), MV_OK);
    EXPECT_EQ(MV_CC_CloseDevice(first), MV_E_CALLORDER);
    EXPECT_EQ(MV_CC_OpenDevice(second, MV_ACCESS_Exclusive, 0), MV_OK);
    EXPECT_EQ(lastArguments("MV_CC_OpenDevice"), "1, 0");
}

TEST_F(HikSimHandleTest, ADestroyedHandleStaysInvalidAfterNewHandlesAndAReset) {
    addDevice("id=H1");
    void* first = openDevice("H1");
    ASSERT_EQ(MV_CC_DestroyHandle(first), MV_OK);
    EXPECT_EQ(HikSim_IsOpen("H1"), 0);  // destroying an open handle closes its session
    void* second = createHandle("H1");
    EXPECT_NE(second, first);
    EXPECT_EQ(MV_CC_OpenDevice(first, MV_ACCESS_Exclusive, 0), MV_E_HANDLE);
    EXPECT_EQ(MV_CC_DestroyHandle(first), MV_E_HANDLE);

    HikSim_Reset();
    ASSERT_EQ(MV_CC_Initialize(), MV_OK);
    addDevice("id=H1");
    void* third = createHandle("H1");
    EXPECT_NE(third, first);
    EXPECT_NE(third, second);
    EXPECT_EQ(MV_CC_CloseDevice(second), MV_E_HANDLE);
}

}  // namespace
}  // namespace telvarra::test
