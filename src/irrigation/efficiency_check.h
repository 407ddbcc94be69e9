// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "irrigation/irrigation_database.h"

namespace velmora {

// What table IREF holds that can hardly be meant, one text for each kind, with the first rows that
// it concerns: shares that do not add to 1 (to 100 where the zone's methods have efficiencies in
// percent), FAEF, CVEF and IREF that are no fractions, efficiencies left from earlier shares, rows
// that stand twice. Of the named zones, or of all. Nothing is changed. Throws PlatformError.
std::vector<std::string> efficiencyDoubts(const IrrigationDatabase& database,
                                          const std::vector<std::string>& zones = {});

}  // namespace velmora
