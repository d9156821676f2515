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

// Times `work` on one frame, over and over, and reports the frame's bytes per second.
template <class Work>
void onFrame(benchmark::State& state, Work work) {
    Frame frame(state);
    for (auto _ : state) {
        work(frame);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * frame.size());
}

void Memcpy(benchmark::State& state) {
    std::vector<unsigned char> target;
    onFrame(state, [&](Frame& frame) {
        target.resize(frame.bytes.size());
        std::memcpy(target.data(), frame.bytes.data(), frame.bytes.size());
    });
}

void MirrorHorizontal(benchmark::State& state) {
    onFrame(state, [](Frame& frame) {
        unsigned char* data = frame.bytes.data();
        telvarra::mirrorHorizontal(frame.width, frame.height, data, frame.size(), frame.channels);
    });
}

void MirrorVertical(benchmark::State& state) {
    onFrame(state, [](Frame& frame) {
        unsigned char* data = frame.bytes.data();
        telvarra::mirrorVertical(frame.width, frame.height, data, frame.size(), frame.channels);
    });
}

template <int Turns>
void Rotate(benchmark::State& state) {
    onFrame(state, [](Frame& frame) {
        unsigned char* data = frame.bytes.data();
        telvarra::rotateQuarterTurns(frame.width, frame.height, data, frame.size(), frame.channels,
                                     Turns);
    });
}

void ZoomFirstStep(benchmark::State& state) {
    onFrame(state, [](Frame& frame) {
        const auto window = telvarra::zoomWindow(1, frame.width, frame.height);
        telvarra::cropToWindow(frame.bytes.data(), frame.width, frame.channels, *window);
    });
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
