// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "hosts/results/report/run_results.h"
#include "hosts/results/report/small_maps.h"

namespace velmora {

// The months' maps of each product in one scale of colours, with a bar of length.
std::string mapsSection(IPlatform& platform, const RunResults& results, SmallMaps& maps);

}  // namespace velmora
