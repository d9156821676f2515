// The driver of DaHeng (Galaxy) cameras: starts the vendor SDK, lists the attached cameras by
// serial number and makes DaHengCamera objects.
#ifndef TELVARRA_DRIVERS_DAHENG_DAHENGDRIVER_H
#define TELVARRA_DRIVERS_DAHENG_DAHENGDRIVER_H

#include "api/VendorDriver.h"

namespace telvarra::daheng {

class DaHengDriver final : public VendorDriver {
  public:
    DaHengDriver();

  private:
    bool listCameras(_RUVO_DEVICE_INFO_LIST& list) override;
    std::unique_ptr<ICamera> makeCamera(const std::string& cameraId) override;
};

}  // namespace telvarra::daheng

#endif
