// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_words.h"

#include <fmt/format.h>

#include "gis/month_names.h"

namespace velmora {

std::string accountPeriod(const Account& account) {
    const std::string first = GetMonthName(account.months.front().month);
    const std::string last = GetMonthName(account.months.back().month);
    const auto span =
        static_cast<std::size_t>(account.months.back().month - account.months.front().month) + 1;
    std::string text = first == last ? first : fmt::format("{} to {}", first, last);
    if (span != account.months.size()) {
        text = fmt::format("{} months of {}", account.months.size(), text);
    }
    return fmt::format("{} {}", text, account.settings.Year);
}

std::string accountBasis(const Account& account, const AccountUnits& units) {
    const std::string volume =
        &units == &metricUnits() ? "volumes are cubic metres: the depth times 10,000 m2 a hectare"
                                 : "volumes are acre-feet: the depth / 12 times acres of 4,047 m2";
    return fmt::format(
        "Of {} x {} cells of {:g} m, {:.1f} {}. Depths are {} of water, of which the grids hold "
        "inches a month; {}.",
        account.cells.columns, account.cells.rows, account.cells.cellSize,
        units.areaOf(static_cast<double>(account.cells.cells()), account.cells), units.area,
        units.depth, volume);
}

std::string accountMeaning() {
    return "Of the same cells: net requirement = crop ET - effective precipitation + surplus, "
           "where the surplus is effective precipitation beyond crop ET, which is not carried on; "
           "water requirement x efficiency = net requirement of the land with an efficiency. Land "
           "belongs to the zone and the crop at the centre of its cell; an area is that with crop "
           "ET in any of the months.";
}

std::string residualText(const Account& account, const AccountResidual& residual,
                         const AccountUnits& units) {
    return residual.isArea
               ? fmt::format("{:.2g} {}", units.areaOf(residual.left, account.cells), units.area)
               : fmt::format("{:.2g} {}", units.volumeOf(residual.left, account.cells),
                             units.volume);
}

std::string relativeText(const AccountResidual& residual) {
    return fmt::format("{:.2g}", residual.relative());
}

}  // namespace velmora
