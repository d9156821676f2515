// The driver of HikVision (HIKROBOT MVS) cameras: loads the vendor SDK, lists the attached
// cameras and makes HikVisionCamera objects.
#ifndef TELVARRA_DRIVERS_HIKVISION_HIKVISIONDRIVER_H
#define TELVARRA_DRIVERS_HIKVISION_HIKVISIONDRIVER_H

#include <memory>

#include "api/VendorDriver.h"
#include "drivers/hikvision/HikVisionBinding.h"

namespace telvarra::hikvision {

class HikVisionDriver final : public VendorDriver {
  public:
    HikVisionDriver();

  private:
    bool listCameras(_RUVO_DEVICE_INFO_LIST& list) override;
    std::unique_ptr<ICamera> makeCamera(const std::string& cameraId) override;

    // Refilled by every enumeration; the records it points to are the SDK's.
    std::unique_ptr<sdk::MV_CC_DEVICE_INFO_LIST> m_deviceList;
};

}  // namespace telvarra::hikvision

#endif
