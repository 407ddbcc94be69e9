// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_sums.h"

#include <algorithm>
#include <span>

#include "gis/grid_tiles.h"
#include "gis/polygon_analysis.h"

namespace velmora {

namespace {

constexpr std::size_t kMostParts = 16;
constexpr std::size_t kPartBytes = 64'000'000;  // of the sums of all parts

// A place behind the keys stands for none of them.
std::size_t keyAt(const KeyedPolygons& polygons, std::int32_t record) {
    return record == kNoRecord ? polygons.keys.size()
                               : polygons.keyOfRecord[static_cast<std::size_t>(record)];
}

std::optional<std::size_t> place(const KeyedPolygons& polygons, std::size_t key) {
    return key == polygons.keys.size() ? std::nullopt : std::optional(key);
}

struct Cell {
    float cropEt, precipitation, effective, surplus, net, efficiency, water, coefficient;
    bool isCovered;

    // A division by zero gives no data, so an efficiency of 0 is none.
    Land land() const {
        if (cropEt != kNoData) {
            if (surplus == kNoData) return Land::withoutPrecipitation;
            const bool efficient = efficiency != kNoData && efficiency != 0;
            return efficient ? Land::withEfficiency : Land::withoutEfficiency;
        }
        if (coefficient != kNoData) return Land::withoutReferenceEt;
        return isCovered ? Land::withoutKc : Land::withoutLandCover;
    }
};

void addValue(double& sum, float value) {
    if (value != kNoData) sum += static_cast<double>(value);
}

void addCell(Amounts& sums, const Cell& cell, Land land) {
    ++sums.cells;
    addValue(sums.cropEt, cell.cropEt);
    if (!isBalanced(land)) return;
    sums.precipitation += static_cast<double>(cell.precipitation);
    sums.effective += static_cast<double>(cell.effective);
    sums.surplus += static_cast<double>(cell.surplus);
    addValue(sums.net, cell.net);
    if (cell.net == kNoData) ++sums.withoutNet;
    if (land != Land::withEfficiency) return;
    addValue(sums.water, cell.water);
    if (cell.water == kNoData) {
        ++sums.withoutWater;
    } else {
        sums.used += static_cast<double>(cell.water) * static_cast<double>(cell.efficiency);
    }
}

void addWhole(Amounts& sums, const Cell& cell) {
    ++sums.cells;
    addValue(sums.cropEt, cell.cropEt);
    addValue(sums.surplus, cell.surplus);
    if (cell.surplus != kNoData) {
        addValue(sums.precipitation, cell.precipitation);
        addValue(sums.effective, cell.effective);
    }
    addValue(sums.net, cell.net);
    addValue(sums.water, cell.water);
}

// The values of a tile; no data where there is no grid.
std::vector<float> valuesOf(const RasterPtr& grid, const CellBlock& tile) {
    std::vector<float> values(tile.cells(), kNoData);
    if (grid) grid->read(tile, values);
    return values;
}

}  // namespace

struct AccountSums::Part {
    std::vector<AmountsByLand> entries;
    Amounts whole;
};

AccountSums::AccountSums(IPlatform& platform, Account& account, const KeyedPolygons& zones,
                         const KeyedPolygons& crops)
    : platform_(platform), account_(account), zones_(zones), crops_(crops) {}

std::size_t AccountSums::entryOf(std::size_t zone, std::size_t crop) {
    const auto [found, isNew] = entries_.try_emplace(
        static_cast<std::uint64_t>(zone) * (crops_.keys.size() + 1) + crop, entries_.size());
    if (isNew) {
        account_.entries.push_back({place(zones_, zone), place(crops_, crop), {}, {}});
        account_.entries.back().months.resize(account_.months.size());
    }
    return found->second;
}

void AccountSums::beginBand(int firstRow, int rows) {
    firstRow_ = firstRow;
    rows_ = rows;
    const auto zonal = platform_.analysis().zonal();
    const auto zones = zonal->recordsOfCells(*zones_.features, account_.cells, firstRow, rows);
    const auto crops = zonal->recordsOfCells(*crops_.features, account_.cells, firstRow, rows);
    entry_.resize(zones.size());
    least_.assign(zones.size(), static_cast<std::uint8_t>(Land::withoutLandCover));
    for (std::size_t i = 0; i < zones.size(); ++i) {
        const bool asBefore = i > 0 && zones[i] == zones[i - 1] && crops[i] == crops[i - 1];
        entry_[i] = asBefore ? entry_[i - 1]
                             : static_cast<std::uint32_t>(
                                   entryOf(keyAt(zones_, zones[i]), keyAt(crops_, crops[i])));
    }
}

void AccountSums::addMonth(std::size_t month, const AccountGrids& grids) {
    const std::size_t bytes = account_.entries.size() * sizeof(AmountsByLand);
    std::vector<Part> parts(std::clamp<std::size_t>(kPartBytes / bytes, 1, kMostParts));
    const auto across = static_cast<std::size_t>(GridTiles(account_.cells).across);
    const std::size_t first = static_cast<std::size_t>(firstRow_ / kTileRows) * across;
    const std::size_t tiles =
        static_cast<std::size_t>((rows_ + kTileRows - 1) / kTileRows) * across;
    platform_.loop().run(parts.size(), 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t p = begin; p < end; ++p) {
            parts[p].entries.resize(account_.entries.size());
            sumTiles(grids, first + p * tiles / parts.size(),
                     first + (p + 1) * tiles / parts.size(), parts[p]);
        }
    });
    for (const Part& part : parts) {
        account_.months[month].whole.add(part.whole);
        for (std::size_t e = 0; e < part.entries.size(); ++e) {
            for (std::size_t land = 0; land < kLands; ++land) {
                account_.entries[e].months[month][land].add(part.entries[e][land]);
            }
        }
    }
}

void AccountSums::sumTiles(const AccountGrids& grids, std::size_t begin, std::size_t end,
                           Part& part) {
    const GridTiles tiles(account_.cells);
    for (std::size_t tile = begin; tile < end; ++tile) {
        sumTile(grids, tiles.block(tile, account_.cells), part);
    }
}

void AccountSums::sumTile(const AccountGrids& grids, const CellBlock& tile, Part& part) {
    const auto cropEt = valuesOf(grids.cropEt, tile);
    const auto precipitation = valuesOf(grids.precipitation, tile);
    const auto effective = valuesOf(grids.effective, tile);
    const auto surplus = valuesOf(grids.surplus, tile);
    const auto net = valuesOf(grids.net, tile);
    const auto efficiency = valuesOf(grids.efficiency, tile);
    const auto water = valuesOf(grids.water, tile);
    const auto coefficient = valuesOf(grids.coefficient, tile);
    std::size_t i = 0;
    for (int r = 0; r < tile.rows; ++r) {
        std::size_t at = static_cast<std::size_t>(tile.row + r - firstRow_) *
                             static_cast<std::size_t>(account_.cells.columns) +
                         static_cast<std::size_t>(tile.column);
        for (int c = 0; c < tile.columns; ++c, ++i, ++at) {
            const Cell cell{
                cropEt[i],  precipitation[i], effective[i],
                surplus[i], net[i],           efficiency[i],
                water[i],   coefficient[i],   account_.entries[entry_[at]].crop.has_value()};
            const Land land = cell.land();
            addCell(part.entries[entry_[at]][static_cast<std::size_t>(land)], cell, land);
            addWhole(part.whole, cell);
            least_[at] = std::min(least_[at], static_cast<std::uint8_t>(land));
        }
    }
}

void AccountSums::endBand() {
    for (std::size_t i = 0; i < entry_.size(); ++i) {
        ++account_.entries[entry_[i]].cells[least_[i]];
    }
}

}  // namespace velmora
