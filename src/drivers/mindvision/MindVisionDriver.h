// The driver of MindVision cameras: binds the vendor SDK, lists the attached cameras by serial
// number and makes MindVisionCamera objects.
#ifndef TELVARRA_DRIVERS_MINDVISION_MINDVISIONDRIVER_H
#define TELVARRA_DRIVERS_MINDVISION_MINDVISIONDRIVER_H

#include "api/VendorDriver.h"

namespace telvarra::mindvision {

class MindVisionDriver final : public VendorDriver {
  public:
    MindVisionDriver();

  private:
    bool listCameras(_RUVO_DEVICE_INFO_LIST& list) override;
    std::unique_ptr<ICamera> makeCamera(const std::string& cameraId) override;
};

}  // namespace telvarra::mindvision

#endif
