// SPDX-License-Identifier: MIT
#include "check/precipitation_check.h"

#include <memory>

#include "gis/cell_values.h"
#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/raster_compare.h"
#include "modelling/station_fields.h"
#include "modelling/station_surface.h"
#include "precip/precipitation_rules.h"
#include "precip/reference_grids.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

class PrecipitationCheck {
  public:
    PrecipitationCheck(IPlatform& platform, const RunSettings& settings,
                       const std::optional<GridGeometry>& geometry)
        : platform_(platform), settings_(settings), geometry_(geometry) {}

    std::vector<Finding> run() {
        add(Severity::note, "Precipitation",
            "station fields P_Jan to P_Dec are read as inches per month, reference precipitation "
            "grids as hundredths of a millimetre");
        const PrecipitationMethod method = precipitationMethod(settings_);
        if (method == PrecipitationMethod::detrended) {
            if (demUnit(settings_) == LengthUnit::feet) {
                add(Severity::warning, settings_.DEM,
                    "is in feet, but precipitation takes its elevations as metres: use a DEM in "
                    "metres");
            }
        } else if (method == PrecipitationMethod::reference) {
            checkReferenceGrids();
        } else {
            add(Severity::error, "PrecipitationMethod",
                "\"" + settings_.PrecipitationMethod +
                    "\" is neither EDK nor PRISM_REF: precipitation is not made");
        }
        return findings_;
    }

  private:
    void add(Severity severity, const std::string& file, const std::string& text,
             const std::string& station = {}) {
        findings_.push_back({severity, file, {}, station, text});
    }

    void checkReferenceGrids() {
        openStations();
        for (const int month : settings_.months()) {
            try {
                const auto dataset = openReferenceGrid(platform_, settings_, month);
                for (const auto& text : passedOverTexts(platform_.rasters(), *dataset)) {
                    add(Severity::warning, "PrismGridFolder", text);
                }
                const RasterPtr grid = dataset->createDefaultRaster();
                const std::string path = prismGridPath(settings_.PrismGridFolder, month);
                checkReferenceGrid(path, *grid);
                checkRatios(path, *grid, month);
            } catch (const PlatformError& e) {
                add(Severity::error, "PrismGridFolder", e.what());
                if (settings_.PrismGridFolder.size() < 2) return;
            }
        }
    }

    // As the run joins them.
    void openStations() {
        if (!geometry_) return;
        try {
            joined_ = std::make_unique<WeatherStations>(platform_, settings_, kPrecipitationField,
                                                        geometry_->crs);
        } catch (const PlatformError& e) {
            findings_.push_back(
                {Severity::error, settings_.WeatherStations, {}, {}, e.what(), true});
        }
    }

    // Whether the run can make the month's surface of ratios. Goes through the months in their
    // order, as a station without a reference value keeps the ratio of the month before.
    void checkRatios(const std::string& path, const IRaster& grid, int month) {
        const SurfaceRecipe& recipe = referencedPrecipitation();
        if (!joined_) return;
        const std::string field = joined_->weatherField(recipe.quantity, month);
        if (!joined_->hasField(field)) return;
        const auto references = sampleReference(platform_, grid, geometry_->crs, *joined_);
        try {
            StationSurface surface(recipe, *joined_, month, {path, references});
            if (!joined_->zeros(field).all()) surface.fit();
        } catch (const SurfaceFailure& e) {
            findings_.push_back({Severity::error,
                                 settings_.WeatherData,
                                 recipe.quantity + GetMonthName(month),
                                 {},
                                 e.shortly()});
        }
    }

    void checkReferenceGrid(const std::string& path, const IRaster& grid) {
        if (grid.geometry().crs.empty()) {
            add(Severity::warning, path,
                "has no coordinate system: it is taken to be in the extent provider's");
        }
        if (!geometry_ || settings_.WeatherStations.empty()) return;
        const auto stations = platform_.features().openFeatureClass(settings_.WeatherStations);
        if (stations->fieldIndex(kStationNameField) < 0) return;
        const auto values = cellValuesAt(grid, stations->points(geometry_->crs), geometry_->crs,
                                         platform_.spatialReferences());
        const bool worked = stations->fieldIndex(kPrecipitationField) >= 0;
        for (std::size_t s = 0; s < values.size(); ++s) {
            if (values[s]) continue;
            const bool kept = worked && !isNull(stations->value(s, kPrecipitationField));
            add(kept ? Severity::warning : Severity::note, path,
                kept ? "has no value here, so the station's ratio is made to what its field RefPPT "
                       "holds from an earlier run: delete that field to leave the station out"
                     : "has no value here, so the station takes no part",
                keyText(stations->value(s, kStationNameField)));
        }
    }

    IPlatform& platform_;
    const RunSettings& settings_;
    const std::optional<GridGeometry>& geometry_;
    std::unique_ptr<WeatherStations> joined_;
    std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> checkPrecipitation(IPlatform& platform, const RunSettings& settings,
                                        const std::optional<GridGeometry>& geometry) {
    return PrecipitationCheck(platform, settings, geometry).run();
}

}  // namespace velmora
