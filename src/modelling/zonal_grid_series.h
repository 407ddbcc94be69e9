// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "gis/application.h"
#include "gis/working_folder.h"
#include "modelling/products.h"
#include "modelling/run_record.h"
#include "settings/run_settings.h"

namespace velmora {

// A series of monthly grids in the output folder that are shown in the map and summarised in a
// table of the zones: what crop ET and the irrigation requirements have in common. Holds the folder
// while it lives, and records the run: let it live until a failure has been shown.
class ZonalGridSeries {
  public:
    // Opens the output folder, begins the record of the run anew, and tells what is old among the
    // grids that the step would read, and which raster files of their names it passes over.
    // The product has a zone table, and must outlive the series. Throws PlatformError.
    ZonalGridSeries(IApplication& application, const RunSettings& settings, const Product& product);

    const Product& product() const { return product_; }
    // A grid of the output folder. Throws PlatformError when there is none.
    RasterPtr open(const std::string& name) const;
    // The month's grid of a product, under the name that is read.
    RasterPtr open(const Product& source, int month) const;
    // Begins the table anew; a failure of it is shown, and then no month is added to the old one.
    void createTable();
    // Saves a month's grid under its name, adds it to the map and its zones to the table. Throws
    // PlatformError.
    void add(int month, const RasterPtr& grid);
    // Asks that the grids and the table reach the disk, and adds the table to the map document.
    // Throws PlatformError.
    void showTable();

  private:
    void summarise(int month, const RasterPtr& grid);

    IApplication& application_;
    const RunSettings& settings_;
    const Product& product_;
    const std::string step_;
    const std::string table_;
    bool tableMade_ = false;
    WorkingFolder folder_;
    std::unique_ptr<IRasterWorkspace> workspace_;
    std::optional<RunRecord> record_;
};

}  // namespace velmora
