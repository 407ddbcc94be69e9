// SPDX-License-Identifier: MIT
// Maps that stand side by side on the page, with the zones' outlines.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "gis/application.h"
#include "hosts/results/cell_image.h"
#include "settings/run_settings.h"

namespace velmora {

class SmallMaps {
  public:
    // Of one page. What keeps the zones from being drawn is added to `missing` unless that is
    // nullptr.
    SmallMaps(IPlatform& platform, const RunSettings& settings, std::vector<std::string>* missing)
        : platform_(platform), settings_(settings), missing_(missing) {}

    // The cells of a grid in their colours, with the zones over them. The caption is HTML.
    std::string figure(const IRaster& raster, const CellColors& colors, const std::string& name,
                       const std::string& caption);
    // A bar of a round length, at most half as wide as the maps of these cells.
    static std::string scaleBar(const GridGeometry& cells);

  private:
    std::string outlinesOver(const GridGeometry& g);
    std::string drawnOutlines(const GridGeometry& g, const std::string& id);

    IPlatform& platform_;
    const RunSettings& settings_;
    std::vector<std::string>* missing_;
    std::map<std::string, std::string> outlines_;  // by extent: drawn once, then referred to
    bool failed_ = false;
};

}  // namespace velmora
