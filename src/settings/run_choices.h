// SPDX-License-Identifier: MIT
// The choices of a run, which the settings keep as the texts that a user saw. Here alone a text
// becomes a choice and back; nothing else compares the texts. A settings file may hold any text: a
// unit that is none of the known ones counts as the metric one, a method that is none as `none`.
#pragma once

#include "settings/run_settings.h"

namespace velmora {

enum class LengthUnit { metres, feet };
enum class TemperatureUnit { celsius, fahrenheit };
enum class PrecipitationMethod {
    none,
    detrended,  // "EDK": the line over elevation taken out, what it leaves kriged
    reference   // "PRISM_REF": a reference grid scaled to the stations
};
enum class TimeStep { none, monthly, daily };
// The six methods by their numbers in the settings.
enum class RefEtMethod {
    none = 0,
    asceTall = 1,
    asceShort = 2,
    fao56 = 3,
    hargreaves = 4,
    blaneyCriddle = 5,
    priestleyTaylor = 6
};

LengthUnit demUnit(const RunSettings& settings);
LengthUnit siteElevationUnit(const RunSettings& settings);
TemperatureUnit temperatureUnit(const RunSettings& settings);
PrecipitationMethod precipitationMethod(const RunSettings& settings);
TimeStep timeStep(const RunSettings& settings);
RefEtMethod refEtMethod(const RunSettings& settings);

// The text that stands for the choice in the settings: "Feet". "" for `none`.
const char* textOf(LengthUnit unit);
const char* textOf(TemperatureUnit unit);
const char* textOf(PrecipitationMethod method);
const char* textOf(TimeStep step);

double metresIn(LengthUnit unit);

}  // namespace velmora
