// getCurrentFrame through the facade, on a simulator handing out one prepared frame, with and
// without mirror, turn and zoom, against one memcpy of the frame; and the heap allocations per
// frame once the camera's buffers have grown.
#include <cstdint>
#include <string>
#include <vector>

#include "Results.h"
#include "Shapes.h"
#include "sim/daheng/DahSimControl.h"
#include "sim/dvp/DvpSimControl.h"
#include "sim/hikvision/HikSimControl.h"
#include "telvarra/Telvarra.h"

namespace telvarra::bench {

namespace {

constexpr const char* kId = "BENCH";
// Frames counted for the allocations, after the timed ones.
constexpr int kCountedFrames = 20;

struct MakeUnderTest {
    const char* name;
    Ruvo_CameraType type;
    void (*reset)();
    int (*addDevice)(const char*);
    int (*prepareFrames)(const char*, int);
    const char* (*lastError)();
};

const MakeUnderTest kHikVision{"HikVision",      RUVO_CAMERA_HIKVISION, HikSim_Reset,
                               HikSim_AddDevice, HikSim_PrepareFrames,  HikSim_LastError};
const MakeUnderTest kDvp{
    "Dvp", RUVO_CAMERA_DVP, DvpSim_Reset, DvpSim_AddDevice, DvpSim_PrepareFrames, DvpSim_LastError};
const MakeUnderTest kDaHeng{"DaHeng",         RUVO_CAMERA_DAHENG,   DahSim_Reset,
                            DahSim_AddDevice, DahSim_PrepareFrames, DahSim_LastError};

struct Geometry {
    const char* label;
    const char* key;
    bool leftRight;
    bool topBottom;
    int32_t turns;
    int32_t zoom;
};
constexpr Geometry kPlain{"none", "plain", false, false, 0, 0};
constexpr Geometry kGeometries[] = {
    kPlain,
    {"mirror left-right", "MirrorLeftRight", true, false, 0, 0},
    {"mirror top-bottom", "MirrorTopBottom", false, true, 0, 0},
    {"quarter turn", "QuarterTurn", false, false, 1, 0},
    {"half turn", "HalfTurn", false, false, 2, 0},
    {"quarter turn back", "QuarterTurnBack", false, false, 3, 0},
    {"zoom 1", "Zoom1", false, false, 0, 1},
    {"both mirrors, quarter turn, zoom 1", "Everything", true, true, 1, 1}};

struct Case {
    const MakeUnderTest* make;
    Shape shape;
    Geometry geometry;
};

std::vector<Case> cases() {
    std::vector<Case> list;
    for (const Shape& shape : kShapes)
        for (const Geometry& geometry : kGeometries) list.push_back({&kHikVision, shape, geometry});
    // The other makes that copy the SDK's frame (Dvp) or have it written into theirs (DaHeng).
    for (const MakeUnderTest* make : {&kDvp, &kDaHeng})
        for (const Geometry& geometry : kGeometries)
            if (geometry.zoom == 0) list.push_back({make, kColour, geometry});
    return list;
}

std::string benchmarkName(const Case& c) {
    return std::string("getCurrentFrame/") + c.make->name + "/" + c.shape.key + "/" +
           c.geometry.key;
}

// Opens the make's one prepared camera with the geometry set, started; false with `problem`.
bool openCamera(const Case& c, CameraPublicInterface& facade, std::string& problem) {
    c.make->reset();
    const std::string line = std::string("id=") + kId + " size=" + std::to_string(c.shape.width) +
                             "x" + std::to_string(c.shape.height) +
                             (c.shape.channels == 1 ? " format=mono8"
                              : c.make == &kDvp     ? " format=bgr8"  // what its SDK delivers
                                                    : " format=rgb8");
    if (c.make->addDevice(line.c_str()) != 0 || c.make->prepareFrames(kId, 1) != 0) {
        problem = c.make->lastError();
        return false;
    }
    if (!facade.initialize(c.make->type) || !facade.openCamera(kId, c.make->type)) {
        problem = "the camera did not open";
        return false;
    }
    bool set = facade.setCameraHorMirror(kId, c.geometry.leftRight) &&
               facade.setCameraVerMirror(kId, c.geometry.topBottom) &&
               facade.setCameraRotate(kId, c.geometry.turns);
    for (int step = 0; step < c.geometry.zoom; ++step)
        set = set && facade.setCameraParameter(kId, "CameraImageZoomIn", "");
    if (!set || !facade.startCapture(kId)) {
        problem = "the camera refused the geometry or would not start";
        return false;
    }
    return true;
}

void grabFrames(benchmark::State& state, const Case& c) {
    CameraPublicInterface& facade = *CameraPublicInterface::getInstance();
    std::string problem;
    ImageData image{};
    if (!openCamera(c, facade, problem)) {
        state.SkipWithError(problem.c_str());
    } else {
        // A few frames first: the camera's buffers grow to the frame's size.
        for (int i = 0; i < 3; ++i) facade.getCurrentFrame(kId, image, 0);
        if (image.channels != c.shape.channels) state.SkipWithError("unexpected channel count");
        for (auto _ : state) {
            if (!facade.getCurrentFrame(kId, image, 0)) {
                state.SkipWithError("no frame");
                break;
            }
        }
        state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * c.shape.width *
                                c.shape.height * c.shape.channels);
        const AllocationCount count;
        for (int i = 0; i < kCountedFrames; ++i) facade.getCurrentFrame(kId, image, 0);
        const Allocations taken = count.taken();
        Results::instance().recordAllocations(
            benchmarkName(c), {taken.ours / kCountedFrames, taken.sdk / kCountedFrames});
        state.counters["our allocations/frame"] = static_cast<double>(taken.ours) / kCountedFrames;
    }
    facade.closeCamera(kId);
    CameraPublicInterface::releaseInstance();
}

}  // namespace

void registerFacadeBenchmarks() {
    findSdkLibraries();
    for (const Case& c : cases()) {
        repeatForTheBest(benchmark::RegisterBenchmark(
            benchmarkName(c).c_str(), [c](benchmark::State& state) { grabFrames(state, c); }));
    }
}

void printFacadeTable() {
    const Results& results = Results::instance();
    std::vector<std::vector<std::string>> rows = {
        {"make", "frame", "geometry", "ms per frame", "÷ memcpy", "÷ no geometry",
         "our allocations per frame", "SDK's allocations per frame"}};
    for (const Case& c : cases()) {
        const auto time = results.time(benchmarkName(c));
        const auto plain = results.time(benchmarkName({c.make, c.shape, kPlain}));
        const auto memcpyTime = results.time(std::string("memcpy/") + c.shape.key);
        const auto allocations = results.allocations(benchmarkName(c));
        char milliseconds[32] = "—";
        if (time) std::snprintf(milliseconds, sizeof milliseconds, "%.3f", *time);
        rows.push_back({c.make->name, c.shape.label, c.geometry.label, milliseconds,
                        ratioText(time, memcpyTime), ratioText(time, plain),
                        allocations ? std::to_string(allocations->ours) : "—",
                        allocations ? std::to_string(allocations->sdk) : "—"});
    }
    printTable(rows);
}

}  // namespace telvarra::bench
