// SPDX-License-Identifier: MIT
#include "platform/threads/parallel_loop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace velmora::platform {
namespace {

struct Heartbeats : testing::Test {
    ~Heartbeats() override { setHeartbeat({}); }
    static void loop(std::atomic<std::size_t>& sum) {
        parallelFor(1000, 1, [&](std::size_t begin, std::size_t end) { sum += end - begin; });
    }
};

TEST_F(Heartbeats, BeatOnTheThreadThatAskedForThem) {
    const auto here = std::this_thread::get_id();
    std::atomic<int> beats{0};
    std::atomic<int> elsewhere{0};
    setHeartbeat([&] {
        ++beats;
        if (std::this_thread::get_id() != here) ++elsewhere;
    });
    std::atomic<std::size_t> sum{0};
    loop(sum);
    EXPECT_EQ(sum, 1000U);
    EXPECT_GT(beats, 0);
    EXPECT_EQ(elsewhere, 0);
}

TEST_F(Heartbeats, StopWhenNobodyAsks) {
    int beats = 0;
    setHeartbeat([&] { ++beats; });
    setHeartbeat({});
    std::atomic<std::size_t> sum{0};
    loop(sum);
    EXPECT_EQ(beats, 0);
}

}  // namespace
}  // namespace velmora::platform
