// SPDX-License-Identifier: MIT
// How reference ET by the papers' choices differs from that of the method, by month and zone: from
// the grids that `velmora run refet --standard` has left beside each other.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// Means over the cells that both grids have, inches of the month.
struct StandardDifference {
    int month = 0;
    std::string zone;  // "" for the whole grid
    std::size_t cells = 0;
    double ours = 0;
    double papers = 0;

    double difference() const { return papers - ours; }
};

// By month, the whole grid first and then the zones in the order in which their keys first appear;
// of the months of the settings' period whose two grids are both of the last run. Empty when it
// made none. Without zones in the settings, or when they cannot be read, the whole grid alone.
// Throws PlatformError when a grid, or the note of the run, cannot be read.
std::vector<StandardDifference> standardDifferences(IPlatform& platform,
                                                    const RunSettings& settings);

// A part of the report under the heading "By the papers' choices" (id "standard"), "" when there is
// nothing to show.
std::string standardSection(const std::vector<StandardDifference>& differences);

}  // namespace velmora
