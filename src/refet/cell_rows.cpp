// SPDX-License-Identifier: MIT
#include "refet/cell_rows.h"

#include <algorithm>

#include "gis/grid_tiles.h"
#include "refet/equations/failure.h"

namespace velmora {

namespace {

constexpr std::size_t kSliceBytes = 64'000'000;

// Whole columns of tiles where memory allows it.
int columnsOfSlice(const GridGeometry& geometry, int from) {
    const std::size_t ofColumn =
        static_cast<std::size_t>(geometry.rows) * kCellFields * sizeof(double);
    const auto fit = std::clamp<std::size_t>(kSliceBytes / ofColumn, 1, kTileColumns);
    const int toNextTile = kTileColumns - from % kTileColumns;
    return std::min({static_cast<int>(fit), toNextTile, geometry.columns - from});
}

}  // namespace

std::size_t CellRows::next(std::size_t first) {
    const GridGeometry& geometry = run_.geometry;
    const int column = static_cast<int>(first / static_cast<std::size_t>(geometry.rows));
    const CellBlock slice{column, 0, columnsOfSlice(geometry, column), geometry.rows};
    slice_.createRecords(slice);
    // Fields that no block has stay null; the others are made room for before threads fill them.
    const CellBlock corner{column, 0, 1, 1};
    const CellTable example = records(corner);
    for (int f = 0; f < kCellFields; ++f) {
        const auto field = static_cast<CellField>(f);
        if (!example.values(field).empty()) slice_.writable(field);
    }
    const auto bands = static_cast<std::size_t>((geometry.rows + kTileRows - 1) / kTileRows);
    run_.loop.run(bands, 8, [&](std::size_t begin, std::size_t end) {
        for (std::size_t band = begin; band < end; ++band) {
            const int row = static_cast<int>(band) * kTileRows;
            put(records({slice.column, row, slice.columns, std::min(kTileRows, slice.rows - row)}));
        }
    });
    return slice.cells();
}

CellTable CellRows::records(const CellBlock& block) const {
    CellTable table;
    run_.maker.make(table, block, run_.inputs);
    if (!run_.calculated) return table;
    if (*run_.calculated == run_.inputs) {
        calculate(table);
        return table;
    }
    CellTable calculated;
    run_.maker.make(calculated, block, *run_.calculated);
    calculate(calculated);
    std::ranges::copy(calculated.values(CellField::RefET),
                      table.writable(CellField::RefET).begin());
    return table;
}

// A failure was told when the month was computed; its cells are without data.
void CellRows::calculate(CellTable& table) const {
    try {
        run_.maker.calculate(table, run_.calculated->date);
    } catch (const EquationError&) {
        return;
    }
}

void CellRows::put(const CellTable& records) {
    const CellBlock& block = records.block();
    for (int f = 0; f < kCellFields; ++f) {
        const auto field = static_cast<CellField>(f);
        const auto from = records.values(field);
        if (from.empty()) continue;
        const std::span<double> to = slice_.writable(field);
        for (std::size_t c = 0; c < static_cast<std::size_t>(block.columns); ++c) {
            std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(c * records.rows()),
                        records.rows(),
                        to.begin() + static_cast<std::ptrdiff_t>(
                                         c * slice_.rows() + static_cast<std::size_t>(block.row)));
        }
    }
}

std::span<const double> CellRows::column(int position) const {
    return slice_.values(static_cast<CellField>(position));
}

}  // namespace velmora
