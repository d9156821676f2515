// The frame-memory models the makes without a simulator yet will use: the caller's buffer, valid
// until the next call, and reference-counted objects. (Lent buffers are tested through the
// HikVision simulator.)
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "sim/common/FrameMemory.h"

using namespace telvarra::sim;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes frameOf(std::size_t size, std::uint8_t first) {
    Bytes frame(size);
    for (std::size_t i = 0; i < size; ++i) frame[i] = static_cast<std::uint8_t>(first + i);
    return frame;
}

// Whether `size` bytes at `data` read as the poison pattern, written out here on its own.
bool isPoison(const std::uint8_t* data, std::size_t size) {
    const std::uint8_t pattern[] = {0xDE, 0xAD, 0xBE, 0xEF};
    for (std::size_t i = 0; i < size; ++i)
        if (data[i] != pattern[i % 4]) return false;
    return true;
}

TEST(CallerBuffersTest, WritesOnlyIntoABufferLargeEnoughAndLeavesNothingOutstanding) {
    const Bytes frame = frameOf(6, 1);
    Bytes destination(5, 0x55);
    EXPECT_EQ(CallerBuffers::write(nullptr, 100, frame), CallerBuffers::Outcome::NoBuffer);
    EXPECT_EQ(CallerBuffers::write(destination.data(), destination.size(), frame),
              CallerBuffers::Outcome::TooSmall);
    EXPECT_EQ(destination, Bytes(5, 0x55));
    destination.resize(6);
    EXPECT_EQ(CallerBuffers::write(destination.data(), destination.size(), frame),
              CallerBuffers::Outcome::Written);
    EXPECT_EQ(destination, frame);
    EXPECT_EQ(CallerBuffers::outstanding(), 0u);
}

TEST(NextCallBuffersTest, AStalePointerReadsPoisonAfterTheHoldersNextCall) {
    NextCallBuffers buffers;
    int first = 0, second = 0;
    const Bytes frame1 = frameOf(10, 1), frame2 = frameOf(10, 50), other = frameOf(10, 100);
    const std::uint8_t* stale = buffers.deliver(&first, frame1);
    EXPECT_EQ(Bytes(stale, stale + 10), frame1);
    const std::uint8_t* kept = buffers.deliver(&second, other);
    const std::uint8_t* current = buffers.deliver(&first, frame2);
    EXPECT_NE(current, stale);
    EXPECT_EQ(Bytes(current, current + 10), frame2);
    EXPECT_TRUE(isPoison(stale, 10));
    EXPECT_EQ(Bytes(kept, kept + 10), other);  // another holder's frame is untouched
    EXPECT_EQ(buffers.outstanding(), 2u);

    // A call without a frame ends the validity all the same.
    buffers.expire(&first);
    EXPECT_TRUE(isPoison(current, 10));
    EXPECT_EQ(buffers.outstanding(), 1u);
    // A smaller frame later: the rest of the buffer stays poison, never an older frame.
    const std::uint8_t* small = buffers.deliver(&first, frameOf(4, 7));
    EXPECT_EQ(Bytes(small, small + 4), frameOf(4, 7));
    EXPECT_TRUE(isPoison(current, 10));
    buffers.release(&second);
    buffers.release(&first);
    EXPECT_EQ(buffers.outstanding(), 0u);
}

TEST(RefCountedObjectsTest, ObjectsLiveWhileReferencedAndDeadOrUnknownOnesAreRefused) {
    RefCountedObjects<std::shared_ptr<int>> objects(0x5000, 0x8);
    const auto payload = std::make_shared<int>(7);
    void* object = objects.create(payload);
    void* other = objects.create(std::make_shared<int>(8));
    EXPECT_EQ(objects.outstanding(), 2u);
    EXPECT_EQ(objects.retain(object), 2u);
    EXPECT_EQ(objects.release(object), 1u);
    ASSERT_NE(objects.find(object), nullptr);
    EXPECT_EQ(**objects.find(object), 7);
    EXPECT_EQ(objects.release(object), 0u);
    EXPECT_EQ(payload.use_count(), 1);  // destroyed at 0
    EXPECT_EQ(objects.find(object), nullptr);
    EXPECT_EQ(objects.release(object), std::nullopt);
    EXPECT_EQ(objects.retain(object), std::nullopt);
    int unknown = 0;
    EXPECT_EQ(objects.release(&unknown), std::nullopt);
    EXPECT_EQ(objects.outstanding(), 1u);

    void* next = objects.create(payload);
    EXPECT_NE(next, object);  // a dead reference never comes back to life
    EXPECT_NE(next, other);
    objects.clear();
    EXPECT_EQ(objects.outstanding(), 0u);
    EXPECT_EQ(payload.use_count(), 1);
}

}  // namespace
