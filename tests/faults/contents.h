// SPDX-License-Identifier: MIT
// What a project's folder holds, and copies of it.
#pragma once

#include <map>
#include <string>

namespace velmora::faults {

// All files by their path below the folder; folders have no entry of their own.
using Contents = std::map<std::string, std::string>;

Contents contentsOf(const std::string& folder);

// Makes `to` what `from` is, with the times of the files, which tell what is older than its source.
void copyFolder(const std::string& from, const std::string& to);

// A file as it is compared: without what differs from run to run although nothing is wrong, namely
// times in the notes of the runs and in the report, and a dBASE table's day of change.
std::string comparable(const std::string& path, const std::string& bytes);

// Whether two files hold the same. Databases do when all their rows are the same, whatever the
// order of their pages is; `folder` is where copies of them may be opened.
bool same(const std::string& path, const Contents& a, const Contents& b, const std::string& folder);

// The dataset that a file belongs to: the folder of a grid ("output/NIR_Jun/"), a shapefile with
// all its files ("output/Lu_Intersected.shp"), or the file itself. `all` are the files that there
// may be.
std::string datasetOf(const std::string& path, const Contents& all);

// Whether notes of runs are the same but for what the runs told.
bool sameRuns(const std::string& notes, const std::string& others);

bool isUnfinished(const std::string& path);  // a name of Velmora's own, which the next run removes

}  // namespace velmora::faults
