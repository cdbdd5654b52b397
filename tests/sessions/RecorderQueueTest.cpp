#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <thread>

#include "SessionSamples.h"
#include "sessions/RecorderQueue.h"

using namespace ostrel;

namespace {

std::vector<float> filled(std::size_t count, float value)
{
    return std::vector<float>(count, value);
}

// Drains and checks that the blocks come as pushed: `size` samples of value `next`, counting up.
std::size_t drainInOrder(RecorderQueue& queue, std::size_t size, int& next)
{
    return queue.drain([&](const RecorderQueue::Block& block) {
        EXPECT_EQ(block.samples.size(), size);
        for (const float sample : block.samples)
            EXPECT_EQ(sample, static_cast<float>(next));
        EXPECT_EQ(block.sampleRate, 48000.0 + next);
        ++next;
    });
}

} // namespace

TEST(RecorderQueue, KeepsAppendOrderWhenBlocksSpillOverTheRing)
{
    RecorderQueue queue({100, 4});
    for (int i = 0; i < 10; ++i) {
        queue.push(
            filled(30, static_cast<float>(i)), 48000.0 + i, std::nullopt, sessions_test::showStart);
    }
    EXPECT_GT(queue.overflowCount(), 0u);
    int next = 0;
    EXPECT_EQ(drainInOrder(queue, 30, next), 10u);
    EXPECT_EQ(next, 10);
}

TEST(RecorderQueue, ABlockThatWouldWrapStartsAgainAtTheRingsBeginning)
{
    RecorderQueue queue({100, 8});
    int next = 0;
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 2; ++i) {
            const int value = round * 2 + i;
            queue.push(filled(40, static_cast<float>(value)), 48000.0 + value, std::nullopt,
                sessions_test::showStart);
        }
        EXPECT_EQ(drainInOrder(queue, 40, next), 2u);
    }
    EXPECT_EQ(queue.overflowCount(), 0u) << "two blocks of 40 always fit once drained";
}

TEST(RecorderQueue, CarriesTheIntervalAndDateOfEachBlock)
{
    RecorderQueue queue({1000, 4});
    const MeasurementInterval closed = sessions_test::interval(71.0);
    const Date at = addingSeconds(sessions_test::showStart, 2.5);
    queue.push(filled(10, 1.0f), 48000.0, closed, at);
    queue.push(filled(10, 2.0f), 48000.0, std::nullopt, at);
    std::vector<std::optional<MeasurementInterval>> seen;
    queue.drain([&](const RecorderQueue::Block& block) {
        seen.push_back(*block.interval);
        EXPECT_EQ(block.at, at);
    });
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0], closed);
    EXPECT_FALSE(seen[1].has_value());
}

// "Concurrent" in the name puts it in the ThreadSanitizer run.
TEST(RecorderQueue, ConcurrentProducerAndConsumerOnTwoThreadsLoseAndReorderNothing)
{
    RecorderQueue queue({4096, 16});
    constexpr int blocks = 20000;
    std::atomic<bool> done {false};
    std::thread producer([&] {
        for (int i = 0; i < blocks; ++i) {
            const std::vector<float> block(
                static_cast<std::size_t>(1 + i % 700), static_cast<float>(i));
            queue.push(block, 48000.0, std::nullopt, sessions_test::showStart);
        }
        done = true;
    });
    int next = 0;
    bool ordered = true;
    const auto visit = [&](const RecorderQueue::Block& block) {
        ordered = ordered && block.samples.size() == static_cast<std::size_t>(1 + next % 700)
            && block.samples.front() == static_cast<float>(next)
            && block.samples.back() == static_cast<float>(next);
        ++next;
    };
    while (!done)
        queue.drain(visit);
    producer.join();
    queue.drain(visit);
    EXPECT_TRUE(ordered);
    EXPECT_EQ(next, blocks);
}

TEST(RecorderQueue, NonFiniteSamplesReachTheRecorderAsSilenceInTheRingAndInTheSpill)
{
    RecorderQueue queue({8, 1});
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    const std::vector<float> block {0.5f, nan, inf, -inf, -0.5f};
    // The first block fits the ring; the second spills, since the ring has one slot.
    queue.push(block, 48000.0, std::nullopt, sessions_test::showStart);
    queue.push(block, 48000.0, std::nullopt, sessions_test::showStart);
    ASSERT_EQ(queue.overflowCount(), 1u);
    std::vector<std::vector<float>> seen;
    queue.drain([&](const RecorderQueue::Block& drained) {
        seen.emplace_back(drained.samples.begin(), drained.samples.end());
    });
    const std::vector<float> expected {0.5f, 0.0f, 0.0f, 0.0f, -0.5f};
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0], expected);
    EXPECT_EQ(seen[1], expected);
}
