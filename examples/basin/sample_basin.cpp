// SPDX-License-Identifier: MIT
#include "examples/basin/sample_basin.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "examples/basin/crops.h"
#include "examples/basin/irrigation.h"
#include "examples/basin/land.h"
#include "examples/basin/sample_folder.h"
#include "examples/basin/stations.h"
#include "examples/basin/terrain.h"
#include "gis/errors.h"
#include "gis/linear_trend.h"
#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "modelling/station_fields.h"

namespace velmora::examples {

namespace {

const Field kNameField{"NAME", FieldType::text, 40, 0};

// Puts each station at a place of its own elevation, the places well apart: the normals are real,
// the positions belong to the made-up terrain.
std::vector<Point> stationPlaces(const Grid& terrain) {
    const GridGeometry& g = terrain.geometry;
    std::vector<Point> places;
    for (const StationNormals& station : stationNormals()) {
        double best = -1;
        Point place;
        for (int r = 8; r < g.rows - 8; r += 2) {
            for (int c = 8; c < g.columns - 8; c += 2) {
                const double off = std::fabs(terrain.at(c, r) - station.elevation);
                if (off > 15) continue;
                const Point here{g.columnCentre(c) + 37, g.rowCentre(r) - 21};
                double nearest = g.extent().width();
                for (const Point& p : places) {
                    nearest = std::min(nearest, std::hypot(p.x - here.x, p.y - here.y));
                }
                if (nearest - 20 * off > best) {
                    best = nearest - 20 * off;
                    place = here;
                }
            }
        }
        if (best < 0) throw PlatformError("The sample terrain has no place for " + station.name);
        places.push_back(place);
    }
    return places;
}

void makeStations(IPlatform& platform, const std::string& folder, const Grid& terrain) {
    std::vector<NewFeature> stations;
    const std::vector<Point> places = stationPlaces(terrain);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const StationNormals& normals = stationNormals()[i];
        stations.push_back({{places[i]}, {normals.name, normals.elevation}});
    }
    platform.features().createFeatureClass(
        joinedPath(folder, "stations.shp"), false, terrain.geometry.crs,
        {{kStationNameField, FieldType::text, 24, 0}, {kElevationField, FieldType::number, 10, 1}},
        stations);
}

void makeWeather(IPlatform& platform, const std::string& folder) {
    using Column = std::pair<const char*, std::vector<double> StationNormals::*>;
    const std::array<Column, 6> columns = {{{"TM_", &StationNormals::TM},
                                            {"TN_", &StationNormals::TN},
                                            {"TD_", &StationNormals::TD},
                                            {"SR_", &StationNormals::SR},
                                            {"WS_", &StationNormals::WS},
                                            {"P_", &StationNormals::P}}};
    std::vector<Field> fields = {{kWeatherStationField, FieldType::text, 24, 0}};
    for (const auto& [prefix, member] : columns) {
        for (int m = 1; m <= 12; ++m) {
            fields.push_back({prefix + GetMonthName(m), FieldType::number, 8, 3});
        }
    }
    std::vector<std::vector<FieldValue>> records;
    for (const StationNormals& station : stationNormals()) {
        std::vector<FieldValue> record = {station.name};
        for (const auto& [prefix, member] : columns) {
            for (std::size_t m = 0; m < 12; ++m) {
                record.push_back((station.*member).empty() ? FieldValue()
                                                           : FieldValue((station.*member)[m]));
            }
        }
        records.push_back(record);
    }
    platform.features().createTable(joinedPath(folder, "weather.dbf"), fields, records);
}

// Reference precipitation of each month on cells four times as wide as the terrain's: the straight
// line of the stations' normals over elevation, but never below a tenth of an inch, in hundredths
// of a millimetre.
void makeReferencePrecipitation(IPlatform& platform, const std::string& folder,
                                const Grid& terrain) {
    const auto wider = [](int cells) { return (cells + 3) / 4; };
    GridGeometry coarse = terrain.geometry;
    coarse.cellSize *= 4;
    coarse.columns = wider(coarse.columns);
    coarse.rows = wider(coarse.rows);
    std::vector<RasterToSave> grids;
    for (std::size_t month = 0; month < 12; ++month) {
        std::vector<ElevationPair> pairs;
        for (const StationNormals& station : stationNormals()) {
            pairs.push_back({station.elevation, station.P[month]});
        }
        const LinearTrend trend = fitLinearTrend(pairs);
        Grid grid(coarse);
        for (int r = 0; r < coarse.rows; ++r) {
            for (int c = 0; c < coarse.columns; ++c) {
                const double z = terrain.at(std::min(4 * c + 2, terrain.geometry.columns - 1),
                                            std::min(4 * r + 2, terrain.geometry.rows - 1));
                const double inches = std::max(0.1, trend.a + trend.b * z);
                grid.at(c, r) = static_cast<float>(std::round(2540 * inches));
            }
        }
        const std::string number = std::to_string(month + 1);
        grids.push_back({"refppt_" + std::string(2 - number.size(), '0') + number,
                         std::make_shared<MemoryRaster>(grid), "GRID"});
    }
    platform.rasters().openFromFolder(folder)->save(grids);
}

void makeKcTable(IPlatform& platform, const std::string& folder) {
    std::vector<Field> fields = {{"CropType", FieldType::text, 75, 0}};
    for (int m = 1; m <= 12; ++m) {
        fields.push_back({"Kc_" + GetMonthName(m), FieldType::number, 20, 4});
    }
    std::vector<std::vector<FieldValue>> records;
    for (const CropCurve& crop : cropCurves()) {
        std::vector<FieldValue> record = {crop.name};
        for (const double kc : crop.monthly) record.emplace_back(kc);
        records.push_back(record);
    }
    platform.features().createTable(joinedPath(folder, "kc.dbf"), fields, records);
}

void makeLand(IPlatform& platform, const std::string& folder, const Grid& terrain) {
    const GridGeometry& g = terrain.geometry;
    const Envelope e = g.extent();
    platform.features().createFeatureClass(joinedPath(folder, "domain.shp"), true, g.crs,
                                           {kNameField},
                                           {rectangle(e, {std::string("Sample basin")})});
    platform.features().createFeatureClass(joinedPath(folder, "zones.shp"), true, g.crs,
                                           {kNameField}, basinZones(g));
    std::vector<std::string> crops;
    for (const CropCurve& crop : cropCurves()) crops.push_back(crop.name);
    platform.features().createFeatureClass(
        joinedPath(folder, "landcover.shp"), true, g.crs,
        {{"Descriptio", FieldType::text, 50, 0}, {"AREA", FieldType::number, 19, 3}},
        basinFields(terrain, crops));
}

}  // namespace

void makeSampleBasin(IPlatform& platform, const std::string& folder) {
    claimSampleFolder(folder);
    platform.files().createFolder(joinedPath(folder, "output"));
    const std::string crs = platform.spatialReferences().createProjected(26912);
    const Grid terrain = basinTerrain(basinGeometry(crs));
    platform.rasters().openFromFolder(folder)->save(
        std::array{RasterToSave{"dem", std::make_shared<MemoryRaster>(terrain), "GRID"}});
    makeStations(platform, folder, terrain);
    makeWeather(platform, folder);
    makeReferencePrecipitation(platform, folder, terrain);
    makeLand(platform, folder, terrain);
    makeKcTable(platform, folder);
    makeIrrigationDatabase(platform, joinedPath(folder, "IrDB.mdb"));
}

std::vector<std::string> sampleSettings(const std::string& folder) {
    const auto path = [&](const char* name) { return joinedPath(folder, name); };
    return {"DEM=" + path("dem"),
            "WeatherStations=" + path("stations.shp"),
            "WeatherData=" + path("weather.dbf"),
            "KcTable=" + path("kc.dbf"),
            "LandCover=" + path("landcover.shp"),
            "Zones=" + path("zones.shp"),
            "ZoneField=NAME",
            "PrismGridFolder=" + path("refppt_01"),
            "OutputWorkspace=" + path("output"),
            "ExtentProvider=" + path("domain.shp"),
            "CellSize=200",
            "RefETMethod=2",
            "PrecipitationMethod=EDK",
            "TimeStep=Monthly",
            "Year=2023",
            "BeginMonth=Jan",
            "EndMonth=Dec",
            "ShowMonitor=true"};
}

}  // namespace velmora::examples
