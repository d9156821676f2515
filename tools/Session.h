// The library for the length of one command: the facade, the makes it could start, and the one
// camera the command opened. Leaving the session closes the camera and releases the facade, on
// every path out of a command.
#ifndef TELVARRA_TOOLS_SESSION_H
#define TELVARRA_TOOLS_SESSION_H

#include <string>
#include <vector>

#include "Makes.h"
#include "telvarra/Telvarra.h"

namespace telvarra::cli {

enum class MakeState { Ready, NoDriver, NotStarted };

struct MakeStatus {
    const Make* make;
    MakeState state;
};

// A text field of a device record; a text as long as the field has no terminator.
std::string recordText(const char (&text)[RUVO_TEXT_SIZE]);

// Why a make is not ready, in words.
std::string describe(MakeState state);

class Session {
  public:
    // Verbosity 0 keeps the library's log quiet (the program reports errors itself); 1 shows its
    // info lines, 2 its debug lines.
    explicit Session(int verbosity);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Starts every make, or only `only` when it names one, in key order.
    const std::vector<MakeStatus>& startMakes(Ruvo_CameraType only);
    // The cameras of a make that started.
    std::vector<DeviceInfo> cameras(Ruvo_CameraType type);
    // Starts the makes, finds `id` among their cameras and opens it. Throws CliError when no make
    // is ready, the identifier is unknown or ambiguous, or the camera will not open.
    DeviceInfo open(const std::string& id, Ruvo_CameraType only);

    CameraPublicInterface& library() { return *m_facade; }
    // The opened camera's identifier, as every per-camera call takes it.
    const char* id() const { return m_openId.c_str(); }

  private:
    CameraPublicInterface* m_facade;
    std::vector<MakeStatus> m_makes;
    std::string m_openId;
    bool m_open = false;
};

}  // namespace telvarra::cli

#endif
