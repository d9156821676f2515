// Frame routines against memcpy of the same frame: what mirroring, turning and zooming cost per
// frame, at the sizes of the default rig's cameras.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "api/DigitalZoom.h"
#include "api/FrameRoutines.h"

namespace {

struct Frame {
    int32_t width;
    int32_t height;
    int32_t channels;
    std::vector<unsigned char> bytes;
    Frame(const benchmark::State& state)
        : width(static_cast<int32_t>(state.range(0))),
          height(static_cast<int32_t>(state.range(1))),
          channels(static_cast<int32_t>(state.range(2))),
          bytes(static_cast<std::size_t>(width) * height * channels) {
        for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i);
    }
    int32_t size() const { return static_cast<int32_t>(bytes.size()); }
};

void report(benchmark::State& state, const Frame& frame) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * frame.size());
}

void Memcpy(benchmark::State& state) {
    Frame frame(state);
    std::vector<unsigned char> target(frame.bytes.size());
    for (auto _ : state) {
        std::memcpy(target.data(), frame.bytes.data(), frame.bytes.size());
        benchmark::ClobberMemory();
    }
    report(state, frame);
}

void MirrorHorizontal(benchmark::State& state) {
    Frame frame(state);
    unsigned char* data = frame.bytes.data();
    for (auto _ : state) {
        telvarra::mirrorHorizontal(frame.width, frame.height, data, frame.size(), frame.channels);
        benchmark::ClobberMemory();
    }
    report(state, frame);
}

void MirrorVertical(benchmark::State& state) {
    Frame frame(state);
    unsigned char* data = frame.bytes.data();
    for (auto _ : state) {
        telvarra::mirrorVertical(frame.width, frame.height, data, frame.size(), frame.channels);
        benchmark::ClobberMemory();
    }
    report(state, frame);
}

template <int Turns>
void Rotate(benchmark::State& state) {
    Frame frame(state);
    unsigned char* data = frame.bytes.data();
    for (auto _ : state) {
        telvarra::rotateQuarterTurns(frame.width, frame.height, data, frame.size(), frame.channels,
                                     Turns);
        benchmark::ClobberMemory();
    }
    report(state, frame);
}

void ZoomFirstStep(benchmark::State& state) {
    Frame frame(state);
    const auto window = telvarra::zoomWindow(1, frame.width, frame.height);
    for (auto _ : state) {
        telvarra::cropToWindow(frame.bytes.data(), frame.width, frame.channels, *window);
        benchmark::ClobberMemory();
    }
    report(state, frame);
}

// 2448 x 2048 colour (as delivered after demosaicing) and 1280 x 1024 mono.
void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Args({2448, 2048, 3})->Args({1280, 1024, 1})->Unit(benchmark::kMillisecond);
}

BENCHMARK(Memcpy)->Apply(Sizes);
BENCHMARK(MirrorHorizontal)->Apply(Sizes);
BENCHMARK(MirrorVertical)->Apply(Sizes);
BENCHMARK_TEMPLATE(Rotate, 1)->Apply(Sizes);
BENCHMARK_TEMPLATE(Rotate, 2)->Apply(Sizes);
BENCHMARK_TEMPLATE(Rotate, 3)->Apply(Sizes);
BENCHMARK(ZoomFirstStep)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
