#include "Session.h"

#include <cstdint>
#include <cstring>
#include <memory>

#include "CliError.h"
#include "Terminal.h"

namespace telvarra::cli {

namespace {

// One level above the highest: the library then writes no line at all.
constexpr auto kLogSilent = static_cast<LogLevel>(static_cast<std::int32_t>(LogLevel::Error) + 1);

LogLevel logLevelFor(int verbosity) {
    if (verbosity <= 0) return kLogSilent;
    return verbosity == 1 ? LogLevel::Info : LogLevel::Debug;
}

std::string joinNames(const std::vector<const Make*>& makes) {
    std::string text;
    for (const Make* make : makes) text += (text.empty() ? "" : ", ") + std::string(make->name);
    return text;
}

}  // namespace

std::string recordText(const char (&text)[RUVO_TEXT_SIZE]) {
    const void* end = std::memchr(text, '\0', RUVO_TEXT_SIZE);
    return std::string(text, end ? static_cast<const char*>(end) - text : RUVO_TEXT_SIZE);
}

std::string describe(MakeState state) {
    switch (state) {
        case MakeState::Ready:
            return "ready";
        case MakeState::NoDriver:
            return "no driver in this build";
        case MakeState::NotStarted:
            return "its SDK could not be loaded or started";
    }
    return "";
}

Session::Session(int verbosity) {
    // Before the facade exists: building it already logs.
    CameraLogger::getInstance().setLogLevel(logLevelFor(verbosity));
    m_facade = CameraPublicInterface::getInstance();
}

Session::~Session() {
    if (m_open) m_facade->closeCamera(m_openId.c_str());
    CameraPublicInterface::releaseInstance();
}

const std::vector<MakeStatus>& Session::startMakes(Ruvo_CameraType only) {
    m_makes.clear();
    for (const Make& make : kMakes) {
        if (only != RUVO_CAMERA_ANY && make.type != only) continue;
        MakeState state = MakeState::Ready;
        if (!CameraFactory::getInstance().getDriver(make.type)) {
            state = MakeState::NoDriver;
        } else if (!m_facade->initialize(make.type)) {
            state = MakeState::NotStarted;
        }
        m_makes.push_back({&make, state});
    }
    return m_makes;
}

std::vector<DeviceInfo> Session::cameras(Ruvo_CameraType type) {
    // 409 KiB: not for the stack.
    auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
    list->count = 0;
    bool listed = false;
    {
        const StandardOutputSilenced quiet;
        listed = m_facade->getAvailableCamerasByType(type, list.get());
    }
    if (!listed) return {};
    const uint32_t count = list->count < RUVO_MAX_DEVICES ? list->count : RUVO_MAX_DEVICES;
    return std::vector<DeviceInfo>(list->devices, list->devices + count);
}

DeviceInfo Session::open(const std::string& id, Ruvo_CameraType only) {
    startMakes(only);
    std::vector<const Make*> unavailable;
    std::vector<const Make*> seenBy;
    DeviceInfo found{};
    for (const MakeStatus& status : m_makes) {
        if (status.state != MakeState::Ready) {
            unavailable.push_back(status.make);
            continue;
        }
        for (const DeviceInfo& device : cameras(status.make->type)) {
            if (recordText(device.cameraId) != id) continue;
            seenBy.push_back(status.make);
            found = device;
            break;
        }
    }

    if (seenBy.empty()) {
        if (unavailable.size() == m_makes.size()) {
            std::string reasons;
            for (const MakeStatus& status : m_makes) {
                reasons += std::string("\n  ") + status.make->name + ": " + describe(status.state);
            }
            throw CliError(kExitMakeUnavailable,
                           (only == RUVO_CAMERA_ANY ? std::string("no camera make is available:")
                                                    : std::string("the make is not available:")) +
                               reasons);
        }
        std::string message = "no camera with identifier '" + id + "'";
        if (!unavailable.empty()) message += " (not searched: " + joinNames(unavailable) + ")";
        throw CliError(kExitNoSuchCamera, message + "; 'telvarra list' shows the cameras");
    }
    if (seenBy.size() > 1) {
        throw CliError(kExitNoSuchCamera, "identifier '" + id + "' is used by cameras of " +
                                              joinNames(seenBy) + ": name the make with --type");
    }

    bool opened = false;
    {
        const StandardOutputSilenced quiet;  // a Canon body is found by listing them again
        opened = m_facade->openCamera(id.c_str(), seenBy.front()->type);
    }
    if (!opened) {
        throw CliError(kExitFailed,
                       "camera '" + id + "' could not be opened (is another program using it?)");
    }
    m_openId = id;
    m_open = true;
    if (seenBy.front()->rgbOnlyWhenAsked &&
        m_facade->getImageFormat(id.c_str()) == RUVO_FORMAT_RGB8)
        m_facade->setImageFormat(id.c_str(), RUVO_FORMAT_RGB8);
    return found;
}

}  // namespace telvarra::cli
