// SPDX-License-Identifier: MIT
#include "irrigation/net_irrigation_run.h"

#include <optional>

#include "gis/error_trap.h"
#include "irrigation/requirement_series.h"

namespace velmora {

namespace {

void runMonths(IApplication& application, const RunSettings& settings, ZonalGridSeries& series) {
    series.createTable();
    addRequirements(application, settings, series, netIrrigationRequirement);
    series.showTable();
}

}  // namespace

RasterPtr netIrrigationRequirement(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                                   const RasterPtr& precipitation) {
    bindWaterShortage(algebra, cropEt, precipitation);
    return algebra.Execute("[AllCell] * [PosiOne]");
}

bool runNetIrrigation(IApplication& application, const RunSettings& settings) {
    std::optional<ZonalGridSeries> series;
    return trapped(application.prompts(), [&] {
        runMonths(application, settings,
                  series.emplace(application, settings, productMadeBy("nir")));
    });
}

}  // namespace velmora
