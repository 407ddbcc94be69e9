// SPDX-License-Identifier: MIT
#include "modelling/products.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/month_names.h"

namespace velmora {

namespace {

constexpr AlgorithmicColorRamp kGreenToBlue = {{0, 255, 0}, {50, 50, 100}};
constexpr AlgorithmicColorRamp kBlueToGreen = {{0, 0, 255}, {0, 255, 0}};
constexpr AlgorithmicColorRamp kBrownToGreen = {{100, 50, 50}, {0, 255, 0}};
constexpr AlgorithmicColorRamp kRedToCyan = {{200, 50, 50}, {0, 255, 255}};

constexpr std::array kProducts = {
    Product{.maker = "refet",
            .made = {"RefET_", true, true},
            .read = {"RefET_", true, true},
            .title = "Reference ET",
            .quantity = "reference ET",
            .unit = "inches per month",
            .meaning = "The water that the reference surface would evaporate",
            .ramp = kGreenToBlue,
            .overStations = true,
            .beside = "GridOP.mdb",
            .charted = Charted::basin,
            .lineColor = "#7a8a92"},
    Product{.maker = "kc",
            .made = {"Kc_", true, true},
            .read = {"Kc_", true, false},
            .copying = "Copy Kc Maps for Crop ET",
            .title = "Crop coefficients",
            .quantity = "the Kc maps",
            .unit = "ratio",
            .meaning = "Kc of the land cover's crops",
            .ramp = kBlueToGreen},
    Product{.maker = "cropet",
            .made = {"ET_", true, true},
            .read = {"ET_", true, true},
            .title = "Crop ET",
            .quantity = "crop ET",
            .unit = "inches per month",
            .meaning = "Crop coefficient times reference ET",
            .ramp = kBrownToGreen,
            .sources = {"refet", "kc"},
            .table = {"StatCET", "Crop Evapotranspitation", "Crop ET", "crop ET"},
            .charted = Charted::basinAndZones,
            .lineColor = "#2e8b57"},
    Product{.maker = "ppt",
            .made = {"PPT_", true, false},
            .read = {"PPT_", true, false},
            .title = "Precipitation",
            .quantity = "precipitation",
            .unit = "inches per month",
            .meaning = "Interpolated from the stations",
            .ramp = kRedToCyan,
            .overStations = true,
            .charted = Charted::basinAndZones,
            .lineColor = "#2f6fb7"},
    Product{.maker = "nir",
            .made = {"NIR_", true, false},
            .read = {"NIR_", true, false},
            .title = "Net irrigation requirement",
            .quantity = "the net irrigation requirement",
            .unit = "inches per month",
            .meaning = "Crop ET less 0.8 of precipitation, not below 0",
            .ramp = kBrownToGreen,
            .sources = {"cropet", "ppt"},
            .table = {"StatNIR", "Net Irrigation water requirement", "Net irrigation", "net irr."},
            .charted = Charted::basinAndZones,
            .lineColor = "#c77f1a"},
    Product{.maker = "eff",
            .made = {"IREF", false, false},
            .read = {"faef_500", false, false},
            .copying = "Copy Efficiency Map for Irrigation Requirement",
            .shownAsRead = true,
            .title = "Irrigation efficiency",
            .quantity = "the efficiency map",
            .unit = "fraction",
            .meaning =
                "Field application efficiency times conveyance efficiency, of each zone and crop",
            .ramp = kGreenToBlue,
            .onTheWay = "Lu_Intersected"},
    Product{.maker = "irr",
            .made = {"IRR_", true, false},
            .read = {"IRR_", true, false},
            .title = "Irrigation water requirement",
            .quantity = "the irrigation water requirement",
            .unit = "inches per month",
            .meaning = "Net irrigation requirement over the irrigation efficiency",
            .ramp = kBrownToGreen,
            .sources = {"cropet", "ppt", "eff"},
            .table = {"StatIRR", "Irrigation water requirement", "Irrigation", "irrigation"},
            .charted = Charted::basinAndZones,
            .lineColor = "#a8323e"},
};

bool isNamed(std::string_view grid, const GridNaming& naming) {
    return naming.monthly ? grid.starts_with(naming.stem) : grid == naming.stem;
}

}  // namespace

std::span<const Product> products() { return kProducts; }

const Product& productMadeBy(std::string_view step) {
    const auto* const found = std::ranges::find(kProducts, step, &Product::maker);
    if (found == kProducts.end()) {
        throw PlatformError("No step " + std::string(step) + " makes a product");
    }
    return *found;
}

const Product* productOf(std::string_view grid) {
    const auto* const found = std::ranges::find_if(kProducts, [&](const Product& product) {
        return isNamed(grid, product.made) || isNamed(grid, product.read);
    });
    return found == kProducts.end() ? nullptr : found;
}

std::vector<const Product*> sourcesOf(const Product& product) {
    std::vector<const Product*> sources;
    for (const std::string_view maker : product.sources) {
        if (!maker.empty()) sources.push_back(&productMadeBy(maker));
    }
    return sources;
}

const Product* firstMadeOf(const Product& source) {
    const auto* const found = std::ranges::find_if(kProducts, [&](const Product& product) {
        return std::ranges::find(product.sources, source.maker) != product.sources.end();
    });
    return found == kProducts.end() ? nullptr : found;
}

std::vector<const Product*> tabledProducts() {
    std::vector<const Product*> tabled;
    for (const Product& product : kProducts) {
        if (!product.table.name.empty()) tabled.push_back(&product);
    }
    return tabled;
}

std::vector<std::string> zoneTableNames() {
    std::vector<std::string> names;
    for (const Product* product : tabledProducts()) names.emplace_back(product->table.name);
    return names;
}

std::string gridName(const GridNaming& naming, const RunSettings& settings, int month) {
    std::string name(naming.stem);
    if (naming.monthly) name += GetMonthName(month);
    if (naming.tagged) name += settings.methodTag();
    return name;
}

std::vector<std::string> gridNames(const GridNaming& naming, const RunSettings& settings) {
    if (!naming.monthly) return {gridName(naming, settings, 0)};
    std::vector<std::string> names;
    for (const int month : settings.months()) names.push_back(gridName(naming, settings, month));
    return names;
}

std::string monthMessage(const Product& product, int month) {
    return std::string(product.title) + " of " + GetMonthName(month) + " ...";
}

std::string namePattern(const GridNaming& naming) {
    return std::string(naming.stem) + (naming.monthly ? "<month>" : "") +
           (naming.tagged ? "_<method>" : "");
}

}  // namespace velmora
