#include "sim/common/CallLog.h"

#include <utility>

namespace telvarra::sim {

void FaultPlan::failOnCall(const std::string& function, int status, std::uint32_t nth) {
    if (nth > 0) m_planned.push_back({function, status, nth});
}

void FaultPlan::failAlways(const std::string& function, int status) {
    m_planned.push_back({function, status, 0});
}

void FaultPlan::clear() { m_planned.clear(); }

std::optional<int> FaultPlan::check(const std::string& function) {
    std::optional<int> due;
    // Every one-shot plan for this function counts the call, even when an earlier one fires.
    for (auto planned = m_planned.begin(); planned != m_planned.end();) {
        if (planned->function != function) {
            ++planned;
        } else if (planned->callsLeft == 0) {
            if (!due) due = planned->status;
            ++planned;
        } else if (--planned->callsLeft == 0) {
            if (!due) due = planned->status;
            planned = m_planned.erase(planned);
        } else {
            ++planned;
        }
    }
    return due;
}

void CallLog::record(const std::string& function, std::string arguments) {
    Entry& entry = m_entries[function];
    ++entry.count;
    entry.lastArguments = std::move(arguments);
}

std::uint32_t CallLog::count(const std::string& function) const {
    const auto found = m_entries.find(function);
    return found == m_entries.end() ? 0 : found->second.count;
}

std::optional<std::string> CallLog::lastArguments(const std::string& function) const {
    const auto found = m_entries.find(function);
    if (found == m_entries.end()) return std::nullopt;
    return found->second.lastArguments;
}

void CallLog::clear() { m_entries.clear(); }

}  // namespace telvarra::sim
