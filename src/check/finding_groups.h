// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "check/input_check.h"

namespace velmora {

struct FindingGroup {
    Severity severity = Severity::note;
    std::string line;
};

// Findings for a reader: notes first and errors last, so that what matters stands at the end.
// Findings of one kind about one file and quantity ("has no value" in TM_Jan to TM_Dec of any
// station) become one line: the one with the largest number, their count and the first three.
std::vector<FindingGroup> findingGroups(const std::vector<Finding>& findings);
std::vector<std::string> findingLines(const std::vector<Finding>& findings);

// Each finding in a line of its own, in the same order.
std::vector<std::string> allFindingLines(const std::vector<Finding>& findings);

// "1 error, 2 warnings, 0 notes"
std::string findingCounts(const std::vector<Finding>& findings);

}  // namespace velmora
