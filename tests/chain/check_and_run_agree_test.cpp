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
#include "irrigation/frm_efficiency.h"
#include "irrigation/irrigation_database.h"
#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/net_irrigation_run.h"
#include "irrigation/starter_database.h"
#include "modelling/step_record.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

using test::IrrigationFixture;
using test::RunFixture;
using test::Station;

enum class Step { refet, ppt, kc, cropet, nir, eff, irr };
using Steps = std::vector<Step>;

const Steps kAllSteps = {Step::refet, Step::ppt, Step::kc, Step::cropet,
                         Step::nir,   Step::eff, Step::irr};

struct Broken {
    std::string name;
    std::function<void(IrrigationFixture&)> spoil;
    Steps fail;               // those that cannot be done
    std::string said;         // the beginning of the findings' line behind its file; "" for any
    Steps tried = kAllSteps;  // the others are left out
    Severity gravity = Severity::error;  // of what is said
};

void PrintTo(const Broken& broken, std::ostream* out) { *out << broken.name; }

const std::vector<std::string> kAll = {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"};

RasterPtr asRaster(IrrigationFixture& f, const std::string& grid) {
    return f.application.platform()
        .rasters()
        .openFromFolder(f.settings.OutputWorkspace)
        ->openRasterDataset(grid)
        ->createDefaultRaster();
}

// The dialog's way through all zones, with the default shares of the zones. An old table stays.
bool makeEfficiencyMap(IrrigationFixture& f) {
    f.storeSettings();
    f.application.prompts().answers = [](const std::string& question) {
        return question.find("IREF") == std::string::npos;
    };
    frmEfficiency form(f.application);
    form.load();
    form.cmdApplyIRDB.click();
    form.txtCvef.enter("0.8");
    const std::size_t zones = form.cmbZone.items().size();
    for (std::size_t zone = 0; zone + 1 < zones; ++zone)
        form.cmbZone.select(static_cast<int>(zone));
    form.cmdEFMap.click();
    return !form.failed();
}

bool done(IrrigationFixture& f, Step step) {
    if (step == Step::refet) return f.run();
    if (step == Step::ppt) return f.runPrecipitation();
    if (step == Step::kc) {
        makeKcMaps(f.application, f.settings,
                   {f.settings.LandCover, "Descriptio", f.settings.KcTable, 200});
        return true;
    }
    if (step == Step::nir) return runNetIrrigation(f.application, f.settings);
    if (step == Step::eff) return makeEfficiencyMap(f);
    if (step == Step::irr) {
        f.storeSettings();  // the zonal results look for them
        if (f.hasOutput("IREF") && !f.hasOutput("faef_500"))
            f.save("faef_500", asRaster(f, "IREF"));
        return runIrrigationRequirement(f.application, f.settings);
    }
    for (const int month : f.settings.months()) {
        const std::string label = GetMonthName(month);
        if (f.hasOutput("Kc_" + label + f.settings.methodTag())) f.copyKcMaps({label});
    }
    return f.runCropEt();
}

// Weather in which the value of a quantity is another at the stations and months that `where` says.
using Where = std::function<bool(const Station&, int month)>;
std::function<void(IrrigationFixture&)> weather(const std::string& prefix, const FieldValue& value,
                                                const Where& where) {
    return [=](IrrigationFixture& f) {
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

std::function<void(IrrigationFixture&)> without(const std::string& prefix) {
    return [=](IrrigationFixture& f) {
        std::vector<std::string> prefixes = kAll;
        std::erase(prefixes, prefix);
        f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, prefixes);
    };
}

std::function<void(IrrigationFixture&)> setting(std::string RunSettings::*field,
                                                const std::string& value) {
    return [=](IrrigationFixture& f) { f.settings.*field = value; };
}

// One after the other.
std::function<void(IrrigationFixture&)> both(
    const std::function<void(IrrigationFixture&)>& first,
    const std::function<void(IrrigationFixture&)>& second) {
    return [=](IrrigationFixture& f) {
        first(f);
        second(f);
    };
}

void elevations(IrrigationFixture& f, const std::function<double(const Station&)>& of) {
    auto stations = RunFixture::stations();
    for (Station& s : stations) s.elevation = of(s);
    f.makeStations(stations);
}

void referenced(IrrigationFixture& f) {
    f.settings.PrecipitationMethod = "PRISM_REF";
    for (const int month : {6, 7}) {
        f.makeReferenceGrid(month, f.geometry(), [](int, int) { return 2540.0F; });
    }
}

// The steps whose grids a step reads.
Steps makersFor(Step step) {
    if (step == Step::cropet) return {Step::refet, Step::kc};
    if (step == Step::nir) return {Step::cropet, Step::ppt};
    if (step == Step::irr) return {Step::cropet, Step::ppt, Step::eff};
    return {};
}

void makeDatabase(IrrigationFixture& f) {
    IrrigationDefaults defaults = starterDefaults({}, {});
    for (const test::Shape& zone : IrrigationFixture::zones()) {
        defaults.perZone.push_back({zone.key, "", {0.25, 0.5, 0.25}});
        defaults.perZoneAndCrop.push_back({zone.key, "Alfalfa", {1, 0, 0}});
    }
    createIrrigationDatabase(f.application.platform(), f.folder.file("IrDB.mdb"), defaults);
}

// The database after statements.
std::function<void(IrrigationFixture&)> database(const std::vector<std::string>& statements) {
    return [=](IrrigationFixture& f) {
        const auto connection = f.application.platform().connections().open(
            irrigationConnection(f.folder.file("IrDB.mdb")));
        for (const std::string& statement : statements) connection->execute(statement);
    };
}

// Grids of the user's own, of which no run is noted, and what spoils them.
std::function<void(IrrigationFixture&)> own(const std::function<void(IrrigationFixture&)>& spoil) {
    return [=](IrrigationFixture& f) {
        f.settings.RefETMethod = "4";
        f.saveMonths(6, 7);
        for (const char* month : {"Jun", "Jul"}) {
            f.save(std::string("RefET_") + month + "_4", f.filled(3));
            f.save(std::string("Kc_") + month, f.filled(1));
        }
        f.save("faef_500", f.filled(0.5F));
        spoil(f);
    };
}

std::function<void(IrrigationFixture&)> gone(const std::string& grid) {
    return [=](IrrigationFixture& f) {
        f.application.platform()
            .rasters()
            .openFromFolder(f.folder.file("out"))
            ->openRasterDataset(grid)
            ->remove();
    };
}

std::function<void(IrrigationFixture&)> elsewhere(const std::string& grid) {
    return [=](IrrigationFixture& f) {
        GridGeometry away = f.cells;
        away.xMin += 100000;
        f.save(grid, std::make_shared<MemoryRaster>(Grid(away, 1)));
    };
}

std::function<void(IrrigationFixture&)> damaged(const std::string& grid) {
    return
        [=](IrrigationFixture& f) { test::write(f.folder.file("out/" + grid + "/hdr.adf"), "x"); };
}

std::function<void(IrrigationFixture&)> zoned(FieldType type, const FieldValue& key) {
    return [=](IrrigationFixture& f) {
        std::vector<NewFeature> features;
        for (const test::Shape& zone : IrrigationFixture::zones()) {
            features.push_back({zone.ring, {key}});
            features.back().ring.push_back(zone.ring.front());
        }
        f.application.platform().features().createFeatureClass(
            f.settings.Zones, true, f.geometry().crs, {{"ZONE", type, 12, 0}}, features);
    };
}

// The land cover with another field of crop types.
std::function<void(IrrigationFixture&)> land(const Field& field, const FieldValue& value) {
    return [=](IrrigationFixture& f) {
        std::vector<NewFeature> features;
        for (const test::Shape& shape : IrrigationFixture::fields()) {
            features.push_back({shape.ring, {value}});
            features.back().ring.push_back(shape.ring.front());
        }
        f.application.platform().features().createFeatureClass(f.settings.LandCover, true,
                                                               f.geometry().crs, {field}, features);
    };
}

// The Kc table with that field of July in place of its own.
std::function<void(IrrigationFixture&)> kcOfJuly(FieldType type, const FieldValue& value) {
    return [=](IrrigationFixture& f) {
        f.application.platform().features().createTable(f.settings.KcTable,
                                                        {{"CropType", FieldType::text, 20, 0},
                                                         {"Kc_Jun", FieldType::number, 8, 3},
                                                         {"Kc_Jul", type, 8, 3}},
                                                        {{std::string("Alfalfa"), 1.0, value}});
    };
}

const Steps kRequirements = {Step::nir, Step::irr};
const Steps kNone = {};
const Steps kBoth = {Step::refet, Step::ppt};

const std::vector<Broken> kBroken = {
    {"nothing", [](IrrigationFixture&) {}, kNone, ""},
    // Temperatures.
    {"TM missing", without("TM_"), {Step::refet}, "TM_Jun: the field is missing"},
    {"TN missing", without("TN_"), {Step::refet}, "TN_Jun: the field is missing"},
    {"TM null", weather("TM_", {}, july), {Step::refet}, "TM_Jul: has 0 valid stations"},
    {"TM but one", weather("TM_", 80.0, julyButOne), {Step::refet}, "TM_Jul: has 1 valid station:"},
    {"TM but two", weather("TM_", -20.0, julyButTwo), kNone, ""},
    {"TM of May", weather("TM_", {}, [](const Station&, int m) { return m == 5; }), kNone, ""},
    {"TM text",
     [](IrrigationFixture& f) {
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
     [](IrrigationFixture& f) {
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
          [](IrrigationFixture& f) {
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
     both(weather("TD_", {}, july), [](IrrigationFixture& f) { f.settings.HasTdew = false; }), kNone, ""},
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
     both(weather("SR_", {}, july), [](IrrigationFixture& f) { f.settings.HasSR = false; }), kNone, ""},
    {"SR 500", weather("SR_", 500.0, july), {Step::refet}, "SR_Jul: has 0 valid stations"},
    {"SR but one", weather("SR_", 500.0, julyButOne), kNone, ""},
    {"WS 0", weather("WS_", 0.0, july), {Step::refet}, "WS_Jul: has 0 valid stations"},
    {"WS 0, not taken",
     both(weather("WS_", 0.0, july), [](IrrigationFixture& f) { f.settings.HasWS = false; }), kNone, ""},
    {"TA null",
     [](IrrigationFixture& f) {
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
     [](IrrigationFixture& f) {
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
     [](IrrigationFixture& f) {
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
     [](IrrigationFixture& f) {
         auto list = RunFixture::stations();
         for (Station& s : list) s.name = "other " + s.name;
         f.makeStations(list);
     },
     kBoth, "STN: no record belongs to a station"},
    {"one elevation", [](IrrigationFixture& f) { elevations(f, [](const Station&) { return 1500; }); },
     kBoth, "TM_Jun: has 16 valid stations: all of them stand at one elevation"},
    {"far-off elevations",
     [](IrrigationFixture& f) { elevations(f, [](const Station& s) { return s.elevation / 0.3048; }); },
     kNone, ""},
    {"no elevations but two",
     [](IrrigationFixture& f) {
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
     [](IrrigationFixture& f) {
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
     [](IrrigationFixture& f) {
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
    {"no cell size", [](IrrigationFixture& f) { f.settings.CellSize = 0; }, kBoth, ""},
    {"a tiny cell size", [](IrrigationFixture& f) { f.settings.CellSize = 1e-3; }, kBoth, ""},
    {"no domain", setting(&RunSettings::ExtentProvider, "/none/d.shp"), kBoth, ""},
    {"no output folder named", setting(&RunSettings::OutputWorkspace, ""), kBoth, ""},
    {"no such output folder", setting(&RunSettings::OutputWorkspace, "/none/out"), kBoth, ""},
    {"an output folder that takes nothing", setting(&RunSettings::OutputWorkspace, "/proc"), kBoth,
     ""},
    {"no DEM", setting(&RunSettings::DEM, "/none/dem"), kBoth, ""},
    {"an empty DEM",
     [](IrrigationFixture& f) { f.makeDem([](int, int) { return kNoData; }); },
     {Step::refet},
     ""},
    {"a DEM of one cell",
     [](IrrigationFixture& f) {
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
     [](IrrigationFixture& f) {
         f.application.platform().features().createTable(
             f.settings.KcTable,
             {{"CropType", FieldType::text, 20, 0}, {"Kc_Jun", FieldType::number, 8, 3}},
             {{std::string("Alfalfa"), 1.0}});
     },
     {Step::kc},
     "Kc_Jul: the field is missing"},
    {"Kc of June and July alone",
     [](IrrigationFixture& f) {
         f.application.platform().features().createTable(f.settings.KcTable,
                                                         {{"CropType", FieldType::text, 20, 0},
                                                          {"Kc_Jun", FieldType::number, 8, 3},
                                                          {"Kc_Jul", FieldType::number, 8, 3}},
                                                         {{std::string("Alfalfa"), 1.0, 1.1}});
     },
     kNone, ""},
    {"no Kc table", setting(&RunSettings::KcTable, "/none/kc.dbf"), {Step::kc}, ""},
    {"no land cover", setting(&RunSettings::LandCover, "/none/land.shp"), {Step::kc, Step::eff}, ""},
    // Zones.
    {"no zones", setting(&RunSettings::Zones, "/none/zones.shp"), {Step::cropet, Step::eff}, ""},
    {"no zone field", setting(&RunSettings::ZoneField, "NAME"), {Step::cropet, Step::eff}, "NAME: the field"},
    {"zones of points",
     both(setting(&RunSettings::ZoneField, "staname"),
          [](IrrigationFixture& f) { f.settings.Zones = f.settings.WeatherStations; }),
     {Step::cropet, Step::eff},
     ""},
    {"zones of one key",
     [](IrrigationFixture& f) {
         auto zones = IrrigationFixture::zones();
         zones[1].key = zones[0].key;
         f.makeZones(zones);
     },
     kNone,
     ""},
    {"land cover of points",
     [](IrrigationFixture& f) { f.settings.LandCover = f.settings.WeatherStations; },
     {Step::kc, Step::eff},
     ""},
    {"zone field not set",
     setting(&RunSettings::ZoneField, ""),
     {Step::cropet, Step::eff},
     "ZoneField"},
    {"zones of numbers", zoned(FieldType::number, 7.0), kNone, ""},
    {"zones without a key", zoned(FieldType::text, {}), kNone, ""},
    {"no zone",
     [](IrrigationFixture& f) { f.makeZones({}); },
     {Step::eff},
     ""},
    {"zones elsewhere",
     [](IrrigationFixture& f) {
         f.makeZones({{"West", {{0, 0}, {0, 10}, {10, 10}, {10, 0}}}});
     },
     {Step::eff},
     ""},
    // The table of crop coefficients.
    {"Kc table not set", setting(&RunSettings::KcTable, ""), {Step::kc}, "KcTable", kAllSteps,
     Severity::note},
    {"Kc of text", kcOfJuly(FieldType::text, std::string("1.1")), {Step::kc}, ""},
    {"Kc null", kcOfJuly(FieldType::number, {}), kNone, ""},
    {"Kc 0", kcOfJuly(FieldType::number, 0.0), kNone, ""},
    {"Kc no number",
     both(kcOfJuly(FieldType::number, 7777.0),
          [](IrrigationFixture& f) {
              std::string bytes = test::contentOf(f.settings.KcTable);
              bytes.replace(bytes.find("7777.000"), 8, "7777,000");
              test::write(f.settings.KcTable, bytes);
          }),
     {Step::kc},
     ""},
    {"Kc table without records",
     [](IrrigationFixture& f) { f.makeKcTable({}); },
     kNone,
     ""},
    {"Kc table cut off",
     [](IrrigationFixture& f) {
         test::write(f.settings.KcTable, test::contentOf(f.settings.KcTable).substr(0, 100));
     },
     {Step::kc},
     ""},
    // Irrigation efficiency.
    {"no field Descriptio",
     land({"Use", FieldType::text, 20, 0}, std::string("Alfalfa")),
     {Step::eff},
     "Descriptio: the field is missing",
     {Step::eff}},
    {"Descriptio of numbers",
     land({"Descriptio", FieldType::number, 10, 0}, 4.0),
     kNone,
     "",
     {Step::eff}},
    {"Descriptio empty", land({"Descriptio", FieldType::text, 20, 0}, {}), kNone, "", {Step::eff}},
    {"crops without shares",
     both(land({"Descriptio", FieldType::text, 20, 0}, std::string("Moss")),
          database({"DELETE FROM IR_Dis_1"})),
     kNone,
     "CropType: Moss: is a crop type of the land cover for which no zone has shares",
     {Step::eff},
     Severity::warning},
    {"no irrigation database",
     [](IrrigationFixture& f) { f.application.platform().files().deleteFile(f.folder.file("IrDB.mdb")); },
     {Step::eff},
     "there is no irrigation database yet",
     {Step::eff},
     Severity::note},
    {"an irrigation database of other bytes",
     [](IrrigationFixture& f) { test::write(f.folder.file("IrDB.mdb"), std::string(5000, 'x')); },
     {Step::eff},
     "IrDB.mdb",
     {Step::eff}},
    {"an empty irrigation database",
     [](IrrigationFixture& f) { test::write(f.folder.file("IrDB.mdb"), ""); },
     {Step::eff},
     "IrDB.mdb",
     {Step::eff}},
    {"no default methods", database({"DROP TABLE IRMDDef"}), {Step::eff}, "IRMDDef", {Step::eff}},
    {"no methods", database({"DROP TABLE IRMD"}), {Step::eff}, "IRMD", {Step::eff}},
    {"methods without a description",
     database({"DROP TABLE IRMD", "CREATE TABLE IRMD(ZONEUNIT Text, IRMD Text, IRMDEF Double)"}),
     {Step::eff},
     "The table IRMD has no field IRMDDES",
     {Step::eff}},
    {"a code with brackets",
     database({"UPDATE IRMDDef SET IRMD = 'a[b'"}),
     {Step::eff},
     "a[b",
     {Step::eff}},
    {"a code that stands twice",
     database({"UPDATE IRMDDef SET IRMD = 'a'"}),
     {Step::eff},
     "twice",
     {Step::eff}},
    {"a code that is a column",
     database({"UPDATE IRMDDef SET IRMD = 'cvef' WHERE rowid = 1"}),
     {Step::eff},
     "cvef",
     {Step::eff}},
    {"an efficiency that is no number",
     database({"UPDATE IRMDDef SET IRMDEF = NULL WHERE rowid = 1"}),
     {Step::eff},
     "IRMDEF",
     {Step::eff}},
    {"a table IREF of another",
     database({"CREATE TABLE IREF(a Double)"}),
     {Step::eff},
     "IREF",
     {Step::eff}},
    {"no default shares of zones",
     database({"DROP TABLE IR_Dis_1"}),
     {Step::eff},
     "default shares of zones cannot be taken",
     {Step::eff},
     Severity::warning},
    {"default shares without a method",
     database({"DROP TABLE IR_Dis_1", "CREATE TABLE IR_Dis_1(ZONEUNIT Text)",
               "INSERT INTO IR_Dis_1 VALUES('West')"}),
     {Step::eff},
     "default shares of zones cannot be taken",
     {Step::eff},
     Severity::warning},
    {"no default shares of crops",
     database({"DROP TABLE IR_Dis_2"}),
     kNone,
     "default shares of zones and crops cannot be taken",
     {Step::eff},
     Severity::warning},
    // Grids of the output folder.
    {"own grids", own([](IrrigationFixture&) {}), kNone, "", {Step::cropet, Step::nir, Step::irr}},
    {"no PPT of July", own(gone("PPT_Jul")), kRequirements, "PPT_Jul is missing", kRequirements},
    {"no ET of July", own(gone("ET_Jul_4")), kRequirements, "ET_Jul_4 is missing", kRequirements},
    {"no PPT",
     own(both(gone("PPT_Jul"), gone("PPT_Jun"))),
     kRequirements,
     "PPT_Jun, PPT_Jul are missing",
     kRequirements,
     Severity::note},
    {"no PPT of July from a run",
     own(both(gone("PPT_Jul"),
              [](IrrigationFixture& f) {
                  StepRecorder(f.application.platform().files(), f.settings, "ppt").made("PPT_Jun");
              })),
     kRequirements,
     "PPT_Jul is missing",
     kRequirements,
     Severity::warning},
    {"no faef_500", own(gone("faef_500")), {Step::irr}, "faef_500 is missing", kRequirements,
     Severity::note},
    {"IREF not copied",
     own([](IrrigationFixture& f) {
         gone("faef_500")(f);
         f.save("IREF", f.filled(0.5F));
     }),
     kNone,
     "faef_500 is missing, without which later steps fail: velmora run all copies IREF to faef_500",
     kNone,
     Severity::note},
    {"no Kc", own(gone("Kc_Jul")), {Step::cropet}, "Kc_Jul is missing", {Step::cropet}},
    {"no RefET", own(gone("RefET_Jul_4")), {Step::cropet}, "RefET_Jul_4", {Step::cropet}},
    {"PPT damaged", own(damaged("PPT_Jul")), kRequirements, "PPT_Jul", kRequirements},
    {"ET damaged", own(damaged("ET_Jun_4")), kRequirements, "ET_Jun_4", kRequirements},
    {"faef_500 damaged", own(damaged("faef_500")), {Step::irr}, "faef_500", kRequirements},
    {"Kc damaged", own(damaged("Kc_Jul")), {Step::cropet}, "Kc_Jul", {Step::cropet}},
    {"PPT elsewhere", own(elsewhere("PPT_Jul")), kRequirements, "no place", kRequirements},
    {"ET elsewhere", own(elsewhere("ET_Jul_4")), kRequirements, "no place", kRequirements},
    {"faef_500 elsewhere", own(elsewhere("faef_500")), {Step::irr}, "no place", kRequirements},
    {"RefET elsewhere", own(elsewhere("RefET_Jul_4")), {Step::cropet}, "no place", {Step::cropet}},
    // What is told, and no run fails for.
    {"coefficients of 9.5", kcOfJuly(FieldType::number, 9.5), kNone, "9.5 is not likely",
     {Step::kc}, Severity::warning},
    {"coefficients over grass under method 1",
     both(kcOfJuly(FieldType::number, 1.2), setting(&RunSettings::RefETMethod, "1")), kNone,
     "high for coefficients over alfalfa", {Step::kc}, Severity::warning},
    {"wind in km per day", weather("WS_", 200.0, [](const Station&, int) { return true; }), kNone,
     "it would be in miles per day", {Step::refet}, Severity::warning},
    {"radiation above that of the sun", weather("SR_", 49.0, julyButOne), kNone,
     "is above the extraterrestrial radiation", {Step::refet}, Severity::warning},
    {"precipitation in millimetres",
     weather("P_", 30.0, [](const Station&, int) { return true; }), kNone,
     "it would be in millimetres", {Step::ppt}, Severity::warning},
    {"dew points above all temperatures", weather("TD_", 40.0, julyButOne), kNone,
     "is above the maximum temperature", {Step::refet}, Severity::warning},
    {"other cells that overlap",
     own([](IrrigationFixture& f) {
         GridGeometry cells = f.cells;
         cells.xMin += 130;
         cells.cellSize = 300;
         f.save("PPT_Jul", std::make_shared<MemoryRaster>(Grid(cells, 1)));
     }),
     kNone,
     "",
     kRequirements},
};

class CheckAndRun : public testing::TestWithParam<Broken> {};

TEST_P(CheckAndRun, Agree) {
    const Broken& broken = GetParam();
    IrrigationFixture f;
    f.settings.RefETMethod = "2";
    f.makeWeather(RunFixture::stations(), RunFixture::usualWeather, kAll);
    f.makeCropLand(IrrigationFixture::fields());
    makeDatabase(f);
    broken.spoil(f);
    std::string errors;
    std::string said;
    for (const Finding& finding : checkInputs(f.application.platform(), f.settings)) {
        const std::string line = findingLine(finding) + "\n";
        if (finding.severity == Severity::error) errors += line;
        if (finding.severity == broken.gravity) said += line;
    }
    EXPECT_EQ(errors.empty(), broken.fail.empty() || broken.gravity != Severity::error) << errors;
    EXPECT_NE(said.find(broken.said), std::string::npos) << said;
    Steps undone;
    const auto holds = [](const Steps& steps, Step step) {
        return std::ranges::find(steps, step) != steps.end();
    };
    for (const Step step : broken.tried) {
        // What fails all that went before has left these nothing to work on.
        if (std::ranges::any_of(makersFor(step), [&](Step m) { return holds(undone, m); }) ||
            (broken.fail == kBoth && step > Step::ppt)) {
            undone.push_back(step);
            continue;
        }
        f.application.prompts().messages.clear();
        const std::size_t failures = f.application.prompts().failures();
        bool made = false;
        try {
            made = done(f, step) && f.application.prompts().failures() == failures;
        } catch (const PlatformError& e) {
            f.application.prompts().messages.emplace_back(e.what());
        }
        EXPECT_EQ(made, !holds(broken.fail, step)) << "step " << static_cast<int>(step) << "\n"
                                                   << f.allMessages() << errors;
        if (!made) undone.push_back(step);
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
