// What every SDK simulator does the same way, so that a make's simulator holds only its vendor's
// behaviour:
//  - the call gate: one recursive lock per simulator; every exported call is counted in the call
//    log with its arguments, may meet a planned fault first, then needs the SDK started when the
//    make has a start call;
//  - the devices of the rig (a VirtualDevice each, plus the make's own state), in rig order,
//    which is enumeration order, and the handles on them (opaque tokens, never reused);
//  - the test control behind the <Prefix>_* functions of SimControl.h: rig lines and files, the
//    make's hook that checks and completes a device, remove, unplug, replug, reset and queries.
//
// SimulatorBase holds what does not depend on the make's types; SimulatorCore<> adds the device
// and handle registries over the make's DeviceState and HandleState. A make derives from
// SimulatorCore<> and reaches its one instance through residentSimulator<>().
#ifndef TELVARRA_SIM_COMMON_SIMULATORCORE_H
#define TELVARRA_SIM_COMMON_SIMULATORCORE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/common/CallLog.h"
#include "sim/common/HandleRegistry.h"
#include "sim/common/VirtualDevice.h"

namespace telvarra::sim {

// What the core needs to know about a make.
struct MakeProfile {
    const char* make;   // its rig-file word, such as "hikvision"
    const char* title;  // how messages name the simulator, such as "HikVision simulator"
    // What a call returns before the SDK is started; none for a make without a start call.
    std::optional<int> notStartedStatus;
    // Handle tokens are handleBase + n * handleStep (see HandleRegistry).
    std::uintptr_t handleBase = 0x10000;
    std::uintptr_t handleStep = 0x10;
};

class SimulatorBase {
  public:
    explicit SimulatorBase(MakeProfile profile) : m_profile(std::move(profile)) {}
    virtual ~SimulatorBase() = default;
    SimulatorBase(const SimulatorBase&) = delete;
    SimulatorBase& operator=(const SimulatorBase&) = delete;

    // ---- Test control: the <Prefix>_* functions of SimControl.h, which say what each does. ----
    void reset();
    bool addDevice(const std::string& rigLine);
    int loadRig(const std::string& path);
    bool removeDevice(const std::string& id);
    bool unplug(const std::string& id);
    bool replug(const std::string& id);
    std::optional<bool> isOpen(const std::string& id);
    std::optional<bool> isGrabbing(const std::string& id);
    std::optional<std::uint32_t> framesDelivered(const std::string& id);
    std::optional<std::uint32_t> deviceSeed(const std::string& id);
    bool prepareFrames(const std::string& id, bool on);
    void failCall(const std::string& function, int status, std::uint32_t nth);
    void failAlways(const std::string& function, int status);
    void clearFaults();
    std::uint32_t callCount(const std::string& function);
    void clearCallCounts();
    std::optional<std::string> lastArguments(const std::string& function);
    std::size_t outstandingBuffers();
    // Valid until the next control call.
    const char* lastError();

    // Adds the make's lines of the rig file named by TELVARRA_SIM_RIG, if set; bad lines are
    // reported on the standard error, as there is no caller to tell.
    void loadRigFromEnvironment();

  protected:
    // Recursive: a make's function may record something under the lock before the gate takes it.
    std::unique_lock<std::recursive_mutex> lock() { return std::unique_lock(m_mutex); }

    // Every exported SDK function runs its body through here. A planned fault or a missing start
    // becomes the body's result type (a status: a bool-returning function maps it itself).
    template <class Body>
    auto call(const char* function, std::string arguments, Body&& body) {
        return gate(function, std::move(arguments), true, std::forward<Body>(body));
    }
    // The same for the functions the vendor allows before the start (the start call itself, a
    // version query).
    template <class Body>
    auto callAnyTime(const char* function, std::string arguments, Body&& body) {
        return gate(function, std::move(arguments), false, std::forward<Body>(body));
    }

    bool started() const { return m_started; }
    void setStarted(bool started) { m_started = started; }

    // For control calls: runs `change` on the device under the lock. `change` returns the reason
    // to refuse, empty when done; an unknown device is refused too. The outcome is kept for
    // LastError.
    template <class Change>
    bool controlDevice(const std::string& id, Change&& change) {
        const auto guard = lock();
        VirtualDevice* model = findModel(id);
        m_lastError = model ? change(*model) : "no device " + id;
        return m_lastError.empty();
    }
    // The same for control calls that concern no one device (the SDK version a simulator
    // imitates).
    template <class Change>
    bool controlSimulator(Change&& change) {
        const auto guard = lock();
        m_lastError = change();
        return m_lastError.empty();
    }

    // ---- Supplied by SimulatorCore<> and the make. ----
    virtual VirtualDevice* findModel(const std::string& id) = 0;
    // Checks, completes and adds a device of this make; false with `error` set when refused.
    virtual bool admit(DeviceDescription description, std::string& error) = 0;
    virtual void eraseDevice(const std::string& id) = 0;
    // No devices, no handles, and the make's own state as at the start.
    virtual void clearState() = 0;
    // Frame memory the caller has not given back (or may still read): OutstandingBuffers.
    virtual std::size_t outstandingFrames() = 0;
    // The device was unplugged, so it lost power: a make whose cameras keep their settings only
    // while powered forgets them here.
    virtual void powerLost(const std::string& /*id*/) {}

  private:
    template <class Body>
    auto gate(const char* function, std::string arguments, bool needsStart, Body&& body) {
        using Result = decltype(body());
        const auto guard = lock();
        m_calls.record(function, std::move(arguments));
        if (const auto fault = m_faults.check(function)) return static_cast<Result>(*fault);
        if (needsStart && m_profile.notStartedStatus && !m_started)
            return static_cast<Result>(*m_profile.notStartedStatus);
        return body();
    }

    bool addParsed(DeviceDescription description, std::string& error);
    template <class Read>
    auto readDevice(const std::string& id, Read&& read);

    const MakeProfile m_profile;
    std::recursive_mutex m_mutex;
    bool m_started = false;
    CallLog m_calls;
    FaultPlan m_faults;
    std::string m_lastError;
};

template <class DeviceState, class HandleState>
class SimulatorCore : public SimulatorBase {
  public:
    struct Device {
        VirtualDevice model;
        DeviceState state;
    };
    struct Handle {
        std::string deviceId;
        bool open = false;  // from a successful open to the close, also when the device went away
        HandleState state;
    };

    enum class Session {
        NoHandle,  // not a handle of this simulator, or destroyed
        Closed,    // never opened, or closed
        Lost,      // open, but the device was unplugged or removed since
        Live,
    };
    struct SessionView {
        Session state;
        Handle* handle;  // unless NoHandle
        Device* device;  // when Live
    };
    enum class Opening { Opened, DeviceGone, Taken };

  protected:
    explicit SimulatorCore(const MakeProfile& profile)
        : SimulatorBase(profile), m_handles(profile.handleBase, profile.handleStep) {}

    // The make's rule for a device of the rig: checks `description` (filling in the make's
    // defaults) and gives the device's initial state; nullopt with `error` set refuses it.
    virtual std::optional<DeviceState> accept(DeviceDescription& description,
                                              std::string& error) = 0;
    // Back to the make's start at a reset (enumeration records, frame memory, recorded values).
    virtual void resetMake() = 0;

    // In rig order, which is enumeration order.
    const std::vector<Device>& devices() const { return m_devices; }
    Device* findDevice(const std::string& id) {
        const auto found =
            std::find_if(m_devices.begin(), m_devices.end(),
                         [&](const Device& device) { return device.model.id() == id; });
        return found == m_devices.end() ? nullptr : &*found;
    }

    // A new, closed handle on `device`.
    void* addHandle(const Device& device, HandleState state) {
        return m_handles.add(Handle{device.model.id(), false, std::move(state)});
    }
    Handle* findHandle(const void* token) { return m_handles.find(token); }
    // Ends the handle's session, if any, and forgets it.
    void removeHandle(const void* token) {
        if (Handle* handle = findHandle(token); handle && handle->open) endSession(token, *handle);
        m_handles.erase(token);
    }
    void removeAllHandles() {
        for (auto& [token, handle] : m_handles)
            if (handle.open) endSession(token, handle);
        m_handles.clear();
    }

    // Opens the handle's device for it: the device must be there, plugged in and free.
    Opening openSession(const void* token, Handle& handle) {
        Device* device = findDevice(handle.deviceId);
        if (!device || !device->model.plugged()) return Opening::DeviceGone;
        if (!device->model.open(token)) return Opening::Taken;
        handle.open = true;
        return Opening::Opened;
    }
    // Closing a session the device already ended (unplugged, removed) succeeds too.
    void endSession(const void* token, Handle& handle) {
        if (Device* device = findDevice(handle.deviceId)) device->model.close(token);
        handle.open = false;
    }
    SessionView session(const void* token) {
        Handle* handle = findHandle(token);
        if (!handle) return {Session::NoHandle, nullptr, nullptr};
        if (!handle->open) return {Session::Closed, handle, nullptr};
        Device* device = findDevice(handle->deviceId);
        if (!device || !device->model.isOpenBy(token)) return {Session::Lost, handle, nullptr};
        return {Session::Live, handle, device};
    }

    // controlDevice with the make's Device.
    template <class Change>
    bool changeDevice(const std::string& id, Change&& change) {
        return controlDevice(id, [&](VirtualDevice&) { return change(*findDevice(id)); });
    }

  private:
    VirtualDevice* findModel(const std::string& id) override {
        Device* device = findDevice(id);
        return device ? &device->model : nullptr;
    }

    bool admit(DeviceDescription description, std::string& error) override {
        std::optional<DeviceState> state = accept(description, error);
        if (!state) return false;
        if (findDevice(description.id)) {
            error = "id already present: " + description.id;
            return false;
        }
        m_devices.push_back(Device{VirtualDevice(std::move(description)), std::move(*state)});
        return true;
    }

    void eraseDevice(const std::string& id) override {
        m_devices.erase(
            std::remove_if(m_devices.begin(), m_devices.end(),
                           [&](const Device& device) { return device.model.id() == id; }),
            m_devices.end());
    }

    void clearState() override {
        m_devices.clear();
        m_handles.clear();
        resetMake();
    }

    std::vector<Device> m_devices;
    HandleRegistry<Handle> m_handles;
};

// The one instance of a make's simulator, made at its first use, with the rig of
// TELVARRA_SIM_RIG. Never destroyed, as a vendor SDK's state outlives its callers: a host that
// exits without releasing shuts its drivers down from exit handlers that run after this
// library's own.
template <class Simulator>
Simulator& residentSimulator() {
    static Simulator& instance = []() -> Simulator& {
        Simulator& made = *new Simulator();
        made.loadRigFromEnvironment();
        return made;
    }();
    return instance;
}

}  // namespace telvarra::sim

#endif
