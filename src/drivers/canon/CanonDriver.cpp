#include "drivers/canon/CanonDriver.h"

#include "core/Records.h"
#include "drivers/canon/CanonBodies.h"
#include "drivers/canon/CanonCamera.h"

namespace telvarra::canon {

namespace {

constexpr DriverTexts kTexts{"Canon",
                             RUVO_CAMERA_CANON,
                             "Initializing Canon driver.",
                             "Uninitializing Canon driver: ",
                             "closeLib error",
                             "Canon driver not initialized",
                             "Creating Canon camera: ",
                             "Destroying Canon camera"};

bool startSdk() { return canonSdk().EdsInitializeSDK() == sdk::EDS_ERR_OK; }

bool stopSdk() { return canonSdk().EdsTerminateSDK() == sdk::EDS_ERR_OK; }

}  // namespace

CanonDriver::CanonDriver() : VendorDriver(kTexts, {canonBinding(), startSdk, stopSdk}) {}

bool CanonDriver::listCameras(_RUVO_DEVICE_INFO_LIST& list) {
    const BodyListing listing = listBodies();
    if (!listing.listed) return false;
    list.count = 0;
    for (const ListedBody& body : listing.bodies) {
        const DeviceInfo record =
            makeDeviceRecord(RUVO_CAMERA_CANON, {body.serialNumber, "Canon", body.serialNumber,
                                                 "Canon ace", body.description, body.description});
        if (!appendDeviceRecord(list, record)) break;
    }
    return true;
}

std::unique_ptr<ICamera> CanonDriver::makeCamera(const std::string& cameraId) {
    return std::make_unique<CanonCamera>(cameraId);
}

}  // namespace telvarra::canon
