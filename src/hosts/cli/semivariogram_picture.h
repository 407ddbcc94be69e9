// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/semivariogram.h"

namespace velmora::cli {

// Draws the lags of a semivariogram, their pairs beside them, and the model as a curve, as a PNG.
// `unit` is the unit of the values. Throws PlatformError when the file cannot be written.
void drawSemivariogramPicture(const Semivariogram& semivariogram, const std::string& title,
                              const std::string& unit, const std::string& file);

}  // namespace velmora::cli
