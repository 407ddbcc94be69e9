// SPDX-License-Identifier: MIT
#include "tests/support/run_domain.h"

#include <array>
#include <cmath>

#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "precip/precipitation_run.h"
#include "refet/refet_run.h"

namespace velmora::test {

RunDomain::RunDomain(IPlatform& platform, const Folder& where)
    : folder(where), application(platform, where.file("settings")) {
    platform.files().createFolder(folder.file("out"));
    // 37 x 21 cells of 400 m; one tile of the grid format is 16 rows high.
    geometry_ = {37,      21,  400000,
                 4500000, 400, application.platform().spatialReferences().createProjected(26912)};
    makeDomain(geometry_.extent(), geometry_.crs);
    makeDem([](int column, int row) {
        return column == 5 && row == 7 ? kNoData
                                       : static_cast<float>(1300 + 31 * column + 17 * row);
    });
    makeStations(stations());
    makeWeather(stations(), usualWeather);
    settings.DEM = folder.file("dem");
    settings.WeatherStations = folder.file("stations.shp");
    settings.WeatherData = folder.file("weather.dbf");
    settings.OutputWorkspace = folder.file("out");
    settings.ExtentProvider = folder.file("domain.shp");
    settings.CellSize = 400;
    settings.RefETMethod = "2";
    settings.Year = "2006";
    settings.BeginMonth = "Jun";
    settings.EndMonth = "Jul";
    settings.PrecipitationMethod = "EDK";
    settings.PrismGridFolder = folder.file("ref01");
    settings.DemUnit = "Meters";
    settings.SiteElevationUnit = "Meters";
    settings.TemperatureUnit = "Degree C";
    settings.HasTmax = settings.HasTmin = settings.HasTdew = settings.HasSR = settings.HasWS = true;
    settings.Ks = 0.16;
    settings.Ko = 2;
    settings.EstimatedWindSpeed = 2;
}

void RunDomain::makeDem(const std::function<float(int, int)>& value) {
    Grid dem(geometry_);
    for (int r = 0; r < geometry_.rows; ++r) {
        for (int c = 0; c < geometry_.columns; ++c) dem.at(c, r) = value(c, r);
    }
    application.platform()
        .rasters()
        .openFromFolder(folder.path())
        ->save(std::array{RasterToSave{"dem", std::make_shared<MemoryRaster>(dem), "GRID"}});
}

void RunDomain::makeStations(const std::vector<Station>& list, bool withCrs) {
    std::vector<NewFeature> features;
    for (const Station& s : list) features.push_back({{{s.x, s.y}}, {s.name, s.elevation}});
    application.platform().features().createFeatureClass(
        folder.file("stations.shp"), false, withCrs ? geometry_.crs : std::string(),
        {{"staname", FieldType::text, 20, 0}, {"ELEVATION", FieldType::number, 10, 2}}, features);
}

void RunDomain::makeWeather(const std::vector<Station>& list, const Weather& weather,
                            const std::vector<std::string>& prefixes) {
    std::vector<Field> fields = {{"STN", FieldType::text, 20, 0}};
    for (const std::string& prefix : prefixes) {
        for (int m = 1; m <= 12; ++m) {
            fields.push_back({prefix + GetMonthName(m), FieldType::number, 10, 4});
        }
    }
    std::vector<std::vector<FieldValue>> records;
    for (const Station& s : list) {
        std::vector<FieldValue> record = {s.name};
        for (const std::string& prefix : prefixes) {
            for (int m = 1; m <= 12; ++m) record.push_back(weather(prefix, s, m));
        }
        records.push_back(record);
    }
    application.platform().features().createTable(folder.file("weather.dbf"), fields, records);
}

void RunDomain::makeDomain(const Envelope& e, const std::string& crs) {
    application.platform().features().createFeatureClass(folder.file("domain.shp"), true, crs,
                                                         {{"NAME", FieldType::text, 10, 0}},
                                                         {rectangle(e, {std::string("domain")})});
}

void RunDomain::makeReferenceGrid(int month, const GridGeometry& geometry,
                                  const std::function<float(int, int)>& value) {
    Grid grid(geometry);
    for (int r = 0; r < geometry.rows; ++r) {
        for (int c = 0; c < geometry.columns; ++c) grid.at(c, r) = value(c, r);
    }
    application.platform()
        .rasters()
        .openFromFolder(folder.path())
        ->save(std::array{RasterToSave{(month < 10 ? "ref0" : "ref") + std::to_string(month),
                                       std::make_shared<MemoryRaster>(grid), "GRID"}});
}

bool RunDomain::runPrecipitation() { return PrecipitationRun(application, settings).run(); }

bool RunDomain::run() {
    const Listening listening(application.feedback(), monitor);
    return ReferenceEtRun(application, settings).run();
}

Grid RunDomain::output(const std::string& name) {
    return wholeGrid(*application.platform()
                          .rasters()
                          .openFromFolder(folder.file("out"))
                          ->openRasterDataset(name)
                          ->createDefaultRaster());
}

bool RunDomain::hasOutput(const std::string& name) {
    return application.platform().rasters().openFromFolder(folder.file("out"))->exists(name);
}

std::string RunDomain::allMessages() const {
    std::string all;
    for (const std::string& message : application.messages()) all += message + "\n";
    return all;
}

std::vector<Station> RunDomain::stations() {
    std::vector<Station> list;
    for (int i = 0; i < 16; ++i) {
        const double x = 400000 + 14800 * std::fmod(0.13 + 0.381966 * i, 1.0) + 3.7;
        const double y = 4500000 - 8400 * std::fmod(0.29 + 0.247 * i, 1.0) - 1.9;
        list.push_back({"S" + std::to_string(i), x, y, 1300.0 + 57 * ((i * 7) % 16)});
    }
    return list;
}

FieldValue RunDomain::usualWeather(const std::string& prefix, const Station& s, int month) {
    const double season =
        -std::cos((month - 0.5) * 0.5235987755982988);  // -1 in winter, 1 in summer
    const double east = (s.x - 400000) / 14800;
    if (prefix == "TM_") return 13 + 14 * season - 0.006 * (s.elevation - 1300) + 1.3 * east;
    if (prefix == "TN_") return 0.5 + 9 * season - 0.004 * (s.elevation - 1300) - 0.7 * east;
    if (prefix == "TD_") return -2 + 6 * season - 0.003 * (s.elevation - 1300);
    if (prefix == "TA_") return 6.5 + 12 * season - 0.005 * (s.elevation - 1300);
    if (prefix == "P_") {
        const double number = std::stod(s.name.substr(1));
        return 0.9 - 0.3 * season + 0.0007 * (s.elevation - 1300) + 0.5 * east +
               0.25 * std::sin(2.1 * number + month);
    }
    if (prefix == "SR_") return 16 + 9 * season + 0.8 * east;
    return 2.2 + 0.4 * season + 0.9 * east;
}

}  // namespace velmora::test
