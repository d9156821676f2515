#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "support/CurrentDirectory.h"
#include "support/FakeRegistry.h"
#include "support/LogCapture.h"
#include "telvarra/CameraManager.h"

using namespace telvarra::test;

namespace {

std::unique_ptr<_RUVO_DEVICE_INFO_LIST> emptyList() {
    auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
    list->count = 0;
    return list;
}

class ManagerTest : public ::testing::Test {
  protected:
    FakeDrivers& fakes = fakeDrivers();
    InTempDirectory directory;
    LogCapture log;
    std::unique_ptr<CameraManager> manager = std::make_unique<CameraManager>();

    void TearDown() override {
        manager.reset();
        fakes.reset();
    }
};

TEST_F(ManagerTest, InitializeAllReportsWhetherThisCallStartedAnyDriver) {
    fakes.beta.initializeResult = false;
    EXPECT_TRUE(manager->initializeAllDrivers());
    EXPECT_TRUE(log.contains("INFO", "Initialized driver: Alpha"));
    EXPECT_TRUE(log.contains("ERROR", "Failed to initialize driver: Beta"));

    fakes.beta.initialized = true;
    const auto linesBefore = log.entries().size();
    EXPECT_FALSE(manager->initializeAllDrivers());
    EXPECT_EQ(log.entries().size(), linesBefore);
}

TEST_F(ManagerTest, UninitializeAllIsTrueUnlessADriverFails) {
    EXPECT_TRUE(manager->uninitializeAllDrivers());
    fakes.alpha.initialized = fakes.beta.initialized = true;
    fakes.alpha.uninitializeResult = false;
    EXPECT_FALSE(manager->uninitializeAllDrivers());
    EXPECT_TRUE(log.contains("ERROR", "Failed to uninitialize driver: Alpha"));
    EXPECT_TRUE(log.contains("INFO", "Uninitialized driver: Beta"));
    fakes.alpha.uninitializeResult = true;
}

TEST_F(ManagerTest, SingleDriverStartAndStopNameTheirOutcome) {
    EXPECT_FALSE(manager->initializeDriver(static_cast<Ruvo_CameraType>(99)));
    EXPECT_TRUE(log.contains("ERROR", "Driver not found for type: 99"));
    EXPECT_TRUE(manager->uninitializeDriver(kAlphaType));
    EXPECT_TRUE(log.contains("INFO", "Driver not initialized: Alpha"));

    EXPECT_TRUE(manager->initializeDriver(kAlphaType));
    EXPECT_TRUE(manager->initializeDriver(kAlphaType));
    EXPECT_TRUE(log.contains("INFO", "Driver already initialized: Alpha"));
    EXPECT_EQ(fakes.alpha.calls["initialize"], 1);

    fakes.beta.initializeResult = false;
    EXPECT_FALSE(manager->initializeDriver(kBetaType));

    fakes.alpha.uninitializeResult = false;
    EXPECT_FALSE(manager->uninitializeDriver(kAlphaType));
    fakes.alpha.uninitializeResult = true;
    EXPECT_TRUE(manager->uninitializeDriver(kAlphaType));
    EXPECT_FALSE(manager->uninitializeDriver(static_cast<Ruvo_CameraType>(98)));
}

TEST_F(ManagerTest, MergedListFollowsTypeOrderAndSkipsIdleOrFailingDrivers) {
    fakes.alpha.deviceIds = {"a1", "a2"};
    fakes.beta.deviceIds = {"b1"};
    auto list = emptyList();
    list->count = 77;
    EXPECT_TRUE(manager->enumerateCamerasAll(list.get()));
    EXPECT_EQ(list->count, 0u);

    manager->initializeAllDrivers();
    EXPECT_TRUE(manager->enumerateCamerasAll(list.get()));
    ASSERT_EQ(list->count, 3u);
    EXPECT_STREQ(list->devices[0].cameraId, "a1");
    EXPECT_STREQ(list->devices[2].cameraId, "b1");

    fakes.alpha.enumerateResult = false;
    EXPECT_TRUE(manager->enumerateCamerasAll(list.get()));
    ASSERT_EQ(list->count, 1u);
    EXPECT_STREQ(list->devices[0].cameraId, "b1");
    EXPECT_FALSE(manager->enumerateCamerasAll(nullptr));
}

TEST_F(ManagerTest, MergedListStopsAtItsCapacity) {
    for (int i = 0; i < 200; ++i) fakes.alpha.deviceIds.push_back("a" + std::to_string(i));
    for (int i = 0; i < 200; ++i) fakes.beta.deviceIds.push_back("b" + std::to_string(i));
    manager->initializeAllDrivers();
    auto list = emptyList();
    EXPECT_TRUE(manager->enumerateCamerasAll(list.get()));
    EXPECT_EQ(list->count, 256u);
    EXPECT_STREQ(list->devices[199].cameraId, "a199");
    EXPECT_STREQ(list->devices[255].cameraId, "b55");
}

TEST_F(ManagerTest, ListByTypeNeedsAnInitializedDriverButToleratesAFailedEnumeration) {
    auto list = emptyList();
    EXPECT_FALSE(manager->enumerateCamerasByType(kAlphaType, list.get()));
    EXPECT_TRUE(log.contains("ERROR", "Driver not initialized for type: 11"));
    EXPECT_FALSE(manager->enumerateCamerasByType(kAlphaType, nullptr));

    manager->initializeDriver(kAlphaType);
    fakes.alpha.deviceIds = {"a1"};
    fakes.alpha.enumerateResult = false;
    list->count = 5;
    EXPECT_TRUE(manager->enumerateCamerasByType(kAlphaType, list.get()));
    EXPECT_EQ(list->count, 0u);
}

TEST_F(ManagerTest, CreateFindsTheIdentifierOnAnyInitializedDriverAndLoadsItsConfig) {
    fakes.beta.deviceIds = {"cam-b"};
    telvarra::test::writeFile(directory.file("camera_cam-b.cfg"), "Gain=12\n");
    EXPECT_EQ(manager->createCamera("cam-b", RUVO_CAMERA_ANY), nullptr);
    EXPECT_TRUE(log.contains("ERROR", "Camera not found: cam-b"));

    manager->initializeAllDrivers();
    EXPECT_EQ(manager->createCamera("cam-b", kAlphaType), nullptr);
    ICamera* camera = manager->createCamera("cam-b", RUVO_CAMERA_ANY);
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera, fakes.beta.lastCreated);
    EXPECT_TRUE(log.contains("INFO", "Created camera: cam-b"));
    EXPECT_TRUE(manager->getCameraConfig("cam-b")->hasKey("Gain"));

    EXPECT_EQ(manager->createCamera("cam-b", kBetaType), camera);
    EXPECT_TRUE(log.contains("WARNING", "Camera already exists: cam-b"));
    EXPECT_EQ(fakes.beta.calls["createCamera"], 1);
}

// Identifiers come from devices (anyone on a GigE network can set a user name): each must
// become one ordinary file in this folder holding what was saved for its camera. On Windows a
// file named CON or COM1 is a device, "C:x" is a file on drive C and a backslash a separator.
TEST_F(ManagerTest, IdentifiersBecomeOrdinaryFileNamesThatStayInTheFolder) {
    const std::vector<std::pair<std::string, std::string>> idsAndFiles = {
        {"x/../../esc", "camera_x%2F..%2F..%2Fesc.cfg"},
        {"/../../../tmp/pwned", "camera_%2F..%2F..%2F..%2Ftmp%2Fpwned.cfg"},
        {"C:\\dir\\NUL", "camera_C%3A%5Cdir%5CNUL.cfg"},
        {"..", "camera_%2E%2E.cfg"},
        {"DA-01_b.2", "camera_DA-01_b.2.cfg"},                // an ordinary serial
        {"Line 1 (left) #2", "camera_Line 1 (left) #2.cfg"},  // a user's name
        {"50%", "camera_50%25.cfg"},
        {"CON", "camera_CON.cfg"},
        {"nul", "camera_nul.cfg"},
        {"COM1", "camera_COM1.cfg"},
        {"LPT9", "camera_LPT9.cfg"},
        {"AUX", "camera_AUX.cfg"},
        {"PRN.txt", "camera_PRN.txt.cfg"},
        {"CONIN$", "camera_CONIN$.cfg"},
        {"COM\xC2\xB9", "camera_COM%C2%B9.cfg"},
        {"C:x", "camera_C%3Ax.cfg"},
        {"a\\b", "camera_a%5Cb.cfg"},
        {"\\\\?\\C:\\x", "camera_%5C%5C%3F%5CC%3A%5Cx.cfg"},
        {"x.", "camera_x..cfg"},
        {"x ", "camera_x .cfg"}};
    for (const auto& entry : idsAndFiles) fakes.alpha.deviceIds.push_back(entry.first);
    manager->initializeAllDrivers();
    for (std::size_t i = 0; i < idsAndFiles.size(); ++i) {
        const std::string& id = idsAndFiles[i].first;
        ASSERT_NE(manager->createCamera(id.c_str(), kAlphaType), nullptr) << id;
        manager->getCameraConfig(id)->setValue("Camera", std::to_string(i).c_str());
        EXPECT_TRUE(manager->saveCameraConfig(id)) << id;
    }
    std::vector<std::string> expected, written;
    for (const auto& entry : idsAndFiles) expected.push_back(entry.second);
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::current_path()))
        written.push_back(entry.path().filename().string());
    std::sort(expected.begin(), expected.end());
    std::sort(written.begin(), written.end());
    EXPECT_EQ(written, expected);
    for (std::size_t i = 0; i < idsAndFiles.size(); ++i)
        EXPECT_EQ(telvarra::test::readLines(directory.file(idsAndFiles[i].second)),
                  std::vector<std::string>{"Camera=" + std::to_string(i)})
            << idsAndFiles[i].first;
}

TEST_F(ManagerTest, CreateGoesOnAfterADriverThatMakesNoCamera) {
    fakes.alpha.deviceIds = fakes.beta.deviceIds = {"shared"};
    fakes.alpha.createResult = false;
    manager->initializeAllDrivers();
    EXPECT_EQ(manager->createCamera("shared", RUVO_CAMERA_ANY), fakes.beta.lastCreated);
    EXPECT_EQ(fakes.alpha.calls["createCamera"], 1);
}

TEST_F(ManagerTest, OverlongIdentifiersMatchNothingAndOverflowNothing) {
    fakes.alpha.deviceIds = {std::string(255, 'x')};
    manager->initializeAllDrivers();
    for (const std::string& id :
         {std::string(256, 'x'), std::string(300, 'x'), std::string(10000, 'x')}) {
        EXPECT_EQ(manager->createCamera(id.c_str(), RUVO_CAMERA_ANY), nullptr);
        EXPECT_TRUE(log.contains("ERROR", "Camera not found: " + id));
    }
    EXPECT_NE(manager->createCamera(std::string(255, 'x').c_str(), kAlphaType), nullptr);
}

TEST_F(ManagerTest, DestroySavesTheConfigBeforeLettingTheDriverDeleteTheCamera) {
    fakes.alpha.deviceIds = {"cam-a"};
    manager->initializeAllDrivers();
    ICamera* camera = manager->createCamera("cam-a", kAlphaType);
    manager->getCameraConfig("cam-a")->setValue("Exposure", "30");
    EXPECT_TRUE(manager->destroyCamera(camera));
    EXPECT_EQ(telvarra::test::readLines(directory.file("camera_cam-a.cfg")),
              std::vector<std::string>{"Exposure=30"});
    EXPECT_EQ(manager->getCameraConfig("cam-a"), nullptr);
    EXPECT_TRUE(fakes.alpha.live.empty());
    EXPECT_TRUE(log.contains("INFO", "Destroyed camera: cam-a"));

    EXPECT_FALSE(manager->destroyCamera(nullptr));
    EXPECT_TRUE(log.contains("ERROR", "Attempt to destroy null camera"));
}

TEST_F(ManagerTest, DestroyRefusesACameraWhoseTypeHasNoDriver) {
    fakes.alpha.deviceIds = {"stray"};
    fakes.alpha.cameraType = static_cast<Ruvo_CameraType>(97);
    manager->initializeAllDrivers();
    ICamera* camera = manager->createCamera("stray", kAlphaType);
    EXPECT_FALSE(manager->destroyCamera(camera));
    EXPECT_TRUE(log.contains("ERROR", "Driver not found for camera: stray"));
    EXPECT_EQ(fakes.alpha.live.size(), 1u);
}

TEST_F(ManagerTest, PerCameraCallsOnUnknownIdentifiersDoNothing) {
    EXPECT_FALSE(manager->reconnectCamera("nobody"));
    EXPECT_FALSE(manager->saveCameraConfig("nobody"));
    manager->setReconnectInterval("nobody", 5);
    EXPECT_EQ(manager->getCameraConfig("nobody"), nullptr);
    EXPECT_FALSE(manager->registerDriver(nullptr));
    EXPECT_TRUE(log.contains("ERROR", "Attempt to register null driver"));
}

TEST_F(ManagerTest, GlobalConfigIsACopyHeldByTheManager) {
    CameraConfig config;
    config.setValue("site", "lab");
    manager->setGlobalConfig(config);
    config.setValue("site", "changed");
    EXPECT_TRUE(manager->getGlobalConfig()->hasKey("site"));
    manager->setGlobalConfig(*manager->getGlobalConfig());
    char buffer[255];
    char* value = buffer;
    ASSERT_TRUE(manager->getGlobalConfig()->getValue("site", &value));
    EXPECT_STREQ(buffer, "lab");
}

TEST_F(ManagerTest, DestructionDestroysHeldCamerasAndStopsTheDrivers) {
    fakes.alpha.deviceIds = {"c1", "c2"};
    manager->initializeAllDrivers();
    manager->createCamera("c1", kAlphaType);
    manager->createCamera("c2", kAlphaType);
    manager.reset();
    EXPECT_TRUE(fakes.alpha.live.empty());
    EXPECT_FALSE(fakes.alpha.initialized);
    EXPECT_TRUE(log.contains("INFO", "Uninitialized driver: Alpha"));
}

}  // namespace
