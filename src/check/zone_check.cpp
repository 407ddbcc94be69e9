// SPDX-License-Identifier: MIT
#include "check/zone_check.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "check/acres.h"
#include "gis/cell_values.h"
#include "gis/errors.h"
#include "gis/polygon_analysis.h"
#include "gis/text.h"
#include "gis/zone_keys.h"

namespace velmora {

namespace {

constexpr double kLatticeCells = 500;   // along the longer side of all zones
constexpr double kLeastClaimed = 0.02;  // of a zone that other zones claim too, to be told
constexpr double kBorderCells = 25;     // less than these the cells on borders may explain

// A raster that is 1 everywhere.
class Ones : public IRaster {
  public:
    explicit Ones(GridGeometry geometry) : geometry_(std::move(geometry)) {}
    const GridGeometry& geometry() const override { return geometry_; }
    void read(const CellBlock&, std::span<float> values) const override {
        std::ranges::fill(values, 1.0F);
    }

  private:
    GridGeometry geometry_;
};

using Areas = std::map<std::string, double>;  // square metres by key

// What of each zone the cells cover, each cell counted for one zone alone.
Areas coveredAreas(IPlatform& platform, const std::shared_ptr<IFeatureClass>& zones,
                   const std::string& field, const GridGeometry& cells) {
    const auto table = platform.analysis().zonal()->ZonalStatisticsAsTable(
        zones, field, std::make_shared<Ones>(cells), true);
    Areas areas;
    for (std::size_t r = 0; r < table->recordCount(); ++r) {
        const FieldValue area = table->value(r, "Area");
        if (const auto* number = std::get_if<double>(&area)) {
            areas[keyText(table->value(r, field))] += *number;
        }
    }
    return areas;
}

// Polygons of one key may lie upon each other too, which takes land from none.
void tellClaimed(const Areas& whole, const Areas& covered, double cellSize,
                 const std::function<void(const std::string&, const std::string&)>& warn) {
    const double border = kBorderCells * cellSize * cellSize;
    for (const auto& [key, area] : whole) {
        const auto found = covered.find(key);
        const double lost = area - (found == covered.end() ? 0 : found->second);
        if (lost < border || lost < kLeastClaimed * area) continue;
        warn(key, acresText(lost) + " of " + acresText(area) +
                      " lie under polygons that stand later in the file: a cell counts for the "
                      "last of them alone");
    }
}

}  // namespace

std::vector<Finding> checkZoneKeys(const ITable& zones, const std::string& field) {
    std::map<std::string, int> counts;
    for (std::size_t r = 0; r < zones.recordCount(); ++r) ++counts[keyText(zones.value(r, field))];
    const ZoneKeys keys(zones, field);
    std::vector<Finding> findings;
    const auto warn = [&](const std::string& key, const std::string& text) {
        findings.push_back({Severity::warning, zones.path(), field, key, text});
    };
    for (const auto& [key, count] : counts) {
        if (const std::string text = keys.warning(key); !text.empty()) warn(key, text);
        if (count > 1) {
            warn(key, "is the key of " + std::to_string(count) +
                          " polygons: tables then show polygon areas of other zones");
        }
    }
    return findings;
}

std::vector<Finding> checkZoneCells(IPlatform& platform, const RunSettings& settings,
                                    const GridGeometry& run) {
    const auto zones = platform.features().openFeatureClass(settings.Zones, run.crs);
    const std::string& field = settings.ZoneField;
    if (!zones->holdsPolygons() || zones->recordCount() == 0 || zones->fieldIndex(field) < 0) {
        return {};
    }
    std::vector<Finding> findings;
    const auto warn = [&](const std::string& key, const std::string& text) {
        findings.push_back({Severity::warning, zones->path(), field, key, text});
    };
    Areas whole;
    const std::vector<double> areas = zones->areas();
    for (std::size_t r = 0; r < areas.size(); ++r) {
        whole[keyText(zones->value(r, field))] += areas[r];
    }
    const Areas counted = coveredAreas(platform, zones, field, run);
    for (const auto& [key, area] : whole) {
        if (counted.contains(key)) continue;
        warn(key, acresText(area) +
                      " hold no centre of a cell: the zone is too small, outside the modelling "
                      "extent or under others, and has no row in the zone tables");
    }
    const Envelope extent = zones->extent();
    const double size = std::max(extent.width(), extent.height()) / kLatticeCells;
    const auto lattice = GridGeometry::covering(extent, size, run.crs);
    tellClaimed(whole, coveredAreas(platform, zones, field, lattice), size, warn);
    return findings;
}

}  // namespace velmora
