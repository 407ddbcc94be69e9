// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/application.h"

namespace velmora::examples {

// An irrigation database with a method list (average field efficiencies, Howell 2003) and default
// shares of the methods per zone and per crop (assumed). Replaces an older file.
void makeIrrigationDatabase(IPlatform& platform, const std::string& path);

}  // namespace velmora::examples
