// SPDX-License-Identifier: MIT
#include "crop/crop_et_run.h"

#include <string>

#include "gis/error_trap.h"
#include "gis/month_names.h"
#include "modelling/zonal_grid_series.h"

namespace velmora {

namespace {

void runMonths(IApplication& application, const RunSettings& settings) {
    IPrompts& prompts = application.prompts();
    ZonalGridSeries series(application, settings, "cropet", "StatCET", {"refet", "kc"});
    prompts.message("Ready to create table");
    series.createTable();
    for (const int month : settings.months()) {
        const std::string label = GetMonthName(month);
        const RasterPtr kc = series.open("Kc_" + label);
        const std::string reference = "RefET_" + label + settings.methodTag();
        prompts.message(reference);
        const RasterPtr etr = series.open(reference);
        const auto algebra = application.platform().analysis().mapAlgebra();
        useInputs(algebra->environment());
        algebra->BindRaster(kc, "Kc");
        algebra->BindRaster(etr, "ETR");
        series.add(month, "ET_" + label + settings.methodTag(), algebra->Execute("[Kc] * [ETR]"));
    }
    series.showTable();
    prompts.message("Potential crop ET calculation is completed ...");
}

}  // namespace

bool runCropEt(IApplication& application, const RunSettings& settings) {
    return trapped(application.prompts(), [&] { runMonths(application, settings); });
}

}  // namespace velmora
