#include "core/FileNames.h"

#include <filesystem>
#include <system_error>

namespace telvarra {

namespace {

bool keptAsItIs(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_' || c == '.';
}

}  // namespace

std::string fileNamePart(const std::string& text) {
    const bool onlyDots = !text.empty() && text.find_first_not_of('.') == std::string::npos;
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string part;
    part.reserve(text.size());
    for (const unsigned char c : text) {
        if (keptAsItIs(c) && !onlyDots) {
            part += static_cast<char>(c);
        } else {
            part += '%';
            part += kHex[c >> 4];
            part += kHex[c & 0xF];
        }
    }
    return part;
}

bool notAPlainFile(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::symlink_status(path, error);
    namespace fs = std::filesystem;
    return !error && (fs::is_symlink(status) || fs::is_fifo(status) || fs::is_block_file(status) ||
                      fs::is_character_file(status) || fs::is_socket(status));
}

}  // namespace telvarra
