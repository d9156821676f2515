// What tests ask a simulator about the calls it received (how often each function was called and
// with which arguments last), and the faults they plan for it (fail function F with status S on
// its Nth call from now, or on every call until cleared).
#ifndef TELVARRA_SIM_COMMON_CALLLOG_H
#define TELVARRA_SIM_COMMON_CALLLOG_H

#include <cstdint>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace telvarra::sim {

// A value recorded in hexadecimal (pixel types, layer masks).
struct Hex {
    std::int64_t value;
};

namespace detail {
inline void putArgument(std::ostream& out, const char* text) { out << (text ? text : "(null)"); }
inline void putArgument(std::ostream& out, const Hex& hex) {
    out << "0x" << std::hex << hex.value << std::dec;
}
template <class T>
void putArgument(std::ostream& out, const T& value) {
    out << value;
}
}  // namespace detail

// The text a call is recorded with: values only, ", "-separated; numbers in decimal (floats with
// 9 significant digits), texts as they came. Simulators leave pointers out.
template <class... T>
std::string callArguments(const T&... values) {
    std::ostringstream out;
    out.precision(9);
    const char* separator = "";
    ((out << separator, detail::putArgument(out, values), separator = ", "), ...);
    return out.str();
}

class FaultPlan {
  public:
    // The `nth` call of `function` from now fails with `status` (1: the next call), once.
    // An `nth` of 0 plans nothing.
    void failOnCall(const std::string& function, int status, std::uint32_t nth);
    // Every call of `function` from now fails with `status` until cleared.
    void failAlways(const std::string& function, int status);
    void clear();

    // Called once per call of `function`: the status it must fail with, if a fault is due.
    std::optional<int> check(const std::string& function);

  private:
    struct Planned {
        std::string function;
        int status;
        std::uint32_t callsLeft;  // 0: every call
    };
    std::vector<Planned> m_planned;
};

class CallLog {
  public:
    // Counts a call and keeps its arguments as text (the simulator's own rendering).
    void record(const std::string& function, std::string arguments);
    std::uint32_t count(const std::string& function) const;
    std::optional<std::string> lastArguments(const std::string& function) const;
    void clear();

  private:
    struct Entry {
        std::uint32_t count = 0;
        std::string lastArguments;
    };
    std::map<std::string, Entry> m_entries;
};

}  // namespace telvarra::sim

#endif
