// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

#include "gis/feedback.h"
#include "gis/parallel.h"

namespace velmora::platform {

// The threads that parallel loops of this process may use; 0 for all that the machine has. Gives
// how many they use, which are fewer where the system gives no more.
int useThreads(int threads);

// Where the loops that this thread runs report how far they are, nullptr for nowhere; the one
// before. A loop ends with Cancelled, on this thread, when the user has cancelled.
IFeedback* watchLoops(IFeedback* feedback);
// Where work of this thread that is no loop reports, nullptr for nowhere.
IFeedback* watching();

// Runs the body over disjoint ranges that cover 0..count, each of about `grain` or more.
void parallelFor(std::size_t count, std::size_t grain,
                 const std::function<void(std::size_t begin, std::size_t end)>& body);

class ParallelLoop : public IParallelLoop {
  public:
    void run(std::size_t count, std::size_t grain,
             const std::function<void(std::size_t begin, std::size_t end)>& body) override {
        parallelFor(count, grain, body);
    }
};

}  // namespace velmora::platform
