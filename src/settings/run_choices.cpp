// SPDX-License-Identifier: MIT
#include "settings/run_choices.h"

#include <algorithm>
#include <array>

#include "gis/units.h"

namespace velmora {

namespace {

// The texts of an enumeration by its values, of which an unknown text is the first.
constexpr std::array kLengthUnits = {"Meters", "Feet"};
constexpr std::array kTemperatureUnits = {"Degree C", "Degree F"};
constexpr std::array kPrecipitationMethods = {"", "EDK", "PRISM_REF"};
constexpr std::array kTimeSteps = {"", "Monthly", "Daily"};

template <class Choice, std::size_t count>
Choice chosen(const std::array<const char*, count>& texts, const std::string& text) {
    const auto found = std::ranges::find(texts, text);
    return static_cast<Choice>(found == texts.end() ? 0 : found - texts.begin());
}

template <class Choice, std::size_t count>
const char* textIn(const std::array<const char*, count>& texts, Choice choice) {
    return texts.at(static_cast<std::size_t>(choice));
}

}  // namespace

LengthUnit demUnit(const RunSettings& settings) {
    return chosen<LengthUnit>(kLengthUnits, settings.DemUnit);
}
LengthUnit siteElevationUnit(const RunSettings& settings) {
    return chosen<LengthUnit>(kLengthUnits, settings.SiteElevationUnit);
}
TemperatureUnit temperatureUnit(const RunSettings& settings) {
    return chosen<TemperatureUnit>(kTemperatureUnits, settings.TemperatureUnit);
}
PrecipitationMethod precipitationMethod(const RunSettings& settings) {
    return chosen<PrecipitationMethod>(kPrecipitationMethods, settings.PrecipitationMethod);
}
TimeStep timeStep(const RunSettings& settings) {
    return chosen<TimeStep>(kTimeSteps, settings.TimeStep);
}
RefEtMethod refEtMethod(const RunSettings& settings) {
    return static_cast<RefEtMethod>(settings.methodNumber());
}

const char* textOf(LengthUnit unit) { return textIn(kLengthUnits, unit); }
const char* textOf(TemperatureUnit unit) { return textIn(kTemperatureUnits, unit); }
const char* textOf(PrecipitationMethod method) { return textIn(kPrecipitationMethods, method); }
const char* textOf(TimeStep step) { return textIn(kTimeSteps, step); }

double metresIn(LengthUnit unit) { return unit == LengthUnit::feet ? kMetresPerFoot : 1; }

}  // namespace velmora
