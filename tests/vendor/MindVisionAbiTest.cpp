// The MindVision vendor header against values copied on their own from the vendor ABI notes.
#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "vendor/mindvision/MindVisionSdk.h"

namespace {

namespace mv = telvarra::vendor::mindvision;
using Signatures = mv::MindVisionSignatures;
using S = int;  // CameraSdkStatus
using H = int;  // CameraHandle
using Byte = unsigned char;

template <class Signature, class Expected>
constexpr bool same = std::is_same_v<Signature, Expected>;

static_assert(same<Signatures::CameraEnumerateDevice, S(mv::tSdkCameraDevInfo*, int*)>);
static_assert(same<Signatures::CameraInit, S(mv::tSdkCameraDevInfo*, int, int, H*)>);
static_assert(same<Signatures::CameraGetCapability, S(H, mv::tSdkCameraCapbility*)>);
static_assert(same<Signatures::CameraGetIspOutFormat, S(H, unsigned int*)>);
static_assert(same<Signatures::CameraSetIspOutFormat, S(H, unsigned int)>);
static_assert(same<Signatures::CameraSetTriggerMode, S(H, int)>);
static_assert(same<Signatures::CameraSetCrossLine, S(H, int, int, int, unsigned int, int)>);
static_assert(same<Signatures::CameraAlignMalloc, Byte*(int, int)>);
static_assert(same<Signatures::CameraAlignFree, void(Byte*)>);
static_assert(same<Signatures::CameraConnectTest, S(H)>);
static_assert(same<Signatures::CameraUnInit, S(H)>);
static_assert(same<Signatures::CameraPlay, S(H)>);
static_assert(same<Signatures::CameraStop, S(H)>);
static_assert(same<Signatures::CameraGetImageBufferPriority,
                   S(H, mv::tSdkFrameHead*, Byte**, unsigned int, unsigned int)>);
static_assert(same<Signatures::CameraImageProcess, S(H, Byte*, Byte*, mv::tSdkFrameHead*)>);
static_assert(same<Signatures::CameraReleaseImageBuffer, S(H, Byte*)>);
static_assert(same<Signatures::CameraSetMirror, S(H, int, int)>);
static_assert(same<Signatures::CameraGetMirror, S(H, int, int*)>);
static_assert(same<Signatures::CameraSetRotate, S(H, int)>);
static_assert(same<Signatures::CameraGetRotate, S(H, int*)>);
static_assert(same<Signatures::CameraSetAeState, S(H, int)>);
static_assert(same<Signatures::CameraGetAeState, S(H, int*)>);
static_assert(same<Signatures::CameraSetAeTarget, S(H, int)>);
static_assert(same<Signatures::CameraGetAeTarget, S(H, int*)>);
static_assert(same<Signatures::CameraSetAnalogGain, S(H, int)>);
static_assert(same<Signatures::CameraGetAnalogGain, S(H, int*)>);
static_assert(same<Signatures::CameraGetExposureTimeRange, S(H, double*, double*, double*)>);
static_assert(same<Signatures::CameraSetExposureTime, S(H, double)>);  // not float
static_assert(same<Signatures::CameraGetExposureTime, S(H, double*)>);
static_assert(same<Signatures::CameraSetImageResolution, S(H, mv::tSdkImageResolution*)>);
static_assert(same<Signatures::CameraGetImageResolution, S(H, mv::tSdkImageResolution*)>);

TEST(MindVisionAbiTest, RecordSizesStatusesAndCodesAreTheVendorValues) {
    EXPECT_EQ(sizeof(mv::tSdkCameraDevInfo), 260u);
    EXPECT_EQ(sizeof(mv::tSdkFrameHead), 64u);
    EXPECT_EQ(sizeof(mv::tSdkImageResolution), 92u);
    EXPECT_EQ(sizeof(mv::tSdkCameraCapbility), 344u);
    EXPECT_EQ(mv::CAMERA_STATUS_SUCCESS, 0);
    EXPECT_EQ(mv::CAMERA_STATUS_NOT_SUPPORTED, -4);
    EXPECT_EQ(mv::CAMERA_STATUS_PARAMETER_INVALID, -6);
    EXPECT_EQ(mv::CAMERA_STATUS_TIME_OUT, -12);
    EXPECT_EQ(mv::CAMERA_STATUS_NO_DEVICE_FOUND, -16);
    EXPECT_EQ(mv::CAMERA_STATUS_DEVICE_LOST, -38);
    EXPECT_EQ(mv::CAMERA_MEDIA_TYPE_MONO8, 0x01080001u);
    EXPECT_EQ(mv::CAMERA_MEDIA_TYPE_BAYRG8, 0x01080009u);
    EXPECT_EQ(mv::CAMERA_MEDIA_TYPE_RGB8, 0x02180014u);
    EXPECT_EQ(mv::CAMERA_MEDIA_TYPE_BGR8, 0x02180015u);
    EXPECT_EQ(mv::MIRROR_DIRECTION_VERTICAL, 1);
    EXPECT_EQ(mv::CAMERA_GET_IMAGE_PRIORITY_NEWEST, 1u);
    EXPECT_EQ(mv::IMAGEOUT_MODE_CUSTOM, 0xFF);
}

}  // namespace
