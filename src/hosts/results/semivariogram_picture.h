// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "gis/files.h"
#include "gis/semivariogram.h"

namespace velmora {

// Draws the lags of a semivariogram, their pairs beside them, and the model as a curve, as a PNG.
// `unit` is the unit of the values. Throws PlatformError when the file cannot be written.
void drawSemivariogramPicture(IFileSystem& files, const Semivariogram& semivariogram,
                              const std::string& title, const std::string& unit,
                              const std::string& file);

}  // namespace velmora
