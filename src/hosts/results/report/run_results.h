// SPDX-License-Identifier: MIT
// What a run has left in its output folder, as the report shows it.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "check/input_check.h"
#include "gis/application.h"
#include "gis/map_document.h"
#include "hosts/results/grid_statistics.h"
#include "hosts/results/run_log.h"
#include "hosts/results/zone_results.h"
#include "modelling/products.h"
#include "settings/run_settings.h"

namespace velmora {

// A grid of a product.
struct ProductGrid {
    std::string name;   // of the dataset
    std::string label;  // "Jul", or "all months"
    int month = 0;      // 0 for a grid that serves all months
    GridStatistics statistics;
};

// The grids of a product, which share a legend.
struct ProductGrids {
    const Product* product = nullptr;
    std::vector<ProductGrid> grids;    // those that are there
    std::vector<std::string> missing;  // names of months' grids that are not
    double minimum = 0;                // over all grids
    double maximum = 0;

    const ProductGrid* of(int month) const;  // nullptr when there is none with data
};

using Monthly = std::array<std::optional<double>, 12>;

// Monthly means of a zone, inches: crop ET and the requirements over the cells that have them, and
// precipitation over the whole zone.
struct ZoneMeans {
    std::string zone;
    std::map<const Product*, Monthly> byProduct;  // of those that have a line in the zones' charts
};

struct RunResults {
    RunSettings settings;
    std::vector<ProductGrids> products;                    // all, in the order of the chain
    std::map<std::string, std::vector<ZoneMonth>> tables;  // by zone table
    std::vector<ZoneTotals> totals;
    std::vector<ZoneMeans> zoneMeans;
    std::vector<StepRun> runs;
    std::vector<Finding> findings;
};

// Reads the output folder of the settings. Throws PlatformError when it is not there.
RunResults readResults(IPlatform& platform, const RunSettings& settings);

}  // namespace velmora
