#include "core/FileNames.h"

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

}  // namespace telvarra
