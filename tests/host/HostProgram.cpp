// Uses the exported logger and configuration classes the way a host application would.
// Exit code 0 when every step behaved; otherwise the number of the failing step.
#include <telvarra/Telvarra.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

int main(int argc, char** argv) {
    const std::string folder = argc > 1 ? argv[1] : ".";
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

    std::ifstream log(logPath);
    const std::string content((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
    if (content.find("[WARNING] host says hello") == std::string::npos) return 4;
    if (content.find("[INFO] Loaded config from: " + configPath) == std::string::npos) return 5;

    logger.setLogFile(folder);  // detach (a folder is no file) so the log can be removed
    std::puts("host program: exported classes work");
    return 0;
}
