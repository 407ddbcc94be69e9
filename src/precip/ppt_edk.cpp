// SPDX-License-Identifier: MIT
#include "gis/errors.h"
#include "modelling/station_interpolation.h"
#include "precip/precipitation_run.h"

namespace velmora {

void PrecipitationRun::PPT_EDK() {
    prepare();
    stations_->requireElevations();
    bindDem();
    if (settings_.DemUnit == "Feet") {
        application_.prompts().message("The DEM " + settings_.DEM +
                                       " is in feet, but precipitation takes its elevations as "
                                       "metres, so the grids will be wrong: use a DEM in metres");
    }
    makeMonths(&PrecipitationRun::edkMonth);
}

void PrecipitationRun::edkMonth(int month) {
    const std::string field = stations_->weatherField("P_", month);
    const std::string surface = surfaceName(month);
    std::vector<std::size_t> valid = stations_->between(field, 0, 1000);
    if (rainlessMonth(month, field)) return;
    tellZeros(month, field, valid);
    const LinearTrend trend =
        stations_->detrendFor(surface, field, month, valid, stations_->zerosText(field));
    const std::vector<Sample> residuals = stations_->samples(valid, stations_->workingField());

    algebra_->BindRaster(krigedSurface(*interpolation_, residuals), "P");
    const RasterPtr allCell = algebra_->Execute(retrendExpression("P", trend));
    algebra_->BindRaster(allCell, "AllCell");
    algebra_->BindRaster(algebra_->Execute("[AllCell] >= 0"), "Positive");
    finishMonth(month, algebra_->Execute("[AllCell] * [Positive]"));
    explain({surface, field, field, valid, "between 0 and 1000", true, true, true, true, {}});
}

}  // namespace velmora
