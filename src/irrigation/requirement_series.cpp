// SPDX-License-Identifier: MIT
#include "irrigation/requirement_series.h"

#include "modelling/products.h"

namespace velmora {

void bindWaterShortage(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                       const RasterPtr& precipitation) {
    algebra.BindRaster(cropEt, "ET");
    algebra.BindRaster(precipitation, "PPT");
    algebra.BindRaster(algebra.Execute("[ET] - 0.8 * [PPT]"), "AllCell");
    algebra.BindRaster(algebra.Execute("[AllCell] >= 0"), "PosiOne");
}

void addRequirements(IApplication& application, const RunSettings& settings,
                     ZonalGridSeries& series, const Requirement& requirement) {
    const std::vector<int> months = settings.months();
    FeedbackParts parts(application.feedback(), months.size());
    for (const int month : months) {
        parts.next(monthMessage(series.product(), month));
        const RasterPtr precipitation = series.open(productMadeBy("ppt"), month);
        const RasterPtr cropEt = series.open(productMadeBy("cropet"), month);
        const auto algebra = application.platform().analysis().mapAlgebra();
        useInputs(algebra->environment());
        series.add(month, requirement(*algebra, cropEt, precipitation));
    }
}

}  // namespace velmora
