// SPDX-License-Identifier: MIT
#include "crop/crop_et_run.h"

#include <optional>

#include "gis/error_trap.h"
#include "modelling/zonal_grid_series.h"

namespace velmora {

namespace {

void runMonths(IApplication& application, const RunSettings& settings, ZonalGridSeries& series) {
    IPrompts& prompts = application.prompts();
    const Product& reference = productMadeBy("refet");
    const Product& coefficients = productMadeBy("kc");
    prompts.message("Ready to create table");
    series.createTable();
    const std::vector<int> months = settings.months();
    FeedbackParts parts(application.feedback(), months.size());
    for (const int month : months) {
        parts.next(monthMessage(series.product(), month));
        const RasterPtr kc = series.open(coefficients, month);
        prompts.message(gridName(reference.read, settings, month));
        const RasterPtr etr = series.open(reference, month);
        const auto algebra = application.platform().analysis().mapAlgebra();
        useInputs(algebra->environment());
        series.add(month, cropEvapotranspiration(*algebra, kc, etr));
    }
    series.showTable();
    prompts.message("Potential crop ET calculation is completed ...");
}

}  // namespace

RasterPtr cropEvapotranspiration(IMapAlgebraOp& algebra, const RasterPtr& coefficients,
                                 const RasterPtr& referenceEt) {
    algebra.BindRaster(coefficients, "Kc");
    algebra.BindRaster(referenceEt, "ETR");
    return algebra.Execute("[Kc] * [ETR]");
}

bool runCropEt(IApplication& application, const RunSettings& settings) {
    std::optional<ZonalGridSeries> series;
    return trapped(application.prompts(), [&] {
        runMonths(application, settings,
                  series.emplace(application, settings, productMadeBy("cropet")));
    });
}

}  // namespace velmora
