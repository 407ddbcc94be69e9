// SPDX-License-Identifier: MIT
// The products of the chain of steps: a row each says everything that the steps, the copies between
// names, pictures, the report and the viewer of tables need to know of one.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "gis/map_document.h"
#include "settings/run_settings.h"

namespace velmora {

// How the grids of a product are called: "Kc_" + month + tag of the method, or one name for a grid
// that serves all months.
struct GridNaming {
    std::string_view stem;
    bool monthly = true;  // the name of the month follows
    bool tagged = false;  // and at the end RunSettings::methodTag()
    constexpr bool operator==(const GridNaming&) const = default;
};

// A table of the zones that is made with a product.
struct ZoneTable {
    std::string_view name;    // "" for a product without one
    std::string_view entry;   // what it holds, as the viewer of zone tables lists it
    std::string_view title;   // heads its columns
    std::string_view column;  // the same where there is little room
};

// Where a product's monthly means are drawn as a line.
enum class Charted { none, basin, basinAndZones };

struct Product {
    std::string_view maker;  // the step that makes it, of which it is the one product
    GridNaming made;         // the names under which it is made
    GridNaming read;         // and under which the steps after it look for it
    std::string_view copying =
        {};                     // a desktop's entry that copies them, "" where names are the same
    bool shownAsRead = false;   // the report shows the grids that are read, not those that are made
    std::string_view title;     // "Crop ET"
    std::string_view quantity;  // the same inside a sentence
    std::string_view unit;      // of a cell
    std::string_view meaning;   // of a cell's value, a sentence without its full stop
    AlgorithmicColorRamp ramp;  // in which it is shown
    bool overStations = false;  // it is made of surfaces over weather stations
    std::array<std::string_view, 3> sources = {};  // the makers of what it is made of, "" for none
    ZoneTable table = {};
    std::string_view onTheWay = {};  // what its maker leaves in the output folder before the grids,
    std::string_view beside = {};    // and what beside them
    Charted charted = Charted::none;
    std::string_view lineColor = {};  // "#7a8a92"
};

// All products in the order in which they are made.
std::span<const Product> products();

// The product of a step. Throws PlatformError for no step that makes one.
const Product& productMadeBy(std::string_view step);

// The product to which a grid of that name belongs, nullptr for none. All names that begin like the
// grids of months do belong: "ET_mean" is crop ET.
const Product* productOf(std::string_view grid);

// What the product is made of, in the order of the row.
std::vector<const Product*> sourcesOf(const Product& product);

// The first product that is made of it, nullptr for none.
const Product* firstMadeOf(const Product& source);

// The products that have zone tables, and the tables' names.
std::vector<const Product*> tabledProducts();
std::vector<std::string> zoneTableNames();

// The name of a month's grid; for a grid of all months any month gives its name.
std::string gridName(const GridNaming& naming, const RunSettings& settings, int month);
// Those of the settings' period in order, or the one of all months.
std::vector<std::string> gridNames(const GridNaming& naming, const RunSettings& settings);
// What is being made, for whoever watches a step: "Precipitation of Jul ...".
std::string monthMessage(const Product& product, int month);
// "Kc_<month>_<method>".
std::string namePattern(const GridNaming& naming);

}  // namespace velmora
