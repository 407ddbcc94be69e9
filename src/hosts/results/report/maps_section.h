// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "hosts/results/report/run_results.h"

namespace velmora {

// The months' maps of each product in one scale of colours, with the zones' outlines and a bar of
// length. What keeps the zones from being drawn is added to `missing` unless that is nullptr.
std::string mapsSection(IPlatform& platform, const RunResults& results,
                        std::vector<std::string>* missing);

}  // namespace velmora
