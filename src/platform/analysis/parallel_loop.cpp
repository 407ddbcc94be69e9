// SPDX-License-Identifier: MIT
#include "platform/analysis/parallel_loop.h"

#include <tbb/blocked_range.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>

#include <algorithm>
#include <memory>

namespace velmora::platform {

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
        [&](const tbb::blocked_range<std::size_t>& range) { body(range.begin(), range.end()); },
        tbb::simple_partitioner());
}

}  // namespace velmora::platform
