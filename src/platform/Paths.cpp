#include "platform/Paths.h"

#ifdef _WIN32
#include "platform/WindowsText.h"
#else
#include <dlfcn.h>
#include <unistd.h>

#include <vector>
#endif

namespace telvarra::platform {

namespace {

// The path up to and with its last separator; empty without one.
std::string directoryPart(const std::string& path, const char* separators) {
    const std::string::size_type cut = path.find_last_of(separators);
    return cut == std::string::npos ? std::string() : path.substr(0, cut + 1);
}

}  // namespace

#ifdef _WIN32

namespace {

std::string directoryOfModule(HMODULE module) {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return {};
    // Windows takes either separator.
    return directoryPart(toNarrow(std::wstring(path, length)), "\\/");
}

}  // namespace

std::string executableDirectory() { return directoryOfModule(nullptr); }

std::string moduleDirectory() {
    HMODULE module = nullptr;
    const auto flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&moduleDirectory), &module)) return {};
    return directoryOfModule(module);
}

#else

std::string executableDirectory() {
    std::vector<char> path(4096);
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0 || static_cast<size_t>(length) >= path.size()) return {};
    return directoryPart(std::string(path.data(), static_cast<size_t>(length)), "/");
}

std::string moduleDirectory() {
    Dl_info info{};
    if (!dladdr(reinterpret_cast<void*>(&moduleDirectory), &info) || !info.dli_fname) return {};
    const std::string name = info.dli_fname;
    // A program linking this code is named as it was started, perhaps relative to a folder it
    // has left since: its own path is asked for instead.
    if (name.empty() || name.front() != '/') {
        const std::string program = executableDirectory();
        const std::string fileName = name.substr(name.find_last_of('/') + 1);
        if (!program.empty() && access((program + fileName).c_str(), F_OK) == 0) return program;
    }
    return directoryPart(name, "/");
}

#endif

}  // namespace telvarra::platform
