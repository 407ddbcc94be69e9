// SPDX-License-Identifier: MIT
#include "hosts/results/report/report_faults.h"

#include <algorithm>

#include "gis/text.h"
#include "hosts/results/report/html.h"

namespace velmora {

namespace {

// A dataset that the user has put there by hand is an input of the runs that read it.
bool isInputOfSome(const RunRecords& records, const std::string& path) {
    return std::ranges::any_of(records.steps, [&](const RecordedStep& step) {
        return std::ranges::any_of(step.inputs, [&](const RecordedInput& input) {
            return input.path == path && input.madeBy.empty();
        });
    });
}

std::string firstUnrecorded(const RunResults& results, const ProductGrids& product) {
    for (const ProductGrid& grid : product.grids) {
        if (!isInputOfSome(results.records, grid.name)) return grid.name;
    }
    const std::string table(product.product->table.name);
    const auto rows = results.tables.find(table);
    return rows == results.tables.end() || rows->second.empty() ? std::string() : table;
}

}  // namespace

std::vector<std::string> reportFaults(const RunResults& results,
                                      const std::vector<std::string>& mismatches) {
    const std::string& folder = results.settings.OutputWorkspace;
    if (results.records.none()) {
        return {"The folder " + folder +
                " has no records of runs: nothing tells for which period, by which method and "
                "from which inputs its results were made"};
    }
    std::vector<std::string> faults = mismatches;
    for (const std::string& text : results.records.unusable) {
        const std::string path = text.substr(0, text.find(": ") + 2);
        const bool told = std::ranges::any_of(
            mismatches, [&](const std::string& line) { return line.starts_with(path); });
        if (!told) faults.push_back(text);
    }
    for (const ProductGrids& product : results.products) {
        const std::string step(product.product->maker);
        if (results.records.of(step)) continue;
        const std::string result = firstUnrecorded(results, product);
        if (!result.empty()) {
            faults.push_back(joinedPath(folder, result) + ": there is no record of the run of " +
                             step + " that has made it");
        }
    }
    return faults;
}

std::string faultsBanner(const std::vector<std::string>& faults) {
    if (faults.empty()) return {};
    std::string html =
        "<section class=\"banner\"><h2>Draft: these results do not hold together</h2>\n<p>Do not "
        "use the figures below as those of one run. Run the steps again that are named here, and "
        "make the report anew.</p>\n<ul>\n";
    for (const std::string& fault : faults) html += "<li>" + escaped(fault) + "</li>\n";
    return html + "</ul></section>\n";
}

}  // namespace velmora
