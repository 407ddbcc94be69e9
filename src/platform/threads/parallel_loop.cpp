// SPDX-License-Identifier: MIT
#include "platform/threads/parallel_loop.h"

#include <tbb/blocked_range.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace velmora::platform {

namespace {

struct Watch {
    std::thread::id thread;
    IFeedback* feedback = nullptr;
};

Watch& watch() {
    static Watch watch;
    return watch;
}

// How deep this thread is in loops: a loop within a loop says nothing of its own.
thread_local int depth = 0;

class Deeper {
  public:
    Deeper() { ++depth; }
    ~Deeper() { --depth; }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;
};

}  // namespace

IFeedback* watchLoops(IFeedback* feedback) {
    return std::exchange(watch(), {std::this_thread::get_id(), feedback}).feedback;
}

IFeedback* watching() {
    return watch().thread == std::this_thread::get_id() ? watch().feedback : nullptr;
}

namespace {

// How many of the wanted threads the system gives, this one included: the library that runs the
// loops ends the program when it gets none.
int threadsToBeHad(int wanted) {
    std::vector<std::thread> threads;
    std::promise<void> counted;
    const std::shared_future<void> end = counted.get_future().share();
    try {
        while (static_cast<int>(threads.size()) < wanted - 1) {
            threads.emplace_back([end] { end.wait(); });
        }
    } catch (const std::system_error&) {
        // as many as there are
    }
    counted.set_value();
    for (std::thread& thread : threads) thread.join();
    return static_cast<int>(threads.size()) + 1;
}

}  // namespace

int useThreads(int threads) {
    // Never let go of at the end of the program: the library would make threads then, for nothing.
    static auto& limit = *new std::unique_ptr<tbb::global_control>;
    limit.reset();
    const int wanted = threads > 0 ? threads : tbb::this_task_arena::max_concurrency();
    const int given = threadsToBeHad(wanted);
    if (threads > 0 || given < wanted) {
        limit = std::make_unique<tbb::global_control>(tbb::global_control::max_allowed_parallelism,
                                                      static_cast<std::size_t>(given));
    }
    return given;
}

void parallelFor(std::size_t count, std::size_t grain,
                 const std::function<void(std::size_t begin, std::size_t end)>& body) {
    IFeedback* feedback = watch().thread == std::this_thread::get_id() ? watch().feedback : nullptr;
    const std::thread::id caller = std::this_thread::get_id();
    const bool reports = feedback != nullptr && depth == 0;
    std::atomic<std::size_t> done = 0;
    const Deeper deeper;
    tbb::parallel_for(
        tbb::blocked_range<std::size_t>(0, count, std::max<std::size_t>(1, grain)),
        [&](const tbb::blocked_range<std::size_t>& range) {
            body(range.begin(), range.end());
            const std::size_t sofar = done += range.size();
            if (feedback == nullptr || caller != std::this_thread::get_id()) return;
            throwIfCancelled(*feedback);
            if (reports) {
                feedback->advance(static_cast<double>(sofar) / static_cast<double>(count));
            }
        },
        tbb::simple_partitioner());
}

}  // namespace velmora::platform
