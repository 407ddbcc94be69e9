// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace velmora::platform {

// A record as it lies in an output folder.
struct StoredRecord {
    std::string path;
    std::string step;
    nlohmann::ordered_json json;
    std::string error;  // "cannot be understood: ..."; then `json` is null
};

// All records of a folder, in the order in which their runs began; those that cannot be understood
// last. Throws PlatformError when the folder cannot be read.
std::vector<StoredRecord> storedRecords(const std::string& folder);

}  // namespace velmora::platform
