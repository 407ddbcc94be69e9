// SPDX-License-Identifier: MIT
#include "gis/projection.h"

#include <cmath>

#include "gis/numbers.h"

namespace velmora {

std::string unitOtherThanMetres(ISpatialReferenceFactory& systems, const std::string& crs) {
    if (systems.isGeographic(crs)) return "degrees";
    const double metres = systems.metresPerUnit(crs);
    return std::fabs(metres - 1) > 1e-9 ? "units of " + numberText(metres) + " m" : "";
}

}  // namespace velmora
