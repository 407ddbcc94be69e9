// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "check/input_check.h"

namespace velmora {

// The findings about the grids of the output folder that crop ET and the irrigation requirements
// read: what is old or passed over, what is missing, and what cannot be read or covers no common
// place. Grids that a step has yet to make are no error; of an output folder without any of a
// step's inputs nothing is said.
std::vector<Finding> checkGrids(IPlatform& platform, const RunSettings& settings);

// A month's grid of crop ET or of a requirement, of the grids that the step reads, in the order of
// the product's sources; nullptr for other steps. Throws PlatformError.
RasterPtr monthOfStep(const std::string& step, IMapAlgebraOp& algebra,
                      const std::vector<RasterPtr>& inputs);

}  // namespace velmora
