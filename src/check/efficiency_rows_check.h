// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "check/input_check.h"
#include "irrigation/efficiency_layers.h"
#include "irrigation/irrigation_database.h"

namespace velmora {

// The findings about the rows of table IREF, once it has some: shares and efficiencies that can
// hardly be meant, and land that gets no efficiency, with its acres: zones without rows, and crop
// types of the land cover that zones have no row, or no efficiency, for. What is declared not
// irrigated is left out. The quick check measures no acres. Throws PlatformError.
std::vector<Finding> checkEfficiencyRows(const IrrigationDatabase& database,
                                         const std::string& path, const EfficiencyLayers& layers,
                                         const std::string& zoneField, bool quick = false);

}  // namespace velmora
