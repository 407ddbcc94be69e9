// SPDX-License-Identifier: MIT
#include "settings/settings_fields.h"

#include <algorithm>
#include <array>

#include "gis/numbers.h"

namespace velmora {

namespace {

using R = RunSettings;

constexpr std::array<SettingsField, 35> kFields = {{
    {"DEM", &R::DEM, "txtDEM", "path of the DEM grid"},
    {"WeatherStations", &R::WeatherStations, "txtWeatherStations",
     "path of the weather station point shapefile (fields staname, ELEVATION)"},
    {"WeatherData", &R::WeatherData, "txtWeatherData",
     "path of the weather table, dBASE (STN, TM_Jan ... WS_Dec)"},
    {"KcTable", &R::KcTable, "txtKc", "path of the crop coefficient table, dBASE"},
    {"LandCover", &R::LandCover, "txtLandCover", "path of the land use/cover polygon shapefile"},
    {"Zones", &R::Zones, "txtZones", "path of the zone polygon shapefile"},
    {"ZoneField", &R::ZoneField, "cboZoneField", "key field identifying zones"},
    {"PrismGridFolder", &R::PrismGridFolder, "txtPrism",
     "location of the reference precipitation grids"},
    {"OutputWorkspace", &R::OutputWorkspace, "txtOutput", "folder for output"},
    {"ExtentProvider", &R::ExtentProvider, "txtExtent",
     "path of the shapefile whose extent is the modelling domain"},
    {"CellSize", &R::CellSize, "txtCellSize", "cell size in metres"},
    {"RefETMethod", &R::RefETMethod, "cboRefETMethod",
     "1 ASCE Penman-Monteith tall, 2 short, 3 FAO56, 4 Hargreaves 1985, 5 Blaney-Criddle, "
     "6 Priestley-Taylor"},
    {"PrecipitationMethod", &R::PrecipitationMethod, "optEDK", "EDK or PRISM_REF"},
    {"TimeStep", &R::TimeStep, "optMonthly", "Monthly or Daily"},
    {"Year", &R::Year, "txtYear", "year of the run"},
    {"BeginMonth", &R::BeginMonth, "cboBeginMonth", "first month, Jan to Dec"},
    {"EndMonth", &R::EndMonth, "cboEndMonth", "last month, Jan to Dec"},
    {"BeginDay", &R::BeginDay, "cboBeginDay", "first day, 1 to 31 (Daily)"},
    {"EndDay", &R::EndDay, "cboEndDay", "last day, 1 to 31 (Daily)"},
    {"DemUnit", &R::DemUnit, "cboDemUnit", "Meters or Feet"},
    {"SiteElevationUnit", &R::SiteElevationUnit, "cboSiteUnit", "Meters or Feet"},
    {"TemperatureUnit", &R::TemperatureUnit, "cboTemperatureUnit", "Degree C or Degree F"},
    {"ShowMonitor", &R::ShowMonitor, "chkShowMonitor", "show the progress monitor"},
    {"HasTmax", &R::HasTmax, "chkTmax",
     "the weather table holds maximum temperature; found when WeatherData is named"},
    {"HasTmin", &R::HasTmin, "chkTmin", "it holds minimum temperature"},
    {"HasTmean", &R::HasTmean, "chkTmean", "it holds mean temperature"},
    {"HasTdew", &R::HasTdew, "chkTdew", "it holds dew point temperature"},
    {"HasRHmean", &R::HasRHmean, "chkRHmean", "it holds mean relative humidity"},
    {"HasRHmax", &R::HasRHmax, "chkRHmax", "it holds maximum relative humidity"},
    {"HasRHmin", &R::HasRHmin, "chkRHmin", "it holds minimum relative humidity"},
    {"HasSR", &R::HasSR, "chkSR", "it holds solar radiation"},
    {"HasWS", &R::HasWS, "chkWS", "it holds wind speed"},
    {"Ks", &R::Ks, "txtKs", "coefficient of the radiation estimate, 0.16 to 0.19"},
    {"Ko", &R::Ko, "txtKo", "offset of the dew point estimate, deg C"},
    {"EstimatedWindSpeed", &R::EstimatedWindSpeed, "txtWindSpeed",
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

bool isPath(const SettingsField& field) {
    constexpr std::array<std::string_view, 9> paths = {
        "DEM",   "WeatherStations", "WeatherData",     "KcTable",       "LandCover",
        "Zones", "PrismGridFolder", "OutputWorkspace", "ExtentProvider"};
    return std::find(paths.begin(), paths.end(), field.name) != paths.end();
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
