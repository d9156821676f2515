#include "Results.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace telvarra::bench {

Results& Results::instance() {
    static Results results;
    return results;
}

void Results::recordTime(const std::string& benchmark, double milliseconds, bool best) {
    if (!best && m_isBest[benchmark]) return;
    m_times[benchmark] = milliseconds;
    m_isBest[benchmark] = best;
}

void repeatForTheBest(benchmark::internal::Benchmark* benchmark) {
    benchmark->Unit(benchmark::kMillisecond)
        ->MinTime(0.1)
        ->Repetitions(5)
        ->ReportAggregatesOnly(true)
        ->ComputeStatistics("min", [](const std::vector<double>& times) {
            return *std::min_element(times.begin(), times.end());
        });
}

std::optional<double> Results::time(const std::string& benchmark) const {
    const auto found = m_times.find(benchmark);
    if (found == m_times.end()) return std::nullopt;
    return found->second;
}

void Results::recordAllocations(const std::string& benchmark, const Allocations& perFrame) {
    m_allocations[benchmark] = perFrame;
}

std::optional<Allocations> Results::allocations(const std::string& benchmark) const {
    const auto found = m_allocations.find(benchmark);
    if (found == m_allocations.end()) return std::nullopt;
    return found->second;
}

void CollectingReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.error_occurred) continue;
        const bool best = run.run_type == Run::RT_Aggregate && run.aggregate_name == "min";
        if (run.run_type == Run::RT_Aggregate && !best) continue;
        // Processor time: on a shared machine it leaves out the time other work holds the
        // processor, which wall-clock time would count.
        const double milliseconds =
            run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e3;
        Results::instance().recordTime(run.run_name.function_name, milliseconds, best);
    }
    ConsoleReporter::ReportRuns(runs);
}

std::string ratioText(std::optional<double> numerator, std::optional<double> denominator) {
    if (!numerator || !denominator || *denominator <= 0) return "—";
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", *numerator / *denominator);
    return text;
}

void printTable(const std::vector<std::vector<std::string>>& rows) {
    // Width in characters, not bytes: the dash of an empty cell is three bytes of UTF-8.
    const auto width = [](const std::string& cell) {
        return static_cast<std::size_t>(std::count_if(cell.begin(), cell.end(), [](char c) {
            return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
        }));
    };
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], width(row[i]));
    }
    for (std::size_t r = 0; r < rows.size(); ++r) {
        std::string line = "|";
        for (std::size_t i = 0; i < rows[r].size(); ++i)
            line += " " + rows[r][i] + std::string(widths[i] - width(rows[r][i]), ' ') + " |";
        std::cout << line << '\n';
        if (r == 0) {
            std::string rule = "|";
            for (std::size_t w : widths) rule += std::string(w + 2, '-') + "|";
            std::cout << rule << '\n';
        }
    }
    std::cout << std::flush;
}

}  // namespace telvarra::bench
