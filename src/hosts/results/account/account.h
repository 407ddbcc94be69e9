// SPDX-License-Identifier: MIT
// The water account of a run: for each zone, crop and month what its land uses, gets and asks for,
// all over the same cells, so that every sum closes. docs/water-account.md defines each term.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

// What a cell lacks in a month, of several the first: each cell is of one kind. Those of the first
// three have crop ET.
enum class Land {
    withEfficiency,
    withoutEfficiency,
    withoutPrecipitation,
    withoutReferenceEt,  // it has a crop coefficient
    withoutKc,
    withoutLandCover,
};
constexpr std::size_t kLands = 6;
constexpr bool hasCropEt(Land land) { return land <= Land::withoutPrecipitation; }
constexpr bool isBalanced(Land land) { return land <= Land::withoutEfficiency; }
std::string_view landText(Land land);  // "without Kc"

// Sums over cells, those of depths in inches.
struct Amounts {
    double cells = 0;
    double cropEt = 0;
    double precipitation = 0;  // this and the next two of balanced land alone
    double effective = 0;
    double surplus = 0;
    double net = 0;           // net irrigation requirement
    double water = 0;         // irrigation water requirement, of land with efficiency alone
    double used = 0;          // each cell's water requirement times its efficiency
    double withoutNet = 0;    // cells that should have a net requirement, but have none
    double withoutWater = 0;  // cells that should have a water requirement, but have none

    void add(const Amounts& other);
};
using AmountsByLand = std::array<Amounts, kLands>;

struct AccountZone {
    std::string key;          // the zone's full text
    double squareMetres = 0;  // of all its polygons
    std::string keyInTables;  // as the zone tables hold it
    std::size_t polygons = 0;
};

// A month of the account, and what it has the grids for, beside crop ET.
struct AccountMonth {
    int month = 0;
    bool precipitation = false;
    bool net = false;
    bool efficiency = false;
    bool water = false;
    // Of the grids as they are, without a look at zones, crops and kinds of land.
    Amounts whole = {};
};

// The land of one zone and crop.
struct AccountEntry {
    std::optional<std::size_t> zone;  // none: outside all zones
    std::optional<std::size_t> crop;  // none: no land cover
    // Cells by the least that they lack in any month.
    std::array<double, kLands> cells = {};
    std::vector<AmountsByLand> months;  // as Account::months
};

struct Account {
    RunSettings settings;
    GridGeometry cells;
    std::vector<AccountZone> zones;  // in the order of the shapefile, those without a cell too
    std::vector<std::string> crops;  // sorted; "" for polygons without a crop type
    std::vector<AccountMonth> months;
    std::vector<AccountEntry> entries;  // zone by zone, crop by crop
    std::vector<std::string> notes;     // what its reader must know
};

struct AccountOptions {
    std::string cropField;               // of the land cover; "" for the usual one
    std::size_t bandCells = 16'000'000;  // held in memory at a time
};

// Reads the grids of the settings' period from the output folder. Throws PlatformError when there
// is no crop ET in any month, or when zones or land cover cannot be read; Cancelled.
Account makeAccount(IPlatform& platform, const RunSettings& settings, IFeedback& feedback,
                    const AccountOptions& options = {});

}  // namespace velmora
