// SPDX-License-Identifier: MIT
#include "tests/support/crop_domain.h"

#include <array>
#include <cmath>

#include "crop/crop_et_run.h"
#include "gis/month_names.h"
#include "tests/support/polygon_rings.h"

namespace velmora::test {

namespace {

std::vector<NewFeature> features(const std::vector<Shape>& shapes) {
    std::vector<NewFeature> all;
    for (const Shape& shape : shapes) all.push_back({shape.ring, {shape.key}});
    for (NewFeature& feature : all) feature.ring.push_back(feature.ring.front());
    return all;
}

}  // namespace

CropDomain::CropDomain(IPlatform& platform, const Folder& where) : RunDomain(platform, where) {
    makeLandCover(fields());
    makeZones(zones());
    makeKcTable(crops());
    settings.LandCover = folder.file("land.shp");
    settings.Zones = folder.file("zones.shp");
    settings.ZoneField = "ZONE";
    settings.KcTable = folder.file("crops.dbf");
    settings.RefETMethod = "4";
}

void CropDomain::makeLandCover(const std::vector<Shape>& shapes) {
    application.platform().features().createFeatureClass(
        folder.file("land.shp"), true, geometry().crs, {{"Use", FieldType::text, 30, 0}},
        features(shapes));
}

void CropDomain::makeZones(const std::vector<Shape>& shapes) {
    application.platform().features().createFeatureClass(
        folder.file("zones.shp"), true, geometry().crs, {{"ZONE", FieldType::text, 60, 0}},
        features(shapes));
}

void CropDomain::makeKcTable(const std::vector<Crop>& list) {
    std::vector<Field> columns = {{"CropType", FieldType::text, 75, 0}};
    for (int m = 1; m <= 12; ++m) {
        columns.push_back({"Kc_" + GetMonthName(m), FieldType::number, 20, 5});
    }
    std::vector<std::vector<FieldValue>> records;
    for (const Crop& crop : list) {
        std::vector<FieldValue> record = {crop.type};
        for (const double kc : crop.monthly) record.emplace_back(kc);
        records.push_back(record);
    }
    application.platform().features().createTable(folder.file("crops.dbf"), columns, records);
}

// Thirty four-cornered fields that overlap here and there, in and around the domain.
std::vector<Shape> CropDomain::fields() {
    const std::array<const char*, 5> uses = {"Alfalfa", "Barley", "Water", "O'Brien Corn", ""};
    std::vector<Shape> shapes;
    for (int i = 0; i < 30; ++i) {
        const double x = 400300 + 13900 * std::fmod(0.37 + 0.61803 * i, 1.0);
        const double y = 4499500 - 7600 * std::fmod(0.11 + 0.32471 * i, 1.0);
        const double w = 1700 + 37 * (i % 7);
        const double h = 1400 + 53 * (i % 5);
        shapes.push_back({uses[static_cast<std::size_t>(i % 5)],
                          {{x + 0.31, y + 0.17},
                           {x + w, y + 0.2 * h},
                           {x + 1.1 * w, y - h},
                           {x - 0.2 * w, y - 0.8 * h}}});
    }
    return shapes;
}

std::vector<Shape> CropDomain::zones() {
    return {{"West",
             {{400000.5, 4491600.5}, {400000.5, 4499999}, {405003, 4499999}, {405003, 4491600.5}}},
            {"Middle Valley Irrigators' District",
             {{405003, 4491600.5}, {405003, 4499999}, {409007, 4499999}, {409007, 4491600.5}}},
            {"O'Dell's", {{409007, 4491600.5}, {409007, 4499999}, {414799, 4496001}}}};
}

std::vector<Crop> CropDomain::crops() {
    return {{"Alfalfa", {0, 0, 0.35, 0.8, 0.9, 1, 1.1, 1.05, 0.9, 0.5, 0, 0}},
            {"Barley", {0, 0, 0, 0.3, 0.9, 1.15, 0.4, 0, 0, 0, 0, 0}},
            {"O'Brien Corn", {0, 0, 0, 0, 0.3, 0.6, 1.2, 1.15, 0.6, 0, 0, 0}}};
}

bool CropDomain::runCropEt() { return velmora::runCropEt(application, settings); }

void CropDomain::copyKcMaps(const std::vector<std::string>& months) {
    const auto workspace = application.platform().rasters().openFromFolder(folder.file("out"));
    for (const std::string& month : months) {
        workspace->save(std::array{
            RasterToSave{"Kc_" + month,
                         workspace->openRasterDataset("Kc_" + month + settings.methodTag())
                             ->createDefaultRaster(),
                         "GRID"}});
    }
}

std::vector<std::vector<FieldValue>> CropDomain::tableRows(const std::string& name) {
    const auto table =
        application.platform().features().openTable(folder.file("out/" + name + ".dbf"));
    std::vector<std::vector<FieldValue>> rows;
    for (std::size_t r = 0; r < table->recordCount(); ++r) {
        rows.emplace_back();
        for (const Field& field : table->fields())
            rows.back().push_back(table->value(r, field.name));
    }
    return rows;
}

bool contains(const Shape& shape, Point p) { return ringContains(shape.ring, p); }

double areaOf(const Shape& shape) { return ringArea(shape.ring); }

int shapeAt(const std::vector<Shape>& shapes, Point p) {
    std::vector<std::vector<Point>> rings;
    for (const Shape& shape : shapes) rings.push_back(shape.ring);
    return ringAt(rings, p);
}

}  // namespace velmora::test
