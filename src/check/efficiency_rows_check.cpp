// SPDX-License-Identifier: MIT
#include "check/efficiency_rows_check.h"

#include <map>
#include <set>

#include "check/acres.h"
#include "gis/text.h"
#include "irrigation/efficiency_check.h"
#include "irrigation/irrigation_inputs.h"
#include "irrigation/land_names.h"
#include "irrigation/zone_filling.h"

namespace velmora {

namespace {

// Names as databases compare them: without regard to the case of ASCII letters.
struct ByName {
    bool operator()(const std::string& a, const std::string& b) const {
        return smallLetters(a) < smallLetters(b);
    }
    static std::string smallLetters(std::string text) {
        for (char& c : text) {
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        }
        return text;
    }
};

using Names = std::set<std::string, ByName>;

// Square metres of the polygons of each text of a field, 0 in the quick check; polygons without one
// are left out.
std::map<std::string, double> areasBy(const IFeatureClass& layer, const std::string& field,
                                      bool quick) {
    std::map<std::string, double> areas;
    const auto single = quick ? std::vector<double>(layer.recordCount()) : layer.areas();
    for (std::size_t r = 0; r < single.size(); ++r) {
        const std::string key = keyText(layer.value(r, field));
        if (!key.empty()) areas[key] += single[r];
    }
    return areas;
}

bool hasEfficiency(const IRecordset& row) {
    const FieldValue value = row.value("IREF");
    const auto* number = std::get_if<double>(&value);
    return number && *number != 0;
}

// What table IREF has of each zone.
class Rows {
  public:
    explicit Rows(const IrrigationDatabase& database) {
        const auto rows = database.query("Select * from IREF");
        const std::vector<std::string> methods = methodColumns(*rows);
        for (; !rows->eof(); rows->moveNext()) {
            Zone& zone = zones_[keyText(rows->value("ZoneUnit"))];
            const std::string crop = keyText(rows->value("CropType"));
            if (!zone.seen.insert(crop).second) continue;  // the first row counts
            if (hasEfficiency(*rows) || isDeclaredNotIrrigated(*rows, methods)) {
                zone.told.insert(crop);
            }
        }
    }

    bool empty() const { return zones_.empty(); }
    bool has(const std::string& zone) const { return zones_.contains(zone); }

    // In how many of the zones that have rows nothing is told of the crop.
    std::size_t zonesWithout(const std::string& crop) const {
        std::size_t count = 0;
        for (const auto& [name, zone] : zones_) count += zone.told.contains(crop) ? 0 : 1;
        return count;
    }
    std::size_t zones() const { return zones_.size(); }

  private:
    struct Zone {
        Names seen;
        Names told;  // crops with an efficiency, or declared not irrigated
    };
    std::map<std::string, Zone, ByName> zones_;
};

}  // namespace

std::vector<Finding> checkEfficiencyRows(const IrrigationDatabase& database,
                                         const std::string& path, const EfficiencyLayers& layers,
                                         const std::string& zoneField, bool quick) {
    std::vector<Finding> findings;
    if (!database.hasEfficiencyTable()) return findings;
    const Rows rows(database);
    if (rows.empty()) return findings;
    for (const std::string& doubt : efficiencyDoubts(database)) {
        findings.push_back({Severity::warning, path, "IREF", {}, doubt});
    }
    for (const auto& [zone, area] : areasBy(*layers.zones, zoneField, quick)) {
        if (rows.has(zone)) continue;
        findings.push_back({Severity::warning, path, "ZoneUnit", zone,
                            acresText(area) +
                                " of zone have no row of shares, and so no irrigation requirement: "
                                "velmora eff zone makes rows"});
    }
    for (const auto& [crop, area] : areasBy(*layers.landCover, kCropField, quick)) {
        const std::size_t without = rows.zonesWithout(crop);
        if (without == 0) continue;
        const bool crops = landKindOf(crop) != LandKind::notIrrigated;
        findings.push_back({crops ? Severity::warning : Severity::note, path, "CropType", crop,
                            acresText(area) + " of the land cover: no efficiency in " +
                                std::to_string(without) + " of " + counted(rows.zones(), "zone") +
                                ", so no irrigation requirement there (velmora eff set, or "
                                "--not-irrigated)"});
    }
    return findings;
}

}  // namespace velmora
