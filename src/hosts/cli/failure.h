// SPDX-License-Identifier: MIT
// What failed, for a reader and for a program.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "gis/errors.h"

namespace velmora::cli {

// "text", and those of "file", "field", "record", "station", "month" ("Jul"), "column" and "row"
// that are known.
nlohmann::ordered_json failureJson(const std::string& text, const ErrorPlace& place);

// A line {"failure": {...}} on standard error.
void tellFailureJson(const std::string& text, const ErrorPlace& place);

// "velmora: text" on standard error, where programs read (--json) followed by the line for them.
void tellFailure(const std::string& text, const ErrorPlace& place, bool json);

}  // namespace velmora::cli
