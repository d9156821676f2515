// A fresh directory under the system's temporary folder, removed with everything in it when the
// object goes.
#ifndef TELVARRA_TESTS_TEMPDIR_H
#define TELVARRA_TESTS_TEMPDIR_H

#include <filesystem>
#include <string>
#include <vector>

namespace telvarra::test {

class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::string file(const std::string& name) const { return (m_path / name).string(); }

  private:
    std::filesystem::path m_path;
};

std::vector<std::string> readLines(const std::string& path);
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);

}  // namespace telvarra::test

#endif
