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
#include "gis/feedback.h"
#include "gis/map_document.h"
#include "hosts/results/account/account.h"
#include "hosts/results/grid_statistics.h"
#include "hosts/results/records/run_records.h"
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

using MonthlyMeans = std::map<const Product*, Monthly>;  // inches

struct ZoneMeans {
    std::string zone;
    MonthlyMeans byProduct;  // of those that have a line in the zones' charts
};

struct RunResults {
    RunRecords records;
    // What the last step of the chain was made for, by its record; the present settings where there
    // is no record.
    RunSettings settings;
    std::vector<ProductGrids> products;  // all, in the order of the chain
    // By zone table: rows of the months for which it was made, and how many others it has.
    std::map<std::string, std::vector<ZoneMonth>> tables;
    std::map<std::string, std::size_t> strangeRows;
    std::vector<ZoneTotals> totals;
    std::optional<Account> account;
    std::string noAccount;  // why there is none
    MonthlyMeans basinMeans;
    std::vector<ZoneMeans> zoneMeans;
    std::vector<StepRun> runs;
    std::vector<Finding> findings;
    std::vector<std::string> faults;  // why it is no evidence of one run of the chain

    // What the product was made for.
    const RunSettings& settingsOf(const Product& product) const {
        return records.settingsOf(product.maker, settings);
    }
};

// Reads the output folder of the settings, and what its results were made for from their records.
// `mismatches` are lines of what stands otherwise than the records tell. Throws PlatformError when
// the folder is not there; Cancelled.
RunResults readResults(IPlatform& platform, const RunSettings& settings,
                       const std::vector<std::string>& mismatches = {},
                       IFeedback* feedback = nullptr);

}  // namespace velmora
