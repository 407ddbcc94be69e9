// SPDX-License-Identifier: MIT
// The polygons by which an account is kept.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "gis/application.h"
#include "hosts/results/account/account.h"

namespace velmora {

// Polygons of which all with one key are one.
struct KeyedPolygons {
    std::shared_ptr<IFeatureClass> features;
    std::vector<std::string> keys;
    std::vector<std::size_t> keyOfRecord;
};

// Keys in order of first appearance. Throws PlatformError.
KeyedPolygons zonePolygons(IPlatform& platform, const RunSettings& settings,
                           const std::string& crs);

// Keys sorted. Throws PlatformError.
KeyedPolygons cropPolygons(IPlatform& platform, const RunSettings& settings,
                           const std::string& cropField, const std::string& crs);

// The zones with areas in the coordinate system in which they are open.
std::vector<AccountZone> accountZones(const KeyedPolygons& zones);

}  // namespace velmora
