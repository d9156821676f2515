// Time services: broken-down local time (thread-safe) and a millisecond sleep.
#ifndef TELVARRA_PLATFORM_CLOCK_H
#define TELVARRA_PLATFORM_CLOCK_H

#include <cstdint>
#include <ctime>

namespace telvarra::platform {

std::tm localTime(std::time_t time);
void sleepMilliseconds(std::uint32_t milliseconds);

}  // namespace telvarra::platform

#endif
