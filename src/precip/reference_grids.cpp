// SPDX-License-Identifier: MIT
#include "precip/reference_grids.h"

#include "gis/cell_values.h"
#include "gis/errors.h"

namespace velmora {

std::string prismGridPath(const std::string& path, int month) {
    if (path.size() < 2) {
        throw PlatformError(
            "The reference precipitation grids are not named: give the path of one month's grid, "
            "which ends in the two digits of the month",
            {.field = "PrismGridFolder", .month = month});
    }
    return path.substr(0, path.size() - 2) + (month < 10 ? "0" : "") + std::to_string(month);
}

std::unique_ptr<IRasterDataset> openReferenceGrid(IPlatform& platform, const RunSettings& settings,
                                                  int month) {
    const std::string path = prismGridPath(settings.PrismGridFolder, month);
    try {
        return platform.rasters().openRasterDataset(path);
    } catch (const PlatformError& e) {
        ErrorPlace place = e.place();
        place.month = month;
        throw PlatformError(std::string(e.what()) + ": the setting names one month's grid (" +
                                settings.PrismGridFolder +
                                "), without a file extension and ending in the month's two digits",
                            place);
    }
}

std::vector<std::optional<double>> sampleReference(IPlatform& platform, const IRaster& grid,
                                                   const std::string& crs,
                                                   WeatherStations& stations) {
    auto values = cellValuesAt(grid, stations.positions(), crs, platform.spatialReferences());
    for (std::size_t station = 0; station < values.size(); ++station) {
        if (values[station]) stations.setWorkingValue(station, *values[station]);
    }
    return values;
}

}  // namespace velmora
