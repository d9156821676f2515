// A scriptable driver for tests: each result is settable, every call is counted, the devices it
// enumerates are settable, and it makes FakeCameras for them (or null, when told to).
#ifndef TELVARRA_TESTS_FAKEDRIVER_H
#define TELVARRA_TESTS_FAKEDRIVER_H

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/FakeCamera.h"
#include "telvarra/ICameraDriver.h"

namespace telvarra::test {

class FakeDriver : public ICameraDriver {
  public:
    FakeDriver(Ruvo_CameraType type, std::string name)
        : cameraType(type), m_type(type), m_name(std::move(name)) {}

    // Back to a fresh, uninitialised driver with no devices.
    void reset() {
        initialized = false;
        initializeResult = uninitializeResult = enumerateResult = createResult = true;
        deviceIds.clear();
        cameraType = m_type;
        cameraResults.clear();
        calls.clear();
        lastCreated = nullptr;
        live.clear();  // a camera a test left with its driver (one refused a destroy)
    }

    bool initialize() override {
        ++calls["initialize"];
        initialized = initializeResult;
        return initializeResult;
    }
    bool uninitialize() override {
        ++calls["uninitialize"];
        if (uninitializeResult) initialized = false;
        return uninitializeResult;
    }
    bool isInitialized() override {
        ++calls["isInitialized"];
        return initialized;
    }
    bool enumerateCameras(_RUVO_DEVICE_INFO_LIST* list) override {
        ++calls["enumerateCameras"];
        if (!list) return false;
        list->count = 0;
        for (const std::string& id : deviceIds) {
            if (list->count == RUVO_MAX_DEVICES) break;
            DeviceInfo& record = list->devices[list->count++];
            std::memset(&record, 0, sizeof record);
            std::strncpy(record.cameraId, id.c_str(), sizeof record.cameraId - 1);
            record.cameraType = m_type;
            std::strncpy(record.vendorName, m_name.c_str(), sizeof record.vendorName - 1);
            record.isAvailable = true;
        }
        return enumerateResult;
    }
    ICamera* createCamera(const char* cameraId) override {
        ++calls["createCamera"];
        if (!createResult) return nullptr;
        auto camera = std::make_unique<FakeCamera>(cameraId, cameraType);
        camera->results = cameraResults;
        lastCreated = camera.get();
        live.push_back(std::move(camera));
        return lastCreated;
    }
    bool destroyCamera(ICamera* camera) override {
        ++calls["destroyCamera"];
        live.erase(std::remove_if(live.begin(), live.end(),
                                  [camera](const auto& held) { return held.get() == camera; }),
                   live.end());
        return true;
    }
    std::string getDriverName() override { return m_name; }
    Ruvo_CameraType getDriverType() override {
        ++calls["getDriverType"];
        return m_type;
    }

    bool initialized = false;
    bool initializeResult = true;
    bool uninitializeResult = true;
    bool enumerateResult = true;
    bool createResult = true;
    std::vector<std::string> deviceIds;
    // The type the cameras write into their device records (the key their driver is found by).
    Ruvo_CameraType cameraType = RUVO_CAMERA_ANY;
    std::map<std::string, bool> cameraResults;  // scripted into every camera it makes
    std::map<std::string, int> calls;
    FakeCamera* lastCreated = nullptr;
    std::vector<std::unique_ptr<FakeCamera>> live;

  private:
    Ruvo_CameraType m_type;
    std::string m_name;
};

}  // namespace telvarra::test

#endif
