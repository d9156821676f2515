// The HikVision make through the facade: listing, sessions, controls, faults, unplugging and
// concurrent frame pulls, all on the SDK simulator.
#include <atomic>
#include <cstring>
#include <memory>
#include <thread>

#include "HikVisionFixture.h"
#include "drivers/hikvision/HikVisionDriver.h"
#include "sim/common/TestPattern.h"

namespace telvarra::test {
namespace {

constexpr int kSimulatedFailure = static_cast<int>(0x80000004u);  // MV_E_PARAMETER

std::string storedValue(CameraConfig* config, const char* key) {
    char text[255] = {};
    char* pointer = text;
    return config && config->getValue(key, &pointer) ? std::string(text) : "<absent>";
}

TEST_F(HikVisionTest, ListingNamesDevicesByLayerAndSkipsTheGenTlGigELayer) {
    addDevice("id=GE01 model=MV-CA050 layer=gige");
    addDevice("id=GE02 model=MV-CA050 user=Left layer=gige");
    addDevice("id=U301 model=MV-CS200 layer=usb3");
    addDevice("id=CXP1 model=MV-CXP user=Grabber layer=gentl-cxp");
    addDevice("id=TLGE model=MV-GT layer=gentl-gige");
    auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
    ASSERT_TRUE(facade->getAvailableCamerasByType(RUVO_CAMERA_HIKVISION, list.get()));
    ASSERT_EQ(list->count, 4u);
    EXPECT_TRUE(log.contains("INFO", "Src Enumerated5 HikVision cameras"));

    const DeviceInfo& unnamed = list->devices[0];
    EXPECT_STREQ(unnamed.cameraId, "GE01");
    EXPECT_EQ(unnamed.cameraType, RUVO_CAMERA_HIKVISION);
    EXPECT_STREQ(unnamed.vendorName, "HikVision");
    EXPECT_STREQ(unnamed.serialNumber, "GE01");
    EXPECT_STREQ(unnamed.modelName, "HikVision ace");
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
    auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
    ASSERT_TRUE(facade->getAvailableCamerasByType(RUVO_CAMERA_HIKVISION, list.get()));
    ASSERT_EQ(list->count, 1u);
    EXPECT_STREQ(list->devices[0].cameraId, "SERIAL0123456789");
    EXPECT_STREQ(list->devices[0].displayName, "USERNAME01234567");
}

TEST_F(HikVisionTest, SessionOpensStreamsStopsAndClosesWithItsStatusAndLines) {
    addDevice("id=S1 layer=usb3 size=64x48 format=mono8");
    ASSERT_TRUE(facade->openCamera("S1", RUVO_CAMERA_HIKVISION));
    EXPECT_EQ(facade->getCameraStatus("S1"), RUVO_STATUS_CONNECTED);
    EXPECT_EQ(HikSim_IsOpen("S1"), 1);
    char arguments[64];
    HikSim_LastArguments("MV_CC_OpenDevice", arguments, sizeof arguments);
    EXPECT_STREQ(arguments, "1, 0");
    unsigned int trigger = 99;
    HikSim_LastSetEnumValue("TriggerMode", &trigger);
    EXPECT_EQ(trigger, 0u);
    EXPECT_TRUE(log.contains("INFO", "Enumerated Ok ID:S1"));
    EXPECT_TRUE(log.contains("INFO", "Initializing HikVision camera, CurImageFormat:MONO8"));
    EXPECT_EQ(facade->getImageFormat("S1"), RUVO_FORMAT_MONO8);

    ASSERT_TRUE(facade->startCapture("S1"));
    EXPECT_TRUE(facade->startCapture("S1"));
    EXPECT_TRUE(log.contains("WARNING", "Camera already streaming: S1"));
    EXPECT_EQ(facade->getCameraStatus("S1"), RUVO_STATUS_ACQUIRING);
    ASSERT_TRUE(facade->stopCapture("S1"));
    EXPECT_EQ(facade->getCameraStatus("S1"), RUVO_STATUS_ACQUIRING);  // kept until disconnect
    EXPECT_FALSE(facade->stopCapture("S1"));
    EXPECT_TRUE(log.contains("WARNING", "Camera not streaming: S1"));

    ASSERT_TRUE(facade->closeCamera("S1"));
    EXPECT_EQ(HikSim_IsOpen("S1"), 0);
    EXPECT_TRUE(log.contains("INFO", "Disconnecting from HikVision camera: S1"));
    EXPECT_TRUE(log.contains("INFO", "Destroying HikVision camera"));
}

TEST_F(HikVisionTest, ImageFormatsComeFromTheDeviceAndOnlyListedOnesAreAccepted) {
    addDevice("id=F1 layer=usb3 size=32x16 format=bgr8 formats=mono8,rgb8,bgr8,bayer_rg8");
    ASSERT_TRUE(facade->openCamera("F1", RUVO_CAMERA_HIKVISION));
    const _RUVO_IMAGE_FORMAT_LIST formats = facade->getSupportedImageFormats("F1");
    ASSERT_EQ(formats.count, 3u);
    EXPECT_EQ(formats.formats[0], RUVO_FORMAT_MONO8);
    EXPECT_EQ(formats.formats[2], RUVO_FORMAT_BGR8);
    EXPECT_TRUE(log.contains("INFO", "Initializing HikVision camera, ReadImageFormat-Count:4"));

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
    ASSERT_TRUE(facade->setImageSize("Z1", 1280, 1024));
    ASSERT_TRUE(facade->getImageSize("Z1", width, height));
    EXPECT_EQ(width, 1280);
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
    ASSERT_TRUE(facade->setCameraGainByPercent("P1", 150));  // clamped to 100
    HikSim_LastSetGain(&gain);
    EXPECT_FLOAT_EQ(gain, 22.0f);
    // The exposure maximum is capped at 200000 microseconds.
    ASSERT_TRUE(facade->setCameraExposureByPercent("P1", 50));
    HikSim_LastSetExposureTime(&exposure);
    EXPECT_FLOAT_EQ(exposure, 10.0f + (200000.0f - 10.0f) / 2);
    ASSERT_TRUE(facade->setCameraBrightnessByPercent("P1", 33));  // trunc(255 * 0.33) = 84
    HikSim_LastSetBrightness(&brightness);
    EXPECT_EQ(brightness, 84u);
    ASSERT_TRUE(facade->setCameraBrightnessByPercent("P1", -5));
    HikSim_LastSetBrightness(&brightness);
    EXPECT_EQ(brightness, 0u);
    EXPECT_GE(HikSim_CallCount("MV_CC_SetCommandValue"), 5u);

    int32_t percent = -1;
    ASSERT_TRUE(facade->setCameraBrightnessByPercent("P1", 40));
    ASSERT_TRUE(facade->getCameraBrightnessByPercent("P1", percent));
    EXPECT_EQ(percent, 40);
    ASSERT_TRUE(facade->setCameraExposureByPercent("P1", 75));
    ASSERT_TRUE(facade->getCameraExposureByPercent("P1", percent));
    EXPECT_EQ(percent, 75);

    CameraConfig* config = facade->getCameraConfigById("P1");
    EXPECT_EQ(storedValue(config, "setCameraGainByPercent"), "150");
    EXPECT_EQ(storedValue(config, "setCameraExposureByPercent"), "75");
    EXPECT_EQ(storedValue(config, "setCameraBrightnessByPercent"), "40");

    HikSim_SetBrightnessRange("P1", 7, 7);
    ASSERT_TRUE(facade->getCameraBrightnessByPercent("P1", percent));
    EXPECT_EQ(percent, 0);
}

TEST_F(HikVisionTest, ExposureModeSwitchesContinuousAutoOnAndOff) {
    addDevice("id=E1 layer=usb3 size=32x16");
    ASSERT_TRUE(facade->openCamera("E1", RUVO_CAMERA_HIKVISION));
    unsigned int mode = 99;
    bool automatic = false;
    ASSERT_TRUE(facade->setCameraExposureMod("E1", true));
    HikSim_LastSetExposureAutoMode(&mode);
    EXPECT_EQ(mode, 2u);
    ASSERT_TRUE(facade->getCameraExposureMod("E1", automatic));
    EXPECT_TRUE(automatic);
    ASSERT_TRUE(facade->setCameraExposureMod("E1", false));
    HikSim_LastSetExposureAutoMode(&mode);
    EXPECT_EQ(mode, 0u);
    ASSERT_TRUE(facade->getCameraExposureMod("E1", automatic));
    EXPECT_FALSE(automatic);
    EXPECT_EQ(storedValue(facade->getCameraConfigById("E1"), "setCameraExposureMod"), "0");

    HikSim_FailCall("MV_CC_SetExposureAutoMode", kSimulatedFailure, 1);
    EXPECT_FALSE(facade->setCameraExposureMod("E1", true));
    EXPECT_TRUE(log.contains("ERROR", "Failed to set parameter : setExposureMod on camera: E1"));
    EXPECT_EQ(storedValue(facade->getCameraConfigById("E1"), "setCameraExposureMod"), "0");
}

TEST_F(HikVisionTest, RotationIsClampedAndMirrorsRoundTrip) {
    addDevice("id=R1 layer=usb3 size=32x16");
    ASSERT_TRUE(facade->openCamera("R1", RUVO_CAMERA_HIKVISION));
    int32_t turns = -1;
    ASSERT_TRUE(facade->setCameraRotate("R1", 7));
    ASSERT_TRUE(facade->getCameraRotate("R1", turns));
    EXPECT_EQ(turns, 3);
    ASSERT_TRUE(facade->setCameraRotate("R1", -1));
    ASSERT_TRUE(facade->getCameraRotate("R1", turns));
    EXPECT_EQ(turns, 0);
    bool on = false;
    ASSERT_TRUE(facade->setCameraVerMirror("R1", true));
    ASSERT_TRUE(facade->getCameraVerMirror("R1", on));
    EXPECT_TRUE(on);

    char* text = nullptr;
    EXPECT_TRUE(facade->getCameraParameter("R1", "Anything", &text));
    EXPECT_STREQ(text, "100");
    _RUVO_INT_VALUE untouched{5, 6, 7, 8};
    EXPECT_TRUE(facade->getCameraIntValue("R1", "Width", &untouched));
    EXPECT_EQ(untouched.current, 5);
}

// Each SDK call of the open path, failed once, fails the open and leaves nothing behind.
class HikVisionOpenFaultTest
    : public HikVisionTest,
      public ::testing::WithParamInterface<std::pair<const char*, unsigned>> {};

TEST_P(HikVisionOpenFaultTest, FailedOpenReleasesTheDeviceAndTheNextOpenWorks) {
    const auto [function, nth] = GetParam();
    addDevice("id=O1 layer=usb3 size=32x16");
    HikSim_FailCall(function, kSimulatedFailure, nth);
    EXPECT_FALSE(facade->openCamera("O1", RUVO_CAMERA_HIKVISION));
    EXPECT_TRUE(log.contains("ERROR", "Failed to connect camera: O1"));
    EXPECT_EQ(HikSim_IsOpen("O1"), 0);
    EXPECT_FALSE(facade->isCameraConnected("O1"));
    ASSERT_TRUE(facade->openCamera("O1", RUVO_CAMERA_HIKVISION));
    ASSERT_TRUE(facade->startCapture("O1"));
    ImageData image{};
    EXPECT_TRUE(facade->getCurrentFrame("O1", image, 0));
}

// The camera's own enumeration is the second one of an open (the manager's comes first); the
// trigger mode is read before the pixel format.
INSTANTIATE_TEST_SUITE_P(OpenPath, HikVisionOpenFaultTest,
                         ::testing::Values(std::make_pair("MV_CC_EnumDevices", 2u),
                                           std::make_pair("MV_CC_CreateHandle", 1u),
                                           std::make_pair("MV_CC_OpenDevice", 1u),
                                           std::make_pair("MV_CC_GetEnumValue", 1u),
                                           std::make_pair("MV_CC_SetEnumValue", 1u),
                                           std::make_pair("MV_CC_GetEnumValue", 2u)),
                         [](const auto& info) {
                             return std::string(info.param.first) + "_call" +
                                    std::to_string(info.param.second);
                         });

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

TEST_F(HikVisionTest, UnpluggedCameraFailsFramesUntilReconnectedAfterReplug) {
    addDevice("id=U1 layer=usb3 size=32x16");
    openStreaming("U1");
    ImageData image{};
    ASSERT_TRUE(facade->getCurrentFrame("U1", image, 0));

    ASSERT_EQ(HikSim_Unplug("U1"), 0);
    EXPECT_FALSE(facade->getCurrentFrame("U1", image, 0));
    EXPECT_FALSE(facade->reconnectCamera("U1"));
    EXPECT_TRUE(log.contains("ERROR", "Failed to reconnect camera: U1"));
    EXPECT_FALSE(facade->isCameraConnected("U1"));

    ASSERT_EQ(HikSim_Replug("U1"), 0);
    ASSERT_TRUE(facade->reconnectCamera("U1"));
    EXPECT_TRUE(log.contains("INFO", "Reconnected camera: U1"));
    EXPECT_EQ(facade->getCameraStatus("U1"), RUVO_STATUS_CONNECTED);
    ASSERT_TRUE(facade->startCapture("U1"));
    EXPECT_TRUE(facade->getCurrentFrame("U1", image, 0));
    EXPECT_TRUE(facade->reconnectCamera("U1"));  // still connected: nothing to do
    EXPECT_TRUE(facade->getCurrentFrame("U1", image, 0));
}

TEST_F(HikVisionTest, TwoThreadsPullingFramesEachGetWholeFrames) {
    constexpr unsigned int kWidth = 96, kHeight = 64;
    addDevice("id=MT layer=usb3 size=96x64 format=rgb8");
    openStreaming("MT");
    const unsigned int seed = seedOf("MT");
    std::atomic<int> torn{0}, delivered{0};
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(1500);
    auto pull = [&] {
        Bytes buffer(kWidth * kHeight * 3), expected(buffer.size());
        while (std::chrono::steady_clock::now() < until) {
            ImageData image{};
            if (!facade->getCurrentFrame2("MT", buffer.data(), static_cast<int32_t>(buffer.size()),
                                          image, 0)) {
                ++torn;
                continue;
            }
            sim::renderFrame(sim::PixelFormat::Rgb8, seed, static_cast<unsigned>(image.frameNumber),
                             kWidth, kHeight, expected.data());
            if (buffer != expected) ++torn;
            ++delivered;
        }
    };
    std::thread first(pull), second(pull);
    first.join();
    second.join();
    EXPECT_EQ(torn, 0);
    EXPECT_GT(delivered, 10);
}

TEST(HikVisionDriverTest, StartAndStopFollowTheirLinesAndCallsOnlyWhenNeeded) {
    HikSim_Reset();
    LogCapture log;
    hikvision::HikVisionDriver driver;
    EXPECT_TRUE(driver.uninitialize());
    EXPECT_EQ(log.entries(), (std::vector<LogEntry>{
                                 {"INFO", "Uninitializing HikVision driver: start"},
                                 {"INFO", "Uninitializing HikVision driver: no initialized "}}));
    EXPECT_EQ(HikSim_CallCount("MV_CC_Finalize"), 0u);
    EXPECT_EQ(driver.createCamera("X"), nullptr);
    EXPECT_FALSE(driver.enumerateCameras(nullptr));
    EXPECT_TRUE(log.contains("ERROR", "HikVision driver not initialized"));

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
    EXPECT_TRUE(log.contains("INFO", "Uninitializing HikVision driver: freeLibrary ok"));
    EXPECT_TRUE(log.contains("INFO", "Uninitializing HikVision driver: end"));
    EXPECT_FALSE(driver.isInitialized());

    HikSim_FailCall("MV_CC_Initialize", kSimulatedFailure, 1);
    EXPECT_FALSE(driver.initialize());
    EXPECT_TRUE(driver.initialize());
    EXPECT_TRUE(driver.uninitialize());
}

}  // namespace
}  // namespace telvarra::test
