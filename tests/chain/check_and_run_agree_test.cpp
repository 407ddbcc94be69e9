// SPDX-License-Identifier: MIT
// An error of the check fails the step that it is about, and a step that fails for its inputs had
// an error in the check: each broken input goes through both.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <ostream>

#include "check/input_check.h"
#include "crop/kc_maps.h"
#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "tests/support/crop_fixture.h"

namespace velmora {
namespace {

using test::CropFixture;
using test::RunFixture;
using test::Station;

enum class Step { refet, ppt, kc, cropet };
using Steps = std::vector<Step>;

struct Broken {
    std::string name;
    std::function<void(CropFixture&)> spoil;
    Steps fail;        // those that cannot be done
    std::string said;  // the beginning of the findings' line behind its file; "" for any
};

void PrintTo(const Broken& broken, std::ostream* out) { *out << broken.name; }

const std::vector<std::string> kAll = {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"};

bool done(CropFixture& f, Step step) {
    if (step == Step::refet) return f.run();
    if (step == Step::ppt) return f.runPrecipitation();
    if (step == Step::kc) {
        makeKcMaps(f.application, f.settings,
                   {f.settings.LandCover, "Use", f.settings.KcTable, 200});
        return true;
    }
    for (const int month : f.settings.months()) {
        const std::string label = GetMonthName(month);
        if (f.hasOutput("Kc_" + label + f.settings.methodTag())) f.copyKcMaps({label});
    }
    return f.runCropEt();
}

// Weather in which the value of a quantity is another at the stations and months that `where` says.
using Where = std::function<bool(const Station&, int month)>;
std::function<void(CropFixture&)> weather(const std::string& prefix, const FieldValue& value,
                                          const Where& where) {
    return [=](CropFixture& f) {
        f.makeWeather(
            RunFixture::stations(),
            [&](const std::string& p, const Station& s, int m) {
                return p == prefix && where(s, m) ? value : RunFixture::usualWeather(p, s, m);
            },
            kAll);
    };
}

bool july(const Station&, int month) { return month == 7; }
bool julyButOne(const Station& s, int month) { return month == 7 && s.name != "S4"; }
bool julyButTwo(const Station& s, int month) { return julyButOne(s, month) && s.name != "S5"; }

std::function<void(CropFixture&)> without(const std::string& prefix) {
    return [=](CropFixture& f) {
        std::vector<std::string> prefixes = kAll;
        std::erase(prefixes, prefix);
        f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, prefixes);
    };
}

std::function<void(CropFixture&)> setting(std::string RunSettings::*field,
                                          const std::string& value) {
    return [=](CropFixture& f) { f.settings.*field = value; };
}

// One after the other.
std::function<void(CropFixture&)> both(const std::function<void(CropFixture&)>& first,
                                       const std::function<void(CropFixture&)>& second) {
    return [=](CropFixture& f) {
        first(f);
        second(f);
    };
}

void elevations(CropFixture& f, const std::function<double(const Station&)>& of) {
    auto stations = RunFixture::stations();
    for (Station& s : stations) s.elevation = of(s);
    f.makeStations(stations);
}

void referenced(CropFixture& f) {
    f.settings.PrecipitationMethod = "PRISM_REF";
    for (const int month : {6, 7}) {
        f.makeReferenceGrid(month, f.geometry(), [](int, int) { return 2540.0F; });
    }
}

const Steps kNone = {};
const Steps kBoth = {Step::refet, Step::ppt};

const std::vector<Broken> kBroken = {
    {"nothing", [](CropFixture&) {}, kNone, ""},
    // Temperatures.
    {"TM missing", without("TM_"), {Step::refet}, "TM_Jun: the field is missing"},
    {"TN missing", without("TN_"), {Step::refet}, "TN_Jun: the field is missing"},
    {"TM null", weather("TM_", {}, july), {Step::refet}, "TM_Jul: has 0 valid stations"},
    {"TM but one", weather("TM_", 80.0, julyButOne), {Step::refet}, "TM_Jul: has 1 valid station:"},
    {"TM but two", weather("TM_", -20.0, julyButTwo), kNone, ""},
    {"TM of May", weather("TM_", {}, [](const Station&, int m) { return m == 5; }), kNone, ""},
    {"TM text",
     [](CropFixture& f) {
         std::vector<Field> fields = {{"STN", FieldType::text, 20, 0}};
         std::vector<std::vector<FieldValue>> records;
         for (const std::string& prefix : kAll) {
             for (const char* month : {"Jun", "Jul"}) {
                 fields.push_back({prefix + month,
                                   prefix == "TM_" ? FieldType::text : FieldType::number, 10, 4});
             }
         }
         for (const Station& s : RunFixture::stations()) {
             std::vector<FieldValue> record = {s.name};
             for (const std::string& prefix : kAll) {
                 for (const int month : {6, 7}) {
                     const FieldValue number = RunFixture::usualWeather(prefix, s, month);
                     record.push_back(prefix == "TM_" ? FieldValue(std::string("20.5")) : number);
                 }
             }
             records.push_back(record);
         }
         f.application.platform().features().createTable(f.settings.WeatherData, fields, records);
     },
     {Step::refet},
     "TM_Jun: S0: holds the text"},
    {"TM no number",
     [](CropFixture& f) {
         weather("TM_", 7777.0,
                 [](const Station& s, int m) { return m == 6 && s.name == "S4"; })(f);
         std::string bytes = test::contentOf(f.settings.WeatherData);
         bytes.replace(bytes.find(" 7777.0000"), 10, "   7777,00");
         test::write(f.settings.WeatherData, bytes);
     },
     {Step::refet},
     "TM_Jun: "},
    // Fahrenheit: the range is 0 to 150.
    {"151 deg F",
     both(weather("TM_", 151.0, julyButOne), setting(&RunSettings::TemperatureUnit, "Degree F")),
     {Step::refet},
     "TM_Jul: has 1 valid station:"},
    {"149 deg F",
     both(both(weather("TM_", 149.0, [](const Station&, int) { return true; }),
               setting(&RunSettings::TemperatureUnit, "Degree F")),
          [](CropFixture& f) {
              f.settings.RefETMethod = "4";
              f.settings.BeginMonth = "Jul";
          }),
     kNone, ""},
    {"-1 deg F",
     both(weather("TN_", -1.0, julyButOne), setting(&RunSettings::TemperatureUnit, "Degree F")),
     {Step::refet},
     "TN_Jul: has 1 valid station:"},
    // Quantities that the flags or the method leave out.
    {"TD null", weather("TD_", {}, july), {Step::refet}, "TD_Jul: has 0 valid stations"},
    {"TD null, not taken",
     both(weather("TD_", {}, july), [](CropFixture& f) { f.settings.HasTdew = false; }), kNone, ""},
    {"TD null, method 4", both(weather("TD_", {}, july), setting(&RunSettings::RefETMethod, "4")),
     kNone, ""},
    {"TD null, method 5", both(weather("TD_", {}, july), setting(&RunSettings::RefETMethod, "5")),
     kNone, ""},
    {"TD null, method 6",
     both(weather("TD_", {}, july), setting(&RunSettings::RefETMethod, "6")),
     {Step::refet},
     "TD_Jul"},
    {"TD missing", without("TD_"), kNone, ""},
    {"SR null", weather("SR_", {}, july), {Step::refet}, "SR_Jul: has 0 valid stations"},
    {"SR null, not taken",
     both(weather("SR_", {}, july), [](CropFixture& f) { f.settings.HasSR = false; }), kNone, ""},
    {"SR 500", weather("SR_", 500.0, july), {Step::refet}, "SR_Jul: has 0 valid stations"},
    {"SR but one", weather("SR_", 500.0, julyButOne), kNone, ""},
    {"WS 0", weather("WS_", 0.0, july), {Step::refet}, "WS_Jul: has 0 valid stations"},
    {"WS 0, not taken",
     both(weather("WS_", 0.0, july), [](CropFixture& f) { f.settings.HasWS = false; }), kNone, ""},
    {"TA null",
     [](CropFixture& f) {
         f.settings.HasTmean = true;
         std::vector<std::string> prefixes = kAll;
         prefixes.push_back("TA_");
         f.makeWeather(
             RunFixture::stations(),
             [](const std::string& p, const Station& s, int m) {
                 return p == "TA_" ? FieldValue() : RunFixture::usualWeather(p, s, m);
             },
             prefixes);
     },
     {Step::refet},
     "TA_Jun: has 0 valid stations"},
    // Stations.
    {"valid values of records that are no stations",
     [](CropFixture& f) {
         auto list = RunFixture::stations();
         for (std::size_t s = 2; s < list.size(); ++s) list[s].name = "other " + list[s].name;
         f.makeWeather(
             list,
             [](const std::string& p, const Station& s, int m) {
                 return p == "TM_" && s.name == "S0" ? FieldValue()
                        : p == "P_"
                            ? FieldValue(1.0)
                            : RunFixture::usualWeather(p, Station{"S1", s.x, s.y, s.elevation}, m);
             },
             kAll);
     },
     {Step::refet},
     "TM_Jun: has 1 valid station:"},
    {"a bad number of a record that is no station",
     [](CropFixture& f) {
         auto list = RunFixture::stations();
         list.push_back({"other", 0, 0, 0});
         f.makeWeather(
             list,
             [](const std::string& p, const Station& s, int m) {
                 if (s.name != "other") return RunFixture::usualWeather(p, s, m);
                 return FieldValue(p == "TM_" && m == 6 ? 7777.0 : 1.0);
             },
             kAll);
         std::string bytes = test::contentOf(f.settings.WeatherData);
         bytes.replace(bytes.find(" 7777.0000"), 10, "   7777,00");
         test::write(f.settings.WeatherData, bytes);
     },
     {Step::refet},
     ""},
    {"no station has a record",
     [](CropFixture& f) {
         auto list = RunFixture::stations();
         for (Station& s : list) s.name = "other " + s.name;
         f.makeStations(list);
     },
     kBoth, "STN: no record belongs to a station"},
    {"one elevation", [](CropFixture& f) { elevations(f, [](const Station&) { return 1500; }); },
     kBoth, "TM_Jun: has 16 valid stations: all of them stand at one elevation"},
    {"far-off elevations",
     [](CropFixture& f) { elevations(f, [](const Station& s) { return s.elevation / 0.3048; }); },
     kNone, ""},
    {"no elevations but two",
     [](CropFixture& f) {
         std::vector<NewFeature> features;
         for (const Station& s : RunFixture::stations()) {
             features.push_back({{{s.x, s.y}},
                                 {s.name, s.name == "S1" || s.name == "S2" ? FieldValue(s.elevation)
                                                                           : FieldValue()}});
         }
         f.application.platform().features().createFeatureClass(
             f.settings.WeatherStations, false, f.geometry().crs,
             {{"staname", FieldType::text, 20, 0}, {"ELEVATION", FieldType::number, 10, 2}},
             features);
     },
     kNone, ""},
    {"no field staname or ELEVATION",
     [](CropFixture& f) {
         f.application.platform().features().createFeatureClass(
             f.settings.WeatherStations, false, f.geometry().crs,
             {{"name", FieldType::text, 20, 0}}, {{{{400100, 4499900}}, {std::string("S1")}}});
     },
     kBoth, "staname: the field is missing"},
    {"stations not set", setting(&RunSettings::WeatherStations, ""), kBoth, ""},
    {"weather not set", setting(&RunSettings::WeatherData, ""), kBoth, ""},
    {"stations not there", setting(&RunSettings::WeatherStations, "/none/s.shp"), kBoth, ""},
    {"weather not there", setting(&RunSettings::WeatherData, "/none/w.dbf"), kBoth, ""},
    // Precipitation.
    {"P missing", without("P_"), {Step::ppt}, "P_Jun: the field is missing"},
    {"P null", weather("P_", {}, july), {Step::ppt}, "P_Jul: has 0 valid stations"},
    {"P 1000", weather("P_", 1000.0, julyButOne), {Step::ppt}, "P_Jul: has 1 valid station:"},
    {"P 0 but one", weather("P_", 0.0, julyButOne), {Step::ppt}, "P_Jul: has 1 valid station:"},
    {"P 0", weather("P_", 0.0, july), kNone, ""},
    {"another method", setting(&RunSettings::PrecipitationMethod, "edk"), {Step::ppt}, ""},
    {"ratios", referenced, kNone, ""},
    {"ratios, P missing",
     both(without("P_"), referenced),
     {Step::ppt},
     "P_Jun: the field is missing"},
    {"ratios, P null",
     both(weather("P_", {}, july), referenced),
     {Step::ppt},
     "P_Jul: has 0 valid stations"},
    {"ratios, P 0", both(weather("P_", 0.0, july), referenced), kNone, ""},
    {"ratios of 1000",
     both(weather("P_", 1000.0, july), referenced),
     {Step::ppt},
     "P_Jul: has 0 valid stations: no ratio of a station"},
    {"ratios of 999", both(weather("P_", 999.99, july), referenced), kNone, ""},
    {"no reference grid", setting(&RunSettings::PrecipitationMethod, "PRISM_REF"), {Step::ppt}, ""},
    {"reference grids elsewhere",
     [](CropFixture& f) {
         GridGeometry away = f.geometry();
         away.xMin += 100000;
         f.settings.PrecipitationMethod = "PRISM_REF";
         for (const int month : {6, 7})
             f.makeReferenceGrid(month, away, [](int, int) { return 1.0F; });
     },
     {Step::ppt},
     "P_Jun: has 0 valid stations"},
    {"reference grids not named",
     both(referenced, setting(&RunSettings::PrismGridFolder, "")),
     {Step::ppt},
     ""},
    // The run.
    {"method 9", setting(&RunSettings::RefETMethod, "9"), {Step::refet}, ""},
    {"no months", setting(&RunSettings::EndMonth, "xyz"), kNone, ""},
    {"months backwards", setting(&RunSettings::EndMonth, "Feb"), kNone, ""},
    {"unknown begin", setting(&RunSettings::BeginMonth, "jun"), kNone, ""},
    {"no year", setting(&RunSettings::Year, "now"), kNone, ""},
    {"other units",
     both(setting(&RunSettings::DemUnit, "feet"), setting(&RunSettings::TemperatureUnit, "F")),
     kNone, ""},
    {"no cell size", [](CropFixture& f) { f.settings.CellSize = 0; }, kBoth, ""},
    {"a tiny cell size", [](CropFixture& f) { f.settings.CellSize = 1e-3; }, kBoth, ""},
    {"no domain", setting(&RunSettings::ExtentProvider, "/none/d.shp"), kBoth, ""},
    {"no output folder named", setting(&RunSettings::OutputWorkspace, ""), kBoth, ""},
    {"no such output folder", setting(&RunSettings::OutputWorkspace, "/none/out"), kBoth, ""},
    {"an output folder that takes nothing", setting(&RunSettings::OutputWorkspace, "/proc"), kBoth,
     ""},
    {"no DEM", setting(&RunSettings::DEM, "/none/dem"), kBoth, ""},
    {"an empty DEM",
     [](CropFixture& f) { f.makeDem([](int, int) { return kNoData; }); },
     {Step::refet},
     ""},
    {"a DEM of one cell",
     [](CropFixture& f) {
         f.settings.CellSize = 40;  // 210 rows, of which the check first reads every second
         GridGeometry fine = f.geometry();
         fine.columns *= 10;
         fine.rows *= 10;
         fine.cellSize /= 10;
         Grid dem(fine);
         dem.at(30, 5) = 1500;
         f.application.platform()
             .rasters()
             .openFromFolder(f.folder.path())
             ->save(std::array{RasterToSave{"dem", std::make_shared<MemoryRaster>(dem), "GRID"}});
     },
     kNone, ""},
    // Crop coefficients.
    {"no Kc of July",
     [](CropFixture& f) {
         f.application.platform().features().createTable(
             f.settings.KcTable,
             {{"CropType", FieldType::text, 20, 0}, {"Kc_Jun", FieldType::number, 8, 3}},
             {{std::string("Alfalfa"), 1.0}});
     },
     {Step::kc},
     "Kc_Jul: the field is missing"},
    {"Kc of June and July alone",
     [](CropFixture& f) {
         f.application.platform().features().createTable(f.settings.KcTable,
                                                         {{"CropType", FieldType::text, 20, 0},
                                                          {"Kc_Jun", FieldType::number, 8, 3},
                                                          {"Kc_Jul", FieldType::number, 8, 3}},
                                                         {{std::string("Alfalfa"), 1.0, 1.1}});
     },
     kNone, ""},
    {"no Kc table", setting(&RunSettings::KcTable, "/none/kc.dbf"), {Step::kc}, ""},
    {"no land cover", setting(&RunSettings::LandCover, "/none/land.shp"), {Step::kc}, ""},
    // Zones.
    {"no zones", setting(&RunSettings::Zones, "/none/zones.shp"), {Step::cropet}, ""},
    {"no zone field", setting(&RunSettings::ZoneField, "NAME"), {Step::cropet}, "NAME: the field"},
    {"zones of points",
     both(setting(&RunSettings::ZoneField, "staname"),
          [](CropFixture& f) { f.settings.Zones = f.settings.WeatherStations; }),
     {Step::cropet},
     ""},
    {"zones of one key",
     [](CropFixture& f) {
         auto zones = CropFixture::zones();
         zones[1].key = zones[0].key;
         f.makeZones(zones);
     },
     kNone,
     ""},
    {"land cover of points",
     [](CropFixture& f) { f.settings.LandCover = f.settings.WeatherStations; },
     {Step::kc},
     ""},
};

class CheckAndRun : public testing::TestWithParam<Broken> {};

TEST_P(CheckAndRun, Agree) {
    const Broken& broken = GetParam();
    CropFixture f;
    f.settings.RefETMethod = "2";
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, kAll);
    broken.spoil(f);
    std::string errors;
    for (const Finding& finding : checkInputs(f.application.platform(), f.settings)) {
        if (finding.severity == Severity::error) errors += findingLine(finding) + "\n";
    }
    EXPECT_EQ(errors.empty(), broken.fail.empty()) << errors;
    EXPECT_NE(errors.find(broken.said), std::string::npos) << errors;
    const auto fails = [&](Step step) {
        return std::ranges::find(broken.fail, step) != broken.fail.end();
    };
    for (const Step step : {Step::refet, Step::ppt, Step::kc, Step::cropet}) {
        f.application.prompts().messages.clear();
        // What fails all that went before has left these nothing to work on.
        if (step == Step::kc && broken.fail == kBoth) continue;
        if (step == Step::cropet && (fails(Step::refet) || fails(Step::kc))) continue;
        bool made = false;
        try {
            made = done(f, step);
        } catch (const PlatformError&) {
            made = false;
        }
        EXPECT_EQ(made, !fails(step)) << "step " << static_cast<int>(step) << "\n"
                                      << f.allMessages() << errors;
    }
}

std::string nameOf(const testing::TestParamInfo<Broken>& info) {
    std::string name = info.param.name + "_";
    for (char& c : name) {
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
    }
    return name + std::to_string(info.index);
}

INSTANTIATE_TEST_SUITE_P(Inputs, CheckAndRun, testing::ValuesIn(kBroken), nameOf);

}  // namespace
}  // namespace velmora
