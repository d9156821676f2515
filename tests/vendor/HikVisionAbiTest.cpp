// The HikVision vendor header against values copied on their own from the vendor ABI notes:
// a wrong status code, pixel type, layer bit or parameter type in the header would otherwise pass
// both the driver and the simulator, which share it.
#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "vendor/hikvision/HikVisionSdk.h"

namespace {

namespace hik = telvarra::vendor::hikvision;
using Signatures = hik::HikVisionSignatures;
using H = void*;

template <class Signature, class Expected>
constexpr bool same = std::is_same_v<Signature, Expected>;

static_assert(same<Signatures::MV_CC_Initialize, int()>);
static_assert(same<Signatures::MV_CC_Finalize, int()>);
static_assert(same<Signatures::MV_CC_CreateHandle, int(void**, const hik::MV_CC_DEVICE_INFO*)>);
static_assert(same<Signatures::MV_CC_OpenDevice, int(H, unsigned int, unsigned short)>);
static_assert(same<Signatures::MV_CC_DestroyHandle, int(H)>);
static_assert(same<Signatures::MV_CC_GetEnumValue, int(H, const char*, hik::MVCC_ENUMVALUE*)>);
static_assert(same<Signatures::MV_CC_SetEnumValue, int(H, const char*, unsigned int)>);
static_assert(same<Signatures::MV_CC_GetIntValueEx, int(H, const char*, hik::MVCC_INTVALUE_EX*)>);
static_assert(same<Signatures::MV_CC_SetIntValueEx, int(H, const char*, std::int64_t)>);
static_assert(same<Signatures::MV_CC_IsDeviceConnected, bool(H)>);  // a 1-byte bool, not int
static_assert(same<Signatures::MV_CC_CloseDevice, int(H)>);
static_assert(same<Signatures::MV_CC_StartGrabbing, int(H)>);
static_assert(same<Signatures::MV_CC_StopGrabbing, int(H)>);
static_assert(same<Signatures::MV_CC_GetImageBuffer, int(H, hik::MV_FRAME_OUT*, unsigned int)>);
static_assert(same<Signatures::MV_CC_FreeImageBuffer, int(H, hik::MV_FRAME_OUT*)>);
static_assert(same<Signatures::MV_CC_EnumDevices, int(unsigned int, hik::MV_CC_DEVICE_INFO_LIST*)>);
static_assert(same<Signatures::MV_CC_GetGainMode, int(H, hik::MVCC_ENUMVALUE*)>);
static_assert(same<Signatures::MV_CC_SetGainMode, int(H, unsigned int)>);
static_assert(same<Signatures::MV_CC_GetBrightness, int(H, hik::MVCC_INTVALUE*)>);
static_assert(same<Signatures::MV_CC_SetBrightness, int(H, unsigned int)>);
static_assert(same<Signatures::MV_CC_GetFloatValue, int(H, const char*, hik::MVCC_FLOATVALUE*)>);
static_assert(same<Signatures::MV_CC_SetFloatValue, int(H, const char*, float)>);  // not double
static_assert(same<Signatures::MV_CC_GetExposureTime, int(H, hik::MVCC_FLOATVALUE*)>);
static_assert(same<Signatures::MV_CC_SetExposureTime, int(H, float)>);
static_assert(same<Signatures::MV_CC_GetSDKVersion, unsigned int()>);
static_assert(same<Signatures::MV_CC_GetExposureAutoMode, int(H, hik::MVCC_ENUMVALUE*)>);
static_assert(same<Signatures::MV_CC_SetExposureAutoMode, int(H, unsigned int)>);
static_assert(same<Signatures::MV_CC_FlipImage, int(H, hik::MV_CC_FLIP_IMAGE_PARAM*)>);
static_assert(same<Signatures::MV_CC_RotateImage, int(H, hik::MV_CC_ROTATE_IMAGE_PARAM*)>);
static_assert(
    same<Signatures::MV_CC_ConvertPixelTypeEx, int(H, hik::MV_CC_PIXEL_CONVERT_PARAM_EX*)>);
static_assert(same<Signatures::MV_CC_GetGain, int(H, hik::MVCC_FLOATVALUE*)>);
static_assert(same<Signatures::MV_CC_SetGain, int(H, float)>);
static_assert(same<Signatures::MV_CC_SetCommandValue, int(H, const char*)>);

TEST(HikVisionAbiTest, StatusCodesAreTheVendorValues) {
    EXPECT_EQ(hik::MV_OK, 0);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_HANDLE), 0x80000000u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_SUPPORT), 0x80000001u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_CALLORDER), 0x80000003u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_PARAMETER), 0x80000004u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_NODATA), 0x80000007u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_PRECONDITION), 0x80000008u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_NOENOUGH_BUF), 0x8000000Au);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_GC_RANGE), 0x80000102u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_GC_PROPERTY), 0x80000103u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_GC_ACCESS), 0x80000106u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_ACCESS_DENIED), 0x80000203u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_NETER), 0x80000206u);
    EXPECT_EQ(static_cast<std::uint32_t>(hik::MV_E_USB_DEVICE), 0x80000302u);
}

TEST(HikVisionAbiTest, LayersModesAndPixelTypesAreTheVendorValues) {
    EXPECT_EQ(hik::MV_GIGE_DEVICE, 0x1u);
    EXPECT_EQ(hik::MV_USB_DEVICE, 0x4u);
    EXPECT_EQ(hik::MV_GENTL_GIGE_DEVICE, 0x40u);
    EXPECT_EQ(hik::MV_GENTL_CAMERALINK_DEVICE, 0x80u);
    EXPECT_EQ(hik::MV_GENTL_CXP_DEVICE, 0x100u);
    EXPECT_EQ(hik::MV_GENTL_XOF_DEVICE, 0x200u);
    EXPECT_EQ(hik::MV_ACCESS_Exclusive, 1u);
    EXPECT_EQ(hik::MV_ACCESS_Monitor, 7u);
    EXPECT_EQ(hik::MV_MAX_DEVICE_NUM, 256u);
    EXPECT_EQ(hik::MV_MAX_XML_SYMBOLIC_NUM, 64u);
    EXPECT_EQ(hik::PixelType_Gvsp_Mono8, 0x01080001u);
    EXPECT_EQ(hik::PixelType_Gvsp_BayerGR8, 0x01080008u);
    EXPECT_EQ(hik::PixelType_Gvsp_BayerRG8, 0x01080009u);
    EXPECT_EQ(hik::PixelType_Gvsp_BayerGB8, 0x0108000Au);
    EXPECT_EQ(hik::PixelType_Gvsp_BayerBG8, 0x0108000Bu);
    EXPECT_EQ(hik::PixelType_Gvsp_RGB8_Packed, 0x02180014u);
    EXPECT_EQ(hik::PixelType_Gvsp_BGR8_Packed, 0x02180015u);
    // The pixel-type field: 4 bytes in the MSVC-built Windows library, 8 under gcc on Linux.
    EXPECT_EQ(sizeof(hik::MvGvspPixelType), sizeof(long) == 4 ? 4u : 8u);
    EXPECT_EQ(sizeof(hik::MV_FRAME_OUT), sizeof(long) == 4 ? 328u : 336u);
}

TEST(HikVisionAbiTest, EnumerationsOfModesAreTheVendorValues) {
    EXPECT_EQ(hik::MV_TRIGGER_MODE_OFF, 0u);
    EXPECT_EQ(hik::MV_EXPOSURE_AUTO_MODE_OFF, 0u);
    EXPECT_EQ(hik::MV_EXPOSURE_AUTO_MODE_CONTINUOUS, 2u);
    EXPECT_EQ(hik::MV_FLIP_VERTICAL, 1u);
    EXPECT_EQ(hik::MV_FLIP_HORIZONTAL, 2u);
    EXPECT_EQ(hik::MV_IMAGE_ROTATE_90, 1u);
    EXPECT_EQ(hik::MV_IMAGE_ROTATE_270, 3u);
}

}  // namespace
