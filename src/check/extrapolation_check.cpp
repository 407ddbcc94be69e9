// SPDX-License-Identifier: MIT
#include "check/extrapolation_check.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "gis/trend_test.h"
#include "modelling/quality_text.h"
#include "modelling/station_fields.h"
#include "modelling/surface_ground.h"
#include "refet/weather_rules.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

constexpr int kRowsLookedAt = 100;
constexpr double kInfinite = std::numeric_limits<double>::infinity();

// Metres; low above high without a station that has one.
Range stationElevations(IPlatform& platform, const RunSettings& settings) {
    const auto layer = platform.features().openFeatureClass(settings.WeatherStations);
    Range range{kInfinite, -kInfinite};
    if (layer->fieldIndex(kElevationField) < 0) return range;
    for (std::size_t s = 0; s < layer->recordCount(); ++s) {
        const FieldValue value = layer->value(s, kElevationField);
        const auto* elevation = std::get_if<double>(&value);
        if (!elevation) continue;
        const double z = *elevation * metresIn(siteElevationUnit(settings));
        range = {std::min(range.low, z), std::max(range.high, z)};
    }
    return range;
}

struct Beyond {
    std::size_t cells = 0;
    std::size_t above = 0;
    std::size_t below = 0;
    double highest = 0;  // metres beyond
    double deepest = 0;

    void see(double z, const Range& range) {
        ++cells;
        if (z > range.high) {
            ++above;
            highest = std::max(highest, z - range.high);
        } else if (z < range.low) {
            ++below;
            deepest = std::max(deepest, range.low - z);
        }
    }
};

Beyond lookAt(const IRaster& metres, const Range& range) {
    const GridGeometry& geometry = metres.geometry();
    Beyond found;
    std::vector<float> cells(static_cast<std::size_t>(geometry.columns));
    const int step = std::max(1, geometry.rows / kRowsLookedAt);
    for (int row = 0; row < geometry.rows; row += step) {
        metres.read({0, row, geometry.columns, 1}, cells);
        for (const float z : cells) {
            if (z != kNoData) found.see(static_cast<double>(z), range);
        }
    }
    return found;
}

std::string beyondText(std::size_t count, std::size_t cells, double by, const std::string& where) {
    return shareText(count, static_cast<double>(count) / static_cast<double>(cells)) +
           " of the modelling extent lies " + where + ", by up to " + numberText(std::round(by)) +
           " m";
}

bool isChance(const SurfaceRecipe& recipe, int month, const WeatherStations& stations) {
    const std::string field = stations.weatherField(recipe.quantity, month);
    if (!stations.hasField(field)) return false;
    try {
        std::vector<std::size_t> valid = stations.selected(recipe.range.clause(field));
        std::erase_if(valid, [&](std::size_t s) { return !stations.elevation(s); });
        const auto pairs = stations.pairs(field, valid);
        return slopeProbability(pairs, fitLinearTrend(pairs)).value_or(0) > kSignificance;
    } catch (const PlatformError&) {
        return false;
    }
}

}  // namespace

std::vector<Finding> checkExtrapolation(IPlatform& platform, const RunSettings& settings,
                                        const IRaster& metres) {
    Range range;
    try {
        range = stationElevations(platform, settings);
    } catch (const PlatformError&) {
        return {};
    }
    if (range.low > range.high) return {};
    const Beyond found = lookAt(metres, range);
    std::vector<std::string> texts;
    if (found.above > 0) {
        texts.push_back(
            beyondText(found.above, found.cells, found.highest,
                       "above the highest station (" + numberText(std::round(range.high)) + " m)"));
    }
    if (found.below > 0) {
        texts.push_back(
            beyondText(found.below, found.cells, found.deepest,
                       "below the lowest station (" + numberText(std::round(range.low)) + " m)"));
    }
    if (texts.empty()) return {};
    return {{Severity::note,
             settings.DEM,
             {},
             {},
             joinedNames(texts) + ": temperatures are extrapolated there"}};
}

std::vector<Finding> checkTrends(const RunSettings& settings, const WeatherStations& stations) {
    std::vector<Finding> findings;
    for (const WeatherQuantity& quantity : weatherQuantities(settings)) {
        if (!quantity.recipe.detrended()) continue;
        std::vector<std::string> months;
        for (const int month : settings.months()) {
            if (isChance(quantity.recipe, month, stations)) months.push_back(GetMonthName(month));
        }
        if (months.empty()) continue;
        findings.push_back({Severity::note,
                            stations.weatherTable(),
                            quantity.recipe.quantity + "...",
                            {},
                            "the trend over elevation is not significant (5 %) in " +
                                joinedNames(months) +
                                ": what lies above or below the stations is extrapolated by it"});
    }
    return findings;
}

}  // namespace velmora
