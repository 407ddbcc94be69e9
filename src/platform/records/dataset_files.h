// SPDX-License-Identifier: MIT
// The files that make a dataset, as a run's record lists them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::platform {

struct FileState {
    std::string path;
    std::uintmax_t bytes = 0;
    std::string modified;  // "2026-04-30T17:05:00.123456789-06:00"
};

// Throws PlatformError when the file is not there or cannot be looked at.
FileState stateOf(const std::string& path);

// A grid folder's files; a shapefile's parts that hold data; else the file, with what says where it
// lies ("<stem>.prj", "<file>.aux.xml") and, of an Access file, its copy. In order of name. Throws
// PlatformError when the dataset is not there or cannot be looked at.
std::vector<std::string> filesOfDataset(const std::string& path);

// SHA-256 of what a dBASE table holds beside the given fields: for every other field its name,
// type, width and decimals with a line end behind, then of every record the deletion mark and the
// bytes of those fields.
std::string sha256Without(const std::string& table, const std::vector<std::string>& fields);

// Whether the file is a dBASE table with one of the fields.
bool holdsOneOf(const std::string& table, const std::vector<std::string>& fields);

// Now, and a time of the file system, as a text with the offset from UTC.
std::string timeText(std::int64_t seconds, long nanoseconds);
std::string nowText();

}  // namespace velmora::platform
