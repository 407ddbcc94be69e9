// SPDX-License-Identifier: MIT
// The published figures against the equations.
#pragma once

#include <string>
#include <vector>

#include "refet/validation/figures.h"

namespace velmora {

enum class Verdict {
    met,      // within its tolerance of the figure
    departs,  // ours is what it has to be, and by design not the figure
    outside
};

struct Comparison {
    const Figure* figure = nullptr;
    std::string unit;
    double ours = 0;
    Verdict verdict = Verdict::outside;

    double difference() const { return ours - figure->value; }
    // Of the tolerance that is used up, 1 at its edge.
    double share() const;
};

struct ComparedGroup {
    const FigureGroup* group = nullptr;
    std::vector<Comparison> figures;

    std::size_t count(Verdict verdict) const;
    double largestShare() const;
};

// Every figure of the groups, which must outlive the result; in a group the quantity "sum" adds up
// ours of the figures before it whose inputs name the same `series`. Throws PlatformError naming
// the group and the figure where one cannot be computed.
std::vector<ComparedGroup> compared(const std::vector<FigureGroup>& groups);
std::vector<ComparedGroup> compared(std::vector<FigureGroup>&& groups) = delete;

}  // namespace velmora
