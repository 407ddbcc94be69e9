// SPDX-License-Identifier: MIT
// The grids of an account, each on the account's cells.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// Those of a month; nullptr for a product that is not there.
struct AccountGrids {
    RasterPtr cropEt;
    RasterPtr precipitation;
    RasterPtr effective;  // what crops can use of precipitation, and what of that they do not need,
    RasterPtr surplus;    // by the rule of the net irrigation requirement
    RasterPtr net;
    RasterPtr efficiency;
    RasterPtr water;
    RasterPtr coefficient;
};

// Opens the grids of a run's output folder under the names that steps read.
class AccountGridSource {
  public:
    // Throws PlatformError when there is no such folder.
    AccountGridSource(IPlatform& platform, const RunSettings& settings);

    // The cells on which crop ET and precipitation of the month meet: those of the net irrigation
    // requirement. Nothing where the month has no crop ET. Throws PlatformError.
    std::optional<GridGeometry> cellsOf(int month) const;

    // Throws PlatformError.
    AccountGrids open(int month, const GridGeometry& cells);

    // The monthly grids that are missing, and those whose cells are not the account's, as told.
    const std::vector<std::string>& notes() const { return notes_; }

  private:
    RasterPtr grid(std::string_view maker, int month) const;
    RasterPtr opened(std::string_view maker, int month, const GridGeometry& cells);

    IPlatform& platform_;
    const RunSettings& settings_;
    std::unique_ptr<IRasterWorkspace> workspace_;
    std::vector<std::string> notes_;
};

}  // namespace velmora
