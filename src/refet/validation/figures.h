// SPDX-License-Identifier: MIT
// Published figures of reference ET and its parts, as the files in figures/ have them. The files
// are compiled into the program, so that they can be tried wherever it is installed.
//
//   == Title of a group              begins a group
//   source: paper, table, page       where its figures stand
//   origin: recomputed               figures that somebody computed from the paper's equations and
//                                    did not find printed; else they are published
//   note: ...                        what a reader should know; may stand several times
//   with: lat=40.41 z=1462.4 ...     inputs that all figures of the group share
//   quantity | inputs | figure | tolerance
//   quantity | inputs | figure | tolerance | ours | why
//
// The last form is for a figure that ours does not meet by design: the tolerance then is about what
// ours has to be; without `ours` it is about the figure, and only told. A tolerance may be a
// percentage of the figure. Lines that begin with # are comments.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

struct Figure {
    std::string quantity;            // a name of quantities.h
    std::string inputs;              // its own, "Tmax=24.5 Tmin=15"
    std::string printed;             // the figure as it is printed, ".309"
    double value = 0;                // the same as a number
    double tolerance = 0;            // in the unit of the quantity
    std::optional<double> expected;  // what ours has to be where it departs by design
    std::string why;                 // a word on that
};

enum class Origin { published, recomputed };

struct FigureGroup {
    std::string title;
    std::string source;
    Origin origin = Origin::published;
    std::string note;
    std::string common;  // the inputs that all figures share
    std::vector<Figure> figures;
};

// The groups of a text of that form. Throws PlatformError, which names `name` and the line, for a
// text that is not.
std::vector<FigureGroup> readFigures(std::string_view text, const std::string& name);

// All groups of all files, in their order.
const std::vector<FigureGroup>& publishedFigures();

}  // namespace velmora
