#include "AllocationCounter.h"

#include <execinfo.h>
#include <link.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <utility>

// glibc's own entry points, which the replacements below hand every request to.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace telvarra::bench {

namespace {

constexpr const char* kSdkLibraries[] = {"libMvCameraControl.so", "libgxiapi.so", "libdvp.so",
                                         "libMVSDK.so", "libEDSDK.so"};
constexpr int kMaxRanges = 64;

std::pair<std::uintptr_t, std::uintptr_t> g_sdkRanges[kMaxRanges];
std::atomic<int> g_sdkRangeCount{0};
std::atomic<int> g_counting{0};
std::atomic<std::int64_t> g_ours{0};
std::atomic<std::int64_t> g_sdk{0};
thread_local bool t_inside = false;
bool g_showOurs = false;

bool inSdk(const void* address) {
    const auto at = reinterpret_cast<std::uintptr_t>(address);
    const int count = g_sdkRangeCount.load();
    for (int i = 0; i < count; ++i)
        if (at >= g_sdkRanges[i].first && at < g_sdkRanges[i].second) return true;
    return false;
}

void note() {
    if (g_counting.load(std::memory_order_relaxed) == 0 || t_inside) return;
    t_inside = true;  // backtrace may allocate the first time
    void* frames[96];
    const int depth = backtrace(frames, 96);
    bool sdk = false;
    for (int i = 0; i < depth && !sdk; ++i) sdk = inSdk(frames[i]);
    ++(sdk ? g_sdk : g_ours);
    if (!sdk && g_showOurs) backtrace_symbols_fd(frames, depth, 2);
    t_inside = false;
}

int addRanges(dl_phdr_info* info, std::size_t, void*) {
    const char* path = info->dlpi_name ? info->dlpi_name : "";
    const char* slash = std::strrchr(path, '/');
    const char* name = slash ? slash + 1 : path;
    bool sdk = false;
    for (const char* library : kSdkLibraries)
        sdk = sdk || std::strncmp(name, library, std::strlen(library)) == 0;
    if (!sdk) return 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = info->dlpi_phdr[i];
        const int slot = g_sdkRangeCount.load();
        if (segment.p_type != PT_LOAD || slot == kMaxRanges) continue;
        const std::uintptr_t begin = info->dlpi_addr + segment.p_vaddr;
        g_sdkRanges[slot] = {begin, begin + segment.p_memsz};
        g_sdkRangeCount.store(slot + 1);
    }
    return 0;
}

}  // namespace

void findSdkLibraries() {
    g_showOurs = std::getenv("TELVARRA_BENCH_SHOW_ALLOCATIONS") != nullptr;
    g_sdkRangeCount = 0;
    dl_iterate_phdr(addRanges, nullptr);
    void* warmUp[4];
    backtrace(warmUp, 4);  // loads the unwinder now, not inside a count
}

AllocationCount::AllocationCount() {
    m_start = {g_ours.load(), g_sdk.load()};
    ++g_counting;
}

AllocationCount::~AllocationCount() { --g_counting; }

Allocations AllocationCount::taken() const {
    return {g_ours.load() - m_start.ours, g_sdk.load() - m_start.sdk};
}

}  // namespace telvarra::bench

extern "C" {

void* malloc(std::size_t size) {
    telvarra::bench::note();
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    telvarra::bench::note();
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
    telvarra::bench::note();
    return __libc_realloc(block, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    telvarra::bench::note();
    return __libc_memalign(alignment, size);
}

}  // extern "C"
