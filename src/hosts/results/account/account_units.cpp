// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_units.h"

#include "gis/units.h"

namespace velmora {

double AccountUnits::areaOf(double cells, const GridGeometry& grid) const {
    return cells * grid.cellSize * grid.cellSize / squareMetresPerArea;
}

double AccountUnits::volumeOf(double inchCells, const GridGeometry& grid) const {
    return areaOf(inchCells, grid) * depthPerInch * volumePerDepthAndArea;
}

const AccountUnits& usUnits() {
    static constexpr AccountUnits units{
        "us",   "acres", "acre-feet",          "inches", "acres",
        "acft", "in",    kSquareMetresPerAcre, 1,        1 / kInchesPerFoot};
    return units;
}

const AccountUnits& metricUnits() {
    static constexpr AccountUnits units{"metric",
                                        "hectares",
                                        "cubic metres",
                                        "millimetres",
                                        "ha",
                                        "m3",
                                        "mm",
                                        kSquareMetresPerHectare,
                                        kMillimetresPerInch,
                                        kSquareMetresPerHectare / kMillimetresPerMetre};
    return units;
}

}  // namespace velmora
