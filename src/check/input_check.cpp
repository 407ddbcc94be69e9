// SPDX-License-Identifier: MIT
#include "check/input_check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>

#include "check/coefficient_check.h"
#include "check/extrapolation_check.h"
#include "check/grid_check.h"
#include "check/irrigation_check.h"
#include "check/precipitation_check.h"
#include "check/run_needs.h"
#include "check/station_check.h"
#include "check/zone_check.h"
#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/raster_compare.h"
#include "gis/text.h"
#include "refet/run_size.h"
#include "settings/lost_characters.h"
#include "settings/modelling_extent.h"
#include "settings/run_choices.h"
#include "settings/settings_fields.h"

namespace velmora {

namespace {

constexpr double kLowestGround = -450;  // metres
constexpr double kHighestGround = 8900;

class InputCheck {
  public:
    InputCheck(IPlatform& platform, const RunSettings& settings, const CheckScope& scope)
        : platform_(platform), settings_(settings), scope_(scope) {}

    std::vector<Finding> run() {
        checkRun();
        checkDomain();
        checkOutput();
        if (scope_.weather || scope_.precipitation) checkWeather();
        checkLaterInputs();
        if (scope_.grids) appendFindings(checkGrids(platform_, settings_));
        dropToldOnTheWay();
        // That such a path does not exist has been told, with the reason.
        std::erase_if(findings_, [&](const Finding& finding) {
            return std::find(lost_.begin(), lost_.end(), finding.file) != lost_.end();
        });
        return findings_;
    }

  private:
    void add(Severity severity, const std::string& file, const std::string& text) {
        findings_.push_back({severity, file, {}, {}, text});
    }
    void appendFindings(const std::vector<Finding>& more) {
        findings_.insert(findings_.end(), more.begin(), more.end());
    }
    void dropToldOnTheWay() {
        std::set<std::string> told;
        for (const Finding& finding : findings_) {
            if (!finding.onTheWay) told.insert(finding.text);
        }
        std::erase_if(findings_, [&](const Finding& finding) {
            return finding.onTheWay && !told.insert(finding.text).second;
        });
    }

    void checkRun() {
        for (const LostText& lost : lostPaths(platform_.files(), settings_)) {
            add(Severity::error, lost.field, lost.text);
            lost_.push_back(settingsText(settings_, *findSettingsField(lost.field)));
        }
        if (refEtMethod(settings_) == RefEtMethod::none) {
            add(Severity::error, "RefETMethod", "\"" + settings_.RefETMethod + "\" is not 1 to 6");
        }
        if (settings_.endMonthNumber() == 0 ||
            settings_.beginMonthNumber() > settings_.endMonthNumber()) {
            add(Severity::warning, "BeginMonth, EndMonth",
                "\"" + settings_.BeginMonth + "\" to \"" + settings_.EndMonth +
                    "\" holds no month, so runs make nothing: use Jan to Dec");
        }
        const auto year = strictNumber(settings_.Year);
        if (!year || *year < 1000 || *year > 9999) {
            add(Severity::warning, "Year", "\"" + settings_.Year + "\" is no year of four digits");
        }
        if (timeStep(settings_) != TimeStep::monthly) {
            add(Severity::note, "TimeStep", "the model steps work month by month");
        }
        if (settings_.beginMonthNumber() == 0) {
            add(Severity::warning, "BeginMonth",
                "\"" + settings_.BeginMonth +
                    "\" is none of Jan to Dec: the run begins in January");
        }
        checkUnit("DemUnit", settings_.DemUnit, demUnit(settings_), LengthUnit::feet);
        checkUnit("SiteElevationUnit", settings_.SiteElevationUnit, siteElevationUnit(settings_),
                  LengthUnit::feet);
        checkUnit("TemperatureUnit", settings_.TemperatureUnit, temperatureUnit(settings_),
                  TemperatureUnit::fahrenheit);
        if (settings_.Ks < 0.1 || settings_.Ks > 0.25) {
            add(Severity::warning, "Ks", numberText(settings_.Ks) + " is far from 0.16 to 0.19");
        }
        if (settings_.EstimatedWindSpeed <= 0 || settings_.EstimatedWindSpeed > 15) {
            add(Severity::warning, "EstimatedWindSpeed",
                numberText(settings_.EstimatedWindSpeed) + " m/s is not likely at 2 m");
        }
    }

    // `taken` is what the run takes the text as, `other` the unit that it could be beside that.
    template <class Unit>
    void checkUnit(const char* field, const std::string& text, Unit taken, Unit other) {
        const std::string usual = textOf(taken);
        if (text == usual) return;
        add(Severity::warning, field,
            "\"" + text + "\" is neither " + usual + " nor " + textOf(other) + ": it is taken as " +
                usual);
    }

    void checkDomain() {
        try {
            geometry_ = runGeometry(platform_, settings_);
            add(Severity::note, settings_.ExtentProvider,
                std::to_string(geometry_->columns) + " x " + std::to_string(geometry_->rows) +
                    " cells of " + numberText(settings_.CellSize) + " m in " +
                    platform_.spatialReferences().name(geometry_->crs));
            tellDegrees(geometry_->extent());
            requireRoom(platform_.files(), settings_, *geometry_);
            appendFindings(checkRunNeeds(platform_.files(), settings_, *geometry_));
        } catch (const PlatformError& e) {
            add(Severity::error, "ExtentProvider, CellSize", e.what());
        }
    }

    // Longitudes and latitudes whose coordinate system says metres.
    void tellDegrees(const Envelope& extent) {
        const bool degrees =
            extent.xMin >= -180 && extent.xMax <= 180 && extent.yMin >= -90 && extent.yMax <= 90;
        const bool small = geometry_->columns <= 2 && geometry_->rows <= 2;
        if (!degrees && !small) return;
        add(Severity::warning, settings_.ExtentProvider,
            "the modelling extent is " + numberText(extent.width()) + " x " +
                numberText(extent.height()) +
                " m: are its coordinates degrees, or is the cell size too large?");
    }

    void checkOutput() {
        if (settings_.OutputWorkspace.empty()) {
            add(Severity::error, "OutputWorkspace", "is empty: name a folder for output");
            return;
        }
        try {
            reading_ = platform_.files().shareFolder(settings_.OutputWorkspace);
        } catch (const PlatformError& e) {
            add(Severity::error, settings_.OutputWorkspace, e.what());
        }
    }

    void checkWeather() {
        checkDem();
        appendFindings(checkStations(platform_, settings_, geometry_, scope_));
        if (scope_.precipitation && !scope_.quick) {
            appendFindings(checkPrecipitation(platform_, settings_, geometry_));
        }
    }

    void checkDem() {
        try {
            const auto dataset = platform_.rasters().openRasterDataset(settings_.DEM);
            for (const std::string& text : passedOverTexts(platform_.rasters(), *dataset)) {
                add(Severity::warning, settings_.DEM, text);
            }
            const RasterPtr dem = dataset->createDefaultRaster();
            if (dem->geometry().crs.empty()) {
                add(Severity::warning, settings_.DEM,
                    "has no coordinate system: it is taken to be in the extent provider's");
            }
            if (geometry_ && !scope_.quick) checkElevations(dem);
        } catch (const PlatformError& e) {
            add(Severity::error, settings_.DEM, e.what());
        }
    }

    struct Elevations {
        std::size_t seen = 0;
        std::size_t missing = 0;
        std::size_t odd = 0;
    };

    Elevations elevationsOf(const IRaster& metres, int everyRow) const {
        Elevations found;
        std::vector<float> cells(static_cast<std::size_t>(geometry_->columns));
        for (int row = 0; row < geometry_->rows; row += everyRow) {
            metres.read({0, row, geometry_->columns, 1}, cells);
            for (const float z : cells) {
                ++found.seen;
                if (z == kNoData) {
                    ++found.missing;
                } else if (z < kLowestGround || z > kHighestGround) {
                    ++found.odd;
                }
            }
        }
        return found;
    }

    // Reads the DEM on the run's grid, a row here and there, or all of it where these are empty.
    void checkElevations(const RasterPtr& dem) {
        const auto algebra = platform_.analysis().mapAlgebra();
        useCells(algebra->environment(), *geometry_);
        algebra->BindRaster(dem, "DEM");
        const RasterPtr metres =
            algebra->Execute("[DEM] * " + numberText(metresIn(demUnit(settings_))));
        Elevations found = elevationsOf(*metres, std::max(1, geometry_->rows / 100));
        if (found.missing == found.seen) found = elevationsOf(*metres, 1);
        if (found.missing == found.seen) {
            add(Severity::error, settings_.DEM, "has no data within the modelling extent");
        } else if (found.missing > 0) {
            add(Severity::note, settings_.DEM,
                std::to_string(found.missing * 100 / found.seen) +
                    " % of the modelling extent has no elevation, and gets no reference ET");
        }
        if (scope_.weather) {
            appendFindings(checkExtrapolation(platform_, settings_, *metres));
        }
        if (found.odd > 0) {
            add(Severity::warning, settings_.DEM,
                "holds elevations below -450 or above 8900 m: is the DEM unit right (" +
                    settings_.DemUnit + ")?");
        }
    }

    void checkLaterInputs() {
        if (scope_.zones) {
            checkPolygons(settings_.Zones, "Zones", settings_.ZoneField);
            if (!settings_.Zones.empty() && settings_.ZoneField.empty()) {
                add(Severity::error, "ZoneField", "is empty: name the field of the zones' keys");
            }
        }
        if (scope_.crops) checkPolygons(settings_.LandCover, "LandCover", "");
        if (scope_.irrigation) appendFindings(checkIrrigation(platform_, settings_, scope_.quick));
        if (scope_.crops) checkKcTable();
    }

    void checkKcTable() {
        if (settings_.KcTable.empty()) {
            add(Severity::note, "KcTable",
                "is not set; reference ET and precipitation do not need it");
            return;
        }
        try {
            const auto table = platform_.features().openTable(settings_.KcTable);
            appendFindings(checkCoefficients(*table, settings_));
            checkLand(*table);
        } catch (const PlatformError& e) {
            add(Severity::error, settings_.KcTable, e.what());
        }
    }

    void checkLand(const ITable& coefficients) {
        try {
            appendFindings(checkTypesWithoutRow(platform_, settings_, coefficients, scope_.quick));
        } catch (const PlatformError& e) {
            findings_.push_back({Severity::error, settings_.LandCover, {}, {}, e.what(), true});
        }
    }

    void checkPolygons(const std::string& path, const std::string& setting,
                       const std::string& keyField) {
        if (path.empty()) {
            add(Severity::note, setting,
                "is not set; reference ET and precipitation do not need it");
            return;
        }
        try {
            const auto layer = platform_.features().openFeatureClass(path);
            if (!layer->holdsPolygons()) {
                add(Severity::error, path, "holds no polygons");
            } else if (!scope_.quick) {
                layer->areas();  // which looks at every shape
            }
            if (layer->crs().empty()) {
                add(Severity::warning, path,
                    "has no coordinate system: it is taken to be in the extent provider's");
            }
            if (!keyField.empty()) {
                requireField(*layer, keyField);
                if (layer->fieldIndex(keyField) >= 0) checkZoneLayer(*layer, keyField);
            }
        } catch (const PlatformError& e) {
            add(Severity::error, path, e.what());
        }
    }

    void checkZoneLayer(const IFeatureClass& layer, const std::string& keyField) {
        appendFindings(checkZoneKeys(layer, keyField));
        if (geometry_ && !scope_.quick)
            appendFindings(checkZoneCells(platform_, settings_, *geometry_));
    }

    void requireField(const ITable& table, const std::string& field) {
        if (table.fieldIndex(field) >= 0) return;
        findings_.push_back({Severity::error, table.path(), field, {}, "the field is missing"});
    }

    std::unique_ptr<IFolderLock> reading_;  // no run changes anything meanwhile
    IPlatform& platform_;
    const RunSettings& settings_;
    const CheckScope scope_;
    std::optional<GridGeometry> geometry_;
    std::vector<std::string> lost_;  // paths that lost characters in the settings file
    std::vector<Finding> findings_;
};

}  // namespace

std::string findingLine(const Finding& finding) {
    static const std::array<const char*, 3> words = {"error", "warning", "note"};
    std::string line = words[static_cast<std::size_t>(finding.severity)];
    for (const std::string& part : {finding.file, finding.field, finding.station, finding.text}) {
        if (!part.empty()) line += ": " + part;
    }
    return line;
}

CheckScope inputsOfStep(const std::string& step) {
    const bool all = step == "all";
    CheckScope scope;
    scope.weather = all || step == "refet";
    scope.precipitation = all || step == "ppt";
    scope.crops = all || step == "kc";
    scope.zones = all || !(scope.weather || scope.precipitation || scope.crops);
    scope.irrigation = all || step == "eff";
    scope.grids = false;
    return scope;
}

std::vector<Finding> checkInputs(IPlatform& platform, const RunSettings& settings,
                                 const CheckScope& scope) {
    return InputCheck(platform, settings, scope).run();
}

}  // namespace velmora
