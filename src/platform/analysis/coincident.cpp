// SPDX-License-Identifier: MIT
#include "platform/analysis/coincident.h"

#include <map>
#include <utility>

namespace velmora::platform {

std::vector<Sample> mergedCoincident(const std::vector<Sample>& samples) {
    std::vector<Sample> merged;
    std::vector<int> counts;
    std::map<std::pair<double, double>, std::size_t> places;
    for (const Sample& sample : samples) {
        const auto [place, fresh] =
            places.emplace(std::pair{sample.at.x, sample.at.y}, counts.size());
        if (fresh) {
            merged.push_back(sample);
            counts.push_back(1);
        } else {
            merged[place->second].value += sample.value;
            ++counts[place->second];
        }
    }
    for (std::size_t i = 0; i < merged.size(); ++i) merged[i].value /= counts[i];
    return merged;
}

}  // namespace velmora::platform
