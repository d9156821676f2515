// A scriptable driver for tests: each result is settable and every call is counted.
#ifndef TELVARRA_TESTS_FAKEDRIVER_H
#define TELVARRA_TESTS_FAKEDRIVER_H

#include <map>
#include <string>
#include <utility>

#include "telvarra/ICameraDriver.h"

namespace telvarra::test {

class FakeDriver : public ICameraDriver {
public:
    FakeDriver(Ruvo_CameraType type, std::string name) : m_type(type), m_name(std::move(name)) {}

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
    bool isInitialized() override { return initialized; }
    bool enumerateCameras(_RUVO_DEVICE_INFO_LIST* list) override {
        ++calls["enumerateCameras"];
        if (list) list->count = 0;
        return enumerateResult;
    }
    ICamera* createCamera(const char*) override {
        ++calls["createCamera"];
        return nullptr;
    }
    bool destroyCamera(ICamera*) override {
        ++calls["destroyCamera"];
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
    std::map<std::string, int> calls;

private:
    Ruvo_CameraType m_type;
    std::string m_name;
};

}  // namespace telvarra::test

#endif
