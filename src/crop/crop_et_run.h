// SPDX-License-Identifier: MIT
#pragma once

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// Crop coefficient times reference ET, in the unit of the latter. No data in either gives no data.
// The operation's environment decides on the cells.
RasterPtr cropEvapotranspiration(IMapAlgebraOp& algebra, const RasterPtr& coefficients,
                                 const RasterPtr& referenceEt);

// The crop ET run: for each month of the settings' period the crop coefficient grid times the
// reference ET grid, saved as "ET_" + month + "_" + method and summarised by zone in "StatCET".
// Shows its messages as it goes; the first failure is shown and ends the run, what was made before
// stays. True when the run is done.
bool runCropEt(IApplication& application, const RunSettings& settings);

}  // namespace velmora
