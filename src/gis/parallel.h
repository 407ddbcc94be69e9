// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

namespace velmora {

// A loop whose pieces may run at once. The body gets disjoint ranges that together cover 0..count;
// what it computes must not depend on where a range begins or ends. Exceptions of a body reach the
// caller.
class IParallelLoop {
  public:
    virtual ~IParallelLoop() = default;
    virtual void run(std::size_t count, std::size_t grain,
                     const std::function<void(std::size_t begin, std::size_t end)>& body) = 0;
};

}  // namespace velmora
