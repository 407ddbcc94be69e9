// SPDX-License-Identifier: MIT
#include "platform/analysis/conversion.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "gis/errors.h"
#include "gis/grid.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kMostAssignmentBytes = 256'000'000;  // kept for the months to come

// The value of each cell's polygon.
class PolygonRaster : public IRaster {
  public:
    PolygonRaster(std::shared_ptr<const PolygonCells> cells, std::vector<float> values)
        : cells_(std::move(cells)), values_(std::move(values)) {}
    const GridGeometry& geometry() const override { return cells_->geometry(); }
    void read(const CellBlock& block, std::span<float> values) const override {
        auto to = values.begin();
        for (int r = 0; r < block.rows; ++r) {
            for (const std::int32_t record :
                 cells_->records(block.column, block.row + r, block.columns)) {
                *to++ = record == kNoRecord ? kNoData : values_[static_cast<std::size_t>(record)];
            }
        }
    }

  private:
    std::shared_ptr<const PolygonCells> cells_;
    std::vector<float> values_;  // by record
};

}  // namespace

std::unique_ptr<IRasterDataset> ConversionOp::ToRasterDataset(
    const FeatureClassDescriptor& descriptor, const std::string& format,
    IRasterWorkspace& workspace, const std::string& name) {
    const IJoinedLayer& layer = descriptor.layer;
    if (!layer.hasField(descriptor.field)) {
        throw PlatformError("There is no field " + descriptor.field + " to make a grid of",
                            {.field = descriptor.field});
    }
    const auto features = layer.layer();
    std::vector<std::size_t> records;
    if (descriptor.whereClause.empty()) {
        records.resize(features->recordCount());
        std::iota(records.begin(), records.end(), 0);
    } else {
        records = layer.select(descriptor.whereClause);
    }
    std::vector<bool> chosen(features->recordCount(), false);
    std::vector<float> values(features->recordCount(), kNoData);
    for (const std::size_t record : records) {
        chosen[record] = true;
        const FieldValue value = layer.value(record, descriptor.field);
        if (const auto* number = std::get_if<double>(&value)) {
            values[record] = static_cast<float>(*number);
        } else if (!isNull(value)) {
            throw PlatformError(
                "The field " + descriptor.field + " holds text (\"" + std::get<std::string>(value) +
                    "\") where a number is needed",
                {.file = features->path(), .field = descriptor.field, .record = record + 1});
        }
    }
    const RasterPtr raster =
        std::make_shared<PolygonRaster>(assignment(features->path(), chosen), std::move(values));
    workspace.save(std::array{RasterToSave{name, raster, format}});
    return workspace.openRasterDataset(name);
}

std::shared_ptr<const PolygonCells> ConversionOp::assignment(const std::string& path,
                                                             const std::vector<bool>& chosen) {
    const GridGeometry geometry = environment_.geometry();
    const auto found = std::ranges::find_if(assignments_, [&](const Assignment& a) {
        return a.path == path && a.chosen == chosen && a.cells->geometry() == geometry;
    });
    if (found != assignments_.end()) return found->cells;
    std::size_t bytes = geometry.cells() * sizeof(std::int32_t);
    for (const Assignment& a : assignments_) bytes += a.cells->bytes();
    while (bytes > kMostAssignmentBytes && !assignments_.empty()) {
        bytes -= assignments_.front().cells->bytes();
        assignments_.erase(assignments_.begin());
    }
    ++passes_;
    assignments_.push_back({path, chosen, std::make_shared<PolygonCells>(path, geometry, chosen)});
    return assignments_.back().cells;
}

}  // namespace velmora::platform
