// SPDX-License-Identifier: MIT
#include "modelling/zonal_grid_series.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "gis/gis_functions.h"
#include "gis/text.h"
#include "gis/zonal_tables.h"
#include "modelling/old_results.h"
#include "modelling/step_inputs.h"

namespace velmora {

ZonalGridSeries::ZonalGridSeries(IApplication& application, const RunSettings& settings,
                                 const Product& product)
    : application_(application),
      settings_(settings),
      product_(product),
      step_(product.maker),
      table_(product.table.name),
      folder_(application.platform().files(), settings.OutputWorkspace),
      workspace_(application.platform().rasters().openFromFolder(settings.OutputWorkspace)) {
    std::vector<std::string> texts = oldInputs(application.platform(), settings, step_);
    std::ranges::move(passedOverInputs(application.platform(), settings, step_),
                      std::back_inserter(texts));
    std::vector<std::string> sources;
    for (const Product* source : sourcesOf(product_)) sources.emplace_back(source->maker);
    record_.emplace(application_, settings_, step_, sources);
    for (const std::string& text : texts) application.feedback().warning(text);
}

RasterPtr ZonalGridSeries::open(const std::string& name) const {
    return workspace_->openRasterDataset(name)->createDefaultRaster();
}

RasterPtr ZonalGridSeries::open(const Product& source, int month) const {
    return open(gridName(source.read, settings_, month));
}

void ZonalGridSeries::createTable() {
    tableMade_ = CreateStatTable(application_.platform(), application_.prompts(),
                                 settings_.OutputWorkspace, table_);
}

void ZonalGridSeries::add(int month, const RasterPtr& grid) {
    const std::string name = gridName(product_.made, settings_, month);
    workspace_->save(std::array{RasterToSave{name, grid, "GRID"}});
    record_->made(name);
    auto layer =
        application_.document().createRasterLayer(joinedPath(settings_.OutputWorkspace, name));
    ApplyColorRamp(application_.prompts(), *layer, product_.ramp.from, product_.ramp.to);
    application_.document().addLayer(std::move(layer));
    summarise(month, open(name));
}

// Rows of this run go into no older table.
void ZonalGridSeries::summarise(int month, const RasterPtr& grid) {
    if (!tableMade_) {
        application_.prompts().failure("Error in sub <GotoStatTable>: the table is not open");
        return;
    }
    MakeZonalStat(
        application_.platform(), application_.prompts(),
        {settings_.OutputWorkspace, settings_.Zones, settings_.ZoneField, settings_.yearNumber()},
        grid, table_, month);
}

void ZonalGridSeries::showTable() {
    folder_.settle();
    record_->finish();
    application_.feedback().advance(1);
    if (!tableMade_) {
        application_.prompts().failure("Error in opening table");
        return;
    }
    AddTable(application_.prompts(), application_.document(),
             OpenTable(application_.platform(), application_.prompts(), settings_.OutputWorkspace,
                       table_));
}

}  // namespace velmora
