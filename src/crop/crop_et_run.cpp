// SPDX-License-Identifier: MIT
#include "crop/crop_et_run.h"

#include <algorithm>
#include <array>
#include <exception>

#include "gis/gis_functions.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "gis/zonal_tables.h"
#include "settings/zonal_settings.h"

namespace velmora {

namespace {

constexpr const char* kTable = "StatCET";

}  // namespace

bool CropEtRun::run() {
    try {
        runMonths();
        return true;
    } catch (const std::exception& e) {
        application_.prompts().message(e.what());
        return false;
    }
}

void CropEtRun::runMonths() {
    IPrompts& prompts = application_.prompts();
    lock_ = platform_.files().lockFolder(settings_.OutputWorkspace);
    workspace_ = platform_.rasters().openFromFolder(settings_.OutputWorkspace);
    prompts.message("Ready to create table");
    CreateStatTable(platform_, prompts, settings_.OutputWorkspace, kTable);
    const int last = settings_.endMonthNumber();
    for (int month = std::max(1, settings_.beginMonthNumber()); month <= last; ++month) {
        runMonth(month);
    }
    AddTable(prompts, application_.document(),
             OpenTable(platform_, prompts, settings_.OutputWorkspace, kTable));
    prompts.message("Potential crop ET calculation is completed ...");
}

void CropEtRun::runMonth(int month) {
    const std::string label = GetMonthName(month);
    const RasterPtr kc = workspace_->openRasterDataset("Kc_" + label)->createDefaultRaster();
    const std::string reference = "RefET_" + label + settings_.methodTag();
    application_.prompts().message(reference);
    const RasterPtr etr = workspace_->openRasterDataset(reference)->createDefaultRaster();

    const auto algebra = platform_.analysis().mapAlgebra();
    useInputs(algebra->environment());
    algebra->BindRaster(kc, "Kc");
    algebra->BindRaster(etr, "ETR");
    const std::string name = "ET_" + label + settings_.methodTag();
    workspace_->save(std::array{RasterToSave{name, algebra->Execute("[Kc] * [ETR]"), "GRID"}});

    auto layer =
        application_.document().createRasterLayer(joinedPath(settings_.OutputWorkspace, name));
    ApplyColorRamp(application_.prompts(), *layer, {100, 50, 50}, {0, 255, 0});
    application_.document().addLayer(std::move(layer));
    MakeZonalStat(platform_, application_.prompts(), zonalTableSettings(settings_),
                  workspace_->openRasterDataset(name)->createDefaultRaster(), kTable, month);
}

}  // namespace velmora
