// The frame routines on whole frames, against memcpy of the same frame and, where they have the
// routine, libyuv and OpenCV, each reading one frame and writing another, as the frame path
// does; ours also in place, as the routines of the same name work.
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Results.h"
#include "Shapes.h"
#include "api/FrameRoutines.h"

#ifdef TELVARRA_BENCH_LIBYUV
#include <libyuv/planar_functions.h>
#include <libyuv/rotate.h>
#endif
#ifdef TELVARRA_BENCH_OPENCV
#include <opencv2/core.hpp>
#endif

namespace telvarra::bench {

namespace {

enum class Routine { MirrorLeftRight, MirrorTopBottom, QuarterTurn, HalfTurn, QuarterTurnBack };
struct RoutineInfo {
    Routine routine;
    const char* label;
    const char* key;
};
constexpr RoutineInfo kRoutines[] = {
    {Routine::MirrorLeftRight, "mirror left-right", "MirrorLeftRight"},
    {Routine::MirrorTopBottom, "mirror top-bottom", "MirrorTopBottom"},
    {Routine::QuarterTurn, "quarter turn", "QuarterTurn"},
    {Routine::HalfTurn, "half turn", "HalfTurn"},
    {Routine::QuarterTurnBack, "quarter turn back", "QuarterTurnBack"}};

int32_t turnsOf(Routine routine) {
    return routine == Routine::QuarterTurn ? 1 : routine == Routine::HalfTurn ? 2 : 3;
}
bool turnsSides(Routine routine) {
    return routine == Routine::QuarterTurn || routine == Routine::QuarterTurnBack;
}

// A frame of noise and a target of the same size, both written once before any timing so that
// no page is first touched while the clock runs.
struct Frames {
    std::vector<unsigned char> source;
    std::vector<unsigned char> target;
    explicit Frames(const Shape& shape) : source(shape.bytes()), target(shape.bytes(), 0) {
        std::mt19937 random(shape.bytes());
        for (auto& byte : source) byte = static_cast<unsigned char>(random());
    }
};

using Work = std::function<void()>;
// Makes the work of one contender on `frames`, or an empty function when it lacks the routine.
using Contender = std::function<Work(const RoutineInfo&, const Shape&, Frames&)>;

std::string benchmarkName(const RoutineInfo& routine, const Shape& shape, const char* contender) {
    return std::string("routine/") + routine.key + "/" + shape.key + "/" + contender;
}
std::string memcpyName(const Shape& shape) { return std::string("memcpy/") + shape.key; }

void timeWork(benchmark::State& state, const Work& work, std::size_t bytes) {
    for (auto _ : state) {
        work();
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

Orientation orientationFor(Routine routine) {
    switch (routine) {
        case Routine::MirrorLeftRight:
            return orientationOf(true, false, 0);
        case Routine::MirrorTopBottom:
            return orientationOf(false, true, 0);
        default:
            return orientationOf(false, false, turnsOf(routine));
    }
}

// What the frame path does: one pass from the source into the target.
Work oursOnePass(const RoutineInfo& info, const Shape& shape, Frames& frames) {
    const unsigned char* source = frames.source.data();
    unsigned char* target = frames.target.data();
    const Orientation orientation = orientationFor(info.routine);
    const std::ptrdiff_t sourceStride = std::ptrdiff_t{shape.width} * shape.channels;
    const std::ptrdiff_t targetStride =
        std::ptrdiff_t{orientation.transpose ? shape.height : shape.width} * shape.channels;
    return [=] {
        orientFrame(source, sourceStride, shape.width, shape.height, shape.channels, orientation,
                    target, targetStride);
    };
}

Work oursInPlace(const RoutineInfo& info, const Shape& shape, Frames& frames) {
    // The frame keeps turning: its sides swap with every quarter turn.
    auto width = std::make_shared<int32_t>(shape.width);
    auto height = std::make_shared<int32_t>(shape.height);
    unsigned char* data = frames.source.data();
    const auto size = static_cast<int32_t>(shape.bytes());
    const int32_t channels = shape.channels;
    switch (info.routine) {
        case Routine::MirrorLeftRight:
            return [=]() mutable { mirrorHorizontal(*width, *height, data, size, channels); };
        case Routine::MirrorTopBottom:
            return [=]() mutable { mirrorVertical(*width, *height, data, size, channels); };
        default:
            return [=, turns = turnsOf(info.routine)]() mutable {
                rotateQuarterTurns(*width, *height, data, size, channels, turns);
            };
    }
}

#ifdef TELVARRA_BENCH_LIBYUV
Work libyuvWork(const RoutineInfo& info, const Shape& shape, Frames& frames) {
    const uint8_t* source = frames.source.data();
    uint8_t* target = frames.target.data();
    const int width = shape.width;
    const int height = shape.height;
    const int stride = width * shape.channels;
    const bool mono = shape.channels == 1;
    switch (info.routine) {
        case Routine::MirrorLeftRight:
            if (mono)
                return [=] { libyuv::MirrorPlane(source, stride, target, stride, width, height); };
            return [=] { libyuv::RGB24Mirror(source, stride, target, stride, width, height); };
        case Routine::MirrorTopBottom:
            // A negative height turns libyuv's copy upside down.
            return [=] { libyuv::CopyPlane(source, stride, target, stride, stride, -height); };
        case Routine::HalfTurn:
            if (mono)
                return
                    [=] { libyuv::RotatePlane180(source, stride, target, stride, width, height); };
            return [=] { libyuv::RGB24Mirror(source, stride, target, stride, width, -height); };
        case Routine::QuarterTurn:
            if (!mono) return {};
            return [=] { libyuv::RotatePlane90(source, stride, target, height, width, height); };
        case Routine::QuarterTurnBack:
            if (!mono) return {};
            return [=] { libyuv::RotatePlane270(source, stride, target, height, width, height); };
    }
    return {};
}
#endif

#ifdef TELVARRA_BENCH_OPENCV
Work openCvWork(const RoutineInfo& info, const Shape& shape, Frames& frames) {
    const int type = shape.channels == 1 ? CV_8UC1 : CV_8UC3;
    const cv::Mat source(shape.height, shape.width, type, frames.source.data());
    // Of the result's shape, so that OpenCV writes into it rather than allocating.
    const bool sides = turnsSides(info.routine);
    cv::Mat target(sides ? shape.width : shape.height, sides ? shape.height : shape.width, type,
                   frames.target.data());
    switch (info.routine) {
        case Routine::MirrorLeftRight:
            return [=]() mutable { cv::flip(source, target, 1); };
        case Routine::MirrorTopBottom:
            return [=]() mutable { cv::flip(source, target, 0); };
        case Routine::QuarterTurn:
            return [=]() mutable { cv::rotate(source, target, cv::ROTATE_90_CLOCKWISE); };
        case Routine::HalfTurn:
            return [=]() mutable { cv::rotate(source, target, cv::ROTATE_180); };
        case Routine::QuarterTurnBack:
            return [=]() mutable { cv::rotate(source, target, cv::ROTATE_90_COUNTERCLOCKWISE); };
    }
    return {};
}
#endif

struct NamedContender {
    const char* name;
    Contender make;
};

std::vector<NamedContender> contenders() {
    std::vector<NamedContender> list = {{"ours", oursOnePass}, {"ours in place", oursInPlace}};
#ifdef TELVARRA_BENCH_LIBYUV
    list.push_back({"libyuv", libyuvWork});
#endif
#ifdef TELVARRA_BENCH_OPENCV
    cv::setNumThreads(1);  // one thread, like every other contender
    list.push_back({"OpenCV", openCvWork});
#endif
    return list;
}

}  // namespace

void registerRoutineBenchmarks() {
    for (const Shape& shape : kShapes) {
        repeatForTheBest(benchmark::RegisterBenchmark(
            memcpyName(shape).c_str(), [shape](benchmark::State& state) {
                Frames frames(shape);
                timeWork(
                    state,
                    [&] { std::memcpy(frames.target.data(), frames.source.data(), shape.bytes()); },
                    shape.bytes());
            }));
    }
    for (const RoutineInfo& routine : kRoutines) {
        for (const Shape& shape : kShapes) {
            for (const NamedContender& contender : contenders()) {
                Frames probe(Shape{1, 1, shape.channels, "", ""});
                if (!contender.make(routine, shape, probe)) continue;
                repeatForTheBest(benchmark::RegisterBenchmark(
                    benchmarkName(routine, shape, contender.name).c_str(),
                    [routine, shape, make = contender.make](benchmark::State& state) {
                        Frames frames(shape);
                        timeWork(state, make(routine, shape, frames), shape.bytes());
                    }));
            }
        }
    }
}

void printRoutineTable() {
    const Results& results = Results::instance();
    std::vector<std::vector<std::string>> rows = {
        {"routine", "frame", "memcpy ms", "ours ÷ memcpy", "ours in place ÷ memcpy",
         "libyuv ÷ memcpy", "OpenCV ÷ memcpy", "ours ÷ libyuv", "ours ÷ OpenCV"}};
    for (const RoutineInfo& routine : kRoutines) {
        for (const Shape& shape : kShapes) {
            const auto memcpyTime = results.time(memcpyName(shape));
            const auto ours = results.time(benchmarkName(routine, shape, "ours"));
            const auto inPlace = results.time(benchmarkName(routine, shape, "ours in place"));
            const auto libyuv = results.time(benchmarkName(routine, shape, "libyuv"));
            const auto openCv = results.time(benchmarkName(routine, shape, "OpenCV"));
            char memcpyText[32] = "—";
            if (memcpyTime) std::snprintf(memcpyText, sizeof memcpyText, "%.3f", *memcpyTime);
            rows.push_back({routine.label, shape.label, memcpyText, ratioText(ours, memcpyTime),
                            ratioText(inPlace, memcpyTime), ratioText(libyuv, memcpyTime),
                            ratioText(openCv, memcpyTime), ratioText(ours, libyuv),
                            ratioText(ours, openCv)});
        }
    }
    printTable(rows);
}

}  // namespace telvarra::bench
