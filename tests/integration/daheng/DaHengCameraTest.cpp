// What is DaHeng's own, through the facade on the SDK simulator: its listing with the crossed
// names, its log lines, mosaics delivered as they come, its percent arithmetic, the exposure
// getter that sets, its refusals and its binding. What every make shares is in the suite.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "drivers/daheng/DaHengBinding.h"
#include "sim/daheng/DahSimControl.h"
#include "suite/MakeFixture.h"
#include "support/Pictures.h"

namespace telvarra::test {
namespace {

using Bytes = std::vector<unsigned char>;

const SimulatorControl kDaHengSimulator = TELVARRA_SIMULATOR_CONTROL(DahSim);

class DaHengTest : public MakeFixtureTest {
  protected:
    DaHengTest() : MakeFixtureTest(kDaHengSimulator, RUVO_CAMERA_DAHENG) {}
};

TEST_F(DaHengTest, ListingCrossesTheDisplayAndUserNamesAndLogsBothCounts) {
    addDevice("id=DH1 user=Inspect model=MER-131 layer=usb3 size=64x48");
    addDevice("id=DH2 model=MER-503 layer=gige size=64x48 format=bayer_rg8");
    auto list = listed();
    ASSERT_EQ(list->count, 2u);
    const DeviceInfo& first = list->devices[0];
    EXPECT_STREQ(first.displayName, "Inspect");           // the user-id field
    EXPECT_STREQ(first.userDefinedName, "MER-131(DH1)");  // the display-name field
    EXPECT_TRUE(first.isAvailable);
    EXPECT_TRUE(log.contains("INFO", "Src Enumerated 2 DaHeng cameras"));
    EXPECT_TRUE(log.contains("INFO", "Enumerated 2 DaHeng cameras"));
}

TEST_F(DaHengTest, OpenLogsItsLinesAndMosaicsComeAsTheyAreOnOneChannel) {
    addDevice("id=B1 layer=usb3 size=33x17 format=bayer_gb8");
    openStreaming("B1");
    EXPECT_TRUE(log.contains("INFO", "Enumerated Ok ID: B1 Dvp cameras"));
    EXPECT_TRUE(log.contains("INFO", "Initializing HikVision camera, CurChannelCount:1"));
    EXPECT_TRUE(log.contains("INFO", "Initializing DaHeng camera:B1"));
    EXPECT_EQ(facade->getImageFormat("B1"), RUVO_FORMAT_BAYER_GB8);

    ImageData image{};
    ASSERT_TRUE(facade->getCurrentFrame("B1", image, 0));
    EXPECT_EQ(image.format, RUVO_FORMAT_BAYER_GB8);
    const Image mosaic = sensorFrame(pictureOf("daheng", "B1", 33, 17), sim::PixelFormat::BayerGB8,
                                     lastFrameNumber("B1"));
    ASSERT_EQ(image.dataSize, 33 * 17);
    EXPECT_EQ(Bytes(image.data, image.data + image.dataSize), mosaic.pixels);

    // An incomplete frame is still delivered: its status is not looked at.
    DahSim_MakeNextFrameIncomplete("B1");
    EXPECT_TRUE(facade->getCurrentFrame("B1", image, 0));
}

TEST_F(DaHengTest, PercentControlsScaleByTheFractionRoundGainsToFloatAndSaveAfterEachSet) {
    addDevice("id=P1 layer=usb3 size=64x48");
    DahSim_SetGrayValueRange("P1", 0, 100);
    DahSim_SetGainRange("P1", 0.0, 23.9);
    DahSim_SetExposureRange("P1", 20.0, 1000.0);
    open("P1");

    int64_t gray = 0;
    ASSERT_TRUE(facade->setCameraBrightnessByPercent("P1", 29));
    DahSim_LastSetInt("ExpectedGrayValue", &gray);
    EXPECT_EQ(gray, 28);  // 100 * (29 / 100.0) is 28.999999999999996
    double gain = 0;
    ASSERT_TRUE(facade->setCameraGainByPercent("P1", 33));
    DahSim_LastSetFloat("Gain", &gain);
    EXPECT_EQ(gain, static_cast<double>(static_cast<float>(23.9 * (33 / 100.0))));
    int32_t percent = -1;
    ASSERT_TRUE(facade->getCameraGainByPercent("P1", percent));
    EXPECT_NEAR(percent, 33, 1);  // the float read back may sit just under 33 %
    EXPECT_EQ(DahSim_CallCount("GXFeatureSave"), 2u);  // refused for its null path, and ignored

    // The exposure getter sets the value it is given and leaves it there.
    percent = 150;
    ASSERT_TRUE(facade->getCameraExposureByPercent("P1", percent));
    EXPECT_EQ(percent, 150);
    double exposure = 0;
    DahSim_LastSetFloat("ExposureTime", &exposure);
    EXPECT_EQ(exposure, 1000.0);

    bool automatic = false;
    ASSERT_TRUE(facade->setCameraExposureMod("P1", true));
    int64_t mode = -1;
    DahSim_LastSetEnum("ExposureAuto", &mode);
    EXPECT_EQ(mode, 1);
    ASSERT_TRUE(facade->getCameraExposureMod("P1", automatic));
    EXPECT_TRUE(automatic);
}

TEST_F(DaHengTest, RefusalsNameTheNumbersAtFault) {
    addDevice("id=R1 layer=usb3 size=64x48 format=rgb8");
    openStreaming("R1");
    EXPECT_FALSE(facade->setImageSize("R1", 1281, 100));
    EXPECT_TRUE(log.contains("ERROR", "Invalid image size: 1281x100"));
    Bytes buffer(64 * 48 * 3);
    ImageData image{};
    EXPECT_FALSE(facade->getCurrentFrame2("R1", buffer.data(), 100, image, 0));
    EXPECT_TRUE(log.contains("ERROR", "Buffer too small: 9216"));
    EXPECT_FALSE(facade->getCurrentFrame2("R1", buffer.data(), 1, image, 0));
    EXPECT_TRUE(log.contains("ERROR", "Buffer too small: < 9216"));

    EXPECT_FALSE(facade->setImageFormat("R1", RUVO_FORMAT_BAYER_RG8));
    EXPECT_TRUE(log.contains("ERROR", "Image format not supported: "));
    ASSERT_TRUE(facade->stopCapture("R1"));
    ASSERT_TRUE(facade->setImageFormat("R1", RUVO_FORMAT_BGR8));
    int64_t code = 0;
    DahSim_LastSetEnum("PixelFormat", &code);
    EXPECT_EQ(code, 0x02180015);
    EXPECT_TRUE(log.contains("INFO", "Set image format to 3 for DaHeng camera: R1"));
}

TEST(DaHengBindingTest, OnlyTheOfflineCallbackMayBeMissing) {
    daheng::DaHengBinding& binding = daheng::dahengBinding();
    auto hiding = [&](const std::string& hidden) {
        binding.setSymbolLookup(
            [hidden](const platform::DynamicLibrary& library, const char* name) {
                return hidden == name ? nullptr : library.symbol(name);
            });
    };
    ASSERT_TRUE(binding.load());
    hiding("GXRegisterDeviceOfflineCallback");
    EXPECT_TRUE(binding.load());
    hiding("GXGetAllDeviceBaseInfo");
    EXPECT_FALSE(binding.load());
    binding.setSymbolLookup({});
    binding.unload();
}

}  // namespace
}  // namespace telvarra::test
