// The Dvp vendor header against values copied on their own from the vendor ABI notes.
#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "vendor/dvp/DvpSdk.h"

namespace {

namespace dvp = telvarra::vendor::dvp;
using Signatures = dvp::DvpSignatures;
using S = std::int32_t;   // dvpStatus
using H = std::uint32_t;  // dvpHandle: a number, not a pointer
using E = std::int32_t;   // the vendor's four-byte enumerations

template <class Signature, class Expected>
constexpr bool same = std::is_same_v<Signature, Expected>;

static_assert(same<Signatures::dvpStart, S(H)>);
static_assert(same<Signatures::dvpStop, S(H)>);
static_assert(same<Signatures::dvpIsValid, S(H, bool*)>);
static_assert(same<Signatures::dvpRefresh, S(std::uint32_t*)>);
static_assert(same<Signatures::dvpEnum, S(std::uint32_t, dvp::dvpCameraInfo*)>);
static_assert(same<Signatures::dvpOpenByUserId, S(const char*, E, H*)>);
static_assert(same<Signatures::dvpGetStreamState, S(H, E*)>);
static_assert(same<Signatures::dvpSetTriggerState, S(H, bool)>);
static_assert(same<Signatures::dvpGetTriggerState, S(H, bool*)>);
static_assert(same<Signatures::dvpGetTargetFormat, S(H, E*)>);
static_assert(same<Signatures::dvpSetTargetFormat, S(H, E)>);
static_assert(same<Signatures::dvpGetExposureDescr, S(H, dvp::dvpDoubleDescr*)>);
static_assert(same<Signatures::dvpGetAnalogGainDescr, S(H, dvp::dvpFloatDescr*)>);
static_assert(same<Signatures::dvpGetAeTargetDescr, S(H, dvp::dvpIntDescr*)>);
static_assert(same<Signatures::dvpGetSensorInfo, S(H, dvp::dvpSensorInfo*)>);
static_assert(same<Signatures::dvpClose, S(H)>);
static_assert(same<Signatures::dvpSetAeOperation, S(H, E)>);
static_assert(same<Signatures::dvpGetAeOperation, S(H, E*)>);
static_assert(same<Signatures::dvpGetAeTarget, S(H, std::int32_t*)>);
static_assert(same<Signatures::dvpSetAeTarget, S(H, std::int32_t)>);
static_assert(same<Signatures::dvpSetAnalogGain, S(H, float)>);  // not double
static_assert(same<Signatures::dvpGetAnalogGain, S(H, float*)>);
static_assert(same<Signatures::dvpGetExposure, S(H, double*)>);
static_assert(same<Signatures::dvpSetExposure, S(H, double)>);
static_assert(same<Signatures::dvpGetFrame, S(H, dvp::dvpFrame*, void**, std::uint32_t)>);
static_assert(same<Signatures::dvpIsOnline, S(H, bool*)>);

TEST(DvpAbiTest, RecordSizesStatusesAndCodesAreTheVendorValues) {
    EXPECT_EQ(sizeof(dvp::dvpCameraInfo), 1216u);
    EXPECT_EQ(sizeof(dvp::dvpFrame), 184u);
    EXPECT_EQ(sizeof(dvp::dvpIntDescr), 144u);
    EXPECT_EQ(sizeof(dvp::dvpFloatDescr), 144u);
    EXPECT_EQ(sizeof(dvp::dvpDoubleDescr), 160u);
    EXPECT_EQ(sizeof(dvp::dvpSensorInfo), 352u);
    EXPECT_EQ(dvp::DVP_STATUS_OK, 1);
    EXPECT_EQ(dvp::DVP_STATUS_FAILED, 0);
    EXPECT_EQ(dvp::DVP_STATUS_PARAMETER_INVALID, -4);
    EXPECT_EQ(dvp::DVP_STATUS_INVALID_HANDLE, -13);
    EXPECT_EQ(dvp::DVP_STATUS_TIME_OUT, -1000);
    EXPECT_EQ(dvp::DVP_STATUS_DEVICE_IS_DISCONNECTED, -1104);
    EXPECT_EQ(dvp::STATE_STARTED, 2);
    EXPECT_EQ(dvp::OPEN_NORMAL, 1);
    EXPECT_EQ(dvp::AE_OP_CONTINUOUS, 2);
    EXPECT_EQ(dvp::FORMAT_MONO, 0);
    EXPECT_EQ(dvp::FORMAT_BGR24, 10);
    EXPECT_EQ(dvp::FORMAT_RGB24, 14);
    EXPECT_EQ(dvp::S_MONO8, 30);  // not FORMAT_MONO: the two enumerations differ for mono
    EXPECT_EQ(dvp::S_BGR24, 10);
    EXPECT_EQ(dvp::SENSOR_PIXEL_BAYER_BG, 4);
}

}  // namespace
