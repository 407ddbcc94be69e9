// SPDX-License-Identifier: MIT
#include "refet/refet_month.h"

#include <mutex>
#include <optional>
#include <tuple>

#include "gis/grid_tiles.h"
#include "refet/equations/failure.h"

namespace velmora {

RefEtMonth::RefEtMonth(const CellMaker& maker, const CellInputs& inputs,
                       const GridGeometry& geometry, MonthQuality& quality)
    : maker_(maker), inputs_(inputs), geometry_(geometry), quality_(quality) {}

void RefEtMonth::read(const CellBlock& block, std::span<float> values) const {
    CellTable table;
    maker_.make(table, block, inputs_);
    try {
        const RefEtPassResult result = maker_.calculate(table, inputs_.date);
        failedCells_ += result.failedCells;
        quality_.look(table, result.radiation);
    } catch (const std::exception& e) {
        throw CalculationFailed(e.what());
    }
    fieldIntoCells(table, CellField::RefET, values);
}

void RefEtMonth::throwFirstFailure(IParallelLoop& loop) const {
    std::mutex mutex;
    std::optional<EquationError> first;
    const auto order = [](const EquationError& e) {
        return std::tuple(e.place().column, e.place().row);
    };
    forEachTile(loop, geometry_, [&](const CellBlock& block) {
        try {
            CellTable table;
            maker_.make(table, block, inputs_);
            maker_.calculate(table, inputs_.date);
        } catch (const EquationError& e) {
            const std::lock_guard lock(mutex);
            if (!first || order(e) < order(*first)) first.emplace(e);
        }
    });
    if (first) throw EquationError(*first);
}

}  // namespace velmora
