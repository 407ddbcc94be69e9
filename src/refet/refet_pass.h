// SPDX-License-Identifier: MIT
// One month's reference ET for every record of the cell table.
//
// All cells of a grid row share one latitude, so what depends on latitude and date alone
// (extraterrestrial radiation, the daylight percentage) is computed once per row of the block, what
// depends on elevation alone once per cell, and the rest once per cell and month. The results are
// those of clsModels, bit for bit, but for other conventions than ours; no block's depend on
// another.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "refet/cell_table.h"
#include "refet/equations/calendar.h"
#include "settings/run_choices.h"

namespace velmora {

// What depends on elevation alone.
struct ElevationParts {
    std::vector<double>
        gamma;  // psychrometric constant, kPa / deg C; not-a-number where there is none
};
ElevationParts elevationParts(const CellTable& table);

// What depends on latitude and date alone; no value where its equation fails.
using LatitudePart = std::optional<double>;

struct RefEtPassResult {
    std::size_t failedCells = 0;  // cells for which Blaney-Criddle reported its error and gave 0
    // The extraterrestrial radiation, MJ m-2 d-1, by rows of the block; none by Blaney-Criddle,
    // which has no use for it.
    std::vector<LatitudePart> radiation;
};

// Fills the field RefET, inches of the month. A record whose elevation, or a needed input, equals
// `noData` gets `noData`. Methods 4 and 5 need no elevation parts. Throws EquationError naming the
// first cell of the grid, in the order of the records, for which an equation other than
// Blaney-Criddle fails; all others are filled then, and that one is `noData`. Throws PlatformError
// when a needed field was never filled.
RefEtPassResult calculateRefEt(CellTable& table, const ElevationParts& parts, RefEtMethod method,
                               const Date& date, double noData,
                               const Conventions& conventions = kOurConventions);

// Estimates of missing inputs, into the table: dew point TN - Ko, solar radiation
// Ks sqrt(TM - TN) Ra (a negative difference counts as 0) with Ra kept in the field SA, wind speed.
void estimateDewPoint(CellTable& table, double Ko, double noData);
void estimateSolarRadiation(CellTable& table, double Ks, const Date& date, double noData,
                            const Conventions& conventions = kOurConventions);
void estimateWindSpeed(CellTable& table, double windSpeed);

}  // namespace velmora
