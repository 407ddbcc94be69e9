// SPDX-License-Identifier: MIT
// Ordinary kriging written plainly from its definition, to hold the platform's to.
#pragma once

#include <vector>

#include "gis/analysis.h"

namespace velmora::test {

// The estimate at one place from the nearest stations: the semivariogram form of the system,
// assembled and solved for that place alone.
double plainKriging(const std::vector<Sample>& samples, Point at, const SphericalModel& model,
                    std::size_t nearest = 12);

// The spherical model of the samples by trying very many ranges.
SphericalModel plainModel(const std::vector<Sample>& samples);

}  // namespace velmora::test
