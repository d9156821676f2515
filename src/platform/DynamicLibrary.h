// A run-time loaded shared library. Opening by a bare file name lets the operating system's
// search order decide where it is found; a name holding a directory opens exactly that file.
#ifndef TELVARRA_PLATFORM_DYNAMICLIBRARY_H
#define TELVARRA_PLATFORM_DYNAMICLIBRARY_H

#include <string>

namespace telvarra::platform {

class DynamicLibrary {
  public:
    DynamicLibrary() = default;
    ~DynamicLibrary();
    DynamicLibrary(DynamicLibrary&& other) noexcept;
    DynamicLibrary& operator=(DynamicLibrary&& other) noexcept;
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;

    // Closes whatever was open, then loads `fileName`. Missing dependencies fail here, not at the
    // first call, and no error dialog is shown. On failure lastError() says why.
    bool open(const std::string& fileName);
    void close();
    bool isOpen() const { return m_handle != nullptr; }
    // Null when the library is not open or lacks the name.
    void* symbol(const char* name) const;
    const std::string& lastError() const { return m_lastError; }
    // The file the system loaded, whole: where a bare name was found. Empty when not open.
    std::string path() const;

  private:
    void* m_handle = nullptr;
    std::string m_lastError;
};

// The platform's file name of a shared library: "<base>.dll" on Windows, "lib<base>.so" elsewhere.
std::string sharedLibraryFileName(const std::string& baseName);
// One of two file names: a vendor's Windows and Linux libraries often differ beyond that rule.
std::string platformFileName(const std::string& windowsName, const std::string& unixName);

}  // namespace telvarra::platform

#endif
