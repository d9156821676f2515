// What is Canon's own, through the facade on the SDK simulator: the driver's start, stop and
// listing with what it prints, the three exposure index lists, the shutter and autofocus
// commands with the busy flag, stills downloaded and decoded from the body's events, live view
// that is asked again while not ready, and the typed values a body does not have. What every
// make shares is in the suite.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "drivers/canon/CanonBinding.h"
#include "platform/Paths.h"
#include "sim/canon/CanonSimControl.h"
#include "suite/MakeFixture.h"
#include "support/Pictures.h"

namespace telvarra::test {
namespace {

const SimulatorControl kCanonSimulator = TELVARRA_SIMULATOR_CONTROL(CanonSim);

constexpr unsigned kTv = 0x406;
constexpr unsigned kIso = 0x402;
constexpr unsigned kSaveTo = 0x0B;
constexpr int kDeviceBusy = 0x81;

std::string commands(const char* id) {
    char text[256] = {};
    return CanonSim_Commands(id, text, sizeof text) < 0 ? "(unknown body)" : text;
}

unsigned property(const char* id, unsigned propertyId) {
    unsigned value = 0;
    EXPECT_EQ(CanonSim_GetProperty(id, propertyId, &value), 0);
    return value;
}

// What a host's frame callback received: the stills, copied out.
struct Stills {
    std::vector<Image> pictures;
    static void receive(const ImageData& frame, void* user) {
        static_cast<Stills*>(user)->pictures.push_back(
            {frame.width, frame.height, frame.channels,
             std::vector<std::uint8_t>(frame.data, frame.data + frame.dataSize)});
    }
};

class CanonTest : public MakeFixtureTest {
  protected:
    CanonTest() : MakeFixtureTest(kCanonSimulator, RUVO_CAMERA_CANON) {}
    void TearDown() override {
        MakeFixtureTest::TearDown();
        canon::canonBinding().setSymbolLookup({});
    }

    _RUVO_ENUM_VALUE enumValue(const char* id, const char* name) {
        _RUVO_ENUM_VALUE value{};
        EXPECT_TRUE(facade->getCameraEnumValue(id, name, &value)) << name;
        return value;
    }
    // Asks until the callback has had a still or a second has passed: isCameraConnected pumps
    // the body's events.
    void waitForStill(const char* id, const Stills& stills, std::size_t count) {
        for (int tries = 0; tries < 100 && stills.pictures.size() < count; ++tries)
            EXPECT_TRUE(facade->isCameraConnected(id));
    }
    // Beside the library, which this program links.
    static std::string stillPath(const std::string& id) {
        return platform::moduleDirectory() + "Canon__" + id + ".jpg";
    }
};

TEST_F(CanonTest, DriverPrintsEveryBodyAndListsThoseWithASerialNumber) {
    addDevice("id=EOS7 size=64x48");
    addDevice("id=EOS8 size=64x48");
    ASSERT_EQ(CanonSim_SetSerialNumber("EOS8", ""), 0);
    ::testing::internal::CaptureStdout();
    auto list = listed();
    const std::string printed = ::testing::internal::GetCapturedStdout();
    ASSERT_EQ(list->count, 1u);
    EXPECT_STREQ(list->devices[0].cameraId, "EOS7");
    EXPECT_NE(printed.find("\nCamera Index: 0\nDevice Name: "), std::string::npos) << printed;
    EXPECT_NE(printed.find("\nCamera Index: 1\nDevice Name: "), std::string::npos) << printed;
    EXPECT_NE(printed.find("Port Type: "), std::string::npos) << printed;
    EXPECT_TRUE(log.contains("INFO", "Src Enumerated 2 Canon cameras"));
    EXPECT_TRUE(log.contains("INFO", "Enumerated 1 Canon cameras"));
    EXPECT_FALSE(facade->openCamera("EOS8", RUVO_CAMERA_CANON));
    EXPECT_EQ(CanonSim_IsOpen("EOS8"), 0);  // every session of the listing closed again
}

TEST_F(CanonTest, DriverWithoutBodiesListsNoneAndSaysWhyItStops) {
    EXPECT_EQ(listed()->count, 0u);
    EXPECT_TRUE(log.contains("INFO", "Initializing Canon driver."));

    CanonSim_FailCall("EdsTerminateSDK", 2, 1);
    facade->cleanup();
    EXPECT_TRUE(log.contains("INFO", "Uninitializing Canon driver: closeLib error"));
    EXPECT_TRUE(facade->initialize(RUVO_CAMERA_CANON)) << "a failed stop does not stop a restart";
}

TEST_F(CanonTest, ExposureListsAreWindowsOfTheBodysCodesReachedByIndex) {
    addDevice("id=EX1 size=64x48");
    open("EX1");
    const _RUVO_ENUM_VALUE shutter = enumValue("EX1", "GetShutterSpeedIndex");
    ASSERT_EQ(shutter.count, 22u);
    // Element 16 of the body's Tv list, 0x10 rising by 3, 2, 3, is 0x3B; the current 0x60 is
    // element 30, index 14.
    EXPECT_STREQ(shutter.entries[0].symbolic, "59");
    EXPECT_EQ(shutter.current.value, 14);
    EXPECT_STREQ(shutter.current.symbolic, "96");
    EXPECT_EQ(enumValue("EX1", "GetApertureIndex").count, 16u);
    const _RUVO_ENUM_VALUE iso = enumValue("EX1", "GetISOSpeedIndex");
    ASSERT_EQ(iso.count, 8u);
    for (uint32_t i = 0; i < iso.count; ++i) EXPECT_EQ(iso.entries[i].value, int64_t(i));
    EXPECT_EQ(iso.current.value, 1);

    EXPECT_FALSE(facade->setCameraEnumValue("EX1", "SetShutterSpeedIndex", 22));
    EXPECT_EQ(enumValue("EX1", "GetShutterSpeedIndex").current.value, 14);
    ASSERT_TRUE(facade->setCameraEnumValue("EX1", "SetShutterSpeedIndex", 21));
    EXPECT_EQ(property("EX1", kTv), 0x73u);  // element 37
    EXPECT_TRUE(log.contains("INFO", "Setting parameter SetShutterSpeedIndex on Canon camera:EX1"));
    EXPECT_FALSE(facade->setCameraEnumValue("EX1", "SetISOSpeedIndex", 8));
    EXPECT_FALSE(facade->setCameraEnumValue("EX1", "SetISOSpeedIndex", -1));

    // The body refuses: false, and the index stays where the host put it.
    CanonSim_FailCall("EdsSetPropertyData", kDeviceBusy, 1);
    EXPECT_FALSE(facade->setCameraEnumValue("EX1", "SetISOSpeedIndex", 3));
    EXPECT_EQ(enumValue("EX1", "GetISOSpeedIndex").current.value, 3);
    EXPECT_EQ(property("EX1", kIso), 0x48u);

    // The body's dial turned: its change event moves the index.
    ASSERT_EQ(CanonSim_SetProperty("EX1", kTv, 0x68), 0);  // element 33
    EXPECT_EQ(enumValue("EX1", "GetShutterSpeedIndex").current.value, 17);

    _RUVO_ENUM_VALUE untouched{};
    untouched.count = 99;
    EXPECT_FALSE(facade->getCameraEnumValue("EX1", "GetGain", &untouched));
    EXPECT_EQ(untouched.count, 99u);
    EXPECT_FALSE(facade->setCameraEnumValue("EX1", "GetShutterSpeedIndex", 1));
    EXPECT_FALSE(facade->setCameraStringValue("EX1", "sendCommandGrabFrame_2", ""));
    bool flag = false;
    EXPECT_FALSE(facade->getCameraBoolValue("EX1", "Anything", &flag));
    EXPECT_FALSE(facade->setCameraFloatValue("EX1", "Anything", 1.0));
    EXPECT_TRUE(facade->setCameraGainByPercent("EX1", 50));  // a body's gain is its ISO list
}

TEST_F(CanonTest, ABodyWhoseCurrentCodesLieOutsideTheWindowsKeepsIndexZero) {
    addDevice("id=EX2 size=64x48");
    ASSERT_EQ(CanonSim_SetProperty("EX2", kTv, 0x20), 0);  // element 6, skipped
    open("EX2");
    EXPECT_EQ(enumValue("EX2", "GetShutterSpeedIndex").current.value, 0);
    // A body with a short list: the window's codes past its end read as 0.
    const int shortList[] = {0x48, 0x50};
    ASSERT_EQ(CanonSim_SetPropertyDesc("EX2", kIso, shortList, 2), 0);
    facade->closeCamera("EX2");
    open("EX2");
    const _RUVO_ENUM_VALUE iso = enumValue("EX2", "GetISOSpeedIndex");
    EXPECT_EQ(iso.count, 8u);
    EXPECT_STREQ(iso.entries[1].symbolic, "80");
    EXPECT_STREQ(iso.entries[7].symbolic, "0");
    EXPECT_EQ(iso.current.value, 0);
}

TEST_F(CanonTest, OpeningSendsImagesToTheHostAndCommandsPressAndReleaseTheButton) {
    addDevice("id=CM1 size=64x48");
    open("CM1");
    EXPECT_EQ(property("CM1", kSaveTo), 2u);
    EXPECT_EQ(lastArguments("EdsSetCapacity"), "2147483647, 4096, 1");

    CanonSim_ClearCommands();
    ASSERT_TRUE(facade->setCameraStringValue("CM1", "sendCommandAutofocus", "x"));
    EXPECT_EQ(commands("CM1"), "4:1 4:0");
    ASSERT_TRUE(facade->setCameraStringValue("CM1", "sendCommandGrabFrame_1", ""));
    ASSERT_TRUE(facade->setCameraStringValue("CM1", "sendCommandGrabFrame_0", ""));
    EXPECT_EQ(commands("CM1"), "4:1 4:0 4:3 4:0 4:65539 4:0");
    EXPECT_TRUE(log.contains("INFO", "Setting parameter sendCommandGrabFrame  enter"));

    // A refused press is still released, and says which mode failed.
    CanonSim_ClearCommands();
    CanonSim_FailCall("EdsSendCommand", kDeviceBusy, 1);
    EXPECT_FALSE(facade->setCameraStringValue("CM1", "sendCommandGrabFrame_0", ""));
    EXPECT_TRUE(log.contains("ERROR", "Camera ERROR: sendCommandGrabFrame -1"));
    CanonSim_FailCall("EdsSendCommand", kDeviceBusy, 1);
    EXPECT_FALSE(facade->setCameraStringValue("CM1", "sendCommandGrabFrame_1", ""));
    EXPECT_TRUE(log.contains("ERROR", "Camera ERROR: sendCommandGrabFrame -2"));
    CanonSim_FailCall("EdsSendCommand", kDeviceBusy, 1);
    EXPECT_FALSE(facade->setCameraStringValue("CM1", "sendCommandAutofocus", ""));
    EXPECT_EQ(commands("CM1"), "4:0 4:0 4:0");
}

TEST_F(CanonTest, WhileACaptureWaitsForItsStillOtherCommandsAreRefused) {
    addDevice("id=BZ1 size=64x48");
    open("BZ1");
    Stills stills;
    ASSERT_TRUE(facade->registerFrameCallback("BZ1", Stills::receive, &stills));
    ASSERT_EQ(CanonSim_HoldStills("BZ1", 1), 0);
    ASSERT_TRUE(facade->setCameraStringValue("BZ1", "sendCommandGrabFrame_0", ""));
    CanonSim_ClearCommands();
    EXPECT_FALSE(facade->setCameraStringValue("BZ1", "sendCommandAutofocus", ""));
    EXPECT_FALSE(facade->setCameraStringValue("BZ1", "sendCommandGrabFrame_1", ""));
    EXPECT_TRUE(log.contains("ERROR", "Camera ERROR: sendCommandGrabFrame -3"));
    EXPECT_EQ(commands("BZ1"), "");  // nothing reached the body

    ASSERT_EQ(CanonSim_HoldStills("BZ1", 0), 0);
    waitForStill("BZ1", stills, 1);
    ASSERT_EQ(stills.pictures.size(), 1u);
    EXPECT_TRUE(facade->setCameraStringValue("BZ1", "sendCommandAutofocus", ""));
}

TEST_F(CanonTest, AStillIsDownloadedBesideTheLibraryDecodedAndHandedToTheCallback) {
    addDevice("id=ST1 size=96x64");
    open("ST1");
    std::filesystem::remove(stillPath("ST1"));
    Stills stills;
    ASSERT_TRUE(facade->registerFrameCallback("ST1", Stills::receive, &stills));
    ASSERT_TRUE(facade->setCameraHorMirror("ST1", true));
    ASSERT_TRUE(facade->setCameraStringValue("ST1", "sendCommandGrabFrame_0", ""));
    waitForStill("ST1", stills, 1);
    ASSERT_EQ(stills.pictures.size(), 1u);
    // Stills have the body's full size, twice its live view's each way.
    const Image expected = mirroredLeftRight(deliveredFrame(
        pictureOf("Canon", "ST1", 192, 128), sim::PixelFormat::Rgb8, lastFrameNumber("ST1")));
    EXPECT_EQ(difference(stills.pictures[0], expected, 4), "");
    EXPECT_TRUE(std::filesystem::is_regular_file(stillPath("ST1"))) << stillPath("ST1");
    EXPECT_EQ(lastArguments("EdsCreateFileStream"), stillPath("ST1") + ", 1, 2");

    // A second still replaces the file; the live view between them is no still.
    ASSERT_TRUE(facade->startCapture("ST1"));
    ImageData image{};
    EXPECT_TRUE(facade->getCurrentFrame("ST1", image, 0));
    ASSERT_TRUE(facade->setCameraStringValue("ST1", "sendCommandGrabFrame_1", ""));
    waitForStill("ST1", stills, 2);
    EXPECT_EQ(stills.pictures.size(), 2u);
    // The open body's camera object alone: items, streams and pictures were all released.
    EXPECT_EQ(CanonSim_OutstandingBuffers(), 1u);
    std::filesystem::remove(stillPath("ST1"));
}

TEST_F(CanonTest, AFailedDownloadStepIsLoggedWithItsCodeAndCancelled) {
    addDevice("id=DL1 size=64x48");
    open("DL1");
    Stills stills;
    ASSERT_TRUE(facade->registerFrameCallback("DL1", Stills::receive, &stills));
    const struct {
        const char* function;
        const char* line;
        bool cancelled;
    } faults[] = {{"EdsGetDirectoryItemInfo", "Canon Camera ERROR: EventDownloadImage -1", false},
                  {"EdsCreateFileStream", "Canon Camera ERROR: EventDownloadImage -2", false},
                  {"EdsDownload", "Canon Camera ERROR: EventDownloadImage -3", true},
                  {"EdsCreateImageRef", "Canon Camera ERROR: EventDownloadImage -4", true},
                  {"EdsGetImageInfo", "Canon Camera ERROR: EventDownloadImage -5", true},
                  {"EdsDownloadComplete", "Canon Camera ERROR: EventDownloadImage -6", true}};
    for (const auto& fault : faults) {
        SCOPED_TRACE(fault.function);
        CanonSim_ClearCallCounts();
        CanonSim_FailCall(fault.function, kDeviceBusy, 1);
        ASSERT_TRUE(facade->setCameraStringValue("DL1", "sendCommandGrabFrame_0", ""));
        EXPECT_TRUE(facade->isCameraConnected("DL1"));
        EXPECT_TRUE(log.contains("ERROR", fault.line));
        EXPECT_EQ(CanonSim_CallCount("EdsDownloadCancel"), fault.cancelled ? 1u : 0u);
        EXPECT_EQ(CanonSim_PendingEvents(), 0u);
    }
    EXPECT_TRUE(stills.pictures.empty());
    std::filesystem::remove(stillPath("DL1"));
}

TEST_F(CanonTest, LiveViewIsAskedAgainWhileNotReadyAndGivenUpAfterItsLimit) {
    addDevice("id=LV1 size=64x48");
    openStreaming("LV1");
    EXPECT_EQ(CanonSim_IsGrabbing("LV1"), 1);
    ImageData image{};
    ASSERT_TRUE(facade->getCurrentFrame("LV1", image, 0));
    ASSERT_EQ(CanonSim_SetLiveViewNotReady("LV1", 3), 0);
    CanonSim_ClearCallCounts();
    ASSERT_TRUE(facade->getCurrentFrame("LV1", image, 0));
    EXPECT_EQ(CanonSim_CallCount("EdsDownloadEvfImage"), 4u);
    EXPECT_EQ(CanonSim_CallCount("EdsRelease"), 8u);  // a stream and a picture each time

    ASSERT_EQ(CanonSim_SetLiveViewNotReady("LV1", 1000), 0);
    EXPECT_FALSE(facade->getCurrentFrame("LV1", image, 0));
    EXPECT_TRUE(log.contains("ERROR", "Canon Camera ERROR: GenerateCurImage not ready"));
    ASSERT_EQ(CanonSim_SetLiveViewNotReady("LV1", 0), 0);
    CanonSim_FailCall("EdsDownloadEvfImage", kDeviceBusy, 1);
    EXPECT_FALSE(facade->getCurrentFrame("LV1", image, 0));
    EXPECT_TRUE(log.contains("ERROR", "Canon Camera ERROR: GenerateCurImage download 129"));
    EXPECT_TRUE(facade->getCurrentFrame("LV1", image, 0));

    ASSERT_TRUE(facade->stopCapture("LV1"));
    EXPECT_EQ(CanonSim_IsGrabbing("LV1"), 0);
    EXPECT_EQ(facade->setImageFormat("LV1", RUVO_FORMAT_MONO8), false);
    EXPECT_TRUE(log.contains("ERROR", "Image format not supported: " +
                                          std::to_string(RUVO_FORMAT_MONO8) +
                                          " for Canon camera: LV1"));
}

// Every one of the 54 names is required, those the library never calls too: the 2024 Linux
// runtime, which lacks three of them, is refused whole.
TEST_F(CanonTest, ARuntimeLackingAnyBoundNameIsRefused) {
    for (const char* hidden : {"EdsGetEvent", "EdsSaveImage", "EdsInitializeSDK"}) {
        SCOPED_TRACE(hidden);
        facade->cleanup();
        CanonSim_ClearCallCounts();
        canon::canonBinding().setSymbolLookup(
            [hidden](const platform::DynamicLibrary& library, const char* name) -> void* {
                return std::string(name) == hidden ? nullptr : library.symbol(name);
            });
        EXPECT_FALSE(facade->initialize(RUVO_CAMERA_CANON));
        EXPECT_FALSE(canon::canonBinding().isLoaded());
        EXPECT_EQ(CanonSim_CallCount("EdsInitializeSDK"), 0u);
    }
    canon::canonBinding().setSymbolLookup({});
    EXPECT_TRUE(facade->initialize(RUVO_CAMERA_CANON));
}

}  // namespace
}  // namespace telvarra::test
