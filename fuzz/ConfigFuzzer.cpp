// The configuration reader on any bytes: nothing crashes or reads out of bounds, every entry is
// one a single line could give, and what is written back reads back the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "core/ConfigText.h"

namespace {

// An assertion that stays in every build: the fuzzer reports the abort with its input.
void require(bool condition) {
    if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream input(std::string(reinterpret_cast<const char*>(data), size));
    telvarra::ConfigValues values;
    telvarra::readConfigText(input, values);
    for (const auto& [key, value] : values) {
        require(key.find_first_of("=\n") == std::string::npos);
        require(key.empty() || key.front() != '#');
        require(value.find('\n') == std::string::npos);
    }

    std::ostringstream written;
    telvarra::writeConfigText(written, values);
    std::istringstream again(written.str());
    telvarra::ConfigValues reread;
    telvarra::readConfigText(again, reread);
    require(reread == values);
    return 0;
}
