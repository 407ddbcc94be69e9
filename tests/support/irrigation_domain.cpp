// SPDX-License-Identifier: MIT
#include "tests/support/irrigation_domain.h"

#include <array>

#include "gis/memory_raster.h"
#include "gis/month_names.h"
#include "settings/settings_file.h"

namespace velmora::test {

void IrrigationDomain::save(const std::string& name, const RasterPtr& grid) {
    application.platform()
        .rasters()
        .openFromFolder(folder.file("out"))
        ->save(std::array{RasterToSave{name, grid, "GRID"}});
}

RasterPtr IrrigationDomain::filled(float value) const {
    return std::make_shared<MemoryRaster>(Grid(cells, value));
}

void IrrigationDomain::saveMonths(int first, int last) {
    for (int month = first; month <= last; ++month) {
        save("ET_" + GetMonthName(month) + "_4", filled(static_cast<float>(month)));
        save("PPT_" + GetMonthName(month), filled(2));
    }
}

void IrrigationDomain::makeCropLand(const std::vector<Shape>& shapes) {
    std::vector<NewFeature> features;
    for (const Shape& shape : shapes) {
        std::vector<Point> ring = shape.ring;
        ring.push_back(ring.front());
        features.push_back({ring, {shape.key, areaOf(shape)}});
    }
    application.platform().features().createFeatureClass(
        settings.LandCover, true, geometry().crs,
        {{"Descriptio", FieldType::text, 30, 0}, {"AREA", FieldType::number, 19, 3}}, features);
}

void IrrigationDomain::storeSettings() {
    IFileSystem& files = application.platform().files();
    files.createFolder(application.folder);
    writeSettings(files, defaultSettingsPath(application.folder), settings);
}

RasterPtr rowOf(const std::vector<float>& values) {
    Grid grid({static_cast<int>(values.size()), 1, 0, 1, 1, ""});
    grid.values = values;
    return std::make_shared<MemoryRaster>(grid);
}

}  // namespace velmora::test
