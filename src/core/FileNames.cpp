#include "core/FileNames.h"

#include <cstring>
#include <filesystem>
#include <system_error>

namespace telvarra {

namespace {

// Separators and a drive's or stream's colon could leave the folder; control characters and the
// rest of what Windows refuses in a name would make the open fail, as could bytes beyond ASCII,
// which Windows reads in the code page of the day; '%' is the escape itself.
bool keptAsItIs(unsigned char c) {
    static constexpr char kEncoded[] = "%/\\:*?\"<>|";
    return c >= 0x20 && c < 0x7F && std::strchr(kEncoded, c) == nullptr;
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
