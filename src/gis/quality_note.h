// SPDX-License-Identifier: MIT
// What of a month's grid lies beyond what physics allows or the stations bear out, as data.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

struct QualityNote {
    // The cell where it is worst, counted from 1 at the top left.
    struct Worst {
        double value = 0;
        std::size_t column = 0;
        std::size_t row = 0;
    };
    struct Flag {
        std::string flag;  // "reference ET below 0"
        unsigned bit = 0;  // in the grids of flags
        std::size_t cells = 0;
        double share = 0;  // of the cells with data
        std::string unit;  // of the worst cell's value
        std::optional<Worst> worst;
        std::vector<std::string> surfaces;  // because of which, where not all are meant
    };

    std::string grid;  // "RefET_Dec_2"
    std::string month;
    std::size_t cells = 0;    // with data
    std::vector<Flag> flags;  // that have cells
};

}  // namespace velmora
