// SPDX-License-Identifier: MIT
#include "refet/weather_rules.h"

#include "settings/run_choices.h"

namespace velmora {

namespace {

// Detrended over elevation, inverse distance weighting, the line put back over the DEM.
SurfaceRecipe temperature(const RunSettings& settings, const std::string& quantity) {
    const bool fahrenheit = temperatureUnit(settings) == TemperatureUnit::fahrenheit;
    SurfaceRecipe recipe;
    recipe.quantity = recipe.grid = quantity;
    recipe.unit = fahrenheit ? "deg F" : "deg C";
    recipe.range = fahrenheit ? ValidRange{0, 150} : ValidRange{-20, 80};
    recipe.treatment = Treatment::detrended;
    recipe.variable = "T";
    recipe.fromFahrenheit = fahrenheit;
    return recipe;
}

// Inverse distance weighting of the values as they stand.
SurfaceRecipe direct(const std::string& quantity, const std::string& unit) {
    SurfaceRecipe recipe;
    recipe.quantity = recipe.grid = quantity;
    recipe.unit = unit;
    recipe.range = {0, 500};
    return recipe;
}

}  // namespace

std::vector<WeatherQuantity> weatherQuantities(const RunSettings& settings) {
    std::vector<WeatherQuantity> all = {{temperature(settings, "TM_"), true, false, {}},
                                        {temperature(settings, "TN_"), true, false, {}}};
    if (settings.HasTmean) all.push_back({temperature(settings, "TA_"), false, false, {}});
    if (!settings.needsFullWeather()) return all;
    if (settings.HasTdew) all.push_back({temperature(settings, "TD_"), false, true, {}});
    if (settings.HasSR) {
        all.push_back({direct("SR_", "MJ/m2/Day"), false, true, "Soalr radiation"});
    }
    if (settings.HasWS) all.push_back({direct("WS_", "m/s"), false, true, "Wind Speed"});
    return all;
}

}  // namespace velmora
