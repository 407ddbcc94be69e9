// SPDX-License-Identifier: MIT
#include "irrigation/default_names.h"

#include <map>

namespace velmora {

std::string MatchCrop(const std::string& landCoverName) {
    static const std::map<std::string, std::string> names = {
        {"Beans", "Beans and Peas"},
        {"Berries", "Small Fruits"},
        {"Fruit", "Tree Fruits"},
        {"Grain", "Barley"},
        {"Grass / Turf", "Turfgrass Sod"},
        {"Grass Hay", "Pasture/Hay Crops"},
        {"Pasture", "Pasture/Hay Crops"},
        {"Hayland - subirrigated", "Pasture/Hay Crops"},
        {"Pasture - subirrigated", "Pasture/Hay Crops"},
        {"Sub-irrigated Hayland", "Pasture/Hay Crops"},
        {"Sub-irrigated Pasture", "Pasture/Hay Crops"},
        {"Irrigated Cropland", "Other"},
        {"Other Row Crops", "Other"},
        {"Other Horticulture", "Tree Nursery"},
        {"Sorghum", "Sorgum"},  // as the default tables spell it
        {"Tomatoes", "Vegetables"},
        {"Vineyard", "Grapes"}};
    const auto found = names.find(landCoverName);
    return found == names.end() ? landCoverName : found->second;
}

std::string MatchCounty(const std::string& zone) {
    if (zone == "DAGGETT") return "DAGGETT";
    if (zone == "DUCHESNE") return "DUCHESNE";
    return zone;
}

}  // namespace velmora
