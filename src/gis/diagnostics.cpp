// SPDX-License-Identifier: MIT
#include "gis/diagnostics.h"

#include <algorithm>
#include <cmath>

namespace velmora {

std::optional<double> SurfaceDiagnostics::bias() const {
    if (leaveOneOut.empty()) return std::nullopt;
    double sum = 0;
    for (const LeftOutStation& station : leaveOneOut) sum += station.error();
    return sum / static_cast<double>(leaveOneOut.size());
}

std::optional<double> SurfaceDiagnostics::rmse() const {
    if (leaveOneOut.empty()) return std::nullopt;
    double sum = 0;
    for (const LeftOutStation& station : leaveOneOut) sum += station.error() * station.error();
    return std::sqrt(sum / static_cast<double>(leaveOneOut.size()));
}

const LeftOutStation* SurfaceDiagnostics::worst() const {
    const auto found = std::ranges::max_element(
        leaveOneOut, {}, [](const LeftOutStation& s) { return std::fabs(s.error()); });
    return found == leaveOneOut.end() ? nullptr : &*found;
}

}  // namespace velmora
