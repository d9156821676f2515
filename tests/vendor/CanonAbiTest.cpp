// The Canon vendor header against values copied on their own from the vendor ABI notes.
#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "vendor/canon/CanonSdk.h"

namespace {

namespace eds = telvarra::vendor::canon;
using Signatures = eds::CanonSignatures;
using E = std::uint32_t;  // EdsError
using Ref = eds::EdsBaseRef;

template <class Signature, class Expected>
constexpr bool same = std::is_same_v<Signature, Expected>;

static_assert(sizeof(Ref) == 8);
static_assert(same<Signatures::EdsInitializeSDK, E()>);
static_assert(same<Signatures::EdsRelease, std::uint32_t(Ref)>);  // a count, not an error
static_assert(same<Signatures::EdsGetChildAtIndex, E(Ref, std::int32_t, Ref*)>);
static_assert(same<Signatures::EdsGetPropertySize,
                   E(Ref, std::uint32_t, std::int32_t, std::int32_t*, std::uint32_t*)>);
static_assert(same<Signatures::EdsGetPropertyData,
                   E(Ref, std::uint32_t, std::int32_t, std::uint32_t, void*)>);
static_assert(same<Signatures::EdsSetPropertyData,
                   E(Ref, std::uint32_t, std::int32_t, std::uint32_t, const void*)>);
static_assert(same<Signatures::EdsSendCommand, E(Ref, std::uint32_t, std::int32_t)>);
static_assert(same<Signatures::EdsSetCapacity, E(Ref, eds::EdsCapacity)>);  // by value
// SDK 3.4 and later: 64-bit sizes and lengths.
static_assert(same<Signatures::EdsDownload, E(Ref, std::uint64_t, Ref)>);
static_assert(same<Signatures::EdsCreateMemoryStream, E(std::uint64_t, Ref*)>);
static_assert(same<Signatures::EdsGetLength, E(Ref, std::uint64_t*)>);
static_assert(
    same<Signatures::EdsCreateFileStream, E(const char*, std::int32_t, std::int32_t, Ref*)>);
static_assert(same<Signatures::EdsGetImageInfo, E(Ref, std::int32_t, eds::EdsImageInfo*)>);
static_assert(same<Signatures::EdsDownloadEvfImage, E(Ref, Ref)>);
static_assert(same<Signatures::EdsGetEvent, E()>);

TEST(CanonAbiTest, RecordSizesErrorsAndCodesAreTheVendorValues) {
    EXPECT_EQ(sizeof(eds::EdsDeviceInfo), 520u);
    EXPECT_EQ(sizeof(eds::EdsPropertyDesc), 524u);
    EXPECT_EQ(sizeof(eds::EdsCapacity), 12u);
    EXPECT_EQ(sizeof(eds::EdsDirectoryItemInfo), 288u);
    EXPECT_EQ(sizeof(eds::EdsImageInfo), 40u);
    EXPECT_EQ(eds::EDS_ERR_DEVICE_BUSY, 0x81u);
    EXPECT_EQ(eds::EDS_ERR_OBJECT_NOTREADY, 0xA102u);
    EXPECT_EQ(eds::EDS_ERR_COMM_DISCONNECTED, 0xC1u);
    EXPECT_EQ(eds::kEdsPropID_BodyIDEx, 0x15u);
    EXPECT_EQ(eds::kEdsPropID_SaveTo, 0x0Bu);
    EXPECT_EQ(eds::kEdsPropID_Tv, 0x406u);
    EXPECT_EQ(eds::kEdsPropID_Av, 0x405u);
    EXPECT_EQ(eds::kEdsPropID_ISOSpeed, 0x402u);
    EXPECT_EQ(eds::kEdsPropID_Evf_OutputDevice, 0x500u);
    EXPECT_EQ(eds::kEdsSaveTo_Host, 2u);
    EXPECT_EQ(eds::kEdsCameraCommand_PressShutterButton, 4u);
    EXPECT_EQ(eds::kEdsCameraCommand_ShutterButton_Completely_NonAF, 0x10003);
    EXPECT_EQ(eds::kEdsObjectEvent_DirItemRequestTransfer, 0x208u);
    EXPECT_EQ(eds::kEdsFileCreateDisposition_CreateAlways, 1);
    EXPECT_EQ(eds::kEdsAccess_ReadWrite, 2);
}

}  // namespace
