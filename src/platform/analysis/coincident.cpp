// SPDX-License-Identifier: MIT
#include "platform/analysis/coincident.h"

#include <algorithm>
#include <tuple>

namespace velmora::platform {

std::vector<Sample> mergedCoincident(std::vector<Sample> samples) {
    std::ranges::sort(samples, {},
                      [](const Sample& s) { return std::tuple(s.at.x, s.at.y, s.value); });
    std::vector<Sample> merged;
    for (auto first = samples.begin(); first != samples.end();) {
        Sample station{first->at, 0};
        auto next = first;
        for (; next != samples.end() && next->at == first->at; ++next) station.value += next->value;
        station.value /= static_cast<double>(next - first);
        merged.push_back(station);
        first = next;
    }
    return merged;
}

}  // namespace velmora::platform
