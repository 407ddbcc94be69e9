// SPDX-License-Identifier: MIT
// The pairs of stations in classes of distance.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "gis/analysis.h"

namespace velmora::platform {

// What the pairs of a class add up to.
struct PairSums {
    double distance = 0;  // m
    double squares = 0;   // of the differences of their values
    std::size_t pairs = 0;
};

// `classes` classes of equal width up to the cutoff, each open below and closed above; a pair
// within a billionth of a border is on it. Pairs farther apart than the cutoff are in none. The
// pairs of a class are added one by one, by the later station and then by the earlier one, so that
// the sums do not depend on how the pairs are found or on the processor. Stations that follow each
// other should be near each other: whole groups of them that lie beyond the cutoff are passed over.
std::vector<PairSums> pairSums(std::span<const Sample> stations, double cutoff,
                               std::size_t classes);

}  // namespace velmora::platform
