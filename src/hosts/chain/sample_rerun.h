// SPDX-License-Identifier: MIT
// Whether the steps make the same numbers again: some cells of every product, made anew from the
// inputs that its record names, beside what lies in the output folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "gis/application.h"
#include "settings/run_settings.h"

namespace velmora {

struct SampledProduct {
    std::string step;
    std::size_t grids = 0;  // compared
    std::size_t cells = 0;
    std::vector<std::string> differences;  // one line a grid: what is different and where
    std::string failure;                   // why it could not be made again, "" for nothing
    std::string notMade;  // why it does not follow from its inputs alone, "" when it does
};

// Makes cells of the step's grids again with the settings of its run, in a folder of its own that
// is gone afterwards, and compares them with the grids of the settings' output folder. Reference ET
// and precipitation: all months in `bands` bands of 16 rows, whose places follow from `seed`; equal
// within 1e-5, as the bands are lattices of their own. Precipitation over reference grids that lack
// a station's value is not compared: that station's ratio is made to what the working field held
// before the run. Crop ET and the requirements: such bands of every month, from the grids that they
// read; equal to the bit. Kc and efficiency maps, which are assignments of whole polygon layers:
// all cells, to the bit. The inputs stay as they are.
SampledProduct rerunSample(IPlatform& platform, const RunSettings& settings,
                           const std::string& step, int bands, std::uint64_t seed);

}  // namespace velmora
