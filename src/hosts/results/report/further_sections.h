// SPDX-License-Identifier: MIT
// The sections of the report that others make. Where one cannot be made, the page says why, and so
// does a text that is added to `missing` unless that is nullptr.
#pragma once

#include <string>
#include <vector>

#include "hosts/results/report/run_results.h"

namespace velmora {

std::string waterAccount(IPlatform& platform, const RunResults& results,
                         std::vector<std::string>* missing);
// "" where reference ET was not also made by the papers' choices.
std::string papersChoices(IPlatform& platform, const RunResults& results,
                          std::vector<std::string>* missing);
std::string publishedFiguresSection(std::vector<std::string>* missing);

}  // namespace velmora
