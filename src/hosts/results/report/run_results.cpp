// SPDX-License-Identifier: MIT
#include "hosts/results/report/run_results.h"

#include <algorithm>
#include <limits>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/polygon_analysis.h"
#include "gis/text.h"
#include "gis/units.h"
#include "gis/zonal_tables.h"
#include "hosts/results/records/made_for.h"
#include "hosts/results/report/report_faults.h"

namespace velmora {

namespace {

std::size_t place(int month) { return static_cast<std::size_t>(month - 1); }

void addGrid(ProductGrids& product, IRasterWorkspace& workspace, const std::string& name,
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

ProductGrids gridsOf(const Product& product, IRasterWorkspace& workspace,
                     const RunSettings& settings) {
    const double infinity = std::numeric_limits<double>::infinity();
    ProductGrids grids{&product, {}, {}, infinity, -infinity};
    const GridNaming& naming = product.shownAsRead ? product.read : product.made;
    if (!naming.monthly) {
        addGrid(grids, workspace, gridName(naming, settings, 0), "all months", 0);
        return grids;
    }
    for (const int month : settings.months()) {
        addGrid(grids, workspace, gridName(naming, settings, month), GetMonthName(month), month);
    }
    return grids;
}

void readTable(IPlatform& platform, const ZoneTableScope& scope, RunResults& results) {
    auto& rows = results.tables[scope.table];
    rows = zoneMonths(platform, results.settings.OutputWorkspace, scope.table);
    results.strangeRows[scope.table] =
        std::erase_if(rows, [&](const ZoneMonth& row) { return !scope.holds(row); });
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

// The means of a product's grids over whole zones.
void addGridMeans(const Product& product, IPlatform& platform, IRasterWorkspace& workspace,
                  const RunSettings& settings, std::vector<ZoneMeans>& all) {
    for (const int month : settings.months()) {
        const std::string name = gridName(product.read, settings, month);
        if (!workspace.exists(name)) continue;
        const auto means = zoneMeansOf(platform, settings,
                                       workspace.openRasterDataset(name)->createDefaultRaster());
        for (ZoneMeans& zone : all) {
            const auto found = means.find(zone.zone);
            if (found != means.end()) zone.byProduct[&product][place(month)] = found->second;
        }
    }
}

// A failure of the zones is a finding, without which their lines end early for no reason.
std::vector<ZoneMeans> zoneMeans(IPlatform& platform, IRasterWorkspace& workspace,
                                 const RunResults& results, std::vector<Finding>& findings) {
    std::vector<ZoneMeans> all;
    for (const Product* product : tabledProducts()) {
        for (const ZoneMonth& row : results.tables.at(std::string(product->table.name))) {
            const double ratio =
                tableOverInches(row.month, results.settingsOf(*product).yearNumber());
            if (ratio == 0) continue;
            meansOf(all, row.zone).byProduct[product][place(row.month)] =
                row.depthFeet / ratio * kInchesPerFoot;
        }
    }
    try {
        for (const Product& product : products()) {
            const bool fromGrids =
                product.charted == Charted::basinAndZones && product.table.name.empty();
            if (all.empty() || !fromGrids) continue;
            addGridMeans(product, platform, workspace, results.settings, all);
        }
    } catch (const PlatformError& e) {
        const bool told = std::ranges::any_of(
            findings, [&](const Finding& finding) { return finding.text == e.what(); });
        if (!told) {
            findings.push_back({Severity::error, results.settings.Zones, {}, {}, e.what()});
        }
    }
    return all;
}

}  // namespace

const ProductGrid* ProductGrids::of(int month) const {
    const auto found = std::ranges::find(grids, month, &ProductGrid::month);
    return found == grids.end() || found->statistics.cells == 0 ? nullptr : &*found;
}

RunResults readResults(IPlatform& platform, const RunSettings& settings,
                       const std::vector<std::string>& mismatches) {
    if (!platform.files().folderExists(settings.OutputWorkspace)) {
        throw PlatformError("There is no output folder " + settings.OutputWorkspace,
                            {.file = settings.OutputWorkspace});
    }
    RunResults results;
    results.records = readRunRecords(settings.OutputWorkspace);
    results.settings = results.records.lastSettings(settings);
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    for (const Product& product : products()) {
        results.products.push_back(gridsOf(product, *workspace, results.settingsOf(product)));
    }
    const auto scopes = zoneTableScopes(results.records, results.settings);
    for (const ZoneTableScope& scope : scopes) readTable(platform, scope, results);
    results.totals = zoneTotals(platform, settings.OutputWorkspace, scopes);
    results.runs = notedRuns(settings.OutputWorkspace);
    results.findings = checkInputs(platform, results.settings);
    results.zoneMeans = zoneMeans(platform, *workspace, results, results.findings);
    results.faults = reportFaults(results, mismatches);
    return results;
}

}  // namespace velmora
