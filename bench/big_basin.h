// SPDX-License-Identifier: MIT
// A made-up domain of n x n cells with stations, 60 unless told otherwise, for timing: the same
// numbers on every machine.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "platform/platform.h"
#include "settings/run_settings.h"

namespace velmora::bench {

constexpr double kCell = 100;
constexpr int kStations = 60;

inline RunSettings makeBigBasin(IPlatform& platform, const std::string& folder, int n,
                                int stationCount = kStations) {
    std::filesystem::create_directories(folder + "/out");
    const GridGeometry geometry{n,      n,
                                300000, 4200000 + n * kCell,
                                kCell,  platform.spatialReferences().createProjected(26912)};
    Grid dem(geometry);
    for (int r = 0; r < n; ++r) {
        for (int c = 0; c < n; ++c) {
            const double u = 6.0 * c / n;
            const double v = 6.0 * r / n;
            dem.at(c, r) = static_cast<float>(2300 + 700 * std::sin(u) * std::cos(v) +
                                              300 * std::sin(3.1 * u + 1.7 * v));
        }
    }
    platform.rasters().openFromFolder(folder)->save(
        std::array{RasterToSave{"dem", std::make_shared<MemoryRaster>(dem), "GRID"}});

    std::mt19937 random(7);
    std::uniform_real_distribution<double> share(0.02, 0.98);
    std::normal_distribution<double> noise(0, 0.35);
    std::vector<Field> fields = {{"STN", FieldType::text, 10, 0}};
    const std::array<const char*, 5> prefixes = {"TM_", "TN_", "TD_", "SR_", "WS_"};
    const auto addFields = [&](const std::string& prefix) {
        for (int m = 1; m <= 12; ++m) {
            fields.push_back({prefix + GetMonthName(m), FieldType::number, 12, 5});
        }
    };
    for (const char* prefix : prefixes) addFields(prefix);
    addFields("P_");
    std::mt19937 weatherOfRain(11);
    std::vector<NewFeature> stations;
    std::vector<std::vector<FieldValue>> records;
    for (int s = 0; s < stationCount; ++s) {
        const Point at{geometry.xMin + n * kCell * share(random) + 0.137,
                       geometry.yMax - n * kCell * share(random) - 0.291};
        const double z = dem.at(geometry.columnAt(at.x), geometry.rowAt(at.y));
        const std::string name = "S" + std::to_string(s);
        stations.push_back({{at}, {name, z}});
        std::vector<FieldValue> record = {name};
        for (const char* prefix : prefixes) {
            for (int m = 0; m < 12; ++m) {
                const double season = std::cos(2 * 3.14159265 * (m - 6.3) / 12);
                const double high = (z - 1500) / 1000;
                const double bases[] = {16.5 + 13 * season - 6.2 * high, 3 + 9 * season - 4 * high,
                                        -1 + 6 * season - 2 * high, 16.8 + 9 * season,
                                        2.3 + 0.2 * season};
                const auto which = static_cast<std::size_t>(
                    std::find(prefixes.begin(), prefixes.end(), prefix) - prefixes.begin());
                record.emplace_back(bases[which] + noise(random));
            }
        }
        for (int m = 0; m < 12; ++m) {
            const double inches = 0.5 + 1.1 * (z - 1500) / 1000 + 0.4 * std::cos(0.52 * m);
            record.emplace_back(std::max(0.05, inches + noise(weatherOfRain) / 2));
        }
        records.push_back(record);
    }
    auto& features = platform.features();
    features.createFeatureClass(
        folder + "/stations.shp", false, geometry.crs,
        {{"staname", FieldType::text, 10, 0}, {"ELEVATION", FieldType::number, 12, 3}}, stations);
    features.createTable(folder + "/weather.dbf", fields, records);
    const Envelope e = geometry.extent();
    features.createFeatureClass(folder + "/domain.shp", true, geometry.crs,
                                {{"NAME", FieldType::text, 10, 0}},
                                {rectangle(e, {std::string("all")})});

    RunSettings settings;
    settings.DEM = folder + "/dem";
    settings.WeatherStations = folder + "/stations.shp";
    settings.WeatherData = folder + "/weather.dbf";
    settings.OutputWorkspace = folder + "/out";
    settings.ExtentProvider = folder + "/domain.shp";
    settings.CellSize = kCell;
    settings.RefETMethod = "2";
    settings.Year = "2006";
    settings.BeginMonth = "Jan";
    settings.EndMonth = "Dec";
    settings.DemUnit = settings.SiteElevationUnit = "Meters";
    settings.TemperatureUnit = "Degree C";
    settings.HasTmax = settings.HasTmin = settings.HasTdew = settings.HasSR = settings.HasWS = true;
    return settings;
}

}  // namespace velmora::bench
