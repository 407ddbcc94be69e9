// SPDX-License-Identifier: MIT
// The parts of a run's record that are taken from files.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "gis/run_journal.h"
#include "platform/files/run_notes.h"

namespace velmora::platform {

using Json = nlohmann::ordered_json;

std::string recordPath(const std::string& folder, const std::string& step);
// The step whose record the path is; "" for other files.
std::string stepOfRecord(const std::string& path);

// The text of a record's file. Its last member, "xxh3", is the hash of all bytes before it, so that
// what has changed since is found.
std::string recordText(const Json& record);
// Whether the text is as recordText() made it.
bool isAsWritten(const std::string& text);

// Outputs of the other steps' records in a folder, by path; records that cannot be understood make
// none.
struct MadeElsewhere {
    std::string step;
    std::string run;
    Json files;
};
std::map<std::string, MadeElsewhere> outputsOfOthers(const std::string& folder,
                                                     const std::string& step);

// The inputs: each with the files that make it, and their SHA-256 or, of a grid that stands as
// another step's run left it, that run and its hashes. One that cannot be read has an error in the
// record of a failed run; otherwise throws PlatformError.
Json inputsOf(const RunNotes& notes, const RunHeading& heading, RunEnding ending);

// The outputs that are there, with the fast hashes. Throws PlatformError when one cannot be read.
Json outputsOf(const RunNotes& notes, const std::string& folder);

// What lies in the output folder is listed relative to it, so that the folder may be moved.
std::string listedPath(const std::string& path, const std::string& folder);
std::string pathOfListed(const std::string& listed, const std::string& folder);

// Versions of the libraries that the numbers depend on.
Json libraryVersions();

// The coordinate system and datum that a WKT names; null where it names none.
Json crsOf(const std::string& wkt);

}  // namespace velmora::platform
