// What is Dvp's own, through the facade on the SDK simulator: the listing by the text at byte
// 1088 in both record versions, opening by the record's user id, the four frame-fetch errors,
// the percent controls by the descriptors, the exposure mode, the formats, an unplugged camera
// noticed at once, and a binding that needs all 37 names. What every make shares is in the
// suite.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "drivers/dvp/DvpBinding.h"
#include "sim/dvp/DvpSimControl.h"
#include "suite/MakeFixture.h"
#include "telvarra/CameraFactory.h"

namespace telvarra::test {
namespace {

const SimulatorControl kDvpSimulator = TELVARRA_SIMULATOR_CONTROL(DvpSim);

class DvpTest : public MakeFixtureTest {
  protected:
    DvpTest() : MakeFixtureTest(kDvpSimulator, RUVO_CAMERA_DVP) {}
    void TearDown() override {
        MakeFixtureTest::TearDown();
        dvp::dvpBinding().setSymbolLookup({});
    }
};

TEST_F(DvpTest, ListsTheOriginalSerialWithUserAndFriendlyNamesAndSkipsOldRecords) {
    addDevice("id=DV7 user=Station model=DVP-U3M130 size=640x480");
    auto list = listed();
    ASSERT_EQ(list->count, 1u);
    const DeviceInfo& device = list->devices[0];
    EXPECT_STREQ(device.cameraId, "DV7");
    EXPECT_STREQ(device.displayName, "Station");             // the user id, byte 960
    EXPECT_STREQ(device.userDefinedName, "DVP-U3M130#DV7");  // the friendly name, byte 640
    EXPECT_TRUE(log.contains("INFO", "Enumerated1 Dvp cameras"));

    // SDK 2.16 records have nothing at byte 1088: such a camera has no identifier here.
    ASSERT_EQ(DvpSim_SetSdkVersion(16), 0);
    EXPECT_EQ(listed()->count, 0u);
    EXPECT_TRUE(log.contains("INFO", "Src Enumerated1 Dvp cameras"));
    EXPECT_TRUE(log.contains("INFO", "Enumerated0 Dvp cameras"));
    EXPECT_FALSE(facade->openCamera("DV7", RUVO_CAMERA_DVP));
}

TEST_F(DvpTest, OpensByTheRecordsUserIdWhateverTheIdentifier) {
    addDevice("id=DV8 user=Press size=640x480");
    open("DV8");
    EXPECT_EQ(lastArguments("dvpOpenByUserId"), "Press, 1");
    EXPECT_TRUE(log.contains("INFO", "Enumerated Ok ID:DV8"));
    EXPECT_TRUE(log.contains("INFO", "Initializing Dvp camera, CurChannelCount:1"));
    EXPECT_EQ(lastArguments("dvpSetTriggerState"), "0");
}

TEST_F(DvpTest, EachFetchFailureLogsItsCause) {
    addDevice("id=F1 size=64x48");
    openStreaming("F1");
    ImageData image{};
    const struct {
        const char* function;
        int status;
        const char* line;
    } faults[] = {{"dvpIsValid", 0, "DvpCamera ERROR: GenerateCurImage -1"},
                  {"dvpGetStreamState", 0, "DvpCamera ERROR: GenerateCurImage -2"},
                  {"dvpGetFrame", -1000, "DvpCamera ERROR: GenerateCurImage -4"}};
    for (const auto& fault : faults) {
        DvpSim_FailCall(fault.function, fault.status, 1);
        EXPECT_FALSE(facade->getCurrentFrame("F1", image, 0)) << fault.function;
        EXPECT_TRUE(log.contains("ERROR", fault.line)) << fault.function;
        EXPECT_TRUE(facade->getCurrentFrame("F1", image, 0)) << fault.function;
    }
    ASSERT_EQ(DvpSim_StopStream("F1"), 0);
    EXPECT_FALSE(facade->getCurrentFrame("F1", image, 0));
    EXPECT_TRUE(log.contains("ERROR", "DvpCamera ERROR: GenerateCurImage -3"));
}

TEST_F(DvpTest, PercentControlsMapOntoTheDescriptorsAndNeedAValidHandle) {
    addDevice("id=P1 size=64x48");
    ASSERT_EQ(DvpSim_SetAeTargetRange("P1", 0, 255), 0);
    ASSERT_EQ(DvpSim_SetAnalogGainRange("P1", 1.0f, 16.0f), 0);
    ASSERT_EQ(DvpSim_SetExposureRange("P1", 10, 1000000), 0);
    open("P1");
    int32_t percent = -1;

    ASSERT_TRUE(facade->setCameraBrightnessByPercent("P1", 50));
    EXPECT_EQ(lastArguments("dvpSetAeTarget"), "127");  // trunc(255 * 0.5)
    ASSERT_TRUE(facade->getCameraBrightnessByPercent("P1", percent));
    EXPECT_EQ(percent, 49);  // trunc(127 / 255 * 100)

    ASSERT_TRUE(facade->setCameraGainByPercent("P1", 20));
    EXPECT_EQ(lastArguments("dvpSetAnalogGain"), "4");

    ASSERT_TRUE(facade->setCameraExposureByPercent("P1", 25));
    EXPECT_EQ(lastArguments("dvpSetExposure"), "250007.5");  // a double, not truncated

    DvpSim_FailCall("dvpIsValid", 0, 1);
    EXPECT_FALSE(facade->setCameraBrightnessByPercent("P1", 90));
    EXPECT_EQ(lastArguments("dvpSetAeTarget"), "127");

    ASSERT_TRUE(facade->setCameraExposureMod("P1", true));
    EXPECT_EQ(lastArguments("dvpSetAeOperation"), "2");
    bool automatic = false;
    ASSERT_TRUE(facade->getCameraExposureMod("P1", automatic));
    EXPECT_TRUE(automatic);
    // The device refuses a manual exposure while its own is running.
    EXPECT_FALSE(facade->setCameraExposureByPercent("P1", 60));
}

TEST_F(DvpTest, ColourCamerasDeliverBgrUntilAskedAndMonoOnesOnlyMono) {
    addDevice("id=C1 size=64x48 format=bayer_rg8");
    addDevice("id=M1 size=64x48 format=mono8");
    openStreaming("C1");
    const _RUVO_IMAGE_FORMAT_LIST colour = facade->getSupportedImageFormats("C1");
    ASSERT_EQ(colour.count, 3u);
    EXPECT_EQ(facade->getImageFormat("C1"), RUVO_FORMAT_BGR8);
    ASSERT_TRUE(facade->setImageFormat("C1", RUVO_FORMAT_RGB8));
    EXPECT_EQ(lastArguments("dvpSetTargetFormat"), "14");  // S_RGB24
    ImageData image{};
    ASSERT_TRUE(facade->getCurrentFrame("C1", image, 0));
    EXPECT_EQ(image.format, RUVO_FORMAT_RGB8);
    ASSERT_TRUE(facade->setImageFormat("C1", RUVO_FORMAT_MONO8));
    ASSERT_TRUE(facade->getCurrentFrame("C1", image, 0));
    EXPECT_EQ(image.channels, 1);
    EXPECT_EQ(image.dataSize, 64 * 48);

    open("M1");
    EXPECT_EQ(facade->getSupportedImageFormats("M1").count, 1u);
    EXPECT_FALSE(facade->setImageFormat("M1", RUVO_FORMAT_RGB8));
    EXPECT_TRUE(log.contains("ERROR", "Image format not supported: 2 for Dvp camera: M1"));
    EXPECT_FALSE(facade->setCameraParameter("M1", "CameraImageZoomIn", ""));  // no zoom
}

// Unplug and replug are the suite's.
// All 37 names are required: a runtime lacking the enumeration helpers, as SDK 2.16 and 2.21
// do, is refused whole.
TEST_F(DvpTest, ARuntimeLackingAnyNameIsRefused) {
    facade->cleanup();
    dvp::dvpBinding().setSymbolLookup(
        [](const platform::DynamicLibrary& library, const char* name) -> void* {
            return std::string(name) == "dvpGetAllEnumValue" ? nullptr : library.symbol(name);
        });
    EXPECT_FALSE(facade->initialize(RUVO_CAMERA_DVP));
    EXPECT_FALSE(dvp::dvpBinding().isLoaded());
    EXPECT_FALSE(CameraFactory::getInstance().getDriver(RUVO_CAMERA_DVP)->isInitialized());
}

}  // namespace
}  // namespace telvarra::test
