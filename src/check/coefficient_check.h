// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "check/input_check.h"

namespace velmora {

// The findings about the crop coefficient table: fields that the maps cannot take, crops that stand
// twice, coefficients that are not likely, and a table that seems made for another reference than
// the method's (alfalfa for method 1, grass for the others).
std::vector<Finding> checkCoefficients(const ITable& table, const RunSettings& settings);

// The types of the land cover that the table lacks, with the acres that get no crop ET, which the
// quick check does not measure. Throws PlatformError.
std::vector<Finding> checkTypesWithoutRow(IPlatform& platform, const RunSettings& settings,
                                          const ITable& table, bool quick = false);

}  // namespace velmora
