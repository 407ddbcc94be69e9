// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// A series of monthly grids in the output folder that are shown in the map and summarised in a
// table of the zones: what crop ET and the irrigation requirements have in common. Holds the folder
// while it lives.
class ZonalGridSeries {
  public:
    // Opens the output folder. `table` is the table's name. Throws PlatformError.
    ZonalGridSeries(IApplication& application, const RunSettings& settings, std::string table);

    // A grid of the output folder. Throws PlatformError when there is none.
    RasterPtr open(const std::string& name) const;
    // Begins the table anew; a failure is shown.
    void createTable();
    // Saves a month's grid under the name, adds it to the map and its zones to the table. Throws
    // PlatformError.
    void add(int month, const std::string& name, const RasterPtr& grid);
    // Adds the table to the map document.
    void showTable();

  private:
    IApplication& application_;
    const RunSettings& settings_;
    std::string table_;
    std::unique_ptr<IFolderLock> lock_;
    std::unique_ptr<IRasterWorkspace> workspace_;
};

}  // namespace velmora
