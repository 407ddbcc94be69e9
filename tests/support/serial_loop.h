// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>

#include "gis/parallel.h"

namespace velmora::test {

// A loop whose pieces run one after the other, each as small as it may be.
class SerialLoop : public IParallelLoop {
  public:
    void run(std::size_t count, std::size_t grain,
             const std::function<void(std::size_t begin, std::size_t end)>& body) override {
        const std::size_t step = std::max<std::size_t>(1, grain);
        for (std::size_t at = 0; at < count; at += step) body(at, std::min(count, at + step));
    }
};

}  // namespace velmora::test
