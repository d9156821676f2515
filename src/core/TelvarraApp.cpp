// Load-time start-up of the library: attach the log beside the host program (not beside this
// library) before any caller can log. A global object's constructor runs when the module is
// loaded on every platform.
#include <string>

#include "platform/Paths.h"
#include "telvarra/CameraLogger.h"

namespace {

class CTelvarraApp {
  public:
    CTelvarraApp() { InitInstance(); }

    bool InitInstance() {
        CameraLogger::getInstance().setLogFile(telvarra::platform::executableDirectory() +
                                               "CameraLog.txt");
        return true;
    }
};

const CTelvarraApp theApp;

}  // namespace
