// Compile-time facts about the target platform, for code outside this folder that must declare
// things differently per platform (vendor record layouts) without testing macros itself.
#ifndef TELVARRA_PLATFORM_PLATFORM_H
#define TELVARRA_PLATFORM_PLATFORM_H

namespace telvarra::platform {

#ifdef _WIN32
constexpr bool kIsWindows = true;
#else
constexpr bool kIsWindows = false;
#endif

}  // namespace telvarra::platform

#endif
