// Events wait for the host's pump and reach the handler of their source and kind, in order.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "sim/common/EventQueue.h"

using namespace telvarra::sim;

namespace {

struct Log {
    std::vector<std::string> lines;
    std::thread::id thread;
};

// Handlers as a host writes them: what to do comes from the context it registered.
void record(const std::string& event, void* context) {
    auto* log = static_cast<Log*>(context);
    log->lines.push_back(event);
    log->thread = std::this_thread::get_id();
}

constexpr std::uint32_t kObject = 0x200;
constexpr std::uint32_t kState = 0x300;

TEST(EventQueueTest, DeliversOnlyWhenPumpedInPostingOrderToTheHandlerOfSourceAndKind) {
    EventQueue<std::string> queue;
    int cameraA = 0, cameraB = 0;
    Log objectsOfA, everythingElse;
    queue.setHandler(&cameraA, kObject, record, &objectsOfA);
    queue.setHandler(&cameraA, kState, record, &everythingElse);
    queue.setHandler(&cameraB, kObject, record, &everythingElse);
    queue.post(&cameraA, kObject, "A item 1");
    queue.post(&cameraB, kObject, "B item");
    queue.post(&cameraA, kState, "A shutdown");
    queue.post(&cameraB, kState, "B nobody listens");
    queue.post(&cameraA, kObject, "A item 2");
    EXPECT_TRUE(objectsOfA.lines.empty());
    EXPECT_EQ(queue.pending(), 5u);

    EXPECT_EQ(queue.pump(), 4u);
    EXPECT_EQ(objectsOfA.lines, (std::vector<std::string>{"A item 1", "A item 2"}));
    EXPECT_EQ(everythingElse.lines, (std::vector<std::string>{"B item", "A shutdown"}));
    EXPECT_EQ(objectsOfA.thread, std::this_thread::get_id());
    EXPECT_EQ(queue.pending(), 0u);
    EXPECT_EQ(queue.pump(), 0u);
}

TEST(EventQueueTest, WhatAHandlerPostsWaitsForTheNextPumpAndAGoneSourceGetsNothing) {
    EventQueue<std::string> queue;
    int camera = 0, gone = 0;
    Log log, goneLog;
    // Like a host that downloads in its handler, which raises the next event.
    queue.setHandler(
        &camera, kObject,
        [&](const std::string& event, void* context) {
            record(event, context);
            if (event == "first") queue.post(&camera, kObject, "raised by the handler");
            EXPECT_EQ(queue.pump(), 0u);  // nested pumps deliver nothing
        },
        &log);
    queue.setHandler(&gone, kObject, record, &goneLog);
    queue.post(&camera, kObject, "first");
    queue.post(&gone, kObject, "queued before the camera went");
    queue.post(&camera, kObject, "second");
    queue.forget(&gone);
    EXPECT_EQ(queue.pump(), 2u);
    EXPECT_EQ(log.lines, (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(queue.pump(), 1u);
    EXPECT_EQ(log.lines.back(), "raised by the handler");
    EXPECT_TRUE(goneLog.lines.empty());

    queue.setHandler(&camera, kObject, nullptr, nullptr);  // removed
    queue.post(&camera, kObject, "unheard");
    EXPECT_EQ(queue.pump(), 0u);
    EXPECT_EQ(log.lines.size(), 3u);
}

}  // namespace
