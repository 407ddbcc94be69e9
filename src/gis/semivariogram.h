// SPDX-License-Identifier: MIT
// How the values of stations differ with the distance between them.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace velmora {

// The pairs of stations of one distance class. Semivariance is half the mean squared difference.
struct SemivariogramLag {
    double distance = 0;  // mean of the pairs, map units
    double semivariance = 0;
    std::size_t pairs = 0;
};

// gamma(h) = nugget + partialSill (1.5 h / range - 0.5 (h / range)^3) up to the range, the sill
// beyond it, and 0 at h = 0 (Matheron's spherical scheme).
struct SphericalModel {
    double nugget = 0;
    double partialSill = 0;
    double range = 0;  // map units

    double sill() const { return nugget + partialSill; }
    double semivariance(double distance) const {
        if (distance == 0) return 0;
        if (distance >= range) return sill();
        const double u = distance / range;
        return nugget + partialSill * u * (1.5 - 0.5 * u * u);
    }
    bool operator==(const SphericalModel&) const = default;
};

// An empirical semivariogram with the model that was fitted to it.
struct Semivariogram {
    std::vector<SemivariogramLag> lags;  // by rising distance
    SphericalModel model;
    double weightedError = 0;  // sum of pairs / distance^2 * (semivariance - model)^2
    // Where the lags do not tell the range: the longest range that fits as well as the model's,
    // which is the shortest.
    std::optional<double> longestEqualRange;
};

}  // namespace velmora
