// SPDX-License-Identifier: MIT
// Whether what lies in an output folder is still what its records say.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace velmora::platform {

struct Mismatch {
    std::string step;  // whose record says otherwise; "" where records disagree
    std::string path;  // the file or setting
    std::string text;  // what is wrong
};

struct RecordedRun {
    std::string step;
    std::string run;  // its mark
    bool complete = false;
    std::vector<std::pair<std::string, std::string>> settings;  // field and value
};

struct Verification {
    std::vector<RecordedRun> runs;  // in the order in which they began
    std::size_t inputs = 0;         // files looked at
    std::size_t outputs = 0;
    std::vector<Mismatch> mismatches;
};

// Compares all files that the records list with what they list, and the records with each other: a
// run must have read the last runs of its sources, on the same settings, after they had ended. With
// `settings` (field and value), the records are compared to these too. Throws PlatformError when
// the folder holds no record or cannot be read.
Verification verifyRecords(const std::string& folder,
                           const std::vector<std::pair<std::string, std::string>>& settings = {});

// Writes the SHA-256 of every output that a record lists, and of the records, into the file
// "velmora_seal.sha256" of the folder, in the form that the command sha256sum checks. Gives the
// path and how many files it names. Throws PlatformError, also when an output is missing.
std::pair<std::string, std::size_t> sealRecords(const std::string& folder);

}  // namespace velmora::platform
