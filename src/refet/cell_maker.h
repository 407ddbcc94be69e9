// SPDX-License-Identifier: MIT
// Makes the cell table of a month, block by block: from the grids of its weather, or by the
// estimates that stand for what is missing.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "gis/rasters.h"
#include "refet/cell_table.h"
#include "refet/refet_pass.h"
#include "settings/run_settings.h"

namespace velmora {

// Where a field of the cell table comes from.
struct FieldSource {
    enum class Kind {
        none,         // null
        grid,         // a grid of the run's cells
        withoutData,  // no data in every cell
        estimate      // the field's own: dew point, radiation and wind of estimates, no heat flux
    };
    Kind kind = Kind::none;
    RasterPtr grid = nullptr;

    bool operator==(const FieldSource&) const = default;
};

// What the cells of a month are made from; latitude and reference ET have no source.
struct CellInputs {
    Date date;
    std::array<FieldSource, kCellFields> fields;

    FieldSource& operator[](CellField field) { return fields[static_cast<std::size_t>(field)]; }
    const FieldSource& operator[](CellField field) const {
        return fields[static_cast<std::size_t>(field)];
    }
    bool operator==(const CellInputs&) const = default;
};

// A grid that a field comes from cannot be read.
class UnreadableField : public std::runtime_error {
  public:
    UnreadableField(CellField field, const std::string& why)
        : std::runtime_error(why), field_(field) {}
    CellField field() const { return field_; }

  private:
    CellField field_;
};

class CellMaker {
  public:
    // Of the rows of a grid: degrees north. The settings outlive the maker.
    CellMaker(const RunSettings& settings, std::vector<double> latitudes, double noData);

    // Makes the records of the block's cells with all fields but reference ET; those by estimates
    // that depend on the date, by the conventions. Throws UnreadableField.
    void make(CellTable& table, const CellBlock& block, const CellInputs& inputs,
              const Conventions& conventions = kOurConventions) const;

    // Computes the reference ET of such records. Throws what calculateRefEt() throws.
    RefEtPassResult calculate(CellTable& table, const Date& date,
                              const Conventions& conventions = kOurConventions) const;

    double noData() const { return noData_; }
    void useNoData(double noData) { noData_ = noData; }

  private:
    void setLatitudes(CellTable& table) const;
    void estimate(CellTable& table, CellField field, const Date& date,
                  const Conventions& conventions) const;

    const RunSettings& settings_;
    std::vector<double> latitudes_;
    double noData_;
};

}  // namespace velmora
