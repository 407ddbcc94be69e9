// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_layers.h"

#include <algorithm>
#include <map>

#include "gis/errors.h"
#include "gis/zone_keys.h"
#include "irrigation/irrigation_inputs.h"

namespace velmora {

namespace {

// `what` and `remedy` word the failures.
KeyedPolygons keyed(IPlatform& platform, const std::string& path, const std::string& field,
                    const std::string& crs, const std::string& what, const std::string& remedy) {
    if (path.empty()) {
        throw PlatformError("The " + what + " shapefile is not set: choose it in the General " +
                            "Settings");
    }
    KeyedPolygons polygons{platform.features().openFeatureClass(path, crs), {}, {}};
    if (polygons.features->fieldIndex(field) < 0) {
        throw PlatformError(
            "The " + what + " shapefile " + path + " has no field \"" + field + "\": " + remedy,
            {.file = path, .field = field});
    }
    std::map<std::string, std::size_t> places;
    for (std::size_t r = 0; r < polygons.features->recordCount(); ++r) {
        const std::string key = keyText(polygons.features->value(r, field));
        const auto [place, isNew] = places.try_emplace(key, polygons.keys.size());
        if (isNew) polygons.keys.push_back(key);
        polygons.keyOfRecord.push_back(place->second);
    }
    return polygons;
}

}  // namespace

KeyedPolygons zonePolygons(IPlatform& platform, const RunSettings& settings,
                           const std::string& crs) {
    return keyed(platform, settings.Zones, settings.ZoneField, crs, "zone",
                 "choose the field that names the zones");
}

KeyedPolygons cropPolygons(IPlatform& platform, const RunSettings& settings,
                           const std::string& cropField, const std::string& crs) {
    KeyedPolygons crops =
        keyed(platform, settings.LandCover, cropField.empty() ? kCropField : cropField, crs,
              "land cover", "name the field of crop types");
    std::vector<std::string> sorted = crops.keys;
    std::ranges::sort(sorted);
    for (std::size_t& key : crops.keyOfRecord) {
        key = static_cast<std::size_t>(std::ranges::lower_bound(sorted, crops.keys[key]) -
                                       sorted.begin());
    }
    crops.keys = std::move(sorted);
    return crops;
}

std::vector<AccountZone> accountZones(const KeyedPolygons& zones) {
    const ZoneKeys inTables(zones.keys);
    std::vector<AccountZone> all;
    for (const std::string& key : zones.keys) all.push_back({key, 0, inTables.inTable(key), 0});
    const std::vector<double> areas = zones.features->areas();
    for (std::size_t r = 0; r < areas.size(); ++r) {
        AccountZone& zone = all[zones.keyOfRecord[r]];
        zone.squareMetres += areas[r];
        ++zone.polygons;
    }
    return all;
}

}  // namespace velmora
