// SPDX-License-Identifier: MIT
// The empirical semivariogram of stations and the spherical model that fits it best.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "gis/analysis.h"
#include "gis/semivariogram.h"

namespace velmora::platform {

// Pairs of stations farther apart than this are left out: a third of the diagonal of the stations'
// bounding box.
double semivariogramCutoff(std::span<const Sample> samples);

// Fifteen classes of equal width up to the cutoff, each open below and closed above (but for
// rounding); classes without a pair are left out. No two stations stand at one place.
std::vector<SemivariogramLag> empiricalSemivariogram(std::span<const Sample> samples,
                                                     double cutoff);

// The model whose nugget and partial sill are not negative and whose range lies between the first
// lag and `longestRange` that makes the sum of pairs / distance^2 * (semivariance - model)^2
// smallest. The smallest over all ranges, not a smallest nearby: for a given range nugget and sill
// follow from linear equations, so that the ranges are searched from end to end. Of models whose
// errors agree to 1e-12 of the weighted squares of the semivariances the one of the shortest range
// holds (its range rounded up to seven digits, more than the errors tell), and of those of one
// range the one that is all nugget; so rounding does not choose. Where lags tell nothing of a
// structure, all is nugget. A model whose range the lags do not tell has its longest equal range
// beside it.
Semivariogram fitSpherical(const std::vector<SemivariogramLag>& lags, double longestRange);

// All of it for stations, coincident ones already merged; nothing for fewer than four, for values
// without variance, or when no pair stands within the cutoff.
std::optional<Semivariogram> semivariogramOf(std::span<const Sample> samples);

}  // namespace velmora::platform
