// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "gis/application.h"
#include "modelling/zonal_grid_series.h"
#include "settings/run_settings.h"

namespace velmora {

// Makes a month's requirement out of its crop ET and precipitation.
using Requirement = std::function<RasterPtr(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                                            const RasterPtr& precipitation)>;

// The part of precipitation that crops can use, 0.8 of it.
RasterPtr effectivePrecipitation(IMapAlgebraOp& algebra, const RasterPtr& precipitation);

// Effective precipitation beyond crop ET, 0 where there is none: what the net irrigation
// requirement leaves out where it is cut at 0, so that it is crop ET less effective precipitation
// plus this.
RasterPtr precipitationSurplus(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                               const RasterPtr& precipitation);

// Binds crop ET less effective precipitation under "AllCell" and where that is 0 or more (1 there,
// else 0) under "PosiOne"; 0.8 is the share of precipitation that crops can use.
void bindWaterShortage(IMapAlgebraOp& algebra, const RasterPtr& cropEt,
                       const RasterPtr& precipitation);

// For each month of the settings' period opens precipitation and crop ET of the output folder,
// makes the requirement on the cells that its inputs share, and adds it to the series. Throws
// PlatformError; the months before stay.
void addRequirements(IApplication& application, const RunSettings& settings,
                     ZonalGridSeries& series, const Requirement& requirement);

}  // namespace velmora
