// SPDX-License-Identifier: MIT
#pragma once

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// max(ET - 0.8 PPT, 0) / EF, in the unit of ET and PPT: what has to be diverted so that crops get
// their net irrigation requirement. No data in any of the three, and an efficiency of 0, give no
// data. The operation's environment decides on the cells.
RasterPtr irrigationRequirement(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                                const RasterPtr& precipitation, const RasterPtr& efficiency);

// The irrigation water requirement run: each month of the settings' period is saved as "IRR_" +
// month and summarised by zone in "StatIRR"; at the end the zonal results are shown. Without the
// efficiency grid nothing is touched. The first failure is shown and ends the run; what was made
// before stays. True when the run is done.
bool runIrrigationRequirement(IApplication& application, const RunSettings& settings);

}  // namespace velmora
