// SPDX-License-Identifier: MIT
#include "hosts/results/report/run_results.h"

#include <algorithm>
#include <limits>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/polygon_analysis.h"
#include "gis/text.h"
#include "gis/zonal_tables.h"

namespace velmora {

namespace {

constexpr double kInchesPerFoot = 12;

std::size_t place(int month) { return static_cast<std::size_t>(month - 1); }

void addGrid(Product& product, IRasterWorkspace& workspace, const std::string& name,
             const std::string& label, int month) {
    if (!workspace.exists(name)) {
        product.missing.push_back(name);
        return;
    }
    const GridStatistics s =
        statisticsOf(*workspace.openRasterDataset(name)->createDefaultRaster());
    product.grids.push_back({name, label, month, s});
    if (s.cells == 0) return;
    product.minimum = std::min(product.minimum, s.minimum);
    product.maximum = std::max(product.maximum, s.maximum);
}

Product emptyProduct(const std::string& title, const std::string& unit, const std::string& note) {
    const double infinity = std::numeric_limits<double>::infinity();
    return {title, unit, note, {}, {}, infinity, -infinity};
}

std::vector<Product> products(IRasterWorkspace& workspace, const RunSettings& settings) {
    struct Kind {
        const char* title;
        const char* unit;
        const char* note;
        std::string prefix;
        std::string suffix;
    };
    const std::string tag = settings.methodTag();
    const std::vector<Kind> kinds = {
        {"Reference ET", "inches per month", "The water that the reference surface would evaporate",
         "RefET_", tag},
        {"Crop coefficients", "ratio", "Kc of the land cover's crops", "Kc_", tag},
        {"Crop ET", "inches per month", "Crop coefficient times reference ET", "ET_", tag},
        {"Precipitation", "inches per month", "Interpolated from the stations", "PPT_", ""},
        {"Net irrigation requirement", "inches per month",
         "Crop ET less 0.8 of precipitation, not below 0", "NIR_", ""},
        {"Irrigation water requirement", "inches per month",
         "Net irrigation requirement over the irrigation efficiency", "IRR_", ""}};
    std::vector<Product> all;
    for (const Kind& kind : kinds) {
        Product product = emptyProduct(kind.title, kind.unit, kind.note);
        for (const int month : settings.months()) {
            const std::string label = GetMonthName(month);
            addGrid(product, workspace, kind.prefix + label + kind.suffix, label, month);
        }
        all.push_back(std::move(product));
    }
    Product efficiency = emptyProduct(
        "Irrigation efficiency", "fraction",
        "Field application efficiency times conveyance efficiency, of each zone and crop");
    addGrid(efficiency, workspace, "faef_500", "all months", 0);
    all.insert(all.end() - 1, std::move(efficiency));
    return all;
}

// The mean of a grid in each zone.
std::map<std::string, double> zoneMeansOf(IPlatform& platform, const RunSettings& settings,
                                          const RasterPtr& grid) {
    std::map<std::string, double> means;
    const auto zones = platform.features().openFeatureClass(settings.Zones, grid->geometry().crs);
    const auto table =
        platform.analysis().zonal()->ZonalStatisticsAsTable(zones, settings.ZoneField, grid, true);
    for (std::size_t r = 0; r < table->recordCount(); ++r) {
        means[keyText(table->value(r, settings.ZoneField))] =
            std::get<double>(table->value(r, "Mean"));
    }
    return means;
}

ZoneMeans& meansOf(std::vector<ZoneMeans>& all, const std::string& zone) {
    const auto found = std::ranges::find(all, zone, &ZoneMeans::zone);
    return found != all.end() ? *found : all.emplace_back(ZoneMeans{zone, {}});
}

void addPrecipitation(IPlatform& platform, IRasterWorkspace& workspace, const RunSettings& settings,
                      std::vector<ZoneMeans>& all) {
    for (const int month : settings.months()) {
        const std::string name = "PPT_" + GetMonthName(month);
        if (!workspace.exists(name)) continue;
        const auto means = zoneMeansOf(platform, settings,
                                       workspace.openRasterDataset(name)->createDefaultRaster());
        for (ZoneMeans& zone : all) {
            const auto found = means.find(zone.zone);
            if (found != means.end()) zone.byProduct["PPT"][place(month)] = found->second;
        }
    }
}

std::vector<ZoneMeans> zoneMeans(IPlatform& platform, IRasterWorkspace& workspace,
                                 const RunResults& results) {
    std::vector<ZoneMeans> all;
    const std::map<std::string, std::string> productOf = {
        {"StatCET", "ET"}, {"StatNIR", "NIR"}, {"StatIRR", "IRR"}};
    for (const std::string& table : kZoneTables) {
        for (const ZoneMonth& row : results.tables.at(table)) {
            const double ratio = tableOverInches(row.month, results.settings.yearNumber());
            if (ratio == 0) continue;
            meansOf(all, row.zone).byProduct[productOf.at(table)][place(row.month)] =
                row.depthFeet / ratio * kInchesPerFoot;
        }
    }
    try {
        if (!all.empty()) addPrecipitation(platform, workspace, results.settings, all);
    } catch (const PlatformError&) {
        return all;  // zones that cannot be read are among the findings
    }
    return all;
}

}  // namespace

const ProductGrid* Product::of(int month) const {
    const auto found = std::ranges::find(grids, month, &ProductGrid::month);
    return found == grids.end() || found->statistics.cells == 0 ? nullptr : &*found;
}

RunResults readResults(IPlatform& platform, const RunSettings& settings) {
    if (!platform.files().folderExists(settings.OutputWorkspace)) {
        throw PlatformError("There is no output folder " + settings.OutputWorkspace);
    }
    RunResults results;
    results.settings = settings;
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    results.products = products(*workspace, settings);
    for (const std::string& table : kZoneTables) {
        results.tables[table] = zoneMonths(platform, settings.OutputWorkspace, table);
    }
    results.totals =
        zoneTotals(platform, settings.OutputWorkspace, kZoneTables, settings.yearNumber());
    results.zoneMeans = zoneMeans(platform, *workspace, results);
    results.runs = notedRuns(settings.OutputWorkspace);
    results.findings = checkInputs(platform, settings);
    return results;
}

}  // namespace velmora
