// What the benchmarks measured, kept by name so that the tables printed after the run can set
// each time against memcpy and the other libraries of the same run.
#ifndef TELVARRA_BENCH_RESULTS_H
#define TELVARRA_BENCH_RESULTS_H

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "AllocationCounter.h"

namespace telvarra::bench {

class Results {
  public:
    static Results& instance();

    // Milliseconds per iteration: the best of the repetitions once it is known.
    void recordTime(const std::string& benchmark, double milliseconds, bool best);
    std::optional<double> time(const std::string& benchmark) const;
    // Allocations per frame in steady state.
    void recordAllocations(const std::string& benchmark, const Allocations& perFrame);
    std::optional<Allocations> allocations(const std::string& benchmark) const;

  private:
    std::map<std::string, double> m_times;
    std::map<std::string, bool> m_isBest;
    std::map<std::string, Allocations> m_allocations;
};

// Five repetitions of at least 0.1 s each, of which the tables take the fastest: other work on
// the machine only ever slows a repetition down, so the fastest is the closest to the routine's
// own cost.
void repeatForTheBest(benchmark::internal::Benchmark* benchmark);

// The console's report, and every run noted in Results.
class CollectingReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override;
};

// "1.23", or "—" when there is nothing to divide.
std::string ratioText(std::optional<double> numerator, std::optional<double> denominator);

// Rows of cells printed as a Markdown table, columns padded to their widest cell.
void printTable(const std::vector<std::vector<std::string>>& rows);

// The routine table's benchmarks (frame routines against memcpy, libyuv and OpenCV) and the
// frame path's (getCurrentFrame through the facade on simulator frames), and their tables.
void registerRoutineBenchmarks();
void printRoutineTable();
void registerFacadeBenchmarks();
void printFacadeTable();

}  // namespace telvarra::bench

#endif
