// SPDX-License-Identifier: MIT
// What the names of land cover types tell of irrigation. English names, as crop inventories and
// land use surveys of the United States have them.
#pragma once

#include <string>

namespace velmora {

enum class LandKind {
    crop,          // may be irrigated: a crop, pasture, orchard, turf ...
    notIrrigated,  // says so ("Dry Wheat", "Non-irrigated pasture"), or is no crop (water, urban
                   // ...)
    unknown
};

LandKind landKindOf(const std::string& type);

// Whether it is a close-growing crop, for which drip irrigation is not suitable (FAO Training
// Manual 5, chapter 7).
bool isCloseGrowing(const std::string& type);

// Whether one of the words of a name, in small letters, is the given one: "potatoes" of "Fall
// Potatoes".
bool hasWord(const std::string& name, const std::string& word);

}  // namespace velmora
