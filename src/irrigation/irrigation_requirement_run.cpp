// SPDX-License-Identifier: MIT
#include "irrigation/irrigation_requirement_run.h"

#include <optional>

#include "gis/error_trap.h"
#include "irrigation/frm_statistics.h"
#include "irrigation/requirement_series.h"

namespace velmora {

namespace {

void runMonths(IApplication& application, const RunSettings& settings, ZonalGridSeries& series) {
    const RasterPtr efficiency = series.open(gridName(productMadeBy("eff").read, settings, 0));
    series.createTable();
    addRequirements(
        application, settings, series,
        [&](IMapAlgebraOp& algebra, const RasterPtr& cropEt, const RasterPtr& precipitation) {
            return irrigationRequirement(algebra, cropEt, precipitation, efficiency);
        });
    series.showTable();
}

}  // namespace

RasterPtr irrigationRequirement(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                                const RasterPtr& precipitation, const RasterPtr& efficiency) {
    bindWaterShortage(algebra, cropEt, precipitation);
    algebra.BindRaster(efficiency, "EF");
    return algebra.Execute("[AllCell] * [PosiOne] / [EF]");
}

bool runIrrigationRequirement(IApplication& application, const RunSettings& settings) {
    std::optional<ZonalGridSeries> series;
    return trapped(application.prompts(), [&] {
        runMonths(application, settings,
                  series.emplace(application, settings, productMadeBy("irr")));
        series.reset();  // lets go of the folder before anybody reads the results
        frmStatistics results(application);
        results.load();
        if (results.isOpen()) application.dialogs().showModal(results);
    });
}

}  // namespace velmora
