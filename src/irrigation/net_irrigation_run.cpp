// SPDX-License-Identifier: MIT
#include "irrigation/net_irrigation_run.h"

#include "gis/error_trap.h"
#include "irrigation/requirement_series.h"

namespace velmora {

namespace {

void runMonths(IApplication& application, const RunSettings& settings) {
    ZonalGridSeries series(application, settings, "StatNIR");
    series.createTable();
    addRequirements(application, settings, series, "NIR_", netIrrigationRequirement);
    series.showTable();
}

}  // namespace

RasterPtr netIrrigationRequirement(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                                   const RasterPtr& precipitation) {
    algebra.BindRaster(cropEt, "ET");
    algebra.BindRaster(precipitation, "PPT");
    algebra.BindRaster(algebra.Execute("[ET] - 0.8 * [PPT]"), "AllCell");
    algebra.BindRaster(algebra.Execute("[AllCell] >= 0"), "PosiOne");
    return algebra.Execute("[AllCell] * [PosiOne]");
}

bool runNetIrrigation(IApplication& application, const RunSettings& settings) {
    return trapped(application.prompts(), [&] { runMonths(application, settings); });
}

}  // namespace velmora
