#include "FakeCameraInstaller.h"

#include <telvarra/Telvarra.h>

#include "support/FakeDriver.h"

void fake_install(int type, const char* cameraId) {
    auto* driver = new telvarra::test::FakeDriver(static_cast<Ruvo_CameraType>(type), "Fake");
    driver->deviceIds = {cameraId};
    CameraFactory::getInstance().registerDriver(static_cast<Ruvo_CameraType>(type), driver);
}

int fake_open(const char* cameraId, int type) {
    CameraPublicInterface* facade = CameraPublicInterface::getInstance();
    return facade->openCamera(cameraId, static_cast<Ruvo_CameraType>(type)) &&
           facade->startCapture(cameraId);
}
