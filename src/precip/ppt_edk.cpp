// SPDX-License-Identifier: MIT
#include "precip/precipitation_rules.h"
#include "precip/precipitation_run.h"
#include "settings/run_choices.h"

namespace velmora {

void PrecipitationRun::PPT_EDK() {
    prepare();
    stations_->requireElevations();
    bindDem();
    if (demUnit(settings_) == LengthUnit::feet) {
        application_.prompts().message("The DEM " + settings_.DEM +
                                       " is in feet, but precipitation takes its elevations as "
                                       "metres, so the grids will be wrong: use a DEM in metres");
    }
    makeMonths(&PrecipitationRun::edkMonth);
}

void PrecipitationRun::edkMonth(int month) {
    const std::string field = stations_->weatherField("P_", month);
    StationSurface surface(detrendedPrecipitation(), *stations_, month);
    if (rainlessMonth(month, field)) return;
    tellZeros(month, field, surface.valid());
    finishMonth(month, surface.make(*interpolation_, *algebra_));
    explain(surface);
}

}  // namespace velmora
