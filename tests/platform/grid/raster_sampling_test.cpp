// SPDX-License-Identifier: MIT
#include "platform/grid/raster_sampling.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "gis/memory_raster.h"
#include "platform/features/spatial_reference.h"

namespace velmora::platform {
namespace {

// Cells that tell their column and row, without a file; it notes the largest block read.
class Terrain : public IRaster {
  public:
    explicit Terrain(GridGeometry geometry) : geometry_(std::move(geometry)) {}
    const GridGeometry& geometry() const override { return geometry_; }
    void read(const CellBlock& block, std::span<float> values) const override {
        ASSERT_EQ(values.size(), block.cells());
        largest = std::max(largest, block.cells());
        std::size_t i = 0;
        for (int r = block.row; r < block.row + block.rows; ++r) {
            for (int c = block.column; c < block.column + block.columns; ++c) {
                values[i++] = valueAt(c, r);
            }
        }
    }
    static float valueAt(int column, int row) {
        return static_cast<float>((column * 31 + row * 17) % 10007);
    }
    mutable std::size_t largest = 0;

  private:
    GridGeometry geometry_;
};

constexpr std::size_t kMegabyte = (1U << 20U) / sizeof(float);

struct RasterSampling : testing::Test {
    SpatialReferenceFactory systems;

    // The sampled raster, whole, beside a plain look at each cell's centre.
    void expectPlain(const std::shared_ptr<Terrain>& terrain, const GridGeometry& cells) {
        const RasterPtr sampled = sampledOn(terrain, cells, systems);
        const Grid grid = wholeGrid(*sampled);
        const GridGeometry& source = terrain->geometry();
        for (int r = 0; r < cells.rows; ++r) {
            for (int c = 0; c < cells.columns; ++c) {
                Point p{cells.columnCentre(c), cells.rowCentre(r)};
                if (source.crs != cells.crs) {
                    p = systems.project(std::vector{p}, cells.crs, source.crs).front();
                }
                const int column = source.columnAt(p.x);
                const int row = source.rowAt(p.y);
                const bool inside =
                    column >= 0 && column < source.columns && row >= 0 && row < source.rows;
                ASSERT_EQ(grid.at(c, r), inside ? Terrain::valueAt(column, row) : kNoData)
                    << c << ' ' << r;
            }
        }
    }
};

TEST_F(RasterSampling, TakesTheCellThatHoldsTheCentre) {
    const auto terrain = std::make_shared<Terrain>(GridGeometry{300, 200, 0, 2000, 10, ""});
    expectPlain(terrain, {40, 30, -250, 2100, 100, ""});  // beyond it on all sides
    expectPlain(terrain, {40, 30, 501, 1707, 3, ""});
}

// However fine the source is, a block never asks for more of it than a megabyte at once.
TEST_F(RasterSampling, FineSourcesAreReadInParts) {
    for (const double cellSize : {10.0, 2.0, 0.25}) {
        const int across = static_cast<int>(51200 / cellSize);
        const auto terrain =
            std::make_shared<Terrain>(GridGeometry{across, across / 2, 0, 25600, cellSize, ""});
        const GridGeometry cells{64, 34, -400, 26000, 823, ""};
        expectPlain(terrain, cells);
        EXPECT_LE(terrain->largest, kMegabyte) << cellSize;
        EXPECT_GT(terrain->largest, 0U);
    }
}

TEST_F(RasterSampling, FineSourcesInAnotherSystemToo) {
    const std::string utm = systems.createProjected(26912);
    const std::string neighbour = systems.createProjected(26911);
    const auto terrain =
        std::make_shared<Terrain>(GridGeometry{40000, 40000, 900000, 4600000, 2, neighbour});
    const GridGeometry cells{60, 50, 400000, 4590000, 1000, utm};
    expectPlain(terrain, cells);
    EXPECT_LE(terrain->largest, kMegabyte);
}

}  // namespace
}  // namespace velmora::platform
