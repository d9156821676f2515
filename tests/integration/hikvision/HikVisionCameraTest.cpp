// What is HikVision's own, through the facade on the SDK simulator: listing by layer, its log
// lines, formats, controls and the faults of its calls. What every make shares is in the suite.
#include <cstring>
#include <functional>
#include <memory>

#include "HikVisionFixture.h"
#include "drivers/hikvision/HikVisionDriver.h"

namespace telvarra::test {
namespace {

constexpr int kSimulatedFailure = static_cast<int>(0x80000004u);  // MV_E_PARAMETER

TEST_F(HikVisionTest, ListingNamesDevicesByLayerAndSkipsTheGenTlGigELayer) {
    addDevice("id=GE01 model=MV-CA050 layer=gige");
    addDevice("id=GE02 model=MV-CA050 user=Left layer=gige");
    addDevice("id=U301 model=MV-CS200 layer=usb3");
    addDevice("id=CXP1 model=MV-CXP user=Grabber layer=gentl-cxp");
    addDevice("id=TLGE model=MV-GT layer=gentl-gige");
    auto list = listed();
    ASSERT_EQ(list->count, 4u);
    EXPECT_TRUE(log.contains("INFO", "Src Enumerated5 HikVision cameras"));

    const DeviceInfo& unnamed = list->devices[0];
    EXPECT_STREQ(unnamed.cameraId, "GE01");
    EXPECT_STREQ(unnamed.displayName, "MV-CA050 (GE01)");
    EXPECT_STREQ(unnamed.userDefinedName, "MV-CA050 (GE01)");
    EXPECT_EQ(unnamed.maxWidth, 0);
    EXPECT_TRUE(unnamed.isAvailable);
    EXPECT_STREQ(list->devices[1].displayName, "Left");
    EXPECT_STREQ(list->devices[2].displayName, "MV-CS200 (U301)");
    EXPECT_STREQ(list->devices[3].displayName, "Grabber");
}

TEST_F(HikVisionTest, FullLengthGigETextsWithoutTerminatorAreReadWhole) {
    addDevice("id=SERIAL0123456789 user=USERNAME01234567 layer=gige");  // 16 bytes each
    auto list = listed();
    ASSERT_EQ(list->count, 1u);
    EXPECT_STREQ(list->devices[0].cameraId, "SERIAL0123456789");
    EXPECT_STREQ(list->devices[0].displayName, "USERNAME01234567");
}

TEST_F(HikVisionTest, SessionOpensExclusivelyInFreeRunAndLogsItsOwnLines) {
    addDevice("id=S1 layer=usb3 size=64x48 format=mono8");
    ASSERT_TRUE(facade->openCamera("S1", RUVO_CAMERA_HIKVISION));
    EXPECT_EQ(lastArguments("MV_CC_OpenDevice"), "1, 0");
    EXPECT_EQ(lastArguments("MV_CC_EnumDevices"), "0x3c5");  // GigE, USB3 and the GenTL layers
    unsigned int trigger = 99;
    HikSim_LastSetEnumValue("TriggerMode", &trigger);
    EXPECT_EQ(trigger, 0u);
    EXPECT_TRUE(log.contains("INFO", "Enumerated Ok ID:S1"));
    EXPECT_TRUE(log.contains("INFO", "Initializing HikVision camera, CurImageFormat:MONO8"));

    ASSERT_TRUE(facade->startCapture("S1"));
    ImageData image{};
    ASSERT_TRUE(facade->getCurrentFrame("S1", image, 0));
    EXPECT_EQ(lastArguments("MV_CC_GetImageBuffer"), "2000");  // the time-out in milliseconds
    ASSERT_TRUE(facade->closeCamera("S1"));
    EXPECT_TRUE(log.contains("INFO", "Disconnecting from HikVision camera: S1"));
}

TEST_F(HikVisionTest, AFailedListingIsFalseForTheDriverAndAnEmptyListForTheManager) {
    addDevice("id=L1 layer=usb3 size=64x48");
    HikSim_FailCall("MV_CC_EnumDevices", kSimulatedFailure, 1);
    EXPECT_EQ(listed()->count, 0u);
    EXPECT_TRUE(log.contains("INFO", "Src Enumerated0 HikVision cameras"));
    EXPECT_EQ(listed()->count, 1u);
}

TEST_F(HikVisionTest, ImageFormatsComeFromTheDeviceAndOnlyListedOnesAreAccepted) {
    addDevice("id=F1 layer=usb3 size=32x16 format=bgr8 formats=mono8,rgb8,bgr8,bayer_rg8");
    ASSERT_TRUE(facade->openCamera("F1", RUVO_CAMERA_HIKVISION));
    const _RUVO_IMAGE_FORMAT_LIST formats = facade->getSupportedImageFormats("F1");
    ASSERT_EQ(formats.count, 3u);
    EXPECT_EQ(formats.formats[0], RUVO_FORMAT_MONO8);
    EXPECT_EQ(formats.formats[2], RUVO_FORMAT_BGR8);

    EXPECT_FALSE(facade->setImageFormat("F1", RUVO_FORMAT_BAYER_RG8));
    EXPECT_TRUE(log.contains("INFO", "Initializing HikVision camera, SetImageFormat-false:no"));
    ASSERT_TRUE(facade->setImageFormat("F1", RUVO_FORMAT_MONO8));
    unsigned int pixelType = 0;
    HikSim_LastSetEnumValue("PixelFormat", &pixelType);
    EXPECT_EQ(pixelType, 0x01080001u);
    EXPECT_EQ(facade->getImageFormat("F1"), RUVO_FORMAT_MONO8);
    EXPECT_TRUE(log.contains("INFO", "Set image format to 1 for HikVision camera: F1"));

    ASSERT_TRUE(facade->startCapture("F1"));
    ImageData image{};
    ASSERT_TRUE(facade->getCurrentFrame("F1", image, 0));
    EXPECT_EQ(image.channels, 1);
    EXPECT_EQ(image.dataSize, 32 * 16);
    EXPECT_FALSE(facade->setImageFormat("F1", RUVO_FORMAT_RGB8));  // read-only while grabbing
    EXPECT_TRUE(log.contains("ERROR", "Initializing HikVision camera, SetImageFormat:false"));
}

TEST_F(HikVisionTest, RgbOnACameraOfAnotherNativeFormatIsConvertedWithoutTouchingTheDevice) {
    addDevice("id=N1 layer=usb3 size=32x16 format=bayer_gb8 formats=bayer_gb8,rgb8");
    ASSERT_TRUE(facade->openCamera("N1", RUVO_CAMERA_HIKVISION));
    EXPECT_EQ(facade->getImageFormat("N1"), RUVO_FORMAT_UNKNOWN);
    ASSERT_TRUE(facade->setImageFormat("N1", RUVO_FORMAT_RGB8));
    unsigned int pixelType = 0;
    EXPECT_EQ(HikSim_LastSetEnumValue("PixelFormat", &pixelType), -1);  // never written
    EXPECT_EQ(facade->getImageFormat("N1"), RUVO_FORMAT_UNKNOWN);

    ASSERT_TRUE(facade->startCapture("N1"));
    ImageData image{};
    ASSERT_TRUE(facade->getCurrentFrame("N1", image, 0));
    EXPECT_EQ(image.channels, 3);
    EXPECT_EQ(image.dataSize, 32 * 16 * 3);
}

TEST_F(HikVisionTest, ImageSizeIsOnlyRecordedWithinTheCameraMaximum) {
    addDevice("id=Z1 layer=usb3 size=2448x2048 format=mono8");
    ASSERT_TRUE(facade->openCamera("Z1", RUVO_CAMERA_HIKVISION));
    int32_t width = 0, height = 0;
    ASSERT_TRUE(facade->getImageSize("Z1", width, height));
    EXPECT_EQ(width, 640);
    EXPECT_EQ(height, 480);
    EXPECT_FALSE(facade->setImageSize("Z1", 1281, 100));
    EXPECT_TRUE(log.contains("ERROR", "Invalid image size: Z1"));
    EXPECT_FALSE(facade->setImageSize("Z1", 0, 100));
    EXPECT_TRUE(facade->setImageSize("Z1", 1280, 1024));
}

TEST_F(HikVisionTest, PercentControlsReachTheDeviceWithTheMappedValue) {
    addDevice("id=P1 layer=usb3 size=32x16");
    HikSim_SetGainRange("P1", 2.0f, 22.0f);
    HikSim_SetExposureRange("P1", 10.0f, 1000000.0f);
    HikSim_SetBrightnessRange("P1", 0, 255);
    ASSERT_TRUE(facade->openCamera("P1", RUVO_CAMERA_HIKVISION));

    float gain = 0, exposure = 0;
    unsigned int brightness = 0;
    ASSERT_TRUE(facade->setCameraGainByPercent("P1", 25));
    HikSim_LastSetGain(&gain);
    EXPECT_FLOAT_EQ(gain, 7.0f);
    // The exposure maximum is capped at 200000 microseconds.
    ASSERT_TRUE(facade->setCameraExposureByPercent("P1", 50));
    HikSim_LastSetExposureTime(&exposure);
    EXPECT_FLOAT_EQ(exposure, 10.0f + (200000.0f - 10.0f) / 2);
    ASSERT_TRUE(facade->setCameraBrightnessByPercent("P1", 33));  // trunc(255 * 0.33) = 84
    HikSim_LastSetBrightness(&brightness);
    EXPECT_EQ(brightness, 84u);
    EXPECT_GE(HikSim_CallCount("MV_CC_SetCommandValue"), 3u);
}

TEST_F(HikVisionTest, ControlsFailWhenTheDeviceCannotBeRead) {
    addDevice("id=G1 layer=usb3 size=32x16");
    ASSERT_TRUE(facade->openCamera("G1", RUVO_CAMERA_HIKVISION));
    int32_t percent = -1;
    bool automatic = false;
    struct Control {
        const char* read;
        std::function<bool()> get;
        std::function<bool()> set;
    };
    const Control controls[] = {
        {"MV_CC_GetGain", [&] { return facade->getCameraGainByPercent("G1", percent); },
         [&] { return facade->setCameraGainByPercent("G1", 10); }},
        {"MV_CC_GetBrightness", [&] { return facade->getCameraBrightnessByPercent("G1", percent); },
         [&] { return facade->setCameraBrightnessByPercent("G1", 10); }},
        {"MV_CC_GetExposureTime", [&] { return facade->getCameraExposureByPercent("G1", percent); },
         [&] { return facade->setCameraExposureByPercent("G1", 10); }},
        {"MV_CC_GetExposureAutoMode", [&] { return facade->getCameraExposureMod("G1", automatic); },
         [&] { return facade->setCameraExposureMod("G1", false); }},
    };
    for (const Control& control : controls) {
        HikSim_FailAlways(control.read, kSimulatedFailure);
        EXPECT_FALSE(control.get()) << control.read;
        EXPECT_FALSE(control.set()) << control.read;
        EXPECT_EQ(percent, -1) << control.read;
        HikSim_ClearFaults();
        EXPECT_TRUE(control.get()) << control.read;
        percent = -1;
    }
    EXPECT_TRUE(
        log.contains("ERROR", "Failed to get parameter : getGainByPercent from camera: G1"));
    EXPECT_TRUE(log.contains(
        "ERROR", "Failed to get parameter : getCameraBrightnessByPercent from camera: G1"));
}

TEST_F(HikVisionTest, ExposureModeSwitchesContinuousAutoOnAndOff) {
    addDevice("id=E1 layer=usb3 size=32x16");
    ASSERT_TRUE(facade->openCamera("E1", RUVO_CAMERA_HIKVISION));
    unsigned int mode = 99;
    bool automatic = false;
    ASSERT_TRUE(facade->setCameraExposureMod("E1", true));
    HikSim_LastSetExposureAutoMode(&mode);
    EXPECT_EQ(mode, 2u);
    ASSERT_TRUE(facade->setCameraExposureMod("E1", false));
    HikSim_LastSetExposureAutoMode(&mode);
    EXPECT_EQ(mode, 0u);

    HikSim_FailCall("MV_CC_SetExposureAutoMode", kSimulatedFailure, 1);
    EXPECT_FALSE(facade->setCameraExposureMod("E1", true));
    EXPECT_TRUE(log.contains("ERROR", "Failed to set parameter : setExposureMod on camera: E1"));
    ASSERT_TRUE(facade->getCameraExposureMod("E1", automatic));
    EXPECT_FALSE(automatic) << "a refused switch leaves the device as it was";
}

TEST_F(HikVisionTest, StartAndStopFaultsFailTheCallSetStatusZeroAndClear) {
    addDevice("id=T1 layer=usb3 size=32x16");
    ASSERT_TRUE(facade->openCamera("T1", RUVO_CAMERA_HIKVISION));
    HikSim_FailCall("MV_CC_StartGrabbing", kSimulatedFailure, 1);
    EXPECT_FALSE(facade->startCapture("T1"));
    EXPECT_TRUE(log.contains("ERROR", "Failed to start capture on camera: T1"));
    EXPECT_EQ(facade->getCameraStatus("T1"), RUVO_STATUS_NONE);
    ASSERT_TRUE(facade->startCapture("T1"));

    HikSim_FailCall("MV_CC_StopGrabbing", kSimulatedFailure, 1);
    EXPECT_FALSE(facade->stopCapture("T1"));
    EXPECT_TRUE(log.contains("ERROR", "Failed to stop capture on camera: T1"));
    EXPECT_EQ(facade->getCameraStatus("T1"), RUVO_STATUS_NONE);
    ImageData image{};
    EXPECT_TRUE(facade->getCurrentFrame("T1", image, 0));  // still streaming
    ASSERT_TRUE(facade->stopCapture("T1"));
}

TEST_F(HikVisionTest, FrameFaultsFailOneFetchAndReturnEveryLentBuffer) {
    addDevice("id=B1 layer=usb3 size=32x16 format=bayer_gb8");
    openStreaming("B1");
    ImageData image{};
    for (const char* function :
         {"MV_CC_GetImageBuffer", "MV_CC_ConvertPixelTypeEx", "MV_CC_IsDeviceConnected"}) {
        HikSim_FailCall(function, kSimulatedFailure, 1);
        EXPECT_FALSE(facade->getCurrentFrame("B1", image, 0)) << function;
        EXPECT_EQ(HikSim_OutstandingBuffers(), 0u) << function;
        EXPECT_TRUE(facade->getCurrentFrame("B1", image, 0)) << function;
    }
    EXPECT_TRUE(log.contains("ERROR", "Failed to get current frame from camera: B1"));
}

TEST_F(HikVisionTest, AStopThatFoundTheDeviceSilentLeavesNoStartRefused) {
    addDevice("id=G1 layer=usb3 size=32x16");
    openStreaming("G1");
    // The stop asks whether the device answers and, told no, leaves the SDK grabbing.
    HikSim_FailCall("MV_CC_IsDeviceConnected", kSimulatedFailure, 1);
    ASSERT_TRUE(facade->stopCapture("G1"));
    EXPECT_EQ(HikSim_IsGrabbing("G1"), 1);
    HikSim_ClearCallCounts();
    ASSERT_TRUE(facade->startCapture("G1"));
    EXPECT_EQ(HikSim_CallCount("MV_CC_StopGrabbing"), 1u);
    ImageData image{};
    EXPECT_TRUE(facade->getCurrentFrame("G1", image, 0));

    // An ordinary stop and start make one call each.
    HikSim_ClearCallCounts();
    ASSERT_TRUE(facade->stopCapture("G1"));
    EXPECT_EQ(HikSim_IsGrabbing("G1"), 0);
    ASSERT_TRUE(facade->startCapture("G1"));
    EXPECT_EQ(HikSim_CallCount("MV_CC_StopGrabbing"), 1u);
    EXPECT_EQ(HikSim_CallCount("MV_CC_StartGrabbing"), 1u);
}

TEST_F(HikVisionTest, CloseFaultsStillCloseAndTheCameraOpensAgain) {
    addDevice("id=C1 layer=usb3 size=32x16");
    for (const char* function : {"MV_CC_StopGrabbing", "MV_CC_CloseDevice", "MV_CC_DestroyHandle",
                                 "MV_CC_IsDeviceConnected"}) {
        openStreaming("C1");
        HikSim_FailCall(function, kSimulatedFailure, 1);
        EXPECT_TRUE(facade->closeCamera("C1")) << function;
        HikSim_ClearFaults();
        openStreaming("C1");
        ImageData image{};
        EXPECT_TRUE(facade->getCurrentFrame("C1", image, 0)) << function;
        ASSERT_TRUE(facade->closeCamera("C1"));
    }
}

TEST(HikVisionDriverTest, StartAndStopFollowTheirLinesAndCallsOnlyWhenNeeded) {
    HikSim_Reset();
    LogCapture log;
    hikvision::HikVisionDriver driver;
    EXPECT_TRUE(driver.uninitialize());
    EXPECT_TRUE(log.contains("INFO", "Uninitializing HikVision driver: no initialized "));
    EXPECT_EQ(HikSim_CallCount("MV_CC_Finalize"), 0u);

    ASSERT_TRUE(driver.initialize());
    const auto lines = log.entries().size();
    EXPECT_TRUE(driver.initialize());
    EXPECT_EQ(log.entries().size(), lines);
    EXPECT_EQ(HikSim_CallCount("MV_CC_Initialize"), 1u);
    EXPECT_FALSE(driver.destroyCamera(nullptr));
    EXPECT_EQ(log.entries().size(), lines);

    ICamera* camera = driver.createCamera("ANY");
    ASSERT_NE(camera, nullptr);
    DeviceInfo info;
    camera->getDeviceInfo(info);
    EXPECT_STREQ(info.serialNumber, "222222");
    EXPECT_STREQ(info.displayName, "productName");
    EXPECT_EQ(info.maxWidth, 1280);
    EXPECT_TRUE(driver.destroyCamera(camera));

    HikSim_FailCall("MV_CC_Finalize", kSimulatedFailure, 1);
    EXPECT_TRUE(driver.uninitialize());
    EXPECT_TRUE(log.contains("INFO", "Uninitializing HikVision driver: finalize error"));
    EXPECT_FALSE(driver.isInitialized());

    HikSim_FailCall("MV_CC_Initialize", kSimulatedFailure, 1);
    EXPECT_FALSE(driver.initialize());
    EXPECT_TRUE(driver.initialize());
    EXPECT_TRUE(driver.uninitialize());
}

}  // namespace
}  // namespace telvarra::test
