#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "support/CurrentDirectory.h"
#include "support/FakeRegistry.h"
#include "support/LogCapture.h"
#include "telvarra/CameraFactory.h"
#include "telvarra/CameraPublicInterface.h"

using namespace telvarra::test;

namespace {

class FacadeTest : public ::testing::Test {
  protected:
    FakeDrivers& fakes = fakeDrivers();
    InTempDirectory directory;
    LogCapture log;
    CameraPublicInterface* facade = CameraPublicInterface::getInstance();
    std::size_t setupLines = 0;

    void SetUp() override {
        fakes.alpha.deviceIds = {"cam", "other"};
        ASSERT_TRUE(facade->initialize(kAlphaType));
        setupLines = log.entries().size();
    }
    void TearDown() override {
        CameraPublicInterface::releaseInstance();
        fakes.reset();
    }

    FakeCamera& openCam() {
        EXPECT_TRUE(facade->openCamera("cam", kAlphaType));
        return *fakes.alpha.lastCreated;
    }
    std::vector<LogEntry> linesSince(std::size_t start) const {
        const auto all = log.entries();
        return std::vector<LogEntry>(all.begin() + static_cast<std::ptrdiff_t>(start), all.end());
    }
};

// One sample per kind of line a facade member logs: actions with a failure and a success line,
// frame calls with a failure line only, formatted successes, the fixed controls (the one
// irregular getter), the text parameters and the typed values.
struct MemberCase {
    const char* member;
    const char* slot;  // the fake camera operation that is made to refuse
    std::function<bool(CameraPublicInterface&, const char* id)> call;
    std::string failure;  // "" when the member logs nothing on failure
    std::string success;  // "" when the member logs nothing on success
};

ImageData frame{};
unsigned char buffer[64];
int32_t number = 0;
_RUVO_INT_VALUE intValue{};

void PrintTo(const MemberCase& member, std::ostream* out) { *out << member.member; }

std::vector<MemberCase> memberCases() {
    using F = CameraPublicInterface;
    const std::string setOp = "Failed to set parameter : ", getOp = "Failed to get parameter : ";
    return {
        {"startCapture", "startAcquisition",
         [](F& f, const char* id) { return f.startCapture(id); },
         "Failed to start capture on camera: ", "Started capture on camera: "},
        {"getCurrentFrame2", "getCurrentFrameToBuffer",
         [](F& f, const char* id) {
             return f.getCurrentFrame2(id, buffer, sizeof buffer, frame, 0);
         },
         "Failed to get current frame to buffer from camera: ", ""},
        {"setImageSize", "setImageSize",
         [](F& f, const char* id) { return f.setImageSize(id, 640, 480); },
         "Failed to set image size for camera: ", "Set image size to 640x480 for camera: "},
        {"setCameraParameter", "setParameter",
         [](F& f, const char* id) { return f.setCameraParameter(id, "Gain", "7"); },
         "Failed to set parameter Gain on camera: ", "Set parameter Gain=7 on camera: "},
        {"setCameraHorMirror", "setHorMirror",
         [](F& f, const char* id) { return f.setCameraHorMirror(id, true); },
         setOp + "setHorMirror on camera: ", "Set parameter : setHorMirror on camera: "},
        {"getCameraBrightnessByPercent", "getBrightnessByPercent",
         [](F& f, const char* id) { return f.getCameraBrightnessByPercent(id, number); },
         getOp + "getCameraBrightnessByPercent from camera: ", ""},
        {"getCameraIntValue", "getIntValue",
         [](F& f, const char* id) { return f.getCameraIntValue(id, "Width", &intValue); },
         "Failed to get parameter Width from camera: ", ""},
    };
}

class FacadeMemberTest : public FacadeTest, public ::testing::WithParamInterface<MemberCase> {};

TEST_P(FacadeMemberTest, NotOpenRefusedAndSuccessEachLogTheirLine) {
    const MemberCase& member = GetParam();

    auto start = log.entries().size();
    EXPECT_FALSE(member.call(*facade, "ghost"));
    EXPECT_EQ(linesSince(start), (std::vector<LogEntry>{{"ERROR", "Camera not opened: ghost"}}));

    FakeCamera& camera = openCam();
    camera.results[member.slot] = false;
    start = log.entries().size();
    EXPECT_FALSE(member.call(*facade, "cam"));
    EXPECT_EQ(camera.calls[member.slot], 1);
    std::vector<LogEntry> expected;
    if (!member.failure.empty()) expected.push_back({"ERROR", member.failure + "cam"});
    EXPECT_EQ(linesSince(start), expected);

    camera.results[member.slot] = true;
    start = log.entries().size();
    EXPECT_TRUE(member.call(*facade, "cam"));
    expected.clear();
    if (!member.success.empty()) expected.push_back({"INFO", member.success + "cam"});
    EXPECT_EQ(linesSince(start), expected);
}

INSTANTIATE_TEST_SUITE_P(EveryMember, FacadeMemberTest, ::testing::ValuesIn(memberCases()),
                         [](const auto& info) { return std::string(info.param.member); });

TEST_F(FacadeTest, OpeningTwiceKeepsOneCameraAndWarns) {
    openCam();
    FakeCamera* first = fakes.alpha.lastCreated;
    EXPECT_TRUE(facade->openCamera("cam", kBetaType));
    EXPECT_TRUE(log.contains("WARNING", "Camera already opened: cam"));
    EXPECT_EQ(fakes.alpha.lastCreated, first);
    EXPECT_EQ(fakes.alpha.live.size(), 1u);
}

TEST_F(FacadeTest, OpeningOnAnIdleOrUnknownDriverFailsToCreate) {
    fakes.beta.deviceIds = {"cam-b"};
    EXPECT_FALSE(facade->openCamera("cam-b", kBetaType));
    EXPECT_FALSE(facade->openCamera("cam", static_cast<Ruvo_CameraType>(96)));
    EXPECT_TRUE(log.contains("ERROR", "Failed to create camera: cam-b"));
    EXPECT_TRUE(log.contains("ERROR", "Failed to create camera: cam"));
}

TEST_F(FacadeTest, FailedConnectLeavesNoEntryBehind) {
    fakes.alpha.cameraResults = {{"connect", false}};
    EXPECT_FALSE(facade->openCamera("cam", kAlphaType));
    EXPECT_TRUE(log.contains("ERROR", "Failed to connect camera: cam"));
    EXPECT_TRUE(fakes.alpha.live.empty());

    const auto start = log.entries().size();
    EXPECT_FALSE(facade->isCameraConnected("cam"));
    EXPECT_EQ(log.entries().size(), start);
    EXPECT_FALSE(facade->closeCamera("cam"));
    EXPECT_EQ(linesSince(start), (std::vector<LogEntry>{{"WARNING", "Camera not opened: cam"}}));
}

TEST_F(FacadeTest, CloseDisconnectsDestroysAndForgetsTheCamera) {
    FakeCamera& camera = openCam();
    camera.results["disconnect"] = false;  // its result is not looked at
    EXPECT_TRUE(facade->isCameraConnected("cam"));
    EXPECT_TRUE(facade->closeCamera("cam"));
    EXPECT_TRUE(log.contains("INFO", "Closed camera: cam"));
    EXPECT_TRUE(fakes.alpha.live.empty());
    EXPECT_FALSE(facade->isCameraConnected("cam"));
}

TEST_F(FacadeTest, StatusFormatAndFormatListAnswerZeroForAnUnopenedCamera) {
    EXPECT_EQ(facade->getCameraStatus("ghost"), RUVO_STATUS_NONE);
    EXPECT_EQ(facade->getImageFormat("ghost"), RUVO_FORMAT_UNKNOWN);
    const _RUVO_IMAGE_FORMAT_LIST formats = facade->getSupportedImageFormats("ghost");
    EXPECT_EQ(formats.count, 0u);
    for (auto format : formats.formats) EXPECT_EQ(format, RUVO_FORMAT_UNKNOWN);
    EXPECT_EQ(facade->getCameraConfigById("ghost"), nullptr);
    EXPECT_EQ(linesSince(setupLines),
              std::vector<LogEntry>(4, LogEntry{"ERROR", "Camera not opened: ghost"}));
}

TEST_F(FacadeTest, ReconnectIntervalReachesTheCameraWithItsMessage) {
    facade->setReconnectInterval("ghost", 10);
    EXPECT_TRUE(log.contains("ERROR", "Camera not opened: ghost"));
    FakeCamera& camera = openCam();
    facade->setReconnectInterval("cam", 1500);
    EXPECT_EQ(camera.reconnectInterval, 1500);
    EXPECT_TRUE(log.contains("INFO", "Set reconnect interval to 1500ms for camera: cam"));
}

TEST_F(FacadeTest, ConfigLoadAndSaveOnlyLog) {
    EXPECT_TRUE(facade->loadCameraConfig("ghost", "a.cfg"));
    EXPECT_TRUE(facade->saveCameraConfig("ghost", "b.cfg"));
    EXPECT_EQ(linesSince(setupLines),
              (std::vector<LogEntry>{{"INFO", "Loading config from a.cfg for camera: ghost"},
                                     {"INFO", "Saving config to b.cfg for camera: ghost"}}));
    EXPECT_FALSE(std::filesystem::exists(directory.file("b.cfg")));
}

TEST_F(FacadeTest, FixedControlSettersRecordTheirValueOnlyOnSuccess) {
    FakeCamera& camera = openCam();
    CameraConfig* config = facade->getCameraConfigById("cam");
    ASSERT_NE(config, nullptr);
    auto stored = [config](const char* key) {
        char text[255] = {};
        char* pointer = text;
        return config->getValue(key, &pointer) ? std::string(text) : std::string("<absent>");
    };

    EXPECT_TRUE(facade->setCameraRotate("cam", 90));
    EXPECT_EQ(stored("setCameraRotate"), "90");
    EXPECT_TRUE(log.contains("INFO", "Set parameter : setRotate on camera: cam"));
    EXPECT_TRUE(facade->setCameraGainByPercent("cam", -5));
    EXPECT_EQ(stored("setCameraGainByPercent"), "-5");

    camera.results["setGainByPercent"] = false;
    EXPECT_FALSE(facade->setCameraGainByPercent("cam", 70));
    EXPECT_EQ(stored("setCameraGainByPercent"), "-5");

    EXPECT_TRUE(facade->setCameraParameter("cam", "Gain", "42"));
    EXPECT_EQ(stored("Gain"), "42");
    EXPECT_EQ(camera.lastText, "Gain=42");
    EXPECT_TRUE(facade->setCameraIntValue("cam", "Width", 5));
    EXPECT_FALSE(config->hasKey("Width"));
}

TEST_F(FacadeTest, FramesPassTheTrailingArgumentAndPointIntoTheRightBuffer) {
    FakeCamera& camera = openCam();
    ImageData image{};
    EXPECT_TRUE(facade->getCurrentFrame("cam", image, 9));
    EXPECT_EQ(camera.lastOption, 9);
    EXPECT_EQ(image.data, camera.frame.data());
    EXPECT_EQ(image.frameNumber, 1);

    unsigned char own[8];
    EXPECT_TRUE(facade->getCurrentFrame2("cam", own, sizeof own, image, 4));
    EXPECT_EQ(image.data, own);
    EXPECT_EQ(own[0], 20);

    unsigned char shortBuffer[3] = {1, 2, 3};
    EXPECT_FALSE(facade->getCurrentFrame2("cam", shortBuffer, sizeof shortBuffer, image, 0));
    EXPECT_EQ(shortBuffer[2], 3);
    EXPECT_TRUE(log.contains("ERROR", "Failed to get current frame to buffer from camera: cam"));
}

TEST_F(FacadeTest, CleanupClosesEverythingAndStopsTheDriversButKeepsTheFacade) {
    openCam();
    EXPECT_TRUE(facade->openCamera("other", kAlphaType));
    facade->cleanup();
    EXPECT_TRUE(fakes.alpha.live.empty());
    EXPECT_FALSE(fakes.alpha.initialized);
    EXPECT_EQ(CameraPublicInterface::getInstance(), facade);
    EXPECT_FALSE(facade->openCamera("cam", kAlphaType));  // drivers must be started again
    EXPECT_TRUE(facade->initialize(kAlphaType));
    EXPECT_TRUE(facade->openCamera("cam", kAlphaType));
}

TEST_F(FacadeTest, SettingsSurviveCloseAndReopenThroughTheCameraConfigFile) {
    openCam();
    EXPECT_TRUE(facade->setCameraHorMirror("cam", true));
    EXPECT_TRUE(facade->setCameraVerMirror("cam", true));
    EXPECT_TRUE(facade->setCameraRotate("cam", 2));
    EXPECT_TRUE(facade->setCameraExposureMod("cam", false));
    EXPECT_TRUE(facade->setCameraBrightnessByPercent("cam", 60));
    EXPECT_TRUE(facade->setCameraGainByPercent("cam", 25));
    EXPECT_TRUE(facade->setCameraExposureByPercent("cam", 75));
    EXPECT_TRUE(facade->setCameraParameter("cam", "CameraImageZoomIn", "1"));
    EXPECT_TRUE(facade->closeCamera("cam"));

    const std::vector<std::string> expected = {"CameraImageZoomIn=1",
                                               "setCameraBrightnessByPercent=60",
                                               "setCameraExposureByPercent=75",
                                               "setCameraExposureMod=0",
                                               "setCameraGainByPercent=25",
                                               "setCameraHorMirror=1",
                                               "setCameraRotate=2",
                                               "setCameraVerMirror=1"};
    EXPECT_EQ(readLines(directory.file("camera_cam.cfg")), expected);
    // Read back on the next open: the manager's create (its unit tests).
}

TEST_F(FacadeTest, ParameterTextWithALineBreakIsRefusedBeforeTheCamera) {
    FakeCamera& camera = openCam();
    EXPECT_FALSE(facade->setCameraParameter("cam", "Gain", "0.5\nsetCameraRotate=3"));
    EXPECT_FALSE(facade->setCameraParameter("cam", "Ga\rin", "1"));
    EXPECT_EQ(camera.calls["setParameter"], 0);
    EXPECT_FALSE(facade->getCameraConfigById("cam")->hasKey("Gain"));
    EXPECT_TRUE(log.contains(
        "ERROR",
        "Failed to set parameter Gain on camera: cam (a line break in its name or value)"));
}

TEST_F(FacadeTest, NullAndOverlongInputsAreRefusedWithoutHarm) {
    EXPECT_FALSE(facade->getAvailableCamerasAll(nullptr));
    EXPECT_FALSE(facade->getAvailableCamerasByType(kAlphaType, nullptr));
    EXPECT_FALSE(facade->openCamera(nullptr, kAlphaType));
    EXPECT_FALSE(facade->startCapture(nullptr));
    EXPECT_FALSE(facade->closeCamera(nullptr));
    EXPECT_FALSE(facade->isCameraConnected(nullptr));
    EXPECT_EQ(facade->getCameraStatus(nullptr), RUVO_STATUS_NONE);

    const std::string longIds[] = {std::string(300, 'L'), std::string(10000, 'L')};
    for (const std::string& id : longIds) {
        EXPECT_FALSE(facade->openCamera(id.c_str(), RUVO_CAMERA_ANY));
        EXPECT_TRUE(log.contains("ERROR", "Failed to create camera: " + id));
        EXPECT_FALSE(facade->setCameraGainByPercent(id.c_str(), 5));
        EXPECT_TRUE(log.contains("ERROR", "Camera not opened: " + id));
    }
    openCam();
    EXPECT_TRUE(facade->isCameraConnected("cam"));
}

TEST(FacadeLifecycleTest, LaterFacadesFindTheirDriversAlreadyRegistered) {
    CameraPublicInterface::getInstance();
    ICameraDriver* hikVision = CameraFactory::getInstance().getDriver(RUVO_CAMERA_HIKVISION);
    ASSERT_NE(hikVision, nullptr);
    EXPECT_EQ(hikVision->getDriverType(), RUVO_CAMERA_HIKVISION);
    CameraPublicInterface::releaseInstance();

    LogCapture log;
    CameraPublicInterface::getInstance();
    EXPECT_TRUE(log.contains("WARNING", "Driver already registered for type: 2"));
    EXPECT_EQ(CameraFactory::getInstance().getDriver(RUVO_CAMERA_HIKVISION), hikVision);
    CameraPublicInterface::releaseInstance();
}

TEST(FacadeLifecycleTest, ReleasingWithoutAnInstanceDoesNothingAndANewInstanceIsFresh) {
    CameraPublicInterface::releaseInstance();
    CameraPublicInterface::releaseInstance();
    FakeDrivers& fakes = fakeDrivers();
    fakes.alpha.deviceIds = {"cycle"};
    InTempDirectory directory;
    for (int round = 0; round < 100; ++round) {
        CameraPublicInterface* facade = CameraPublicInterface::getInstance();
        ASSERT_EQ(CameraPublicInterface::getInstance(), facade);
        ASSERT_TRUE(facade->initialize(kAlphaType));
        ASSERT_TRUE(facade->openCamera("cycle", kAlphaType));
        ASSERT_TRUE(facade->startCapture("cycle"));
        CameraPublicInterface::releaseInstance();
        ASSERT_TRUE(fakes.alpha.live.empty());
        ASSERT_FALSE(fakes.alpha.initialized);
    }
    fakes.reset();
}

}  // namespace
