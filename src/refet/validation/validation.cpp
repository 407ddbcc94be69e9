// SPDX-License-Identifier: MIT
#include "refet/validation/validation.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <map>

#include "gis/errors.h"
#include "refet/validation/quantities.h"

namespace velmora {

namespace {

constexpr const char* kSum = "sum";

double expectedOf(const Figure& figure) { return figure.expected.value_or(figure.value); }

Verdict verdictOn(const Figure& figure, double ours) {
    const bool within = std::fabs(ours - expectedOf(figure)) <= figure.tolerance;
    if (!within) return Verdict::outside;
    return figure.expected ? Verdict::departs : Verdict::met;
}

// What ours gives, by the name of the series, of the figures so far.
struct Sums {
    std::map<std::string, double> values;
    std::map<std::string, std::string> units;
};

Comparison compare(const FigureGroup& group, const Figure& figure, Sums& sums) {
    const FigureInputs inputs(group.common, figure.inputs);
    Comparison comparison{&figure, {}, 0, Verdict::outside};
    if (figure.quantity == kSum) {
        const std::string series = inputs.text("series");
        if (!sums.values.contains(series)) {
            throw PlatformError("no figure before it is of the series " + series);
        }
        comparison.ours = sums.values[series];
        comparison.unit = sums.units[series];
    } else {
        const Quantity& quantity = quantityNamed(figure.quantity);
        comparison.ours = quantity.ours(inputs);
        comparison.unit = quantity.unit;
        if (inputs.has("series")) {
            sums.values[inputs.text("series")] += comparison.ours;
            sums.units[inputs.text("series")] = comparison.unit;
        }
    }
    comparison.verdict = verdictOn(figure, comparison.ours);
    return comparison;
}

}  // namespace

double Comparison::share() const {
    return std::fabs(ours - expectedOf(*figure)) / figure->tolerance;
}

std::size_t ComparedGroup::count(Verdict verdict) const {
    return static_cast<std::size_t>(std::ranges::count(figures, verdict, &Comparison::verdict));
}

double ComparedGroup::largestShare() const {
    double largest = 0;
    for (const Comparison& comparison : figures) largest = std::max(largest, comparison.share());
    return largest;
}

std::vector<ComparedGroup> compared(const std::vector<FigureGroup>& groups) {
    std::vector<ComparedGroup> all;
    for (const FigureGroup& group : groups) {
        ComparedGroup& result = all.emplace_back(ComparedGroup{&group, {}});
        Sums sums;
        for (const Figure& figure : group.figures) {
            try {
                result.figures.push_back(compare(group, figure, sums));
            } catch (const std::exception& e) {
                throw PlatformError(group.title + ", " + figure.quantity + " (" + figure.inputs +
                                    "): " + e.what());
            }
        }
    }
    return all;
}

}  // namespace velmora
