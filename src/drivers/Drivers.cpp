// The one place that names the makes: one line per make, in registry key order.
#include <memory>

#include "core/StandardDrivers.h"
#include "drivers/canon/CanonBinding.h"
#include "drivers/canon/CanonDriver.h"
#include "drivers/daheng/DaHengBinding.h"
#include "drivers/daheng/DaHengDriver.h"
#include "drivers/dvp/DvpBinding.h"
#include "drivers/dvp/DvpDriver.h"
#include "drivers/hikvision/HikVisionBinding.h"
#include "drivers/hikvision/HikVisionDriver.h"
#include "drivers/mindvision/MindVisionBinding.h"
#include "drivers/mindvision/MindVisionDriver.h"
#include "telvarra/CameraFactory.h"

namespace telvarra {

namespace {

template <class Driver>
void registerDriver(Ruvo_CameraType key) {
    auto driver = std::make_unique<Driver>();
    if (CameraFactory::getInstance().registerDriver(key, driver.get())) driver.release();
}

}  // namespace

void registerStandardDrivers() {
    registerDriver<mindvision::MindVisionDriver>(RUVO_CAMERA_MINDVISION);
    registerDriver<hikvision::HikVisionDriver>(RUVO_CAMERA_HIKVISION);
    registerDriver<dvp::DvpDriver>(RUVO_CAMERA_DVP);
    registerDriver<daheng::DaHengDriver>(RUVO_CAMERA_DAHENG);
    registerDriver<canon::CanonDriver>(RUVO_CAMERA_CANON);
}

std::vector<MakeSdk> standardSdks() {
    return {{"MindVision", mindvision::mindVisionBinding(), {}},
            {"HikVision", hikvision::hikVisionBinding(), hikvision::readSdkVersion},
            {"Dvp", dvp::dvpBinding(), {}},
            {"DaHeng", daheng::dahengBinding(), {}},
            {"Canon", canon::canonBinding(), {}}};
}

}  // namespace telvarra
