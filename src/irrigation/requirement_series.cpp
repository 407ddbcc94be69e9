// SPDX-License-Identifier: MIT
#include "irrigation/requirement_series.h"

#include "gis/month_names.h"

namespace velmora {

void bindWaterShortage(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                       const RasterPtr& precipitation) {
    algebra.BindRaster(cropEt, "ET");
    algebra.BindRaster(precipitation, "PPT");
    algebra.BindRaster(algebra.Execute("[ET] - 0.8 * [PPT]"), "AllCell");
    algebra.BindRaster(algebra.Execute("[AllCell] >= 0"), "PosiOne");
}

void addRequirements(IApplication& application, const RunSettings& settings,
                     ZonalGridSeries& series, const std::string& prefix,
                     const Requirement& requirement) {
    for (const int month : settings.months()) {
        const std::string label = GetMonthName(month);
        const RasterPtr precipitation = series.open("PPT_" + label);
        const RasterPtr cropEt = series.open("ET_" + label + settings.methodTag());
        const auto algebra = application.platform().analysis().mapAlgebra();
        useInputs(algebra->environment());
        series.add(month, prefix + label, requirement(*algebra, cropEt, precipitation));
    }
}

}  // namespace velmora
