// SPDX-License-Identifier: MIT
#include "settings/settings_fields.h"

#include <algorithm>
#include <array>

#include "gis/numbers.h"

namespace velmora {

namespace {

using R = RunSettings;
using K = FieldKind;

constexpr std::array<FieldOption, 2> kPrecipitationMethods = {
    {{"EDK", "optEDK"}, {"PRISM_REF", "optPRISM"}}};
constexpr std::array<FieldOption, 2> kTimeSteps = {
    {{"Monthly", "optMonthly"}, {"Daily", "optDaily"}}};

constexpr std::array<SettingsField, 35> kFields = {{
    {"DEM", K::path, &R::DEM, "txtDEM", "path of the DEM grid"},
    {"WeatherStations", K::path, &R::WeatherStations, "txtWeatherStations",
     "path of the weather station point shapefile (fields staname, ELEVATION)"},
    {"WeatherData", K::path, &R::WeatherData, "txtWeatherData",
     "path of the weather table, dBASE (STN, TM_Jan ... WS_Dec)"},
    {"KcTable", K::path, &R::KcTable, "txtKc", "path of the crop coefficient table, dBASE"},
    {"LandCover", K::path, &R::LandCover, "txtLandCover",
     "path of the land use/cover polygon shapefile"},
    {"Zones", K::path, &R::Zones, "txtZones", "path of the zone polygon shapefile"},
    {"ZoneField", K::choice, &R::ZoneField, "cboZoneField", "key field identifying zones"},
    {"PrismGridFolder", K::path, &R::PrismGridFolder, "txtPrism",
     "location of the reference precipitation grids"},
    {"OutputWorkspace", K::path, &R::OutputWorkspace, "txtOutput", "folder for output"},
    {"ExtentProvider", K::path, &R::ExtentProvider, "txtExtent",
     "path of the shapefile whose extent is the modelling domain"},
    {"CellSize", K::number, &R::CellSize, "txtCellSize", "cell size in metres"},
    {"RefETMethod", K::choice, &R::RefETMethod, "cboRefETMethod",
     "1 ASCE Penman-Monteith tall, 2 short, 3 FAO56, 4 Hargreaves 1985, 5 Blaney-Criddle, "
     "6 Priestley-Taylor"},
    {"PrecipitationMethod", K::choice, &R::PrecipitationMethod, "", "EDK or PRISM_REF",
     kPrecipitationMethods},
    {"TimeStep", K::choice, &R::TimeStep, "", "Monthly or Daily", kTimeSteps},
    {"Year", K::text, &R::Year, "txtYear", "year of the run"},
    {"BeginMonth", K::choice, &R::BeginMonth, "cboBeginMonth", "first month, Jan to Dec"},
    {"EndMonth", K::choice, &R::EndMonth, "cboEndMonth", "last month, Jan to Dec"},
    {"BeginDay", K::choice, &R::BeginDay, "cboBeginDay", "first day, 1 to 31 (Daily)"},
    {"EndDay", K::choice, &R::EndDay, "cboEndDay", "last day, 1 to 31 (Daily)"},
    {"DemUnit", K::choice, &R::DemUnit, "cboDemUnit", "Meters or Feet"},
    {"SiteElevationUnit", K::choice, &R::SiteElevationUnit, "cboSiteUnit", "Meters or Feet"},
    {"TemperatureUnit", K::choice, &R::TemperatureUnit, "cboTemperatureUnit",
     "Degree C or Degree F"},
    {"ShowMonitor", K::flag, &R::ShowMonitor, "chkShowMonitor", "show the progress monitor"},
    {"HasTmax", K::flag, &R::HasTmax, "chkTmax",
     "the weather table holds maximum temperature; found when WeatherData is named"},
    {"HasTmin", K::flag, &R::HasTmin, "chkTmin", "it holds minimum temperature"},
    {"HasTmean", K::flag, &R::HasTmean, "chkTmean", "it holds mean temperature"},
    {"HasTdew", K::flag, &R::HasTdew, "chkTdew", "it holds dew point temperature"},
    {"HasRHmean", K::flag, &R::HasRHmean, "chkRHmean", "it holds mean relative humidity"},
    {"HasRHmax", K::flag, &R::HasRHmax, "chkRHmax", "it holds maximum relative humidity"},
    {"HasRHmin", K::flag, &R::HasRHmin, "chkRHmin", "it holds minimum relative humidity"},
    {"HasSR", K::flag, &R::HasSR, "chkSR", "it holds solar radiation"},
    {"HasWS", K::flag, &R::HasWS, "chkWS", "it holds wind speed"},
    {"Ks", K::number, &R::Ks, "txtKs", "coefficient of the radiation estimate, 0.16 to 0.19"},
    {"Ko", K::number, &R::Ko, "txtKo", "offset of the dew point estimate, deg C"},
    {"EstimatedWindSpeed", K::number, &R::EstimatedWindSpeed, "txtWindSpeed",
     "wind speed at 2 m where none was measured, m/s"},
}};

struct TextOf {
    const RunSettings& settings;
    std::string operator()(std::string R::*member) const { return settings.*member; }
    std::string operator()(double R::*member) const { return numberText(settings.*member); }
    std::string operator()(bool R::*member) const { return settings.*member ? "true" : "false"; }
};

}  // namespace

std::span<const SettingsField> settingsFields() { return kFields; }

const SettingsField* findSettingsField(std::string_view name) {
    const auto* found = std::find_if(kFields.begin(), kFields.end(),
                                     [&](const SettingsField& f) { return f.name == name; });
    return found == kFields.end() ? nullptr : found;
}

const FieldOption* optionOf(const SettingsField& field, std::string_view value) {
    const auto found = std::ranges::find(field.options, value, &FieldOption::value);
    return found == field.options.end() ? nullptr : &*found;
}

std::string optionNames(const SettingsField& field) {
    std::string names;
    for (const FieldOption& option : field.options) {
        names += (names.empty() ? "" : " or ") + std::string(option.value);
    }
    return names;
}

void copyField(const SettingsField& field, const RunSettings& from, RunSettings& to) {
    std::visit([&](auto member) { to.*member = from.*member; }, field.member);
}

std::vector<FieldChange> changesBetween(const RunSettings& before, const RunSettings& after) {
    std::vector<FieldChange> changes;
    for (const SettingsField& field : kFields) {
        const std::string old = settingsText(before, field);
        const std::string now = settingsText(after, field);
        if (old != now) changes.push_back({field.name, old, now});
    }
    return changes;
}

std::string settingsText(const RunSettings& settings, const SettingsField& field) {
    return std::visit(TextOf{settings}, field.member);
}

}  // namespace velmora
