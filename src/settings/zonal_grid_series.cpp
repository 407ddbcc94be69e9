// SPDX-License-Identifier: MIT
#include "settings/zonal_grid_series.h"

#include <array>
#include <utility>

#include "gis/gis_functions.h"
#include "gis/text.h"
#include "gis/zonal_tables.h"

namespace velmora {

ZonalGridSeries::ZonalGridSeries(IApplication& application, const RunSettings& settings,
                                 std::string table)
    : application_(application),
      settings_(settings),
      table_(std::move(table)),
      lock_(application.platform().files().lockFolder(settings.OutputWorkspace)),
      workspace_(application.platform().rasters().openFromFolder(settings.OutputWorkspace)) {}

RasterPtr ZonalGridSeries::open(const std::string& name) const {
    return workspace_->openRasterDataset(name)->createDefaultRaster();
}

void ZonalGridSeries::createTable() {
    CreateStatTable(application_.platform(), application_.prompts(), settings_.OutputWorkspace,
                    table_);
}

void ZonalGridSeries::add(int month, const std::string& name, const RasterPtr& grid) {
    workspace_->save(std::array{RasterToSave{name, grid, "GRID"}});
    auto layer =
        application_.document().createRasterLayer(joinedPath(settings_.OutputWorkspace, name));
    ApplyColorRamp(application_.prompts(), *layer, {100, 50, 50}, {0, 255, 0});
    application_.document().addLayer(std::move(layer));
    MakeZonalStat(
        application_.platform(), application_.prompts(),
        {settings_.OutputWorkspace, settings_.Zones, settings_.ZoneField, settings_.yearNumber()},
        open(name), table_, month);
}

void ZonalGridSeries::showTable() {
    AddTable(application_.prompts(), application_.document(),
             OpenTable(application_.platform(), application_.prompts(), settings_.OutputWorkspace,
                       table_));
}

}  // namespace velmora
