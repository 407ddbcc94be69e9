// SPDX-License-Identifier: MIT
#include "platform/analysis/polygon_cells.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_string.h>
#include <gdal_alg.h>
#include <gdal_priv.h>

#include <algorithm>
#include <utility>

#include "gis/errors.h"
#include "gis/polygon_analysis.h"
#include "platform/features/polygon_reader.h"
#include "platform/files/gdal_library.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

constexpr int kBandRows = 128;               // rows that one task fills
constexpr std::size_t kPolygonsHeld = 4096;  // polygons in memory at a time

struct Polygon {
    std::int32_t record = 0;
    OGRGeometryUniquePtr shape;
    OGREnvelope envelope;
};

// A dataset over the given rows of a grid, whose cells lie at `cells`.
DatasetPtr datasetOver(std::int32_t* cells, const GridGeometry& geometry, int row, int rows) {
    auto* driver = GetGDALDriverManager()->GetDriverByName("MEM");
    DatasetPtr dataset(driver->Create("", geometry.columns, rows, 0, GDT_Int32, nullptr));
    char pointer[64] = {};
    pointer[CPLPrintPointer(pointer, cells, sizeof(pointer) - 1)] = '\0';
    CPLStringList options;
    options.SetNameValue("DATAPOINTER", pointer);
    if (dataset->AddBand(GDT_Int32, options.List()) != CE_None) {
        throw PlatformError("Cannot fill polygons: " + gdalMessage("no memory"));
    }
    double transform[6] = {
        geometry.xMin,     geometry.cellSize, 0, geometry.yMax - row * geometry.cellSize, 0,
        -geometry.cellSize};
    dataset->SetGeoTransform(transform);
    return dataset;
}

// Fills the polygons, in their order, into the rows of a grid that begin at `row`.
void fill(const std::vector<Polygon>& polygons, const GridGeometry& geometry, int row, int rows,
          std::int32_t* cells) {
    const double top = geometry.yMax - row * geometry.cellSize;
    const double bottom = top - rows * geometry.cellSize;
    std::vector<OGRGeometryH> shapes;
    std::vector<double> values;
    for (const Polygon& polygon : polygons) {
        if (polygon.envelope.MaxY < bottom || polygon.envelope.MinY > top) continue;
        shapes.push_back(OGRGeometry::ToHandle(polygon.shape.get()));
        values.push_back(polygon.record);
    }
    if (shapes.empty()) return;
    const DatasetPtr dataset = datasetOver(cells, geometry, row, rows);
    int band = 1;
    if (GDALRasterizeGeometries(GDALDataset::ToHandle(dataset.get()), 1, &band,
                                static_cast<int>(shapes.size()), shapes.data(), nullptr, nullptr,
                                values.data(), nullptr, nullptr, nullptr) != CE_None) {
        throw PlatformError("Cannot fill polygons: " + gdalMessage("the shapes are damaged"));
    }
}

}  // namespace

PolygonCells::PolygonCells(const std::string& path, const GridGeometry& geometry,
                           const std::vector<bool>& chosen, RowRange rows)
    : geometry_(geometry),
      rows_(rows),
      cells_(static_cast<std::size_t>(rows.count) * static_cast<std::size_t>(geometry.columns),
             kNoRecord) {
    std::vector<Polygon> held;
    const auto fillHeld = [&] {
        const int bands = (rows_.count + kBandRows - 1) / kBandRows;
        parallelFor(static_cast<std::size_t>(bands), 1, [&](std::size_t begin, std::size_t end) {
            for (std::size_t b = begin; b < end; ++b) {
                const int row = static_cast<int>(b) * kBandRows;
                fill(held, geometry_, rows_.first + row, std::min(kBandRows, rows_.count - row),
                     cells_.data() + static_cast<std::size_t>(row) *
                                         static_cast<std::size_t>(geometry_.columns));
            }
        });
        held.clear();
    };
    forEachPolygon(path, geometry.crs, [&](std::size_t record, OGRGeometryUniquePtr shape) {
        if (record >= chosen.size() || !chosen[record]) return;
        Polygon polygon{static_cast<std::int32_t>(record), std::move(shape), {}};
        polygon.shape->getEnvelope(&polygon.envelope);
        held.push_back(std::move(polygon));
        if (held.size() == kPolygonsHeld) fillHeld();
    });
    fillHeld();
}

}  // namespace velmora::platform
