// SPDX-License-Identifier: MIT
// What stands behind a surface over stations, for users who have to defend its numbers.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gis/linear_trend.h"
#include "gis/semivariogram.h"

namespace velmora {

struct ExcludedStation {
    std::string station;
    std::string reason;
};

// What the surface's method says at a station when it does not know the station. One that holds 0
// and takes no part is never known: the surface itself is asked.
struct LeftOutStation {
    std::string station;
    double observed = 0;
    double predicted = 0;
    double error() const { return predicted - observed; }
};

// All values are in the units of the weather table.
struct SurfaceDiagnostics {
    std::string surface;  // "PPT_Jan"
    std::string field;    // "weather.P_Jan"
    bool kriged = false;  // else inverse distance weighting
    std::size_t validStations = 0;
    std::vector<ExcludedStation> excluded;
    std::size_t zeroStations = 0;      // of the excluded: those that hold 0 and have an error below
    std::optional<LinearTrend> trend;  // over elevation in metres, where the values are detrended
    std::optional<double> rSquared;
    std::optional<Semivariogram> semivariogram;  // of what is interpolated
    std::vector<LeftOutStation> leaveOneOut;

    // Mean error, root mean square error, and the station of the largest error; nothing when no
    // station could be left out.
    std::optional<double> bias() const;
    std::optional<double> rmse() const;
    const LeftOutStation* worst() const;
};

// Where diagnostics go when the user asks for them.
class IDiagnostics {
  public:
    virtual ~IDiagnostics() = default;
    virtual void add(const SurfaceDiagnostics& surface) = 0;
};

}  // namespace velmora
