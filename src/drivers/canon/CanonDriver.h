// The driver of Canon bodies: starts and stops the EDSDK around its library, loaded from beside
// this library, and lists the bodies that report a serial number.
#ifndef TELVARRA_DRIVERS_CANON_CANONDRIVER_H
#define TELVARRA_DRIVERS_CANON_CANONDRIVER_H

#include "api/VendorDriver.h"

namespace telvarra::canon {

class CanonDriver final : public VendorDriver {
  public:
    CanonDriver();

  private:
    bool listCameras(_RUVO_DEVICE_INFO_LIST& list) override;
    std::unique_ptr<ICamera> makeCamera(const std::string& cameraId) override;
};

}  // namespace telvarra::canon

#endif
