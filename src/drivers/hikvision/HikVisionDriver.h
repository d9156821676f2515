// The driver of HikVision (HIKROBOT MVS) cameras: loads the vendor SDK, lists the attached
// cameras and makes HikVisionCamera objects.
#ifndef TELVARRA_DRIVERS_HIKVISION_HIKVISIONDRIVER_H
#define TELVARRA_DRIVERS_HIKVISION_HIKVISIONDRIVER_H

#include <memory>
#include <optional>
#include <string>

#include "api/CameraDriverBase.h"
#include "drivers/hikvision/HikVisionSdk.h"

namespace telvarra::hikvision {

// The transport layers listed: GigE, USB3 and the GenTL GigE, Camera Link, CoaXPress and
// 10GigE-over-fibre layers (1394, serial Camera Link and virtual devices are left out).
constexpr unsigned int kEnumerationLayers = 0x3C5;

// The texts of one device record, read from the member of its transport layer.
struct DeviceTexts {
    std::string serialNumber;
    std::string modelName;
    std::string userDefinedName;
    // The user-defined name, or "model (serial)" when the device has none.
    std::string displayName() const;
};

// None for layers whose cameras are not listed (the GenTL GigE layer among them).
std::optional<DeviceTexts> readDeviceTexts(const MV_CC_DEVICE_INFO& device);

class HikVisionDriver : public CameraDriverBase {
  public:
    HikVisionDriver();
    ~HikVisionDriver() override;

    bool initialize() override;
    bool uninitialize() override;
    bool enumerateCameras(_RUVO_DEVICE_INFO_LIST* list) override;
    ICamera* createCamera(const char* cameraId) override;
    bool destroyCamera(ICamera* camera) override;
    std::string getDriverName() override;
    Ruvo_CameraType getDriverType() override;

  private:
    // Refilled by every enumeration; the records it points to are the SDK's.
    std::unique_ptr<MV_CC_DEVICE_INFO_LIST> m_deviceList;
};

}  // namespace telvarra::hikvision

#endif
