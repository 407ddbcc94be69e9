// SPDX-License-Identifier: MIT
#include "irrigation/land_names.h"

#include <algorithm>
#include <set>
#include <vector>

namespace velmora {

namespace {

using Words = std::set<std::string>;

const Words kCloseGrowing = {
    "alfalfa", "barley",   "camelina", "canola",    "cereal",   "cereals",   "clover",  "durum",
    "flax",    "flaxseed", "grain",    "grains",    "grass",    "hay",       "hayland", "lucerne",
    "millet",  "oat",      "oats",     "pasture",   "pastures", "rice",      "rye",     "ryegrass",
    "sod",     "speltz",   "timothy",  "triticale", "turf",     "turfgrass", "vetch",   "wheat"};

const Words kOtherCrops = {
    "almond",      "almonds",      "apple",       "apples",      "apricots",   "artichoke",
    "artichokes",  "asparagus",    "avocados",    "bean",        "beans",      "beet",
    "beets",       "berries",      "blueberries", "broccoli",    "buckwheat",  "bushberries",
    "cabbage",     "caneberries",  "cantaloupe",  "cantaloupes", "carrot",     "carrots",
    "cauliflower", "celery",       "cherries",    "chick",       "chickpeas",  "citrus",
    "corn",        "cotton",       "cranberries", "crop",        "cropland",   "crops",
    "cucumber",    "cucumbers",    "eggplants",   "fruit",       "fruits",     "garlic",
    "gourds",      "grapes",       "greens",      "herbs",       "hops",       "horticulture",
    "legumes",     "lentils",      "lettuce",     "lupins",      "maize",      "melon",
    "melons",      "mint",         "mustard",     "nectarines",  "nursery",    "olives",
    "onion",       "onions",       "orange",      "oranges",     "orchard",    "orchards",
    "pea",         "peaches",      "peanut",      "peanuts",     "pears",      "peas",
    "pecans",      "peppermint",   "peppers",     "pistachios",  "plums",      "pomegranates",
    "potato",      "potatoes",     "prunes",      "pumpkins",    "radishes",   "rape",
    "rapeseed",    "safflower",    "sorghum",     "soybean",     "soybeans",   "spearmint",
    "squash",      "strawberries", "sudangrass",  "sugarbeet",   "sugarbeets", "sugarcane",
    "sunflower",   "sunflowers",   "switchgrass", "tobacco",     "tomato",     "tomatoes",
    "turnips",     "vegetable",    "vegetables",  "vineyard",    "vineyards",  "walnuts",
    "watermelon",  "watermelons"};

// Land that no one irrigates, whatever else its name says: "Dryland Wheat", "Wheat-Fallow".
const Words kNotIrrigated = {
    "airport",       "airports",   "barren",     "canal",      "canals",      "commercial",
    "desert",        "developed",  "dry",        "dryland",    "fallow",      "farmstead",
    "farmsteads",    "feedlot",    "feedlots",   "forest",     "forests",     "forestland",
    "grassland",     "grasslands", "herbaceous", "ice",        "idle",        "industrial",
    "lake",          "lakes",      "marsh",      "mine",       "mines",       "nonirrigated",
    "phreatophytes", "playa",      "pond",       "ponds",      "quarry",      "rainfed",
    "range",         "rangeland",  "reservoir",  "reservoirs", "residential", "riparian",
    "river",         "rivers",     "road",       "roads",      "rock",        "rocks",
    "sagebrush",     "scrub",      "shrub",      "shrubland",  "shrubs",      "snow",
    "stream",        "streams",    "swamp",      "town",       "towns",       "tundra",
    "unirrigated",   "urban",      "water",      "wetland",    "wetlands",    "wood",
    "woodland",      "woodlands"};

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// The words of a name in small letters, those around a hyphen apart ("sub", "irrigated").
std::vector<std::string> wordsOf(const std::string& name) {
    std::vector<std::string> words(1);
    for (const char c : name) {
        if (isLetter(c)) {
            words.back() += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
        } else if (!words.back().empty()) {
            words.emplace_back();
        }
    }
    if (words.back().empty()) words.pop_back();
    return words;
}

bool hasWordOf(const std::vector<std::string>& words, const Words& list) {
    return std::ranges::any_of(words, [&](const std::string& w) { return list.contains(w); });
}

// "Not irrigated", "Non-irrigated", "Dry Pasture", "Open Space".
bool saysNotIrrigated(const std::vector<std::string>& words) {
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string& before = words[i - 1];
        if (words[i] == "irrigated" && (before == "not" || before == "non" || before == "un")) {
            return true;
        }
        if (words[i] == "space" && before == "open") return true;
    }
    return false;
}

// The dry of these is the harvest.
bool isDryHarvest(const std::vector<std::string>& words) {
    return words.size() > 1 && words[0] == "dry" &&
           hasWordOf(words, {"bean", "beans", "pea", "peas", "onion", "onions", "edible"});
}

}  // namespace

LandKind landKindOf(const std::string& type) {
    auto words = wordsOf(type);
    if (isDryHarvest(words)) words.erase(words.begin());
    if (saysNotIrrigated(words) || hasWordOf(words, kNotIrrigated)) return LandKind::notIrrigated;
    const bool crop = hasWordOf(words, kCloseGrowing) || hasWordOf(words, kOtherCrops) ||
                      hasWordOf(words, {"irrigated", "subirrigated"});
    return crop ? LandKind::crop : LandKind::unknown;
}

bool isCloseGrowing(const std::string& type) { return hasWordOf(wordsOf(type), kCloseGrowing); }

bool hasWord(const std::string& name, const std::string& word) {
    return hasWordOf(wordsOf(name), {word});
}

}  // namespace velmora
