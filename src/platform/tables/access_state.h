// SPDX-License-Identifier: MIT
// From which state of an Access file its SQLite copy has been made: kept in a table of the copy.
#pragma once

#include <sqlite3.h>

#include <string>

namespace velmora::platform {

// The table of a copy that holds the state; no table of the user.
constexpr const char* kAccessStateTable = "velmora_access_file";

// The size of a file, when it was changed last, and a number made of all its bytes.
struct AccessState {
    long long size = 0;
    long long modified = 0;  // nanoseconds
    std::string hash;        // "" until it is needed
};

AccessState accessState(const std::string& path, bool withHash);
void keepAccessState(sqlite3* copy, const AccessState& state);

// What to tell the user when the Access file has changed since its copy `copy` was made, "" when it
// has not. A copy without a state is judged by the times of the two files.
std::string staleAccessText(const std::string& path, const std::string& copy);

}  // namespace velmora::platform
