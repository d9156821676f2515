// Heap allocations counted while a benchmark asks for them, through the C allocator every
// `operator new` ends in. Each allocation is charged to the SDK (simulator) when a frame of its
// call stack lies in one of the SDK libraries, and to Telvarra otherwise: the simulators count
// their calls and lend fresh buffers, which a real SDK does in its own way.
#ifndef TELVARRA_BENCH_ALLOCATIONCOUNTER_H
#define TELVARRA_BENCH_ALLOCATIONCOUNTER_H

#include <cstdint>

namespace telvarra::bench {

struct Allocations {
    std::int64_t ours = 0;
    std::int64_t sdk = 0;
};

// Notes the address ranges of the loaded libraries whose file name starts with one of the SDK
// simulators' names; call it once they are loaded. With TELVARRA_BENCH_SHOW_ALLOCATIONS set,
// the call stack of each allocation charged to Telvarra goes to the standard error.
void findSdkLibraries();

// Counts from now until the result is taken.
class AllocationCount {
  public:
    AllocationCount();
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;
    Allocations taken() const;

  private:
    Allocations m_start;
};

}  // namespace telvarra::bench

#endif
