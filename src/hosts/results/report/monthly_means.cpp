// SPDX-License-Identifier: MIT
#include "hosts/results/report/monthly_means.h"

#include <algorithm>

#include "hosts/results/account/account_groups.h"

namespace velmora {

namespace {

Amounts amountsOf(const AccountGroup& group, const AccountMonth& month) {
    Amounts sum;
    for (std::size_t l = 0; l < kLands; ++l) {
        const Land land = static_cast<Land>(l);
        if (month.precipitation ? isBalanced(land) : hasCropEt(land)) sum.add(group.amounts[l]);
    }
    return sum;
}

void addMonth(MonthlyMeans& means, const AccountMonth& month, const Amounts& sum) {
    if (sum.cells == 0) return;
    const auto add = [&](const char* maker, bool known, double inches) {
        const auto place = static_cast<std::size_t>(month.month - 1);
        if (known) means[&productMadeBy(maker)][place] = inches / sum.cells;
    };
    add("cropet", true, sum.cropEt);
    add("ppt", month.precipitation, sum.precipitation);
    add("nir", month.net, sum.net);
    add("irr", month.water, sum.water);
}

// Reference ET where there is crop ET, and precipitation if the month has it.
std::optional<double> referenceMean(IPlatform& platform, const Account& account,
                                    const AccountMonth& month) {
    const RunSettings& settings = account.settings;
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    const auto algebra = platform.analysis().mapAlgebra();
    useCells(algebra->environment(), account.cells);
    std::string expression = "[REFET] + 0 * [CROPET]";
    if (month.precipitation) expression += " + 0 * [PPT]";
    for (const auto& [step, name] :
         {std::pair{"refet", "REFET"}, {"cropet", "CROPET"}, {"ppt", "PPT"}}) {
        if (std::string_view(step) == "ppt" && !month.precipitation) continue;
        const std::string grid = gridName(productMadeBy(step).read, settings, month.month);
        if (!workspace->exists(grid)) return std::nullopt;
        algebra->BindRaster(workspace->openRasterDataset(grid)->createDefaultRaster(), name);
    }
    const GridStatistics s = statisticsOf(*algebra->Execute(expression));
    return s.cells == 0 ? std::nullopt : std::optional(s.mean);
}

}  // namespace

std::vector<ZoneMeans> zoneMeans(const Account& account) {
    std::vector<ZoneMeans> all;
    for (const AccountGroup& group : groupsOf(account, {.zone = true, .month = true})) {
        if (!group.zone || !group.month) continue;
        const AccountMonth& month = account.months.at(*group.month);
        const Amounts sum = amountsOf(group, month);
        if (sum.cells == 0) continue;
        const std::string& key = account.zones.at(*group.zone).key;
        auto found = std::ranges::find(all, key, &ZoneMeans::zone);
        if (found == all.end()) found = all.insert(all.end(), ZoneMeans{key, {}});
        addMonth(found->byProduct, month, sum);
    }
    return all;
}

MonthlyMeans basinMeans(IPlatform& platform, const Account& account) {
    MonthlyMeans means;
    for (const AccountGroup& group : groupsOf(account, {.month = true})) {
        if (!group.month) continue;
        const AccountMonth& month = account.months.at(*group.month);
        addMonth(means, month, amountsOf(group, month));
        const auto place = static_cast<std::size_t>(month.month - 1);
        means[&productMadeBy("refet")][place] = referenceMean(platform, account, month);
    }
    return means;
}

}  // namespace velmora
