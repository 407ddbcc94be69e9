// SPDX-License-Identifier: MIT
#include "platform/analysis/environment.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "platform/features/spatial_reference.h"

namespace velmora::platform {

namespace {

// The extent in another coordinate system: the box around its edge, of which many points are taken,
// since a straight edge may be bent there.
Envelope transformed(const Envelope& e, const std::string& from, const std::string& to,
                     ISpatialReferenceFactory& spatialReferences) {
    if (from.empty() || to.empty() || sameCoordinateSystem(from, to)) return e;
    constexpr int kPointsPerSide = 64;
    std::vector<Point> edge;
    for (int i = 0; i <= kPointsPerSide; ++i) {
        const double x = e.xMin + e.width() * i / kPointsPerSide;
        const double y = e.yMin + e.height() * i / kPointsPerSide;
        edge.insert(edge.end(), {{x, e.yMin}, {x, e.yMax}, {e.xMin, y}, {e.xMax, y}});
    }
    const std::vector<Point> there = spatialReferences.project(edge, from, to);
    Envelope box{there[0].x, there[0].y, there[0].x, there[0].y};
    for (const Point& p : there) {
        box = {std::min(box.xMin, p.x), std::min(box.yMin, p.y), std::max(box.xMax, p.x),
               std::max(box.yMax, p.y)};
    }
    return box;
}

Envelope intersection(const Envelope& a, const Envelope& b) {
    return {std::max(a.xMin, b.xMin), std::max(a.yMin, b.yMin), std::min(a.xMax, b.xMax),
            std::min(a.yMax, b.yMax)};
}

// The first cell from an edge whose centre lies `distance` or more from the edge. A centre on the
// limit, but for rounding, counts.
int firstCentre(double distance, double cellSize) {
    constexpr double kRounding = 1e-6;  // of a cell
    return static_cast<int>(std::ceil(distance / cellSize - 0.5 - kRounding));
}

// What the coordinates of an input are in, "" for metres; so is one without a coordinate system.
std::string otherUnit(const GridGeometry& g, ISpatialReferenceFactory& spatialReferences) {
    if (g.crs.empty()) return {};
    const std::string unit = unitOtherThanMetres(spatialReferences, g.crs);
    return unit.empty() ? unit : unit + " (" + spatialReferences.name(g.crs) + ")";
}

// The input of the smallest cells among those in metres, the first of several: areas are taken in
// square metres, and sizes in degrees or feet are no numbers to compare with. Where others have to
// be transformed to it and it has no coordinate system, it is taken to be in that of the first
// input in metres that has one.
GridGeometry finestOf(std::span<const AnalysisEnvironment::Input> inputs,
                      ISpatialReferenceFactory& spatialReferences) {
    std::vector<const GridGeometry*> metric;
    std::string others;
    for (const AnalysisEnvironment::Input& input : inputs) {
        const std::string unit = otherUnit(input.geometry, spatialReferences);
        if (unit.empty()) {
            metric.push_back(&input.geometry);
        } else {
            others += (others.empty() ? "[" : ", [") + input.name + "] is in " + unit;
        }
    }
    if (metric.empty()) {
        throw PlatformError(others +
                            ", and none of the inputs is in metres, in which cell sizes and areas "
                            "are taken: project one to a system in metres, such as UTM");
    }
    GridGeometry finest =
        **std::ranges::min_element(metric, {}, [](const GridGeometry* g) { return g->cellSize; });
    if (others.empty() || !finest.crs.empty()) return finest;
    const auto known =
        std::ranges::find_if(metric, [](const GridGeometry* g) { return !g->crs.empty(); });
    if (known == metric.end()) {
        throw PlatformError(others +
                            ", and no input in metres has a coordinate system to convert "
                            "it to: give the others theirs");
    }
    finest.crs = (*known)->crs;
    return finest;
}

std::string extentText(const Envelope& e) {
    return numberText(e.xMin) + " to " + numberText(e.xMax) + ", " + numberText(e.yMin) + " to " +
           numberText(e.yMax);
}

}  // namespace

void AnalysisEnvironment::SetCellSize(EnvironmentSetting setting, double cellSize) {
    cellSizeSetting_ = setting;
    cellSize_ = cellSize;
}

void AnalysisEnvironment::SetExtent(EnvironmentSetting setting, const Envelope& extent,
                                    const std::string& crs) {
    extentSetting_ = setting;
    extent_ = extent;
    crs_ = crs;
}

GridGeometry AnalysisEnvironment::geometry() const {
    return GridGeometry::covering(extent_, cellSize_, crs_);
}

// Under the minimum of the inputs: the cells of the finest lattice (the first bound on a tie) whose
// centres lie in all extents. A centre on a left or upper edge lies within, on a right or lower one
// outside, as points lie in cells.
GridGeometry AnalysisEnvironment::geometryOf(std::span<const Input> inputs,
                                             ISpatialReferenceFactory& spatialReferences) const {
    if (cellSizeSetting_ != extentSetting_) {
        throw PlatformError("Cell size and extent must both be explicit or both of the inputs");
    }
    if (cellSizeSetting_ == EnvironmentSetting::explicitValue) return geometry();
    if (inputs.empty()) throw PlatformError("The expression names no raster to take cells from");
    const GridGeometry finest = finestOf(inputs, spatialReferences);
    Envelope common = finest.extent();
    for (const Input& input : inputs) {
        common = intersection(common, transformed(input.geometry.extent(), input.geometry.crs,
                                                  finest.crs, spatialReferences));
    }
    const int left = firstCentre(common.xMin - finest.xMin, finest.cellSize);
    const int right = firstCentre(common.xMax - finest.xMin, finest.cellSize);
    const int top = firstCentre(finest.yMax - common.yMax, finest.cellSize);
    const int bottom = firstCentre(finest.yMax - common.yMin, finest.cellSize);
    if (right <= left || bottom <= top) {
        std::string text = "There is no place that all inputs cover:";
        for (const Input& input : inputs) {
            text += " [" + input.name + "] " + extentText(input.geometry.extent()) + ";";
        }
        text.back() = ':';
        throw PlatformError(text + " make them over one domain");
    }
    GridGeometry cells = finest;
    cells.columns = right - left;
    cells.rows = bottom - top;
    cells.xMin = finest.xMin + left * finest.cellSize;
    cells.yMax = finest.yMax - top * finest.cellSize;
    return cells;
}

}  // namespace velmora::platform
