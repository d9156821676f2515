// Fixed-size text fields of vendor records: padded with NULs, and without a terminator when the
// text fills the whole field, so they are read with a length bound.
#ifndef TELVARRA_SIM_COMMON_RECORDFIELDS_H
#define TELVARRA_SIM_COMMON_RECORDFIELDS_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

namespace telvarra::sim {

// Cuts a longer text at the field size: makes check their limits before.
template <class Char, std::size_t N>
void writeField(Char (&field)[N], const std::string& text) {
    std::memset(field, 0, N);
    std::memcpy(field, text.data(), std::min(N, text.size()));
}

template <class Char, std::size_t N>
std::string readField(const Char (&field)[N]) {
    const void* end = std::memchr(field, 0, N);
    const auto length = end ? static_cast<std::size_t>(static_cast<const Char*>(end) - field) : N;
    return std::string(reinterpret_cast<const char*>(field), length);
}

}  // namespace telvarra::sim

#endif
