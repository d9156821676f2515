#include "support/TempDir.h"

#include <fstream>
#include <random>
#include <sstream>

namespace telvarra::test {

TempDir::TempDir() {
    std::random_device entropy;
    std::mt19937_64 random(entropy());
    const auto base = std::filesystem::temp_directory_path();
    do {
        m_path = base / ("telvarra-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(m_path));
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::vector<std::string> readLines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream input(path, std::ios::binary);
    for (std::string line; std::getline(input, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

std::string readFile(const std::string& path) {
    std::ifstream input(path, std::ios::binary);
    std::ostringstream content;
    content << input.rdbuf();
    return content.str();
}

void writeFile(const std::string& path, const std::string& content) {
    std::ofstream output(path, std::ios::binary | std::ios::trunc);
    output << content;
}

}  // namespace telvarra::test
