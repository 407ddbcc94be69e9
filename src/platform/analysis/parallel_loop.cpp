// SPDX-License-Identifier: MIT
#include "platform/analysis/parallel_loop.h"

#include <tbb/blocked_range.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>

namespace velmora::platform {

namespace {

struct Heartbeat {
    std::thread::id thread;
    std::function<void()> beat;
};

Heartbeat& heartbeat() {
    static Heartbeat heartbeat;
    return heartbeat;
}

}  // namespace

void setHeartbeat(std::function<void()> beat) {
    heartbeat() = {std::this_thread::get_id(), std::move(beat)};
}

void useThreads(int threads) {
    static std::unique_ptr<tbb::global_control> limit;
    limit.reset();
    if (threads > 0) {
        limit = std::make_unique<tbb::global_control>(tbb::global_control::max_allowed_parallelism,
                                                      static_cast<std::size_t>(threads));
    }
}

void parallelFor(std::size_t count, std::size_t grain,
                 const std::function<void(std::size_t begin, std::size_t end)>& body) {
    tbb::parallel_for(
        tbb::blocked_range<std::size_t>(0, count, std::max<std::size_t>(1, grain)),
        [&](const tbb::blocked_range<std::size_t>& range) {
            body(range.begin(), range.end());
            const Heartbeat& heart = heartbeat();
            if (heart.beat && heart.thread == std::this_thread::get_id()) heart.beat();
        },
        tbb::simple_partitioner());
}

}  // namespace velmora::platform
