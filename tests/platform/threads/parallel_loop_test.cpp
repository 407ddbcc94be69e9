// SPDX-License-Identifier: MIT
#include "platform/threads/parallel_loop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace velmora::platform {
namespace {

class Beats : public IFeedbackListener {
  public:
    void beat() override {
        ++beats;
        if (std::this_thread::get_id() != here_) ++elsewhere;
        if (onBeat) onBeat();
    }
    void fractionChanged(double done) override { fractions.push_back(done); }
    int beats = 0;
    int elsewhere = 0;
    std::vector<double> fractions;
    std::function<void()> onBeat;

  private:
    std::thread::id here_ = std::this_thread::get_id();
};

struct WatchedLoops : testing::Test {
    WatchedLoops() {
        feedback.listen(beats);
        watchLoops(&feedback);
    }
    ~WatchedLoops() override { watchLoops(nullptr); }
    WatchedLoops(const WatchedLoops&) = delete;
    WatchedLoops& operator=(const WatchedLoops&) = delete;
    static std::size_t loop() {
        std::atomic<std::size_t> sum{0};
        parallelFor(1000, 1, [&](std::size_t begin, std::size_t end) { sum += end - begin; });
        return sum;
    }
    Feedback feedback;
    Beats beats;
};

TEST_F(WatchedLoops, ReportOnTheThreadThatRunsThem) {
    feedback.beginPart(0.5, 1);
    EXPECT_EQ(loop(), 1000U);
    EXPECT_GT(beats.beats, 0);
    EXPECT_EQ(beats.elsewhere, 0);
    ASSERT_FALSE(beats.fractions.empty());
    EXPECT_EQ(beats.fractions.front(), 0.5);
    EXPECT_TRUE(std::ranges::is_sorted(beats.fractions));
    const int before = beats.beats;
    std::thread([] { loop(); }).join();  // of another thread
    EXPECT_EQ(beats.beats, before);
}

TEST_F(WatchedLoops, SayNothingWhenNobodyWatches) {
    EXPECT_EQ(watchLoops(nullptr), &feedback);
    EXPECT_EQ(loop(), 1000U);
    EXPECT_EQ(beats.beats, 0);
}

// Also out of a loop within a loop: the user does not know of either.
TEST_F(WatchedLoops, EndWhenTheUserHasCancelled) {
    beats.onBeat = [this] { feedback.cancel(); };
    EXPECT_THROW(loop(), Cancelled);
    EXPECT_THROW(loop(), Cancelled);
    std::atomic<int> pieces = 0;
    EXPECT_THROW(parallelFor(100, 1,
                             [&](std::size_t, std::size_t) {
                                 ++pieces;
                                 parallelFor(10, 1, [](std::size_t, std::size_t) {});
                             }),
                 Cancelled);
    EXPECT_LT(pieces, 100);
    feedback.resume();
    beats.onBeat = {};
    EXPECT_EQ(loop(), 1000U);
}

}  // namespace
}  // namespace velmora::platform
