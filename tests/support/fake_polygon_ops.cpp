// SPDX-License-Identifier: MIT
#include "tests/support/fake_polygon_ops.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <vector>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "gis/memory_table.h"
#include "tests/support/polygon_rings.h"

namespace velmora::test {

namespace {

std::vector<std::vector<Point>> ringsOf(const IFeatureClass& layer) {
    std::vector<std::vector<Point>> rings;
    layer.forEachRing(
        {}, [&](std::span<const Point> ring) { rings.emplace_back(ring.begin(), ring.end()); });
    return rings;
}

struct Statistics {
    double count = 0;
    double sum = 0;
    double least = 0;
    double most = 0;
    bool holes = false;  // cells without data
    void add(double value) {
        least = count == 0 ? value : std::min(least, value);
        most = count == 0 ? value : std::max(most, value);
        sum += value;
        ++count;
    }
};

}  // namespace

std::unique_ptr<IRasterDataset> FakeConversion::ToRasterDataset(
    const FeatureClassDescriptor& descriptor, const std::string& format,
    IRasterWorkspace& workspace, const std::string& name) {
    const IJoinedLayer& layer = descriptor.layer;
    if (!layer.hasField(descriptor.field)) {
        throw PlatformError("There is no field " + descriptor.field);
    }
    const auto all = ringsOf(*layer.layer());
    std::vector<std::size_t> records(all.size());
    for (std::size_t i = 0; i < records.size(); ++i) records[i] = i;
    if (!descriptor.whereClause.empty()) records = layer.select(descriptor.whereClause);
    std::vector<std::vector<Point>> rings;
    for (const std::size_t record : records) rings.push_back(all[record]);
    Grid grid(environment_.geometry());
    for (int r = 0; r < grid.geometry.rows; ++r) {
        for (int c = 0; c < grid.geometry.columns; ++c) {
            const int at =
                ringAt(rings, {grid.geometry.columnCentre(c), grid.geometry.rowCentre(r)});
            if (at < 0) continue;
            const FieldValue value =
                layer.value(records[static_cast<std::size_t>(at)], descriptor.field);
            if (const auto* number = std::get_if<double>(&value)) {
                grid.at(c, r) = static_cast<float>(*number);
            }
        }
    }
    workspace.save(std::array{RasterToSave{name, std::make_shared<MemoryRaster>(grid), format}});
    return workspace.openRasterDataset(name);
}

std::shared_ptr<ITable> FakeZonal::ZonalStatisticsAsTable(
    const std::shared_ptr<IFeatureClass>& zones, const std::string& zoneField,
    const RasterPtr& values, bool ignoreNoData) {
    const int keyField = zones->fieldIndex(zoneField);
    if (keyField < 0) throw PlatformError(zones->path() + " has no field \"" + zoneField + "\"");
    const auto rings = ringsOf(*zones);
    std::map<std::string, Statistics> byKey;
    const Grid grid = wholeGrid(*values);
    const GridGeometry& cells = grid.geometry;
    for (int r = 0; r < cells.rows; ++r) {
        for (int c = 0; c < cells.columns; ++c) {
            const int zone = ringAt(rings, {cells.columnCentre(c), cells.rowCentre(r)});
            if (zone < 0) continue;
            Statistics& sums =
                byKey[keyText(zones->value(static_cast<std::size_t>(zone), zoneField))];
            if (grid.at(c, r) == kNoData) {
                sums.holes = true;
            } else {
                sums.add(static_cast<double>(grid.at(c, r)));
            }
        }
    }
    std::vector<Field> fields = {zones->fields()[static_cast<std::size_t>(keyField)]};
    for (const char* name : {"Count", "Area", "Min", "Max", "Mean", "Sum"}) {
        fields.push_back({name, FieldType::number, 0, 0});
    }
    auto table = std::make_shared<MemoryTable>("zonal", fields);
    for (std::size_t z = 0; z < zones->recordCount(); ++z) {
        const FieldValue key = zones->value(z, zoneField);
        const auto found = byKey.find(keyText(key));
        if (found == byKey.end()) continue;  // told before, or without cells
        const Statistics sums = found->second;
        byKey.erase(found);
        if (sums.count == 0 || (sums.holes && !ignoreNoData)) continue;
        table->append({key, sums.count, sums.count * cells.cellSize * cells.cellSize, sums.least,
                       sums.most, sums.sum / sums.count, sums.sum});
    }
    return table;
}

std::vector<std::int32_t> FakeZonal::recordsOfCells(const IFeatureClass& polygons,
                                                    const GridGeometry& geometry, int firstRow,
                                                    int rows) {
    const auto rings = ringsOf(polygons);
    std::vector<std::int32_t> records;
    for (int r = firstRow; r < firstRow + rows; ++r) {
        for (int c = 0; c < geometry.columns; ++c) {
            records.push_back(ringAt(rings, {geometry.columnCentre(c), geometry.rowCentre(r)}));
        }
    }
    return records;
}

}  // namespace velmora::test
