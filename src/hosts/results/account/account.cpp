// SPDX-License-Identifier: MIT
#include "hosts/results/account/account.h"

#include <algorithm>
#include <limits>
#include <set>

#include "gis/errors.h"
#include "gis/grid_tiles.h"
#include "gis/month_names.h"
#include "gis/text.h"
#include "hosts/results/account/account_grids.h"
#include "hosts/results/account/account_layers.h"
#include "hosts/results/account/account_notes.h"
#include "hosts/results/account/account_sums.h"
#include "modelling/products.h"

namespace velmora {

namespace {

// Rows that hold about so many cells, whole rows of tiles.
int bandRows(const GridGeometry& cells, std::size_t bandCells) {
    const std::size_t rows = bandCells / static_cast<std::size_t>(cells.columns);
    const std::size_t most = static_cast<std::size_t>(cells.rows) + kTileRows;
    return std::max(kTileRows, static_cast<int>(std::min(rows, most)) / kTileRows * kTileRows);
}

// The months that have crop ET, and the cells of the first of them.
std::vector<int> monthsOf(const AccountGridSource& source, Account& account) {
    const RunSettings& settings = account.settings;
    std::vector<int> months;
    std::vector<std::string> missing;
    for (const int month : settings.months()) {
        const auto cells = source.cellsOf(month);
        if (!cells) {
            missing.push_back(gridName(productMadeBy("cropet").read, settings, month));
            continue;
        }
        if (months.empty()) account.cells = *cells;
        months.push_back(month);
    }
    if (months.empty()) {
        throw PlatformError("There is no crop ET of " + settings.BeginMonth + " to " +
                                settings.EndMonth + " in " + settings.OutputWorkspace +
                                ", of which an account could be made: velmora run cropet makes it",
                            {.file = settings.OutputWorkspace});
    }
    if (!missing.empty()) {
        account.notes.push_back("Not in the account are the months without crop ET: " +
                                joinedNames(missing));
    }
    return months;
}

constexpr std::size_t kLast = std::numeric_limits<std::size_t>::max();

void sortEntries(Account& account) {
    std::ranges::sort(account.entries, {}, [](const AccountEntry& entry) {
        return std::pair(entry.zone.value_or(kLast), entry.crop.value_or(kLast));
    });
}

}  // namespace

std::string_view landText(Land land) {
    static constexpr std::array<std::string_view, kLands> texts = {
        "with efficiency",      "without efficiency", "without precipitation",
        "without reference ET", "without Kc",         "without land cover"};
    return texts.at(static_cast<std::size_t>(land));
}

void Amounts::add(const Amounts& other) {
    cells += other.cells;
    cropEt += other.cropEt;
    precipitation += other.precipitation;
    effective += other.effective;
    surplus += other.surplus;
    net += other.net;
    water += other.water;
    used += other.used;
    withoutNet += other.withoutNet;
    withoutWater += other.withoutWater;
}

Account makeAccount(IPlatform& platform, const RunSettings& settings, IFeedback& feedback,
                    const AccountOptions& options) {
    Account account;
    account.settings = settings;
    AccountGridSource source(platform, account.settings);
    const std::vector<int> months = monthsOf(source, account);
    const KeyedPolygons zones = zonePolygons(platform, settings, account.cells.crs);
    const KeyedPolygons crops =
        cropPolygons(platform, settings, options.cropField, account.cells.crs);
    account.zones = accountZones(zones);
    account.crops = crops.keys;
    std::vector<AccountGrids> grids;
    for (const int month : months) {
        grids.push_back(source.open(month, account.cells));
        const AccountGrids& g = grids.back();
        const bool rain = g.precipitation != nullptr;
        account.months.push_back(
            {month, rain, rain && g.net, g.efficiency != nullptr, rain && g.efficiency && g.water});
    }
    const int rows = bandRows(account.cells, options.bandCells);
    const int bands = (account.cells.rows + rows - 1) / rows;
    AccountSums sums(platform, account, zones, crops);
    FeedbackParts parts(feedback, static_cast<std::size_t>(bands) * months.size());
    for (int row = 0; row < account.cells.rows; row += rows) {
        sums.beginBand(row, std::min(rows, account.cells.rows - row));
        for (std::size_t m = 0; m < months.size(); ++m) {
            parts.next("Account of " + GetMonthName(months[m]) + " ...");
            sums.addMonth(m, grids[m]);
        }
        sums.endBand();
    }
    sortEntries(account);
    addNotes(platform, source.notes(), account);
    return account;
}

}  // namespace velmora
