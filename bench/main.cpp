// The frame path's benchmark: the frame routines against memcpy, libyuv and OpenCV, then
// getCurrentFrame through the facade on simulator frames; after the runs, both as tables of
// ratios. Google Benchmark's own options apply (--benchmark_filter, --benchmark_repetitions...).
#include <iostream>

#include "Results.h"
#include "api/FrameKernels.h"
#include "telvarra/CameraLogger.h"

int main(int argc, char** argv) {
    using namespace telvarra::bench;
    // One level above the highest: the library writes no line while it is timed.
    CameraLogger::getInstance().setLogLevel(
        static_cast<LogLevel>(static_cast<int>(LogLevel::Error) + 1));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    registerRoutineBenchmarks();
    registerFacadeBenchmarks();
    CollectingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::cout << "\nFrame routines (" << telvarra::frameKernels().name
              << " kernels): time per frame as a multiple of memcpy's (and of libyuv's and "
                 "OpenCV's)\n\n";
    printRoutineTable();
    std::cout << "\ngetCurrentFrame through the facade on a prepared simulator frame\n\n";
    printFacadeTable();
}
