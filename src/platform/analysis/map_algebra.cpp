// SPDX-License-Identifier: MIT
#include "platform/analysis/map_algebra.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "gis/errors.h"
#include "gis/expression.h"
#include "gis/text.h"
#include "platform/files/run_notes.h"
#include "platform/grid/raster_sampling.h"

namespace velmora::platform {

namespace {

// Single precision cells as doubles, no-data as not-a-number, and back.
void widen(std::span<const float> cells, double* values) {
    constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        values[i] = cells[i] == kNoData ? kNothing : static_cast<double>(cells[i]);
    }
}

void narrow(const double* values, std::span<float> cells) {
    constexpr double kLargest = std::numeric_limits<float>::max();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        // Not-a-number and what no single can hold fail this test. Adding 0 makes a negative zero
        // (as of -3 times 0) a plain one.
        cells[i] =
            std::fabs(values[i]) <= kLargest ? static_cast<float>(values[i]) + 0.0F : kNoData;
    }
}

class AlgebraRaster : public IRaster {
  public:
    AlgebraRaster(Expression expression, std::vector<RasterPtr> inputs, GridGeometry geometry)
        : expression_(std::move(expression)),
          inputs_(std::move(inputs)),
          geometry_(std::move(geometry)) {}

    const GridGeometry& geometry() const override { return geometry_; }

    void read(const CellBlock& block, std::span<float> values) const override {
        const std::size_t cells = block.cells();
        const auto doubles = std::make_unique_for_overwrite<double[]>((inputs_.size() + 1) * cells);
        std::vector<const double*> operands;
        double* next = doubles.get();
        for (const RasterPtr& input : inputs_) {
            input->read(block, values);  // `values` serves as the buffer of each input in turn
            widen(values, next);
            operands.push_back(next);
            next += cells;
        }
        expression_.evaluate(operands, cells, next);
        narrow(next, values);
    }

  private:
    Expression expression_;
    std::vector<RasterPtr> inputs_;
    GridGeometry geometry_;
};

}  // namespace

void MapAlgebraOp::BindRaster(RasterPtr raster, const std::string& name) {
    UnbindRaster(name);
    bindings_.emplace_back(name, std::move(raster));
}

void MapAlgebraOp::UnbindRaster(const std::string& name) {
    std::erase_if(bindings_, [&](const auto& b) { return sameIgnoringCase(b.first, name); });
}

RasterPtr MapAlgebraOp::Execute(const std::string& expression) {
    noteStatement(expression);
    Expression parsed(expression);
    std::vector<RasterPtr> inputs;
    std::vector<AnalysisEnvironment::Input> cells;
    for (const std::string& name : parsed.names()) {
        inputs.push_back(bound(name, expression));
        cells.push_back({name, inputs.back()->geometry()});
    }
    GridGeometry geometry = environment_.geometryOf(cells, spatialReferences_);
    for (RasterPtr& input : inputs) input = sampledOn(input, geometry, spatialReferences_);
    return std::make_shared<AlgebraRaster>(std::move(parsed), std::move(inputs),
                                           std::move(geometry));
}

RasterPtr MapAlgebraOp::bound(const std::string& name, const std::string& expression) const {
    const auto found = std::find_if(bindings_.begin(), bindings_.end(),
                                    [&](const auto& b) { return sameIgnoringCase(b.first, name); });
    if (found == bindings_.end()) {
        throw PlatformError("In the expression \"" + expression + "\" no raster is bound to [" +
                            name + "]");
    }
    return found->second;
}

}  // namespace velmora::platform
