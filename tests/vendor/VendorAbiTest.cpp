// The vendor headers against values copied on their own from the vendor ABI notes: a wrong status
// code, pixel code or parameter type in a header would otherwise pass both the driver and the
// simulator, which share it. Record sizes and offsets are pinned by the headers' own
// static_asserts; the signatures checked here are those where a plausible slip changes the call
// (float or double, integer width, one-byte bool, a record by value, a handle that is a number).
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "vendor/canon/CanonSdk.h"
#include "vendor/daheng/DaHengSdk.h"
#include "vendor/dvp/DvpSdk.h"
#include "vendor/hikvision/HikVisionSdk.h"
#include "vendor/mindvision/MindVisionSdk.h"

namespace {

namespace eds = telvarra::vendor::canon;
namespace gx = telvarra::vendor::daheng;
namespace dvp = telvarra::vendor::dvp;
namespace hik = telvarra::vendor::hikvision;
namespace mv = telvarra::vendor::mindvision;

template <class Signature, class Expected>
constexpr bool same = std::is_same_v<Signature, Expected>;

// Canon: SDK 3.4 and later take 64-bit sizes and lengths.
using EdsE = std::uint32_t;
using EdsRef = eds::EdsBaseRef;
static_assert(same<eds::CanonSignatures::EdsSetCapacity, EdsE(EdsRef, eds::EdsCapacity)>);
static_assert(same<eds::CanonSignatures::EdsDownload, EdsE(EdsRef, std::uint64_t, EdsRef)>);
static_assert(same<eds::CanonSignatures::EdsCreateMemoryStream, EdsE(std::uint64_t, EdsRef*)>);
static_assert(same<eds::CanonSignatures::EdsGetLength, EdsE(EdsRef, std::uint64_t*)>);
static_assert(same<eds::CanonSignatures::EdsGetPropertySize,
                   EdsE(EdsRef, std::uint32_t, std::int32_t, std::int32_t*, std::uint32_t*)>);

// DaHeng: the enum getter fills the whole 19,680-byte record; the float setter takes a double.
using GxS = std::int32_t;
static_assert(same<gx::DaHengSignatures::GXGetAllDeviceBaseInfo,
                   GxS(gx::GX_DEVICE_BASE_INFO*, std::size_t*)>);
static_assert(same<gx::DaHengSignatures::GXSetIntValue, GxS(void*, const char*, std::int64_t)>);
static_assert(
    same<gx::DaHengSignatures::GXGetEnumValue, GxS(void*, const char*, gx::GX_ENUM_VALUE*)>);
static_assert(same<gx::DaHengSignatures::GXSetFloatValue, GxS(void*, const char*, double)>);
static_assert(
    same<gx::DaHengSignatures::GXGetImage, GxS(void*, gx::GX_FRAME_DATA*, std::uint32_t)>);

// Dvp: the handle is a number, not a pointer; gain is a float, exposure a double.
using DvpS = std::int32_t;
using DvpH = std::uint32_t;
static_assert(same<dvp::DvpSignatures::dvpStart, DvpS(DvpH)>);
static_assert(same<dvp::DvpSignatures::dvpIsValid, DvpS(DvpH, bool*)>);
static_assert(same<dvp::DvpSignatures::dvpSetTriggerState, DvpS(DvpH, bool)>);
static_assert(same<dvp::DvpSignatures::dvpOpenByUserId, DvpS(const char*, std::int32_t, DvpH*)>);
static_assert(same<dvp::DvpSignatures::dvpSetAnalogGain, DvpS(DvpH, float)>);
static_assert(same<dvp::DvpSignatures::dvpSetExposure, DvpS(DvpH, double)>);
static_assert(
    same<dvp::DvpSignatures::dvpGetFrame, DvpS(DvpH, dvp::dvpFrame*, void**, std::uint32_t)>);

// HikVision: a one-byte bool, float (not double) values, 64-bit integers.
using HikH = void*;
static_assert(same<hik::HikVisionSignatures::MV_CC_IsDeviceConnected, bool(HikH)>);
static_assert(
    same<hik::HikVisionSignatures::MV_CC_OpenDevice, int(HikH, unsigned int, unsigned short)>);
static_assert(
    same<hik::HikVisionSignatures::MV_CC_SetIntValueEx, int(HikH, const char*, std::int64_t)>);
static_assert(same<hik::HikVisionSignatures::MV_CC_SetFloatValue, int(HikH, const char*, float)>);
static_assert(same<hik::HikVisionSignatures::MV_CC_SetExposureTime, int(HikH, float)>);
static_assert(same<hik::HikVisionSignatures::MV_CC_GetSDKVersion, unsigned int()>);
static_assert(same<hik::HikVisionSignatures::MV_CC_GetImageBuffer,
                   int(HikH, hik::MV_FRAME_OUT*, unsigned int)>);

// MindVision: the handle is an int; exposure a double, analogue gain an integer step.
using MvH = int;
using Byte = unsigned char;
static_assert(
    same<mv::MindVisionSignatures::CameraInit, int(mv::tSdkCameraDevInfo*, int, int, MvH*)>);
static_assert(same<mv::MindVisionSignatures::CameraSetExposureTime, int(MvH, double)>);
static_assert(same<mv::MindVisionSignatures::CameraSetAnalogGain, int(MvH, int)>);
static_assert(same<mv::MindVisionSignatures::CameraAlignMalloc, Byte*(int, int)>);
static_assert(same<mv::MindVisionSignatures::CameraGetImageBufferPriority,
                   int(MvH, mv::tSdkFrameHead*, Byte**, unsigned int, unsigned int)>);
static_assert(
    same<mv::MindVisionSignatures::CameraSetCrossLine, int(MvH, int, int, int, unsigned int, int)>);

struct Code {
    const char* name;
    long long actual;
    long long expected;
};

// Status codes compared as the 32 bits the SDK returns.
constexpr long long bits(int value) { return static_cast<std::uint32_t>(value); }

TEST(VendorAbiTest, StatusAndEnumerationCodesAreTheVendorValues) {
    const Code codes[] = {
        {"EDS_ERR_DEVICE_BUSY", eds::EDS_ERR_DEVICE_BUSY, 0x81},
        {"EDS_ERR_OBJECT_NOTREADY", eds::EDS_ERR_OBJECT_NOTREADY, 0xA102},
        {"EDS_ERR_COMM_DISCONNECTED", eds::EDS_ERR_COMM_DISCONNECTED, 0xC1},
        {"kEdsPropID_BodyIDEx", eds::kEdsPropID_BodyIDEx, 0x15},
        {"kEdsPropID_SaveTo", eds::kEdsPropID_SaveTo, 0x0B},
        {"kEdsPropID_ISOSpeed", eds::kEdsPropID_ISOSpeed, 0x402},
        {"kEdsPropID_Av", eds::kEdsPropID_Av, 0x405},
        {"kEdsPropID_Tv", eds::kEdsPropID_Tv, 0x406},
        {"kEdsPropID_Evf_OutputDevice", eds::kEdsPropID_Evf_OutputDevice, 0x500},
        {"kEdsSaveTo_Host", eds::kEdsSaveTo_Host, 2},
        {"kEdsCameraCommand_PressShutterButton", eds::kEdsCameraCommand_PressShutterButton, 4},
        {"kEdsCameraCommand_ShutterButton_Completely_NonAF",
         eds::kEdsCameraCommand_ShutterButton_Completely_NonAF, 0x10003},
        {"kEdsObjectEvent_DirItemRequestTransfer", eds::kEdsObjectEvent_DirItemRequestTransfer,
         0x208},

        {"GX_STATUS_INVALID_PARAMETER", gx::GX_STATUS_INVALID_PARAMETER, -5},
        {"GX_STATUS_INVALID_HANDLE", gx::GX_STATUS_INVALID_HANDLE, -6},
        {"GX_STATUS_NOT_IMPLEMENTED", gx::GX_STATUS_NOT_IMPLEMENTED, -12},
        {"GX_STATUS_NOT_INIT_API", gx::GX_STATUS_NOT_INIT_API, -13},
        {"GX_ACCESS_EXCLUSIVE", gx::GX_ACCESS_EXCLUSIVE, 4},
        {"GX_FRAME_STATUS_INCOMPLETE", gx::GX_FRAME_STATUS_INCOMPLETE, -1},
        {"GX_EXPOSURE_AUTO_CONTINUOUS", gx::GX_EXPOSURE_AUTO_CONTINUOUS, 1},
        {"GX_PIXEL_FORMAT_MONO8", gx::GX_PIXEL_FORMAT_MONO8, 0x01080001},
        {"GX_PIXEL_FORMAT_BAYER_BG8", gx::GX_PIXEL_FORMAT_BAYER_BG8, 0x0108000B},
        {"GX_PIXEL_FORMAT_RGB8", gx::GX_PIXEL_FORMAT_RGB8, 0x02180014},
        {"GX_PIXEL_FORMAT_BGRA8", gx::GX_PIXEL_FORMAT_BGRA8, 0x02200017},

        // Dvp's success is 1, not 0.
        {"DVP_STATUS_OK", dvp::DVP_STATUS_OK, 1},
        {"DVP_STATUS_PARAMETER_INVALID", dvp::DVP_STATUS_PARAMETER_INVALID, -4},
        {"DVP_STATUS_INVALID_HANDLE", dvp::DVP_STATUS_INVALID_HANDLE, -13},
        {"DVP_STATUS_TIME_OUT", dvp::DVP_STATUS_TIME_OUT, -1000},
        {"DVP_STATUS_DEVICE_IS_DISCONNECTED", dvp::DVP_STATUS_DEVICE_IS_DISCONNECTED, -1104},
        {"FORMAT_MONO", dvp::FORMAT_MONO, 0},
        {"FORMAT_BGR24", dvp::FORMAT_BGR24, 10},
        {"FORMAT_RGB24", dvp::FORMAT_RGB24, 14},
        {"S_MONO8", dvp::S_MONO8, 30},  // not FORMAT_MONO: the two enumerations differ for mono
        {"S_BGR24", dvp::S_BGR24, 10},
        {"SENSOR_PIXEL_BAYER_BG", dvp::SENSOR_PIXEL_BAYER_BG, 4},

        {"MV_OK", hik::MV_OK, 0},
        {"MV_E_HANDLE", bits(hik::MV_E_HANDLE), 0x80000000},
        {"MV_E_SUPPORT", bits(hik::MV_E_SUPPORT), 0x80000001},
        {"MV_E_CALLORDER", bits(hik::MV_E_CALLORDER), 0x80000003},
        {"MV_E_PARAMETER", bits(hik::MV_E_PARAMETER), 0x80000004},
        {"MV_E_NODATA", bits(hik::MV_E_NODATA), 0x80000007},
        {"MV_E_PRECONDITION", bits(hik::MV_E_PRECONDITION), 0x80000008},
        {"MV_E_NOENOUGH_BUF", bits(hik::MV_E_NOENOUGH_BUF), 0x8000000A},
        {"MV_E_GC_RANGE", bits(hik::MV_E_GC_RANGE), 0x80000102},
        {"MV_E_ACCESS_DENIED", bits(hik::MV_E_ACCESS_DENIED), 0x80000203},
        {"MV_GIGE_DEVICE", hik::MV_GIGE_DEVICE, 0x1},
        {"MV_USB_DEVICE", hik::MV_USB_DEVICE, 0x4},
        {"MV_GENTL_GIGE_DEVICE", hik::MV_GENTL_GIGE_DEVICE, 0x40},
        {"MV_ACCESS_Exclusive", hik::MV_ACCESS_Exclusive, 1},
        {"MV_ACCESS_Monitor", hik::MV_ACCESS_Monitor, 7},
        {"PixelType_Gvsp_Mono8", hik::PixelType_Gvsp_Mono8, 0x01080001},
        {"PixelType_Gvsp_BayerGR8", hik::PixelType_Gvsp_BayerGR8, 0x01080008},
        {"PixelType_Gvsp_BayerBG8", hik::PixelType_Gvsp_BayerBG8, 0x0108000B},
        {"PixelType_Gvsp_RGB8_Packed", hik::PixelType_Gvsp_RGB8_Packed, 0x02180014},
        {"PixelType_Gvsp_BGR8_Packed", hik::PixelType_Gvsp_BGR8_Packed, 0x02180015},
        {"MV_EXPOSURE_AUTO_MODE_CONTINUOUS", hik::MV_EXPOSURE_AUTO_MODE_CONTINUOUS, 2},

        {"CAMERA_STATUS_NOT_SUPPORTED", mv::CAMERA_STATUS_NOT_SUPPORTED, -4},
        {"CAMERA_STATUS_PARAMETER_INVALID", mv::CAMERA_STATUS_PARAMETER_INVALID, -6},
        {"CAMERA_STATUS_TIME_OUT", mv::CAMERA_STATUS_TIME_OUT, -12},
        {"CAMERA_STATUS_NO_DEVICE_FOUND", mv::CAMERA_STATUS_NO_DEVICE_FOUND, -16},
        {"CAMERA_STATUS_DEVICE_LOST", mv::CAMERA_STATUS_DEVICE_LOST, -38},
        {"CAMERA_MEDIA_TYPE_MONO8", mv::CAMERA_MEDIA_TYPE_MONO8, 0x01080001},
        {"CAMERA_MEDIA_TYPE_BAYRG8", mv::CAMERA_MEDIA_TYPE_BAYRG8, 0x01080009},
        {"CAMERA_MEDIA_TYPE_RGB8", mv::CAMERA_MEDIA_TYPE_RGB8, 0x02180014},
        {"CAMERA_MEDIA_TYPE_BGR8", mv::CAMERA_MEDIA_TYPE_BGR8, 0x02180015},
        {"IMAGEOUT_MODE_CUSTOM", mv::IMAGEOUT_MODE_CUSTOM, 0xFF},
    };
    for (const Code& code : codes) EXPECT_EQ(code.actual, code.expected) << code.name;
}

}  // namespace
