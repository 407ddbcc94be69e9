// SPDX-License-Identifier: MIT
// What the reference ET run makes surfaces of: which quantities of the weather table, out of which
// values, and what happens where the table lacks them. The run and the check of its inputs ask
// here.
#pragma once

#include <string>
#include <vector>

#include "modelling/station_fields.h"
#include "modelling/surface_recipe.h"
#include "settings/run_settings.h"

namespace velmora {

struct WeatherQuantity {
    SurfaceRecipe recipe;
    bool required = false;   // else a month whose field the table lacks goes without it
    bool estimated = false;  // where a month goes without it, it is estimated
    std::string title;       // of radiation and wind: "Wind Speed"
};

// The quantities that the method and the flags of the settings ask for, in the order in which they
// are made: maximum and minimum temperatures first.
std::vector<WeatherQuantity> weatherQuantities(const RunSettings& settings);

}  // namespace velmora
