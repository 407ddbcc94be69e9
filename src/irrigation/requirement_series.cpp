// SPDX-License-Identifier: MIT
#include "irrigation/requirement_series.h"

#include <string>

#include "modelling/products.h"

namespace velmora {

namespace {

constexpr const char* kEffective = "0.8 * [PPT]";

}  // namespace

RasterPtr effectivePrecipitation(IMapAlgebraOp& algebra, const RasterPtr& precipitation) {
    algebra.BindRaster(precipitation, "PPT");
    return algebra.Execute(kEffective);
}

RasterPtr precipitationSurplus(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                               const RasterPtr& precipitation) {
    bindWaterShortage(algebra, cropEt, precipitation);
    return algebra.Execute("[AllCell] * ([PosiOne] - 1)");
}

void bindWaterShortage(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                       const RasterPtr& precipitation) {
    algebra.BindRaster(cropEt, "ET");
    algebra.BindRaster(precipitation, "PPT");
    algebra.BindRaster(algebra.Execute(std::string("[ET] - ") + kEffective), "AllCell");
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
