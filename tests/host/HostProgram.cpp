// A C++ host: uses the exported logger, configuration and facade classes, the latter on a fake
// camera it registers itself. Exit code 0 when every step behaved; otherwise the failing step.
#include <telvarra/Telvarra.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "support/FakeDriver.h"

namespace {

constexpr auto kFakeType = static_cast<Ruvo_CameraType>(41);

std::string fileContent(const std::string& path) {
    std::ifstream input(path);
    return std::string((std::istreambuf_iterator<char>(input)), std::istreambuf_iterator<char>());
}

int useLoggerAndConfig(const std::string& folder) {
    const std::string logPath = folder + "/host.log";
    const std::string configPath = folder + "/host.cfg";
    CameraLogger& logger = CameraLogger::getInstance();
    logger.setLogFile(logPath);
    logger.setLogLevel(LogLevel::Info);
    logger.log(LogLevel::Warning, "host says hello");

    CameraConfig written;
    written.setValue("exposure", "40");
    if (!written.saveConfig(configPath.c_str())) return 1;
    CameraConfig read(configPath.c_str());
    char buffer[255] = {};
    char* value = buffer;
    if (!read.hasKey("exposure") || !read.getValue("exposure", &value)) return 2;
    if (std::strcmp(buffer, "40") != 0) return 3;

    const std::string content = fileContent(logPath);
    if (content.find("[WARNING] host says hello") == std::string::npos) return 4;
    if (content.find("[INFO] Loaded config from: " + configPath) == std::string::npos) return 5;
    return 0;
}

int driveFakeCamera() {
    auto* driver = new telvarra::test::FakeDriver(kFakeType, "Fake");
    driver->deviceIds = {"cpp-cam"};
    if (!CameraFactory::getInstance().registerDriver(kFakeType, driver)) return 10;

    CameraPublicInterface* facade = CameraPublicInterface::getInstance();
    if (!facade->initialize(kFakeType)) return 11;
    auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
    if (!facade->getAvailableCamerasByType(kFakeType, list.get()) || list->count != 1) return 12;
    if (!facade->openCamera(list->devices[0].cameraId, kFakeType)) return 13;
    if (!facade->startCapture("cpp-cam") || !facade->setCameraRotate("cpp-cam", 1)) return 14;
    ImageData image{};
    if (!facade->getCurrentFrame("cpp-cam", image, 0) || image.data[3] != 13) return 15;
    if (facade->getCameraStatus("cpp-cam") != RUVO_STATUS_CONNECTED) return 16;
    if (!facade->closeCamera("cpp-cam")) return 17;
    CameraPublicInterface::releaseInstance();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string folder = argc > 1 ? argv[1] : ".";
    if (const int failed = useLoggerAndConfig(folder)) return failed;
    if (const int failed = driveFakeCamera()) return failed;
    CameraLogger::getInstance().setLogFile(folder);  // detach: a folder is no file
    std::puts("C++ host: exported classes work");
    return 0;
}
