// One vendor SDK as a whole: registered under its camera type, initialised once, enumerates
// devices and makes camera objects. The slot order is part of the binary interface.
#ifndef TELVARRA_ICAMERADRIVER_H
#define TELVARRA_ICAMERADRIVER_H

#include <string>

#include "telvarra/ICamera.h"
#include "telvarra/Types.h"

// Nothing to export: a pure interface has no out-of-line members, and every module that
// implements or uses it emits its own copy of the table.
class ICameraDriver {
  public:
    virtual ~ICameraDriver() = default;                               // 0
    virtual bool initialize() = 0;                                    // 1
    virtual bool uninitialize() = 0;                                  // 2
    virtual bool isInitialized() = 0;                                 // 3
    virtual bool enumerateCameras(_RUVO_DEVICE_INFO_LIST* list) = 0;  // 4
    virtual ICamera* createCamera(const char* cameraId) = 0;          // 5
    virtual bool destroyCamera(ICamera* camera) = 0;                  // 6
    virtual std::string getDriverName() = 0;                          // 7
    virtual Ruvo_CameraType getDriverType() = 0;                      // 8
};

#endif
