// SPDX-License-Identifier: MIT
// One month's reference ET for every record of the cell table.
//
// All cells of a grid row share one latitude, so what depends on latitude and date alone
// (extraterrestrial radiation, the daylight percentage) is computed once per row, what depends on
// elevation alone once per cell and run, and the rest once per cell and month. The results are
// those of clsModels, bit for bit, but for other conventions than ours.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "gis/parallel.h"
#include "refet/cell_table.h"
#include "refet/equations/calendar.h"
#include "settings/run_choices.h"

namespace velmora {

// What depends on elevation alone, once per record and run.
struct ElevationParts {
    std::vector<double>
        gamma;  // psychrometric constant, kPa / deg C; not-a-number where there is none
};
ElevationParts elevationParts(IParallelLoop& loop, const CellTable& table);

struct RefEtPassResult {
    std::size_t failedCells = 0;  // cells for which Blaney-Criddle reported its error and gave 0
};

// Is shown the records begin ... end - 1 as soon as they are computed, while they are at hand, with
// the extraterrestrial radiation by rows of the grid (nothing by Blaney-Criddle, which has no use
// for it). Pieces may be shown at once.
using PieceSeen = std::function<void(std::size_t begin, std::size_t end,
                                     std::span<const std::optional<double>> radiation)>;

// Fills the field RefET, inches of the month. A record whose elevation, or a needed input, equals
// `noData` gets `noData`. `rows` is the number of rows of the grid. Methods 4 and 5 need no
// elevation parts. Throws EquationError naming the first cell for which an equation other than
// Blaney-Criddle fails, and PlatformError when a needed field was never filled.
RefEtPassResult calculateRefEt(IParallelLoop& loop, CellTable& table, const ElevationParts& parts,
                               RefEtMethod method, const Date& date, std::size_t rows,
                               double noData, const Conventions& conventions = kOurConventions,
                               const PieceSeen& seen = {});

// Estimates of missing inputs, into the table: dew point TN - Ko, solar radiation
// Ks sqrt(TM - TN) Ra (a negative difference counts as 0) with Ra kept in the field SA, wind speed.
void estimateDewPoint(IParallelLoop& loop, CellTable& table, double Ko, double noData);
void estimateSolarRadiation(IParallelLoop& loop, CellTable& table, double Ks, const Date& date,
                            std::size_t rows, double noData,
                            const Conventions& conventions = kOurConventions);
void estimateWindSpeed(CellTable& table, double windSpeed);

}  // namespace velmora
