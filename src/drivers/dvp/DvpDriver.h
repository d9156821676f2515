// The driver of Dvp (Do3think DVP2) cameras: binds the vendor SDK, lists the attached cameras and
// makes DvpCamera objects.
#ifndef TELVARRA_DRIVERS_DVP_DVPDRIVER_H
#define TELVARRA_DRIVERS_DVP_DVPDRIVER_H

#include "api/VendorDriver.h"

namespace telvarra::dvp {

class DvpDriver final : public VendorDriver {
  public:
    DvpDriver();

  private:
    bool listCameras(_RUVO_DEVICE_INFO_LIST& list) override;
    std::unique_ptr<ICamera> makeCamera(const std::string& cameraId) override;
};

}  // namespace telvarra::dvp

#endif
