// The DaHeng vendor header against values copied on their own from the vendor ABI notes.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "vendor/daheng/DaHengSdk.h"

namespace {

namespace gx = telvarra::vendor::daheng;
using Signatures = gx::DaHengSignatures;
using S = std::int32_t;  // GX_STATUS
using Port = void*;

template <class Signature, class Expected>
constexpr bool same = std::is_same_v<Signature, Expected>;

static_assert(same<Signatures::GXInitLib, S()>);
static_assert(same<Signatures::GXCloseLib, S()>);
static_assert(same<Signatures::GXUpdateAllDeviceList, S(std::uint32_t*, std::uint32_t)>);
static_assert(same<Signatures::GXGetAllDeviceBaseInfo, S(gx::GX_DEVICE_BASE_INFO*, std::size_t*)>);
static_assert(same<Signatures::GXOpenDevice, S(gx::GX_OPEN_PARAM*, void**)>);
static_assert(same<Signatures::GXCloseDevice, S(void*)>);
static_assert(same<Signatures::GXFeatureSave, S(Port, const char*)>);
static_assert(same<Signatures::GXGetIntValue, S(Port, const char*, gx::GX_INT_VALUE*)>);
static_assert(same<Signatures::GXSetIntValue, S(Port, const char*, std::int64_t)>);
// The whole 19,680-byte record, not a plain integer.
static_assert(same<Signatures::GXGetEnumValue, S(Port, const char*, gx::GX_ENUM_VALUE*)>);
static_assert(same<Signatures::GXSetEnumValue, S(Port, const char*, std::int64_t)>);
static_assert(same<Signatures::GXSetEnumValueByString, S(Port, const char*, const char*)>);
static_assert(same<Signatures::GXGetFloatValue, S(Port, const char*, gx::GX_FLOAT_VALUE*)>);
static_assert(same<Signatures::GXSetFloatValue, S(Port, const char*, double)>);  // not float
static_assert(same<Signatures::GXSetCommandValue, S(Port, const char*)>);
static_assert(same<Signatures::GXGetImage, S(void*, gx::GX_FRAME_DATA*, std::uint32_t)>);

TEST(DaHengAbiTest, RecordSizesStatusesAndCodesAreTheVendorValues) {
    EXPECT_EQ(sizeof(gx::GX_DEVICE_BASE_INFO), 672u);
    EXPECT_EQ(255 * sizeof(gx::GX_DEVICE_BASE_INFO), 171360u);
    EXPECT_EQ(sizeof(gx::GX_FRAME_DATA), 64u);
    EXPECT_EQ(sizeof(gx::GX_ENUM_VALUE), 19680u);
    EXPECT_EQ(gx::GX_STATUS_SUCCESS, 0);
    EXPECT_EQ(gx::GX_STATUS_INVALID_PARAMETER, -5);
    EXPECT_EQ(gx::GX_STATUS_INVALID_HANDLE, -6);
    EXPECT_EQ(gx::GX_STATUS_NOT_IMPLEMENTED, -12);
    EXPECT_EQ(gx::GX_STATUS_NOT_INIT_API, -13);
    EXPECT_EQ(gx::GX_OPEN_SN, 0);
    EXPECT_EQ(gx::GX_ACCESS_EXCLUSIVE, 4);
    EXPECT_EQ(gx::GX_FRAME_STATUS_INCOMPLETE, -1);
    EXPECT_EQ(gx::GX_EXPOSURE_AUTO_CONTINUOUS, 1);
    EXPECT_EQ(gx::GX_EXPOSURE_AUTO_ONCE, 2);
    EXPECT_EQ(gx::GX_PIXEL_FORMAT_MONO8, 0x01080001);
    EXPECT_EQ(gx::GX_PIXEL_FORMAT_BAYER_GR8, 0x01080008);
    EXPECT_EQ(gx::GX_PIXEL_FORMAT_BAYER_BG8, 0x0108000B);
    EXPECT_EQ(gx::GX_PIXEL_FORMAT_RGB8, 0x02180014);
    EXPECT_EQ(gx::GX_PIXEL_FORMAT_BGRA8, 0x02200017);
}

}  // namespace
