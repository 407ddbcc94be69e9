// SPDX-License-Identifier: MIT
// The comparison of our equations with published figures, as a reader gets it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "refet/validation/validation.h"

namespace velmora {

// Whether no figure is outside of its tolerance.
bool allWithin(const std::vector<ComparedGroup>& groups);

// "812 published figures: 800 met, 12 depart by design, 0 outside"; a line each for the published
// and the recomputed ones.
std::string validationCounts(const std::vector<ComparedGroup>& groups);

// Aligned columns under each group's title, and the counts.
std::string validationText(const std::vector<ComparedGroup>& groups);
// One line a group.
std::string validationSummary(const std::vector<ComparedGroup>& groups);
// docs/validation.md.
std::string validationPage(const std::vector<ComparedGroup>& groups);
// A part of the report, under the heading "Published figures" (id "validation"): the groups, each
// with its table to be opened.
std::string validationSection(const std::vector<ComparedGroup>& groups);
nlohmann::ordered_json validationJson(const std::vector<ComparedGroup>& groups);

}  // namespace velmora
