// SPDX-License-Identifier: MIT
#include "refet/cell_maker.h"

#include <algorithm>
#include <utility>

#include "gis/errors.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

// Estimates follow what they are made of.
constexpr std::array kInOrder = {CellField::Elevation, CellField::TM, CellField::TN, CellField::TD,
                                 CellField::GG,        CellField::SR, CellField::WS};

}  // namespace

CellMaker::CellMaker(const RunSettings& settings, std::vector<double> latitudes, double noData)
    : settings_(settings), latitudes_(std::move(latitudes)), noData_(noData) {}

void CellMaker::setLatitudes(CellTable& table) const {
    const std::span<double> values = table.writable(CellField::Latitude);
    const auto first = latitudes_.begin() + table.block().row;
    for (std::size_t k = 0; k < values.size(); k += table.rows()) {
        std::copy_n(first, table.rows(), values.begin() + static_cast<std::ptrdiff_t>(k));
    }
}

void CellMaker::make(CellTable& table, const CellBlock& block, const CellInputs& inputs,
                     const Conventions& conventions) const {
    table.createRecords(block);
    setLatitudes(table);
    for (const CellField field : kInOrder) {
        const FieldSource& source = inputs[field];
        switch (source.kind) {
            case FieldSource::Kind::none:
                break;
            case FieldSource::Kind::withoutData:
                std::ranges::fill(table.writable(field), noData_);
                break;
            case FieldSource::Kind::estimate:
                estimate(table, field, inputs.date, conventions);
                break;
            case FieldSource::Kind::grid:
                try {
                    gridIntoField(*source.grid, table, field);
                } catch (const PlatformError& e) {
                    throw UnreadableField(field, e.what());
                }
        }
    }
}

void CellMaker::estimate(CellTable& table, CellField field, const Date& date,
                         const Conventions& conventions) const {
    if (field == CellField::TD) {
        estimateDewPoint(table, settings_.Ko, noData_);
    } else if (field == CellField::SR) {
        estimateSolarRadiation(table, settings_.Ks, date, noData_, conventions);
    } else if (field == CellField::WS) {
        estimateWindSpeed(table, settings_.EstimatedWindSpeed);
    } else {
        std::ranges::fill(table.writable(field), 0.0);
    }
}

RefEtPassResult CellMaker::calculate(CellTable& table, const Date& date,
                                     const Conventions& conventions) const {
    const ElevationParts parts =
        settings_.needsFullWeather() ? elevationParts(table) : ElevationParts();
    return calculateRefEt(table, parts, refEtMethod(settings_), date, noData_, conventions);
}

}  // namespace velmora
