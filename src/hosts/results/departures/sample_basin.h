// SPDX-License-Identifier: MIT
// Reference ET of the sample basin by method 2, as `velmora demo` and `velmora run refet
// --standard` make it; a test runs both.
#pragma once

#include <array>

namespace velmora {

struct SampleMonth {
    double percentBelowZero = 0;  // of the cells
    double minimum = 0;           // inches of the month
    double mean = 0;
    double meanOfPapers = 0;
};

inline constexpr std::array<SampleMonth, 12> kSampleBasin = {{
    {3.767, -0.1792, 0.46803, 0.47706},   // Jan
    {22.468, -0.6077, 0.64274, 0.63226},  // Feb
    {4.007, -0.5466, 1.58443, 1.55929},   // Mar
    {0.260, -0.2743, 2.99916, 2.95506},   // Apr
    {0.000, 1.1149, 4.69392, 4.64170},    // May
    {0.000, 2.8284, 6.13309, 6.07827},    // Jun
    {0.000, 5.2905, 8.07892, 8.05075},    // Jul
    {0.000, 4.4776, 7.22466, 7.26165},    // Aug
    {0.000, 2.6789, 4.96997, 5.02744},    // Sep
    {0.000, 0.7364, 2.79232, 2.85379},    // Oct
    {16.963, -0.7285, 0.89847, 0.96101},  // Nov
    {40.740, -1.2379, 0.22703, 0.42856},  // Dec
}};

}  // namespace velmora
