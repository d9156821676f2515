#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/Paths.h"
#include "telvarra/Telvarra.h"

namespace {

std::string fileContent(const std::string& path) {
    std::ifstream input(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>());
}

TEST(StartupTest, LoadingTheLibraryAttachesTheLogBesideTheHostProgram) {
    const std::string programLog = telvarra::platform::executableDirectory() + "CameraLog.txt";
    const std::string marker =
        "start-up marker " +
        std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());

    // Nothing attached the log but the library's own start-up.
    CameraLogger::getInstance().log(LogLevel::Error, marker);

    EXPECT_NE(fileContent(programLog).find("[ERROR] " + marker), std::string::npos) << programLog;
    // Other programs may live beside the library and keep their own log there; this one's
    // lines must not be in it.
    const std::filesystem::path libraryLog =
        std::filesystem::path(TELVARRA_LIBRARY_DIR) / "CameraLog.txt";
    EXPECT_EQ(fileContent(libraryLog.string()).find(marker), std::string::npos) << libraryLog;
}

}  // namespace
