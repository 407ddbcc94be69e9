// SPDX-License-Identifier: MIT
#include "hosts/results/report/run_results.h"

#include <algorithm>
#include <limits>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "hosts/results/records/made_for.h"
#include "hosts/results/report/monthly_means.h"
#include "hosts/results/report/report_faults.h"

namespace velmora {

namespace {

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

// The account and what the charts take from it; without one the reason stands in its place.
void account(IPlatform& platform, IFeedback& feedback, RunResults& results) {
    try {
        results.account = makeAccount(platform, results.settings, feedback);
        results.zoneMeans = zoneMeans(*results.account);
        results.basinMeans = basinMeans(platform, *results.account);
    } catch (const PlatformError& e) {
        results.account.reset();
        results.noAccount = e.what();
    }
}

}  // namespace

const ProductGrid* ProductGrids::of(int month) const {
    const auto found = std::ranges::find(grids, month, &ProductGrid::month);
    return found == grids.end() || found->statistics.cells == 0 ? nullptr : &*found;
}

RunResults readResults(IPlatform& platform, const RunSettings& settings,
                       const std::vector<std::string>& mismatches, IFeedback* feedback) {
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
    Feedback unwatched;
    account(platform, feedback ? *feedback : unwatched, results);
    results.faults = reportFaults(results, mismatches);
    return results;
}

}  // namespace velmora
