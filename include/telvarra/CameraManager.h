// Turns the driver registry into named cameras: starts and stops drivers, merges their device
// lists, creates a camera by identifier on whichever initialised driver sees it, and keeps one
// configuration per camera ("camera_<id>.cfg" in the current directory) and a global one.
// No lock: callers serialise their calls.
#ifndef TELVARRA_CAMERAMANAGER_H
#define TELVARRA_CAMERAMANAGER_H

#include <map>
#include <memory>
#include <string>

#include "telvarra/Callbacks.h"
#include "telvarra/CameraConfig.h"
#include "telvarra/Export.h"
#include "telvarra/ICamera.h"
#include "telvarra/ICameraDriver.h"
#include "telvarra/Types.h"

class CameraPublicInterface;

class TELVARRA_API CameraManager {
  public:
    CameraManager();
    // Copies share the same camera and configuration objects; the global configuration is
    // copied deeply.
    CameraManager(const CameraManager& other);
    CameraManager& operator=(const CameraManager& other);
    // Destroys every held camera through its driver, then uninitialises all drivers.
    virtual ~CameraManager();

    bool registerDriver(ICameraDriver* driver);
    bool initializeAllDrivers();
    bool initializeDriver(Ruvo_CameraType type);
    bool uninitializeAllDrivers();
    bool uninitializeDriver(Ruvo_CameraType type);

    // Both fill the caller's list whole; the merged list stops at its 256 records.
    bool enumerateCamerasAll(_RUVO_DEVICE_INFO_LIST* list);
    bool enumerateCamerasByType(Ruvo_CameraType type, _RUVO_DEVICE_INFO_LIST* list);

    // Type 0 tries every driver in type order. The camera comes back held by the manager with
    // its configuration loaded; null when no initialised driver sees the identifier.
    ICamera* createCamera(const char* cameraId, Ruvo_CameraType type);
    // Saves and drops the camera's configuration, then lets its driver delete it.
    bool destroyCamera(ICamera* camera);

    void setGlobalConfig(const CameraConfig& config);
    CameraConfig* getGlobalConfig() const;
    CameraConfig* getCameraConfig(const std::string& cameraId) const;
    bool saveCameraConfig(const std::string& cameraId);
    void setReconnectInterval(const std::string& cameraId, int32_t intervalMs);
    bool reconnectCamera(const std::string& cameraId);

    void setEventCallback(EventCallback callback, void* user);
    void setImageProcessingCallback(ImageProcessingCallback callback, void* user);

  private:
    friend class CameraPublicInterface;

    std::map<std::string, ICamera*> m_cameras;
    std::map<std::string, std::shared_ptr<CameraConfig>> m_cameraConfigs;
    mutable CameraConfig m_globalConfig;
    EventCallback m_eventCallback = nullptr;
    ImageProcessingCallback m_imageProcessingCallback = nullptr;
    // One user pointer for both callbacks: whichever setter ran last decides it.
    void* m_callbackUser = nullptr;
};

#endif
