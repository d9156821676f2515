#include "telvarra/CameraManager.h"

#include <cstring>
#include <vector>

#include "core/FileNames.h"
#include "core/Records.h"
#include "telvarra/CameraFactory.h"
#include "telvarra/CameraLogger.h"

namespace {

void logLine(LogLevel level, const std::string& message) {
    CameraLogger::getInstance().log(level, message);
}

std::string typeText(Ruvo_CameraType type) { return std::to_string(static_cast<int>(type)); }

// Device lists are 409 KiB each: too large for a thread's stack.
std::unique_ptr<_RUVO_DEVICE_INFO_LIST> makeEmptyList() {
    auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
    list->count = 0;
    return list;
}

ICameraDriver* registeredDriver(Ruvo_CameraType type) {
    return CameraFactory::getInstance().getDriver(type);
}

// Appends what the driver enumerates; a failed enumeration adds nothing.
void appendEnumerated(ICameraDriver& driver, _RUVO_DEVICE_INFO_LIST& target) {
    auto found = makeEmptyList();
    if (!driver.enumerateCameras(found.get())) return;
    const uint32_t count = found->count < RUVO_MAX_DEVICES ? found->count : RUVO_MAX_DEVICES;
    for (uint32_t i = 0; i < count; ++i) {
        if (!telvarra::appendDeviceRecord(target, found->devices[i])) return;
    }
}

}  // namespace

CameraManager::CameraManager() = default;
CameraManager::CameraManager(const CameraManager& other) = default;
CameraManager& CameraManager::operator=(const CameraManager& other) = default;

CameraManager::~CameraManager() {
    for (const auto& [id, camera] : m_cameras) {
        DeviceInfo info;
        camera->getDeviceInfo(info);
        if (ICameraDriver* driver = registeredDriver(info.cameraType))
            driver->destroyCamera(camera);
    }
    m_cameras.clear();
    uninitializeAllDrivers();
}

bool CameraManager::registerDriver(ICameraDriver* driver) {
    if (!driver) {
        logLine(LogLevel::Error, "Attempt to register null driver");
        return false;
    }
    return CameraFactory::getInstance().registerDriver(driver->getDriverType(), driver);
}

bool CameraManager::initializeAllDrivers() {
    bool anyInitialized = false;
    for (ICameraDriver* driver : CameraFactory::getInstance().getAllDrivers()) {
        if (!driver || driver->isInitialized()) continue;
        if (driver->initialize()) {
            logLine(LogLevel::Info, "Initialized driver: " + driver->getDriverName());
            anyInitialized = true;
        } else {
            logLine(LogLevel::Error, "Failed to initialize driver: " + driver->getDriverName());
        }
    }
    return anyInitialized;
}

bool CameraManager::uninitializeAllDrivers() {
    bool allSucceeded = true;
    for (ICameraDriver* driver : CameraFactory::getInstance().getAllDrivers()) {
        if (!driver || !driver->isInitialized()) continue;
        if (driver->uninitialize()) {
            logLine(LogLevel::Info, "Uninitialized driver: " + driver->getDriverName());
        } else {
            logLine(LogLevel::Error, "Failed to uninitialize driver: " + driver->getDriverName());
            allSucceeded = false;
        }
    }
    return allSucceeded;
}

bool CameraManager::initializeDriver(Ruvo_CameraType type) {
    ICameraDriver* driver = registeredDriver(type);
    if (!driver) {
        logLine(LogLevel::Error, "Driver not found for type: " + typeText(type));
        return false;
    }
    if (driver->isInitialized()) {
        logLine(LogLevel::Info, "Driver already initialized: " + driver->getDriverName());
        return true;
    }
    if (!driver->initialize()) {
        logLine(LogLevel::Error, "Failed to initialize driver: " + driver->getDriverName());
        return false;
    }
    logLine(LogLevel::Info, "Initialized driver: " + driver->getDriverName());
    return true;
}

bool CameraManager::uninitializeDriver(Ruvo_CameraType type) {
    ICameraDriver* driver = registeredDriver(type);
    if (!driver) {
        logLine(LogLevel::Error, "Driver not found for type: " + typeText(type));
        return false;
    }
    if (!driver->isInitialized()) {
        logLine(LogLevel::Info, "Driver not initialized: " + driver->getDriverName());
        return true;
    }
    if (!driver->uninitialize()) {
        logLine(LogLevel::Error, "Failed to uninitialize driver: " + driver->getDriverName());
        return false;
    }
    logLine(LogLevel::Info, "Uninitialized driver: " + driver->getDriverName());
    return true;
}

bool CameraManager::enumerateCamerasAll(_RUVO_DEVICE_INFO_LIST* list) {
    if (!list) return false;
    auto merged = makeEmptyList();
    for (ICameraDriver* driver : CameraFactory::getInstance().getAllDrivers()) {
        if (driver && driver->isInitialized()) appendEnumerated(*driver, *merged);
    }
    std::memcpy(list, merged.get(), sizeof *list);
    return true;
}

bool CameraManager::enumerateCamerasByType(Ruvo_CameraType type, _RUVO_DEVICE_INFO_LIST* list) {
    if (!list) return false;
    ICameraDriver* driver = registeredDriver(type);
    if (!driver || !driver->isInitialized()) {
        logLine(LogLevel::Error, "Driver not initialized for type: " + typeText(type));
        return false;
    }
    list->count = 0;
    appendEnumerated(*driver, *list);
    return true;
}

ICamera* CameraManager::createCamera(const char* cameraId, Ruvo_CameraType type) {
    if (!cameraId) return nullptr;
    const std::string id(cameraId);
    if (const auto held = m_cameras.find(id); held != m_cameras.end()) {
        logLine(LogLevel::Warning, "Camera already exists: " + id);
        return held->second;
    }

    std::vector<ICameraDriver*> candidates;
    if (type == RUVO_CAMERA_ANY) {
        candidates = CameraFactory::getInstance().getAllDrivers();
    } else if (ICameraDriver* driver = registeredDriver(type)) {
        candidates.push_back(driver);
    }

    ICamera* camera = nullptr;
    for (ICameraDriver* driver : candidates) {
        if (!driver || !driver->isInitialized()) continue;
        auto found = makeEmptyList();
        if (!driver->enumerateCameras(found.get())) continue;
        const uint32_t count = found->count < RUVO_MAX_DEVICES ? found->count : RUVO_MAX_DEVICES;
        for (uint32_t i = 0; i < count && !camera; ++i) {
            // Compared as whole text: an identifier longer than the record's field never matches.
            if (std::strncmp(found->devices[i].cameraId, cameraId, RUVO_TEXT_SIZE) == 0) {
                camera = driver->createCamera(cameraId);
            }
        }
        if (camera) break;
    }
    if (!camera) {
        logLine(LogLevel::Error, "Camera not found: " + id);
        return nullptr;
    }

    m_cameras[id] = camera;
    // Built from the whole identifier: no fixed-size buffer can cut or overflow the name. The
    // identifier is encoded where it could leave the folder or break the name.
    const std::string configFile = "camera_" + telvarra::fileNamePart(id) + ".cfg";
    m_cameraConfigs[id] = std::make_shared<CameraConfig>(configFile.c_str());
    logLine(LogLevel::Info, "Created camera: " + id);
    return camera;
}

bool CameraManager::destroyCamera(ICamera* camera) {
    if (!camera) {
        logLine(LogLevel::Error, "Attempt to destroy null camera");
        return false;
    }
    DeviceInfo info;
    camera->getDeviceInfo(info);
    ICameraDriver* driver = registeredDriver(info.cameraType);
    if (!driver) {
        logLine(LogLevel::Error,
                "Driver not found for camera: " + telvarra::fieldText(info.cameraId));
        return false;
    }

    std::string id;
    for (auto entry = m_cameras.begin(); entry != m_cameras.end(); ++entry) {
        if (entry->second == camera) {
            id = entry->first;
            m_cameras.erase(entry);
            break;
        }
    }
    if (const auto config = m_cameraConfigs.find(id); config != m_cameraConfigs.end()) {
        if (config->second) config->second->saveConfig("");
        m_cameraConfigs.erase(config);
    }
    driver->destroyCamera(camera);
    logLine(LogLevel::Info, "Destroyed camera: " + id);
    return true;
}

void CameraManager::setGlobalConfig(const CameraConfig& config) { m_globalConfig = config; }

CameraConfig* CameraManager::getGlobalConfig() const { return &m_globalConfig; }

CameraConfig* CameraManager::getCameraConfig(const std::string& cameraId) const {
    const auto entry = m_cameraConfigs.find(cameraId);
    return entry == m_cameraConfigs.end() ? nullptr : entry->second.get();
}

bool CameraManager::saveCameraConfig(const std::string& cameraId) {
    CameraConfig* config = getCameraConfig(cameraId);
    return config && config->saveConfig("");
}

void CameraManager::setReconnectInterval(const std::string& cameraId, int32_t intervalMs) {
    if (const auto entry = m_cameras.find(cameraId); entry != m_cameras.end()) {
        entry->second->setReconnectInterval(intervalMs);
    }
}

bool CameraManager::reconnectCamera(const std::string& cameraId) {
    const auto entry = m_cameras.find(cameraId);
    return entry != m_cameras.end() && entry->second->reconnect();
}

void CameraManager::setEventCallback(EventCallback callback, void* user) {
    m_eventCallback = callback;
    m_callbackUser = user;
}

void CameraManager::setImageProcessingCallback(ImageProcessingCallback callback, void* user) {
    m_imageProcessingCallback = callback;
    m_callbackUser = user;
}
