// SPDX-License-Identifier: MIT
// What results were made for, as the records of their runs tell it: the words that may stand over
// them, whatever the settings say by now.
#pragma once

#include <string>
#include <vector>

#include "hosts/results/records/run_records.h"
#include "hosts/results/zone_results.h"

namespace velmora {

// "ASCE Penman-Monteith, short reference".
std::string methodName(const RunSettings& settings);
// "Jan to Dec, 2023".
std::string periodText(const RunSettings& settings);
// Period, method and cells in words.
std::string madeForText(const RunSettings& settings);

// Products that were made for the same, by a text that tells for what.
struct MadeFor {
    std::string text;
    std::vector<std::string> names;
};

// Of the products with a record, by madeForText; none where there is no record.
std::vector<MadeFor> productsMadeFor(const RunRecords& records);
// Of the zone tables, by periodText; the settings stand for missing records.
std::vector<MadeFor> tablesMadeFor(const RunRecords& records, const RunSettings& settings);

// Of all zone tables; the settings stand for missing records.
std::vector<ZoneTableScope> zoneTableScopes(const RunRecords& records, const RunSettings& settings);

}  // namespace velmora
