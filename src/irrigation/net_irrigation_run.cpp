// SPDX-License-Identifier: MIT
#include "irrigation/net_irrigation_run.h"

#include <string>

#include "gis/error_trap.h"
#include "gis/month_names.h"
#include "settings/zonal_grid_series.h"

namespace velmora {

namespace {

void runMonths(IApplication& application, const RunSettings& settings) {
    ZonalGridSeries series(application, settings, "StatNIR");
    series.createTable();
    for (const int month : settings.months()) {
        const std::string label = GetMonthName(month);
        const RasterPtr precipitation = series.open("PPT_" + label);
        const RasterPtr cropEt = series.open("ET_" + label + settings.methodTag());
        const auto algebra = application.platform().analysis().mapAlgebra();
        useInputs(algebra->environment());
        series.add(month, "NIR_" + label,
                   netIrrigationRequirement(*algebra, cropEt, precipitation));
    }
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
