#include "api/VendorDriver.h"

#include "telvarra/CameraLogger.h"

namespace telvarra {

namespace {

void logLine(LogLevel level, const std::string& message) {
    CameraLogger::getInstance().log(level, message);
}

}  // namespace

VendorDriver::VendorDriver(const DriverTexts& texts, const SdkLifecycle& lifecycle)
    : m_texts(texts), m_lifecycle(lifecycle) {}

VendorDriver::~VendorDriver() {
    if (m_initialized) uninitialize();
}

bool VendorDriver::initialize() {
    if (m_initialized) return true;
    logLine(LogLevel::Info, m_texts.initializing);
    m_initialized = m_lifecycle.library.load() && (!m_lifecycle.start || m_lifecycle.start());
    // A library that lacks a required name, or an SDK that will not start, is released whole,
    // so that the next initialize starts from the beginning.
    if (!m_initialized) m_lifecycle.library.unload();
    return m_initialized;
}

bool VendorDriver::uninitialize() {
    const std::string prefix = m_texts.uninitializing;
    logLine(LogLevel::Info, prefix + "start");
    if (!m_initialized) {
        logLine(LogLevel::Info, prefix + "no initialized ");
        return true;
    }
    if (m_lifecycle.stop && !m_lifecycle.stop())
        logLine(LogLevel::Info, prefix + m_texts.stopFailed);
    if (m_lifecycle.library.isLoaded()) {
        m_lifecycle.library.unload();
        logLine(LogLevel::Info, prefix + "freeLibrary ok");
    }
    logLine(LogLevel::Info, prefix + "end");
    m_initialized = false;
    return true;
}

bool VendorDriver::enumerateCameras(_RUVO_DEVICE_INFO_LIST* list) {
    if (!m_initialized) {
        logLine(LogLevel::Error, m_texts.notInitialized);
        return false;
    }
    return list && listCameras(*list);
}

ICamera* VendorDriver::createCamera(const char* cameraId) {
    if (!m_initialized) {
        logLine(LogLevel::Error, m_texts.notInitialized);
        return nullptr;
    }
    if (!cameraId) return nullptr;
    logLine(LogLevel::Info, m_texts.creating + std::string(cameraId));
    // The manager owns the camera from here and hands it back to destroyCamera.
    return makeCamera(cameraId).release();
}

bool VendorDriver::destroyCamera(ICamera* camera) {
    if (!camera) return false;
    logLine(LogLevel::Info, m_texts.destroying);
    delete camera;
    return true;
}

std::string VendorDriver::getDriverName() { return m_texts.name; }

Ruvo_CameraType VendorDriver::getDriverType() { return m_texts.type; }

}  // namespace telvarra
