// What is MindVision's own, through the facade and the driver on the SDK simulator: the camera
// type 1 of a driver that calls itself 6, the Linux start-up call, a binding that tolerates
// missing functions, the record a colour camera reports, the formats its processor is given,
// its percent ranges, the device zoom's limits and a close the SDK refuses. What every make
// shares is in the suite.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "drivers/mindvision/MindVisionBinding.h"
#include "platform/Platform.h"
#include "sim/mindvision/MvSimControl.h"
#include "suite/MakeFixture.h"
#include "support/Pictures.h"
#include "telvarra/CameraFactory.h"

namespace telvarra::test {
namespace {

const SimulatorControl kMindVisionSimulator = TELVARRA_SIMULATOR_CONTROL(MvSim);

// SDK calls of every bound name since the counts were last cleared.
unsigned int sdkCalls() {
    unsigned int calls = 0;
    for (const char* name : mindvision::MindVisionFunctions::kNames) calls += MvSim_CallCount(name);
    return calls;
}

class MindVisionTest : public MakeFixtureTest {
  protected:
    MindVisionTest() : MakeFixtureTest(kMindVisionSimulator, RUVO_CAMERA_MINDVISION) {}
    void TearDown() override {
        MakeFixtureTest::TearDown();
        mindvision::mindVisionBinding().setSymbolLookup({});
    }

    ICameraDriver& driver() {
        return *CameraFactory::getInstance().getDriver(RUVO_CAMERA_MINDVISION);
    }
};

TEST_F(MindVisionTest, CamerasAreTypeOneWhileTheDriverCallsItselfSix) {
    addDevice("id=MV7 user=Bench model=MV-SUA133GM size=640x480");
    EXPECT_EQ(driver().getDriverType(), RUVO_CAMERA_MINDVISION_DRIVER);
    EXPECT_EQ(CameraFactory::getInstance().getDriver(RUVO_CAMERA_MINDVISION_DRIVER), nullptr);
    auto list = listed();
    ASSERT_EQ(list->count, 1u);
    const DeviceInfo& device = list->devices[0];
    EXPECT_EQ(device.cameraType, RUVO_CAMERA_MINDVISION);
    EXPECT_STREQ(device.displayName, "MV-SUA133GM");  // the product name
    EXPECT_STREQ(device.userDefinedName, "Bench");    // the friendly name
    EXPECT_TRUE(log.contains("INFO", "Src Enumerated1 MindVision cameras"));
    EXPECT_TRUE(log.contains("INFO", "Enumerated1 MindVision cameras"));

    EXPECT_FALSE(facade->openCamera("MV7", RUVO_CAMERA_MINDVISION_DRIVER));
    EXPECT_TRUE(facade->openCamera("MV7", RUVO_CAMERA_MINDVISION));
}

TEST_F(MindVisionTest, OnlyLinuxStartsTheSdkAndStoppingCallsNothing) {
    facade->cleanup();
    MvSim_ClearCallCounts();
    ASSERT_TRUE(facade->initialize(RUVO_CAMERA_MINDVISION));
    EXPECT_EQ(MvSim_CallCount("CameraSdkInit"), platform::kIsWindows ? 0u : 1u);
    EXPECT_EQ(lastArguments("CameraSdkInit"), platform::kIsWindows ? "(never called)" : "0");

    MvSim_ClearCallCounts();
    facade->cleanup();
    EXPECT_FALSE(driver().isInitialized());
    EXPECT_EQ(sdkCalls(), 0u);
    EXPECT_TRUE(log.contains("INFO", "Uninitializing MindVision driver: freeLibrary ok"));
}

TEST_F(MindVisionTest, AColourCameraReportsItselfUnavailableAndRefusesBgr) {
    addDevice("id=C1 size=700x500 format=bayer_gr8");
    ICamera* camera = driver().createCamera("C1");
    ASSERT_NE(camera, nullptr);
    DeviceInfo info{};
    EXPECT_EQ(camera->getDeviceInfo(info).serialNumber, std::string("111111"));
    ASSERT_TRUE(camera->connect());
    camera->getDeviceInfo(info);
    EXPECT_STREQ(info.serialNumber, "C1");
    EXPECT_EQ(info.maxHeight, 500);
    EXPECT_FALSE(info.isAvailable);  // the mono-sensor flag
    const _RUVO_IMAGE_FORMAT_LIST formats = camera->getSupportedImageFormats();
    ASSERT_EQ(formats.count, 3u);
    EXPECT_EQ(formats.formats[2], RUVO_FORMAT_BGR8);
    EXPECT_EQ(camera->getImageFormat(), RUVO_FORMAT_RGB8);  // the processor's BGR output

    EXPECT_FALSE(camera->setImageFormat(RUVO_FORMAT_BGR8));
    EXPECT_FALSE(camera->setImageFormat(static_cast<Ruvo_ImageFormat>(4)));
    EXPECT_TRUE(log.contains("ERROR", "Image format not supported: 4 for MindVision camera: C1"));
    ASSERT_TRUE(camera->setImageFormat(RUVO_FORMAT_RGB8));
    EXPECT_TRUE(log.contains("INFO", "Set image format to 2 for MindVision camera: C1"));

    // Now in RGB order, no longer swapped.
    ASSERT_TRUE(camera->startAcquisition());
    ImageData image{};
    ASSERT_TRUE(camera->getCurrentFrame(image, 0));
    const Image expected = deliveredFrame(pictureOf("mindvision", "C1", 700, 500),
                                          sim::PixelFormat::BayerGR8, image.frameNumber);
    EXPECT_EQ(difference({image.width, image.height, image.channels,
                          std::vector<unsigned char>(image.data, image.data + image.dataSize)},
                         expected),
              "");
    ASSERT_TRUE(camera->setImageFormat(RUVO_FORMAT_MONO8));
    ASSERT_TRUE(camera->getCurrentFrame(image, 0));
    EXPECT_EQ(image.channels, 1);
    EXPECT_EQ(image.dataSize, 700 * 500);
    driver().destroyCamera(camera);
    EXPECT_EQ(MvSim_AlignedBlocks(), 0u) << "the output block outlived the camera";
}

TEST_F(MindVisionTest, AMonoCameraListsMonoOnlyAndReportsItselfAvailable) {
    addDevice("id=M1 size=640x480 format=mono8");
    open("M1");
    const _RUVO_IMAGE_FORMAT_LIST formats = facade->getSupportedImageFormats("M1");
    ASSERT_EQ(formats.count, 1u);
    EXPECT_EQ(formats.formats[0], RUVO_FORMAT_MONO8);
    EXPECT_EQ(lastArguments("CameraSetIspOutFormat"), "0x1080001");  // MONO8
    EXPECT_EQ(lastArguments("CameraSetTriggerMode"), "0");
    EXPECT_EQ(lastArguments("CameraInit"), "M1, -1, -1");
    EXPECT_FALSE(facade->setImageFormat("M1", RUVO_FORMAT_RGB8));
    ASSERT_TRUE(facade->closeCamera("M1"));
    EXPECT_EQ(MvSim_AlignedBlocks(), 0u);
}

TEST_F(MindVisionTest, PercentControlsMapOntoTheCapabilityRangesAndTheExposureRange) {
    addDevice("id=P1 size=640x480");
    ASSERT_EQ(MvSim_SetAeTargetRange("P1", 20, 250), 0);
    ASSERT_EQ(MvSim_SetAnalogGainRange("P1", 16, 128), 0);
    ASSERT_EQ(MvSim_SetExposureRange("P1", 10, 1000000), 0);
    open("P1");
    int32_t percent = -1;

    ASSERT_TRUE(facade->setCameraBrightnessByPercent("P1", 50));
    EXPECT_EQ(lastArguments("CameraSetAeTarget"), "135");  // 20 + 230 * 50 / 100
    EXPECT_EQ(MvSim_CallCount("CameraGetAeTarget"), 0u);   // the bounds are the capability's

    ASSERT_TRUE(facade->setCameraGainByPercent("P1", 33));
    EXPECT_EQ(lastArguments("CameraSetAnalogGain"), "52");  // trunc(16 + 112 * 33 / 100)
    ASSERT_TRUE(facade->getCameraGainByPercent("P1", percent));
    EXPECT_EQ(percent, 32);  // trunc(36 / 112 * 100)

    ASSERT_TRUE(facade->setCameraExposureByPercent("P1", 25));
    EXPECT_EQ(lastArguments("CameraSetExposureTime"), "250007.5");  // not truncated

    MvSim_FailCall("CameraGetExposureTimeRange", -1, 1);
    EXPECT_FALSE(facade->setCameraExposureByPercent("P1", 60));
    EXPECT_EQ(lastArguments("CameraSetExposureTime"), "250007.5");
}

TEST_F(MindVisionTest, TheDeviceZoomNeedsASensorOfAtLeast320AndSetsACentredFieldOfView) {
    addDevice("id=Z1 size=1280x1024");
    addDevice("id=NARROW size=300x600");
    open("Z1");
    int left = 0, top = 0, width = 0, height = 0;
    ASSERT_TRUE(facade->setCameraParameter("Z1", "CameraImageZoomIn", ""));
    MvSim_Resolution("Z1", &left, &top, &width, &height);
    EXPECT_EQ(std::vector<int>({left, top, width, height}), std::vector<int>({320, 256, 640, 512}));
    ASSERT_TRUE(facade->setCameraParameter("Z1", "CameraImageZoomIn", ""));
    ASSERT_TRUE(facade->setCameraParameter("Z1", "CameraImageZoomIn", ""));  // stays at 2
    MvSim_Resolution("Z1", &left, &top, &width, &height);
    EXPECT_EQ(std::vector<int>({left, top, width, height}), std::vector<int>({480, 384, 320, 256}));
    ASSERT_TRUE(facade->setCameraParameter("Z1", "CameraImageZoomInReturnNormal", ""));
    MvSim_Resolution("Z1", &left, &top, &width, &height);
    EXPECT_EQ(std::vector<int>({left, top, width, height}), std::vector<int>({0, 0, 1280, 1024}));
    EXPECT_FALSE(facade->setCameraParameter("Z1", "AnythingElse", "1"));

    open("NARROW");
    MvSim_ClearCallCounts();
    EXPECT_FALSE(facade->setCameraParameter("NARROW", "CameraImageZoomIn", ""));
    EXPECT_FALSE(facade->setCameraParameter("NARROW", "CameraImageZoomInReturnNormal", ""));
    EXPECT_EQ(MvSim_CallCount("CameraSetImageResolution"), 0u);
}

TEST_F(MindVisionTest, RotationIsSentClampedAndFramesSurviveAFailedProcessing) {
    addDevice("id=R1 size=640x480");
    openStreaming("R1");
    ASSERT_TRUE(facade->setCameraRotate("R1", 9));
    EXPECT_EQ(lastArguments("CameraSetRotate"), "3");

    MvSim_FailCall("CameraImageProcess", -1, 1);
    ImageData image{};
    EXPECT_FALSE(facade->getCurrentFrame("R1", image, 0));
    EXPECT_EQ(MvSim_OutstandingBuffers(), 0u) << "the raw frame was not given back";
    EXPECT_TRUE(facade->getCurrentFrame("R1", image, 0));
    EXPECT_EQ(image.width, 480);  // turned
}

TEST_F(MindVisionTest, AnSdkRefusingEveryReleaseLendsABoundedNumberOfFrames) {
    addDevice("id=L2 size=16x16 format=mono8");
    openStreaming("L2");
    ImageData image{};
    MvSim_FailAlways("CameraReleaseImageBuffer", -1);
    constexpr unsigned int kHeldAtMost = 64;
    for (unsigned int i = 0; i < kHeldAtMost; ++i)
        ASSERT_TRUE(facade->getCurrentFrame("L2", image, 0)) << i;
    EXPECT_FALSE(facade->getCurrentFrame("L2", image, 0));
    EXPECT_EQ(MvSim_OutstandingBuffers(), kHeldAtMost);
    MvSim_ClearFaults();
    EXPECT_TRUE(facade->getCurrentFrame("L2", image, 0));
    EXPECT_EQ(MvSim_OutstandingBuffers(), 0u);
}

TEST_F(MindVisionTest, ARefusedCloseKeepsTheCameraConnected) {
    addDevice("id=U1 size=640x480");
    ICamera* camera = driver().createCamera("U1");
    ASSERT_TRUE(camera->connect());
    MvSim_FailCall("CameraUnInit", -1, 1);
    EXPECT_FALSE(camera->disconnect());
    EXPECT_TRUE(camera->isConnected());
    EXPECT_EQ(camera->getStatus(), RUVO_STATUS_CONNECTED);
    EXPECT_TRUE(camera->disconnect());
    EXPECT_FALSE(deviceOpen("U1"));
    driver().destroyCamera(camera);
}

// A library lacking functions still loads; the camera fails at the missing call, and says so.
TEST_F(MindVisionTest, MissingFunctionsFailTheirCallsWithoutEndingTheProcess) {
    addDevice("id=F1 size=640x480");
    facade->cleanup();
    auto& binding = mindvision::mindVisionBinding();
    binding.setSymbolLookup([](const platform::DynamicLibrary& library, const char* name) -> void* {
        const std::string missing[] = {"CameraPlay", "CameraGrabber_Create", "CameraImage_Draw"};
        for (const std::string& absent : missing)
            if (absent == name) return nullptr;
        return library.symbol(name);
    });
    ASSERT_TRUE(facade->initialize(RUVO_CAMERA_MINDVISION));
    open("F1");
    EXPECT_FALSE(facade->startCapture("F1"));
    EXPECT_TRUE(log.contains("ERROR", "MindVision SDK lacks function: CameraPlay"));
    EXPECT_EQ(facade->getCameraStatus("F1"), RUVO_STATUS_NONE);
    EXPECT_TRUE(facade->closeCamera("F1"));

    facade->cleanup();
    binding.setSymbolLookup(
        [](const platform::DynamicLibrary&, const char*) -> void* { return nullptr; });
    ASSERT_TRUE(facade->initialize(RUVO_CAMERA_MINDVISION));
    auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
    EXPECT_FALSE(driver().enumerateCameras(list.get()));
    EXPECT_FALSE(facade->openCamera("F1", RUVO_CAMERA_MINDVISION));
}

}  // namespace
}  // namespace telvarra::test
