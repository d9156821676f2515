#include "sim/common/SimulatorCore.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "sim/common/Rig.h"

namespace telvarra::sim {

// Queries leave LastError as it was.
template <class Read>
auto SimulatorBase::readDevice(const std::string& id, Read&& read) {
    const auto guard = lock();
    VirtualDevice* model = findModel(id);
    using Value = decltype(read(*model));
    return model ? std::optional<Value>(read(*model)) : std::nullopt;
}

void SimulatorBase::reset() {
    const auto guard = lock();
    m_started = false;
    clearState();
    m_calls.clear();
    m_faults.clear();
    m_lastError.clear();
}

bool SimulatorBase::addParsed(DeviceDescription description, std::string& error) {
    if (description.make != m_profile.make) {
        error = "not a " + std::string(m_profile.make) + " line: " + description.make;
        return false;
    }
    return admit(std::move(description), error);
}

bool SimulatorBase::addDevice(const std::string& rigLine) {
    const auto guard = lock();
    m_lastError.clear();
    // Attributes alone are taken as this make's line.
    const std::size_t start = rigLine.find_first_not_of(" \t");
    const std::size_t end = rigLine.find_first_of(" \t", start);
    const bool hasMake = start != std::string::npos &&
                         rigLine.substr(start, end - start).find('=') == std::string::npos;
    const std::string line = hasMake ? rigLine : std::string(m_profile.make) + " " + rigLine;
    auto description = parseRigLine(line, m_lastError);
    return description && addParsed(std::move(*description), m_lastError);
}

int SimulatorBase::loadRig(const std::string& path) {
    const auto guard = lock();
    const Rig rig = readRigFile(path);
    std::ostringstream errors;
    bool unreadable = false;
    for (const RigError& error : rig.errors) {
        if (error.line == 0) unreadable = true;
        if (error.make.empty() || error.make == m_profile.make)
            errors << "line " << error.line << ": " << error.message << "\n";
    }
    int added = 0;
    for (const RigDevice& entry : rig.devicesOf(m_profile.make)) {
        std::string error;
        if (addParsed(entry.device, error))
            ++added;
        else
            errors << "line " << entry.line << ": " << error << "\n";
    }
    m_lastError = errors.str();
    return unreadable ? -1 : added;
}

void SimulatorBase::loadRigFromEnvironment() {
    const char* rig = std::getenv(kRigEnvironmentVariable);
    if (!rig || !*rig) return;
    const auto guard = lock();
    loadRig(rig);
    if (!m_lastError.empty())
        std::fprintf(stderr, "%s: rig %s:\n%s", m_profile.title, rig, m_lastError.c_str());
}

bool SimulatorBase::removeDevice(const std::string& id) {
    // Handles on the device stay, dead.
    return controlDevice(id, [&](VirtualDevice&) {
        eraseDevice(id);
        return std::string();
    });
}

bool SimulatorBase::unplug(const std::string& id) {
    return controlDevice(id, [&](VirtualDevice& model) {
        model.unplug();
        powerLost(id);
        return std::string();
    });
}

bool SimulatorBase::replug(const std::string& id) {
    return controlDevice(id, [](VirtualDevice& model) {
        model.replug();
        return std::string();
    });
}

std::optional<bool> SimulatorBase::isOpen(const std::string& id) {
    return readDevice(id, [](const VirtualDevice& model) { return !model.isFree(); });
}

std::optional<bool> SimulatorBase::isGrabbing(const std::string& id) {
    return readDevice(id, [](const VirtualDevice& model) { return model.grabbing(); });
}

std::optional<std::uint32_t> SimulatorBase::framesDelivered(const std::string& id) {
    return readDevice(id, [](const VirtualDevice& model) { return model.framesDelivered(); });
}

std::optional<std::uint32_t> SimulatorBase::deviceSeed(const std::string& id) {
    return readDevice(id, [](const VirtualDevice& model) { return model.description().seed; });
}

bool SimulatorBase::prepareFrames(const std::string& id, bool on) {
    return controlDevice(id, [&](VirtualDevice& model) {
        model.setPreparedFrames(on);
        return std::string();
    });
}

void SimulatorBase::failCall(const std::string& function, int status, std::uint32_t nth) {
    const auto guard = lock();
    m_faults.failOnCall(function, status, nth);
}

void SimulatorBase::failAlways(const std::string& function, int status) {
    const auto guard = lock();
    m_faults.failAlways(function, status);
}

void SimulatorBase::clearFaults() {
    const auto guard = lock();
    m_faults.clear();
}

std::uint32_t SimulatorBase::callCount(const std::string& function) {
    const auto guard = lock();
    return m_calls.count(function);
}

void SimulatorBase::clearCallCounts() {
    const auto guard = lock();
    m_calls.clear();
}

std::optional<std::string> SimulatorBase::lastArguments(const std::string& function) {
    const auto guard = lock();
    return m_calls.lastArguments(function);
}

std::size_t SimulatorBase::outstandingBuffers() {
    const auto guard = lock();
    return outstandingFrames();
}

const char* SimulatorBase::lastError() {
    const auto guard = lock();
    return m_lastError.c_str();
}

}  // namespace telvarra::sim
