// SPDX-License-Identifier: MIT
#include "modelling/station_interpolation.h"

#include "gis/errors.h"

namespace velmora {

RasterPtr krigedSurface(IInterpolationOp& interpolation, const std::vector<Sample>& samples) {
    RasterPtr surface;
    try {
        surface = interpolation.Krige(samples, SemivariogramType::spherical, kNearestStations);
    } catch (const PlatformError&) {
        surface = nullptr;
    }
    return surface ? surface : inverseDistanceSurface(interpolation, samples);
}

}  // namespace velmora
