// SPDX-License-Identifier: MIT
// How the methods of the precipitation run make their surfaces. The run and the check of its inputs
// ask here.
#pragma once

#include "modelling/station_fields.h"
#include "modelling/surface_recipe.h"
#include "settings/run_settings.h"

namespace velmora {

// "EDK": detrended over elevation, kriged, the line put back over the DEM, negative cells set to 0.
const SurfaceRecipe& detrendedPrecipitation();

// "PRISM_REF": kriged ratios of the stations to a reference grid, which they scale.
const SurfaceRecipe& referencedPrecipitation();

// That of the settings' method, null for a method that is neither.
const SurfaceRecipe* precipitationRecipe(const RunSettings& settings);

}  // namespace velmora
