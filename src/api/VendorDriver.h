// What every make's driver shares: the initialised flag (its first field), starting and stopping
// the SDK around loading and releasing its library, the refusals of an uninitialised driver, and
// making and deleting cameras, each step with its log line worded from the make's texts.
#ifndef TELVARRA_API_VENDORDRIVER_H
#define TELVARRA_API_VENDORDRIVER_H

#include <memory>
#include <string>

#include "platform/SdkBinding.h"
#include "telvarra/ICameraDriver.h"

namespace telvarra {

// A make's driver texts, stored whole: the makes word them irregularly.
struct DriverTexts {
    const char* name;            // getDriverName: "HikVision"
    Ruvo_CameraType type;        // getDriverType: 2
    const char* initializing;    // "Initializing HikVision driver"
    const char* uninitializing;  // "Uninitializing HikVision driver: ", before each step's word
    const char* stopFailed;      // "finalize error": the SDK's shut-down call failed
    const char* notInitialized;  // "HikVision driver not initialized"
    const char* creating;        // "Creating HikVision camera: ", before the identifier
    const char* destroying;      // "Destroying HikVision camera"
};

// How a make's SDK is started and stopped once its library is bound. Plain functions rather
// than virtual members: the driver's destructor stops the SDK after the make's part is gone.
struct SdkLifecycle {
    platform::SdkLibrary& library;
    bool (*start)();  // null when the SDK has no start-up call; true on success
    bool (*stop)();   // null when it has no shut-down call; false is logged and otherwise ignored
};

class VendorDriver : public ICameraDriver {
  public:
    ~VendorDriver() override;

    bool initialize() final;
    bool uninitialize() final;
    bool isInitialized() final { return m_initialized; }
    bool enumerateCameras(_RUVO_DEVICE_INFO_LIST* list) final;
    ICamera* createCamera(const char* cameraId) final;
    bool destroyCamera(ICamera* camera) final;
    std::string getDriverName() final;
    Ruvo_CameraType getDriverType() final;

  protected:
    VendorDriver(const DriverTexts& texts, const SdkLifecycle& lifecycle);

    // The make's own enumeration into `list`, called only while initialised.
    virtual bool listCameras(_RUVO_DEVICE_INFO_LIST& list) = 0;
    virtual std::unique_ptr<ICamera> makeCamera(const std::string& cameraId) = 0;

  private:
    bool m_initialized = false;
    const DriverTexts& m_texts;
    SdkLifecycle m_lifecycle;
};

}  // namespace telvarra

#endif
