#include "support/FakeRegistry.h"

#include "telvarra/CameraFactory.h"

namespace telvarra::test {

FakeDrivers& fakeDrivers() {
    static FakeDrivers drivers = [] {
        auto* alpha = new FakeDriver(kAlphaType, "Alpha");
        auto* beta = new FakeDriver(kBetaType, "Beta");
        CameraFactory::getInstance().registerDriver(kAlphaType, alpha);
        CameraFactory::getInstance().registerDriver(kBetaType, beta);
        return FakeDrivers{*alpha, *beta};
    }();
    drivers.reset();
    return drivers;
}

}  // namespace telvarra::test
