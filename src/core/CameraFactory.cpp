#include "telvarra/CameraFactory.h"

#include <string>

#include "telvarra/CameraLogger.h"

CameraFactory& CameraFactory::getInstance() {
    static CameraFactory instance;
    return instance;
}

// Built after the logger, so destroyed before it: the drivers deleted at unload may still log.
CameraFactory::CameraFactory() { CameraLogger::getInstance(); }

CameraFactory::~CameraFactory() {
    for (auto& [type, driver] : m_drivers) delete driver;
    m_drivers.clear();
    m_initializedFlags.clear();
}

bool CameraFactory::registerDriver(Ruvo_CameraType type, ICameraDriver* driver) {
    const std::string typeText = std::to_string(static_cast<int>(type));
    if (m_drivers.count(type) != 0) {
        CameraLogger::getInstance().log(LogLevel::Warning,
                                        "Driver already registered for type: " + typeText);
        return false;
    }
    m_drivers[type] = driver;
    m_initializedFlags[type] = false;
    CameraLogger::getInstance().log(LogLevel::Info, "Registered driver for type: " + typeText);
    return true;
}

ICameraDriver* CameraFactory::getDriver(Ruvo_CameraType type) {
    const auto entry = m_drivers.find(type);
    return entry == m_drivers.end() ? nullptr : entry->second;
}

std::vector<ICameraDriver*> CameraFactory::getAllDrivers() {
    std::vector<ICameraDriver*> drivers;
    drivers.reserve(m_drivers.size());
    for (const auto& [type, driver] : m_drivers) drivers.push_back(driver);
    return drivers;
}

std::vector<ICameraDriver*> CameraFactory::getInitializedDrivers() {
    std::vector<ICameraDriver*> drivers;
    for (const auto& [type, driver] : m_drivers) {
        if (m_initializedFlags[type] && driver && driver->isInitialized())
            drivers.push_back(driver);
    }
    return drivers;
}
