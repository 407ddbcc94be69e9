// SPDX-License-Identifier: MIT
#pragma once

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// max(ET - 0.8 PPT, 0), in the unit of the inputs: 0.8 is the share of precipitation that crops can
// use. No data in either gives no data. The operation's environment decides on the cells.
RasterPtr netIrrigationRequirement(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                                   const RasterPtr& precipitation);

// The net irrigation requirement run: for each month of the settings' period what crop ET needs
// beyond effective precipitation, saved as "NIR_" + month and summarised by zone in "StatNIR". The
// first failure is shown and ends the run; what was made before stays. True when the run is done,
// which shows nothing: the layers and the table are the result.
bool runNetIrrigation(IApplication& application, const RunSettings& settings);

}  // namespace velmora
