// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <vector>

namespace velmora::examples {

// A crop of the sample with its monthly coefficients for the reference of short grass.
struct CropCurve {
    std::string name;
    std::array<double, 12> monthly;
};

// Eight crops: the single crop coefficients of FAO-56 (Allen et al. 1998), Table 12, along growth
// stages of Table 11, averaged over each calendar month. Planting dates are assumed for a cool
// mountain valley.
std::vector<CropCurve> cropCurves();

}  // namespace velmora::examples
