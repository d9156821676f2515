// Makes a fresh temporary directory the process's current directory for the life of the
// object (configuration files are written relative to it).
#ifndef TELVARRA_TESTS_CURRENTDIRECTORY_H
#define TELVARRA_TESTS_CURRENTDIRECTORY_H

#include <filesystem>

#include "support/TempDir.h"

namespace telvarra::test {

class InTempDirectory {
  public:
    InTempDirectory() : m_previous(std::filesystem::current_path()) {
        std::filesystem::current_path(m_directory.path());
    }
    ~InTempDirectory() { std::filesystem::current_path(m_previous); }
    InTempDirectory(const InTempDirectory&) = delete;
    InTempDirectory& operator=(const InTempDirectory&) = delete;

    std::string file(const std::string& name) const { return m_directory.file(name); }

  private:
    TempDir m_directory;
    std::filesystem::path m_previous;
};

}  // namespace telvarra::test

#endif
