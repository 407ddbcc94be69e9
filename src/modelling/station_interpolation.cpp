// SPDX-License-Identifier: MIT
#include "modelling/station_interpolation.h"

#include "gis/errors.h"

namespace velmora {

namespace {

RasterPtr kriged(IInterpolationOp& interpolation, const std::vector<Sample>& samples) {
    try {
        return interpolation.Krige(samples, SemivariogramType::spherical, kNearestStations);
    } catch (const PlatformError&) {
        return nullptr;
    }
}

}  // namespace

Interpolated interpolate(IInterpolationOp& interpolation, Estimator estimator,
                         const std::vector<Sample>& samples) {
    if (estimator == Estimator::kriging) {
        if (RasterPtr surface = kriged(interpolation, samples)) return {surface, true};
    }
    return {interpolation.IDW(samples, kInverseDistancePower, kNearestStations), false};
}

}  // namespace velmora
