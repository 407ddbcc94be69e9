// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "modelling/station_surface.h"

namespace velmora {

struct Range {
    double low = 0;
    double high = 0;
    bool operator==(const Range&) const = default;
};

// What the stations bear out of a surface that has been made.
struct SurfaceGround {
    std::vector<Point> stations;     // that take part
    Range values;                    // theirs, in the unit of the weather table
    std::optional<Range> elevation;  // theirs, metres, where values are detrended
    // Of such a line over elevation (trend_test.h); nothing for values without variance.
    std::optional<double> slopeProbability;

    bool slopeIsChance() const;  // a line that is not significant
};

SurfaceGround groundOf(const StationSurface& surface);

}  // namespace velmora
