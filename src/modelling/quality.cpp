// SPDX-License-Identifier: MIT
#include "modelling/quality.h"

namespace velmora {

const QualityText& textOf(QualityFlag flag) {
    static constexpr std::array<QualityText, kQualityFlags> kTexts = {{
        {"reference ET below 0", "inches"},
        {"dew point above the mean temperature", "deg C"},
        {"dew point above the maximum temperature", "deg C"},
        {"maximum temperature below the minimum", "deg C"},
        {"radiation above the extraterrestrial radiation", "MJ/m2/day"},
        {"radiation below a fifth of the extraterrestrial radiation", "of it"},
        {"wind beyond the range of the stations", "m/s"},
        {"elevation beyond the range of the stations", "m"},
        {"farther than 50 km from a station", "km"},
        {"dew point estimated", ""},
        {"radiation estimated", ""},
        {"wind estimated", ""},
        {"soil heat flux taken as 0", ""},
        {"trend over elevation not significant and extrapolated", "m"},
    }};
    return kTexts.at(static_cast<std::size_t>(flag));
}

}  // namespace velmora
