// The vendor headers' codes against values copied on their own from the vendor ABI notes: a wrong
// status or pixel code in a header would otherwise pass both the driver and the simulator, which
// share it. Record sizes and offsets are pinned by the headers' own static_asserts.
#include <gtest/gtest.h>

#include <cstdint>

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

struct Code {
    const char* name;
    long long actual;
    long long expected;
};

// Only codes the driver sends, maps or branches on: other failures it merely passes on.
TEST(VendorAbiTest, CodesTheDriverUsesAreTheVendorValues) {
    const Code codes[] = {
        {"EDS_ERR_OBJECT_NOTREADY", eds::EDS_ERR_OBJECT_NOTREADY, 0xA102},
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

        {"GX_ACCESS_EXCLUSIVE", gx::GX_ACCESS_EXCLUSIVE, 4},
        {"GX_EXPOSURE_AUTO_CONTINUOUS", gx::GX_EXPOSURE_AUTO_CONTINUOUS, 1},
        {"GX_PIXEL_FORMAT_MONO8", gx::GX_PIXEL_FORMAT_MONO8, 0x01080001},
        {"GX_PIXEL_FORMAT_BAYER_BG8", gx::GX_PIXEL_FORMAT_BAYER_BG8, 0x0108000B},
        {"GX_PIXEL_FORMAT_RGB8", gx::GX_PIXEL_FORMAT_RGB8, 0x02180014},
        {"GX_PIXEL_FORMAT_BGRA8", gx::GX_PIXEL_FORMAT_BGRA8, 0x02200017},

        // Dvp's success is 1, not 0.
        {"DVP_STATUS_OK", dvp::DVP_STATUS_OK, 1},
        {"FORMAT_MONO", dvp::FORMAT_MONO, 0},
        {"FORMAT_BGR24", dvp::FORMAT_BGR24, 10},
        {"FORMAT_RGB24", dvp::FORMAT_RGB24, 14},
        {"S_MONO8", dvp::S_MONO8, 30},  // not FORMAT_MONO: the two enumerations differ for mono
        {"S_BGR24", dvp::S_BGR24, 10},
        {"SENSOR_PIXEL_BAYER_BG", dvp::SENSOR_PIXEL_BAYER_BG, 4},

        {"MV_OK", hik::MV_OK, 0},
        {"MV_GIGE_DEVICE", hik::MV_GIGE_DEVICE, 0x1},
        {"MV_USB_DEVICE", hik::MV_USB_DEVICE, 0x4},
        {"MV_GENTL_GIGE_DEVICE", hik::MV_GENTL_GIGE_DEVICE, 0x40},
        {"MV_ACCESS_Exclusive", hik::MV_ACCESS_Exclusive, 1},
        {"PixelType_Gvsp_Mono8", hik::PixelType_Gvsp_Mono8, 0x01080001},
        {"PixelType_Gvsp_BayerGR8", hik::PixelType_Gvsp_BayerGR8, 0x01080008},
        {"PixelType_Gvsp_BayerBG8", hik::PixelType_Gvsp_BayerBG8, 0x0108000B},
        {"PixelType_Gvsp_RGB8_Packed", hik::PixelType_Gvsp_RGB8_Packed, 0x02180014},
        {"PixelType_Gvsp_BGR8_Packed", hik::PixelType_Gvsp_BGR8_Packed, 0x02180015},
        {"MV_EXPOSURE_AUTO_MODE_CONTINUOUS", hik::MV_EXPOSURE_AUTO_MODE_CONTINUOUS, 2},

        {"CAMERA_STATUS_NOT_SUPPORTED", mv::CAMERA_STATUS_NOT_SUPPORTED, -4},
        {"CAMERA_STATUS_NO_DEVICE_FOUND", mv::CAMERA_STATUS_NO_DEVICE_FOUND, -16},
        {"CAMERA_MEDIA_TYPE_MONO8", mv::CAMERA_MEDIA_TYPE_MONO8, 0x01080001},
        {"CAMERA_MEDIA_TYPE_BAYRG8", mv::CAMERA_MEDIA_TYPE_BAYRG8, 0x01080009},
        {"CAMERA_MEDIA_TYPE_RGB8", mv::CAMERA_MEDIA_TYPE_RGB8, 0x02180014},
        {"CAMERA_MEDIA_TYPE_BGR8", mv::CAMERA_MEDIA_TYPE_BGR8, 0x02180015},
        {"IMAGEOUT_MODE_CUSTOM", mv::IMAGEOUT_MODE_CUSTOM, 0xFF},
    };
    for (const Code& code : codes) EXPECT_EQ(code.actual, code.expected) << code.name;
}

}  // namespace
