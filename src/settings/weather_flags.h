// SPDX-License-Identifier: MIT
// What the settings say that the weather table holds, beside the names of its fields.
#pragma once

#include <string>
#include <vector>

#include "settings/run_settings.h"

namespace velmora {

// A flag of the settings that does not agree with the names of the fields.
struct FlagMismatch {
    std::string prefix;  // of the quantity's fields: "TD_"
    std::string text;    // what is wrong, and what to do
};

// A quantity that is there but not taken would be estimated without a word. One mismatch a quantity
// that the settings' method uses.
std::vector<FlagMismatch> flagMismatches(const RunSettings& settings,
                                         const std::vector<std::string>& fieldNames);

// A sentence for each quantity that an inspection of fields with these names does not find, because
// the case of their letters differs.
std::vector<std::string> fieldsInOtherCase(const std::vector<std::string>& fieldNames);

// The first field but for the station's that holds the quantity of the prefix in a month, its name
// written in any case; "" for none.
std::string fieldInAnyCase(const std::vector<std::string>& fieldNames, const std::string& prefix);

}  // namespace velmora
