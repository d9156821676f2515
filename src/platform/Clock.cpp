#include "platform/Clock.h"

#ifdef _WIN32
#include "platform/WindowsText.h"
#else
#include <chrono>
#include <thread>
#endif

namespace telvarra::platform {

#ifdef _WIN32

std::tm localTime(std::time_t time) {
    std::tm result{};
    localtime_s(&result, &time);
    return result;
}

void sleepMilliseconds(std::uint32_t milliseconds) { Sleep(milliseconds); }

#else

std::tm localTime(std::time_t time) {
    std::tm result{};
    localtime_r(&time, &result);
    return result;
}

void sleepMilliseconds(std::uint32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

#endif

}  // namespace telvarra::platform
