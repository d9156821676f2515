// Windows only: conversions between the thread's ANSI code page and UTF-16 for file names.
#ifndef TELVARRA_PLATFORM_WINDOWSTEXT_H
#define TELVARRA_PLATFORM_WINDOWSTEXT_H

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <string>

namespace telvarra::platform {

inline std::wstring toWide(const std::string& text) {
    if (text.empty()) return {};
    const int length = MultiByteToWideChar(CP_THREAD_ACP, 0, text.data(),
                                           static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_THREAD_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                        length);
    return wide;
}

inline std::string toNarrow(const std::wstring& wide) {
    if (wide.empty()) return {};
    const int length = WideCharToMultiByte(
        CP_THREAD_ACP, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<size_t>(length), '\0');
    WideCharToMultiByte(CP_THREAD_ACP, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                        length, nullptr, nullptr);
    return text;
}

// The system's own words for an error code, without the line break it ends them with.
inline std::string systemMessage(DWORD error) {
    wchar_t* text = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, error, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring message(text ? text : L"", length);
    if (text) LocalFree(text);
    while (!message.empty() && (message.back() == L'\n' || message.back() == L'\r' ||
                                message.back() == L' ' || message.back() == L'.'))
        message.pop_back();
    return message.empty() ? "no description" : toNarrow(message);
}

}  // namespace telvarra::platform

#endif
#endif
