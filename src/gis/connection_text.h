// SPDX-License-Identifier: MIT
// Paths and names inside connection strings and statements. An ordinary one stands as it is; one
// that could be misread is quoted.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

// A value of a connection string "Key=Value;Key=Value": in double quotes, those inside it doubled,
// when it has a ";", begins with a quote, or begins or ends with a blank.
std::string connectionValue(std::string_view value);

// The value of a key in "Key=Value;Key = Value", keys without regard to case, "" when absent.
// Throws PlatformError for a quoted value without its end.
std::string connectionPart(std::string_view connectionString, std::string_view key);

// A name in brackets, a "]" inside it doubled.
std::string bracketedName(std::string_view name);

// The name of a field in a query: as it stands when it is a word, else in brackets.
std::string fieldInQuery(std::string_view field);

// The path of a table in a query: as it stands unless it has brackets, quotes or the word WHERE.
std::string tableInQuery(std::string_view path);

}  // namespace velmora
