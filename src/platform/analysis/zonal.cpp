// SPDX-License-Identifier: MIT
#include "platform/analysis/zonal.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "gis/errors.h"
#include "gis/grid.h"
#include "gis/grid_tiles.h"
#include "gis/memory_table.h"
#include "platform/analysis/polygon_cells.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

// The sums of a grid come from so many parts whatever the number of threads, so that they never
// depend on it.
constexpr std::size_t kParts = 64;

struct Sums {
    std::size_t count = 0;
    std::size_t missing = 0;
    double sum = 0;
    float low = -kNoData;
    float high = kNoData;

    void add(float value) {
        if (value == kNoData) {
            ++missing;
            return;
        }
        ++count;
        sum += static_cast<double>(value);
        low = std::min(low, value);
        high = std::max(high, value);
    }
    void add(const Sums& other) {
        count += other.count;
        missing += other.missing;
        sum += other.sum;
        low = std::min(low, other.low);
        high = std::max(high, other.high);
    }
};

// The zones of the features: a zone per key, in order of first appearance.
struct Zones {
    std::vector<FieldValue> keys;
    std::vector<std::size_t> ofRecord;

    Zones(const IFeatureClass& features, const std::string& field) {
        std::unordered_map<std::string, std::size_t> numbers;
        for (std::size_t r = 0; r < features.recordCount(); ++r) {
            const FieldValue key = features.value(r, field);
            const auto [place, fresh] = numbers.emplace(keyText(key), keys.size());
            if (fresh) keys.push_back(key);
            ofRecord.push_back(place->second);
        }
    }
};

// The sums of one part: the tiles from `begin` to `end`.
std::vector<Sums> sumsOf(const IRaster& values, const PolygonCells& cells, const Zones& zones,
                         const GridTiles& tiles, std::size_t begin, std::size_t end) {
    std::vector<Sums> sums(zones.keys.size());
    std::vector<float> block;
    for (std::size_t tile = begin; tile < end; ++tile) {
        const CellBlock where = tiles.block(tile, values.geometry());
        block.resize(where.cells());
        values.read(where, block);
        auto value = block.begin();
        for (int r = 0; r < where.rows; ++r) {
            for (const std::int32_t record :
                 cells.records(where.column, where.row + r, where.columns)) {
                if (record != kNoRecord) {
                    sums[zones.ofRecord[static_cast<std::size_t>(record)]].add(*value);
                }
                ++value;
            }
        }
    }
    return sums;
}

}  // namespace

std::shared_ptr<ITable> ZonalOp::ZonalStatisticsAsTable(const std::shared_ptr<IFeatureClass>& zones,
                                                        const std::string& zoneField,
                                                        const RasterPtr& values,
                                                        bool ignoreNoData) {
    const int fieldIndex = zones->fieldIndex(zoneField);
    if (fieldIndex < 0) {
        throw PlatformError("The zone shapefile " + zones->path() + " has no field \"" + zoneField +
                                "\": choose the field that names the zones",
                            {.file = zones->path(), .field = zoneField});
    }
    const Zones all(*zones, zoneField);
    const GridGeometry& geometry = values->geometry();
    const PolygonCells cells(zones->path(), geometry,
                             std::vector<bool>(zones->recordCount(), true));
    const GridTiles tiles(geometry);
    std::vector<std::vector<Sums>> parts(std::min(kParts, tiles.count()));
    parallelFor(parts.size(), 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t p = begin; p < end; ++p) {
            parts[p] = sumsOf(*values, cells, all, tiles, p * tiles.count() / parts.size(),
                              (p + 1) * tiles.count() / parts.size());
        }
    });

    Field key = zones->fields()[static_cast<std::size_t>(fieldIndex)];
    std::vector<Field> fields = {key};
    for (const char* name : {"Count", "Area", "Min", "Max", "Mean", "Sum"}) {
        fields.push_back({name, FieldType::number, 0, 0});
    }
    const auto result = std::make_shared<MemoryTable>("zonal statistics", fields);
    for (std::size_t zone = 0; zone < all.keys.size(); ++zone) {
        Sums sums;
        for (const auto& part : parts) sums.add(part[zone]);
        if (sums.count == 0 || (!ignoreNoData && sums.missing > 0)) continue;
        const auto count = static_cast<double>(sums.count);
        result->append({all.keys[zone], count, count * geometry.cellSize * geometry.cellSize,
                        static_cast<double>(sums.low), static_cast<double>(sums.high),
                        sums.sum / count, sums.sum});
    }
    return result;
}

std::vector<std::int32_t> ZonalOp::recordsOfCells(const IFeatureClass& polygons,
                                                  const GridGeometry& geometry, int firstRow,
                                                  int rows) {
    return PolygonCells(polygons.path(), geometry, std::vector<bool>(polygons.recordCount(), true),
                        {firstRow, rows})
        .taken();
}

}  // namespace velmora::platform
