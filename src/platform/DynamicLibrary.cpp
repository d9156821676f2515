#include "platform/DynamicLibrary.h"

#include <utility>

#ifdef _WIN32
#include "platform/WindowsText.h"
#else
#include <dlfcn.h>
#include <link.h>
#endif

namespace telvarra::platform {

DynamicLibrary::~DynamicLibrary() { close(); }

DynamicLibrary::DynamicLibrary(DynamicLibrary&& other) noexcept
    : m_handle(std::exchange(other.m_handle, nullptr)), m_lastError(std::move(other.m_lastError)) {}

DynamicLibrary& DynamicLibrary::operator=(DynamicLibrary&& other) noexcept {
    if (this != &other) {
        close();
        m_handle = std::exchange(other.m_handle, nullptr);
        m_lastError = std::move(other.m_lastError);
    }
    return *this;
}

#ifdef _WIN32

bool DynamicLibrary::open(const std::string& fileName) {
    close();
    const std::wstring wideName = toWide(fileName);
    DWORD previousMode = 0;
    // No "missing DLL" dialog in the host's face: the caller gets a false result instead.
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &previousMode);
    HMODULE module = LoadLibraryW(wideName.c_str());
    const DWORD error = GetLastError();
    SetThreadErrorMode(previousMode, nullptr);
    m_handle = reinterpret_cast<void*>(module);
    m_lastError = module ? std::string() : "LoadLibraryW failed with error " +
                                               std::to_string(error) + ": " + systemMessage(error);
    return module != nullptr;
}

std::string DynamicLibrary::path() const {
    if (!m_handle) return {};
    std::wstring name(32768, L'\0');
    const DWORD length = GetModuleFileNameW(reinterpret_cast<HMODULE>(m_handle), name.data(),
                                            static_cast<DWORD>(name.size()));
    if (length == 0 || length >= name.size()) return {};
    name.resize(length);
    return toNarrow(name);
}

void DynamicLibrary::close() {
    if (m_handle) FreeLibrary(reinterpret_cast<HMODULE>(m_handle));
    m_handle = nullptr;
}

void* DynamicLibrary::symbol(const char* name) const {
    if (!m_handle || !name) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(reinterpret_cast<HMODULE>(m_handle), name));
}

std::string sharedLibraryFileName(const std::string& baseName) { return baseName + ".dll"; }

std::string platformFileName(const std::string& windowsName, const std::string&) {
    return windowsName;
}

#else

bool DynamicLibrary::open(const std::string& fileName) {
    close();
    m_handle = dlopen(fileName.c_str(), RTLD_NOW | RTLD_LOCAL);
    const char* error = m_handle ? nullptr : dlerror();
    m_lastError = error ? error : "";
    return m_handle != nullptr;
}

void DynamicLibrary::close() {
    if (m_handle) dlclose(m_handle);
    m_handle = nullptr;
}

void* DynamicLibrary::symbol(const char* name) const {
    if (!m_handle || !name) return nullptr;
    return dlsym(m_handle, name);
}

std::string DynamicLibrary::path() const {
    link_map* map = nullptr;
    if (!m_handle || dlinfo(m_handle, RTLD_DI_LINKMAP, &map) != 0 || !map || !map->l_name)
        return {};
    return map->l_name;
}

std::string sharedLibraryFileName(const std::string& baseName) { return "lib" + baseName + ".so"; }

std::string platformFileName(const std::string&, const std::string& unixName) { return unixName; }

#endif

}  // namespace telvarra::platform
