// A host that starts the HikVision make (on the simulator) and exits without releasing
// anything: the library must shut its drivers down at unload without crashing.
#include <telvarra/Telvarra.h>

int main() {
    CameraLogger::getInstance().setLogLevel(LogLevel::Error);
    return CameraPublicInterface::getInstance()->initialize(RUVO_CAMERA_HIKVISION) ? 0 : 2;
}
