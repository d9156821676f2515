// Run with TELVARRA_SIM_RIG naming sim/rigs/default.rig: the simulator has loaded it before the
// first call.
#include "HikSimFixture.h"

namespace telvarra::test {
namespace {

class HikSimDefaultRigTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { ASSERT_EQ(loadHikVisionSdk(), kHikVisionSdkLoaded); }
    static const HikVisionFunctions& sdk() { return hikVisionSdk(); }
};

TEST_F(HikSimDefaultRigTest, ListsTheColourAndTheMonoCameraOfTheDefaultRig) {
    ASSERT_EQ(sdk().MV_CC_Initialize(), MV_OK);
    MV_CC_DEVICE_INFO_LIST list{};
    ASSERT_EQ(sdk().MV_CC_EnumDevices(0x3C5, &list), MV_OK);
    ASSERT_EQ(list.nDeviceNum, 2u) << HikSim_LastError();

    const MV_CC_DEVICE_INFO* colour = list.pDeviceInfo[0];
    EXPECT_EQ(colour->nTLayerType, MV_USB_DEVICE);
    EXPECT_EQ(serialOf(colour), "DA0001");
    EXPECT_EQ(textAt(colour, 492, 64), "Line1");
    const MV_CC_DEVICE_INFO* mono = list.pDeviceInfo[1];
    EXPECT_EQ(mono->nTLayerType, MV_GIGE_DEVICE);
    EXPECT_EQ(serialOf(mono), "DA0002");
    EXPECT_EQ(textAt(mono, 212, 16), "");
    EXPECT_EQ(textAt(mono, 84, 32), "MV-CA013-20GM");

    struct Expected {
        const MV_CC_DEVICE_INFO* record;
        std::int64_t width, height;
        std::uint32_t pixelType;
    };
    for (const Expected& expected : {Expected{colour, 2448, 2048, PixelType_Gvsp_BayerRG8},
                                     Expected{mono, 1280, 1024, PixelType_Gvsp_Mono8}}) {
        void* handle = nullptr;
        ASSERT_EQ(sdk().MV_CC_CreateHandle(&handle, expected.record), MV_OK);
        ASSERT_EQ(sdk().MV_CC_OpenDevice(handle, MV_ACCESS_Exclusive, 0), MV_OK);
        MVCC_INTVALUE_EX width{}, height{};
        MVCC_ENUMVALUE format{};
        ASSERT_EQ(sdk().MV_CC_GetIntValueEx(handle, "Width", &width), MV_OK);
        ASSERT_EQ(sdk().MV_CC_GetIntValueEx(handle, "Height", &height), MV_OK);
        ASSERT_EQ(sdk().MV_CC_GetEnumValue(handle, "PixelFormat", &format), MV_OK);
        EXPECT_EQ(width.nCurValue, expected.width);
        EXPECT_EQ(height.nCurValue, expected.height);
        EXPECT_EQ(format.nCurValue, expected.pixelType);
        EXPECT_EQ(sdk().MV_CC_DestroyHandle(handle), MV_OK);
    }
    EXPECT_EQ(sdk().MV_CC_Finalize(), MV_OK);

    HikSim_Reset();  // back to an empty rig
    ASSERT_EQ(sdk().MV_CC_Initialize(), MV_OK);
    ASSERT_EQ(sdk().MV_CC_EnumDevices(0x3C5, &list), MV_OK);
    EXPECT_EQ(list.nDeviceNum, 0u);
    HikSim_Reset();
}

}  // namespace
}  // namespace telvarra::test
