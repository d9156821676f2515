// One entry per make for the shared integration suite.
#include "sim/canon/CanonSimControl.h"
#include "sim/daheng/DahSimControl.h"
#include "sim/dvp/DvpSimControl.h"
#include "sim/hikvision/HikSimControl.h"
#include "sim/mindvision/MvSimControl.h"
#include "suite/MakeTraits.h"

namespace telvarra::test {

namespace {

constexpr int kHikVisionParameterError = static_cast<int>(0x80000004u);  // MV_E_PARAMETER

MakeTraits hikVision() {
    MakeTraits make{"HikVision",
                    RUVO_CAMERA_HIKVISION,
                    TELVARRA_SIMULATOR_CONTROL(HikSim),
                    kHikVisionParameterError,
                    RUVO_STATUS_ACQUIRING,
                    {"id=MONO1 layer=gige size=661x487 format=mono8", "MONO1",
                     sim::PixelFormat::Mono8, 661, 487},
                    // Bayer, so that the conversion to RGB runs before the geometry.
                    {"id=COLOUR1 layer=usb3 size=661x487 format=bayer_rg8", "COLOUR1",
                     sim::PixelFormat::BayerRG8, 661, 487},
                    // The camera's own enumeration is the second of an open (the manager's comes
                    // first); the trigger mode is read before the pixel format.
                    {{"MV_CC_EnumDevices", 2},
                     {"MV_CC_CreateHandle", 1},
                     {"MV_CC_OpenDevice", 1},
                     {"MV_CC_GetEnumValue", 1},
                     {"MV_CC_SetEnumValue", 1},
                     {"MV_CC_GetEnumValue", 2}}};
    make.frameRelease = "MV_CC_FreeImageBuffer";
    return make;
}

constexpr int kDaHengError = -1;  // GX_STATUS_ERROR

MakeTraits daHeng() {
    return {"DaHeng",
            RUVO_CAMERA_DAHENG,
            TELVARRA_SIMULATOR_CONTROL(DahSim),
            kDaHengError,
            RUVO_STATUS_CONNECTED,
            {"id=DMONO1 layer=usb3 size=661x487 format=mono8", "DMONO1", sim::PixelFormat::Mono8,
             661, 487},
            // RGB: this make delivers Bayer mosaics as they come, on one channel.
            {"id=DCOLOUR1 layer=gige size=661x487 format=rgb8", "DCOLOUR1", sim::PixelFormat::Rgb8,
             661, 487},
            // The camera's own refresh and listing are the second of an open.
            {{"GXUpdateAllDeviceList", 2},
             {"GXGetAllDeviceBaseInfo", 2},
             {"GXOpenDevice", 1},
             {"GXSetEnumValueByString", 1},
             {"GXSetEnumValueByString", 2},
             {"GXGetEnumValue", 1},
             {"GXGetIntValue", 1},
             {"GXGetIntValue", 2}}};
}

constexpr int kMindVisionFailed = -1;  // CAMERA_STATUS_FAILED

MakeTraits mindVision() {
    MakeTraits make{"MindVision",
                    RUVO_CAMERA_MINDVISION,
                    TELVARRA_SIMULATOR_CONTROL(MvSim),
                    kMindVisionFailed,
                    RUVO_STATUS_ACQUIRING,
                    {"id=MV1MONO layer=usb3 size=661x487 format=mono8", "MV1MONO",
                     sim::PixelFormat::Mono8, 661, 487},
                    // The SDK's processor delivers BGR until a host asks for RGB.
                    {"id=MV2COLOUR layer=gige size=661x487 format=bayer_rg8", "MV2COLOUR",
                     sim::PixelFormat::BayerRG8, 661, 487, true},
                    // The camera's own enumeration is the second of an open; a mono camera sets
                    // its processor's output before the output block is allocated.
                    {{"CameraEnumerateDevice", 2},
                     {"CameraInit", 1},
                     {"CameraGetIspOutFormat", 1},
                     {"CameraSetIspOutFormat", 1},
                     {"CameraAlignMalloc", 1},
                     {"CameraConnectTest", 1}}};
    make.deviceGeometry = true;
    make.frameRelease = "CameraReleaseImageBuffer";
    return make;
}

constexpr int kDvpFailed = 0;  // DVP_STATUS_FAILED: success is 1

MakeTraits dvp() {
    MakeTraits make{"Dvp",
                    RUVO_CAMERA_DVP,
                    TELVARRA_SIMULATOR_CONTROL(DvpSim),
                    kDvpFailed,
                    RUVO_STATUS_ACQUIRING,
                    {"id=DVMONO1 layer=usb3 size=661x487 format=mono8", "DVMONO1",
                     sim::PixelFormat::Mono8, 661, 487},
                    {"id=DVCOLOUR1 user=Line2 layer=gige size=661x487 format=bayer_gr8",
                     "DVCOLOUR1", sim::PixelFormat::BayerGR8, 661, 487, true},
                    // The manager's listing reads both cameras first; the mono camera's own
                    // record is then the third read.
                    {{"dvpRefresh", 2},
                     {"dvpEnum", 3},
                     {"dvpOpenByUserId", 1},
                     {"dvpIsValid", 1},
                     {"dvpGetStreamState", 1},
                     {"dvpSetTriggerState", 1},
                     {"dvpGetTriggerState", 1},
                     {"dvpGetExposureDescr", 1},
                     {"dvpGetAnalogGainDescr", 1},
                     {"dvpGetAeTargetDescr", 1},
                     {"dvpGetSensorInfo", 1},
                     {"dvpGetTargetFormat", 1}}};
    make.zooms = false;
    return make;
}

constexpr int kCanonDeviceBusy = 0x81;  // EDS_ERR_DEVICE_BUSY

MakeTraits canon() {
    // Bodies are colour only: the first camera is one too. Live view comes as JPEG files.
    MakeTraits make{"Canon",
                    RUVO_CAMERA_CANON,
                    TELVARRA_SIMULATOR_CONTROL(CanonSim),
                    kCanonDeviceBusy,
                    RUVO_STATUS_ACQUIRING,
                    {"id=EOS1FIRST size=661x487", "EOS1FIRST", sim::PixelFormat::Rgb8, 661, 487},
                    {"id=EOS2SECOND size=661x487", "EOS2SECOND", sim::PixelFormat::Rgb8, 661, 487},
                    // The manager's listing opens a session on both bodies first; the camera's
                    // own listing the next two, reading the serial numbers again.
                    {{"EdsGetCameraList", 2},
                     {"EdsGetChildAtIndex", 3},
                     {"EdsOpenSession", 3},
                     {"EdsGetPropertyData", 3},
                     {"EdsOpenSession", 5},
                     {"EdsSetPropertyEventHandler", 1},
                     {"EdsSetObjectEventHandler", 1},
                     {"EdsSetCameraStateEventHandler", 1},
                     {"EdsSetPropertyData", 1},
                     {"EdsSetCapacity", 1},
                     {"EdsGetPropertyDesc", 1},
                     {"EdsGetPropertyDesc", 3}}};
    make.jpegTolerance = 4;
    make.lackingTypedValuesAnswer = false;
    return make;
}

}  // namespace

const std::vector<MakeTraits>& allMakes() {
    static const std::vector<MakeTraits> makes = {hikVision(), daHeng(), mindVision(), dvp(),
                                                  canon()};
    return makes;
}

}  // namespace telvarra::test
