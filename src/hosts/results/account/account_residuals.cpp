// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_residuals.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "gis/month_names.h"
#include "hosts/results/account/account_groups.h"

namespace velmora {

namespace {

using Quantity = double Amounts::*;

struct NamedQuantity {
    const char* name;
    Quantity quantity;
    bool AccountMonth::*needs;  // nullptr: every account has it
};

constexpr std::array<NamedQuantity, 6> kQuantities = {
    {{"Crop ET", &Amounts::cropEt, nullptr},
     {"Precipitation", &Amounts::precipitation, &AccountMonth::precipitation},
     {"Effective precipitation", &Amounts::effective, &AccountMonth::precipitation},
     {"Surplus", &Amounts::surplus, &AccountMonth::precipitation},
     {"Net irrigation requirement", &Amounts::net, &AccountMonth::net},
     {"Irrigation water requirement", &Amounts::water, &AccountMonth::water}}};

bool anyHas(const Account& account, bool AccountMonth::*grid) {
    return !grid || std::ranges::any_of(account.months, grid);
}

Amounts balanced(const AmountsByLand& lands) {
    Amounts sum;
    for (std::size_t l = 0; l < kLands; ++l) {
        if (isBalanced(static_cast<Land>(l))) sum.add(lands[l]);
    }
    return sum;
}

// Net requirement less (crop ET less effective precipitation plus surplus).
double netLeft(const Amounts& a) { return a.net - (a.cropEt - a.effective + a.surplus); }

const Amounts& efficient(const AmountsByLand& lands) {
    return lands[static_cast<std::size_t>(Land::withEfficiency)];
}

std::string placeText(const Account& account, const AccountEntry& entry, std::size_t month) {
    return fmt::format("zone \"{}\", crop \"{}\", {}",
                       entry.zone ? account.zones[*entry.zone].key : "outside all zones",
                       entry.crop ? account.crops[*entry.crop] : "no land cover",
                       GetMonthName(account.months[month].month));
}

// An identity over all land, and where it is worst of any zone, crop and month against that land's
// own sum.
template <class Has, class Left, class Of>
void addIdentity(std::vector<AccountResidual>& residuals, const Account& account,
                 const std::string& identity, const Has& has, const Left& left, const Of& of) {
    if (std::ranges::none_of(account.months, has)) return;
    AccountResidual all{identity + ", all land and months"};
    AccountResidual worst{identity + ", largest of a zone, crop and month"};
    for (const AccountEntry& entry : account.entries) {
        for (std::size_t m = 0; m < entry.months.size(); ++m) {
            if (!has(account.months[m])) continue;
            const AccountResidual one{worst.identity, left(entry.months[m]), of(entry.months[m])};
            all.left += one.left;
            all.of += one.of;
            if (one.relative() <= worst.relative() && worst.of > 0) continue;
            worst = one;
            worst.where = placeText(account, entry, m);
        }
    }
    residuals.push_back(all);
    residuals.push_back(worst);
}

void addSums(std::vector<AccountResidual>& residuals, const Account& account) {
    AccountResidual area{"Land of zones and outside = the whole grid"};
    area.isArea = true;
    area.of = static_cast<double>(account.cells.cells());
    area.left = totalOf(account).allCells() - area.of;
    residuals.push_back(area);
    const std::vector<AccountGroup> byMonth = groupsOf(account, {.month = true});
    for (const NamedQuantity& named : kQuantities) {
        if (!anyHas(account, named.needs)) continue;
        AccountResidual whole{std::string(named.name) +
                              " of zones and outside = of the whole grid"};
        for (const AccountGroup& group : byMonth) {
            const AccountMonth& month = account.months[*group.month];
            if (named.needs && !(month.*named.needs)) continue;
            whole.of += month.whole.*named.quantity;
            whole.left += group.sum().*named.quantity;
        }
        whole.left -= whole.of;
        residuals.push_back(whole);
    }
}

// The largest difference between the sums over the groups of each kind.
void addGroupings(std::vector<AccountResidual>& residuals, const Account& account) {
    AccountResidual worst{"Sums by zone, by crop, by month and by kind of land are one"};
    const Amounts total = totalOf(account).sum();
    for (const AccountKeys& keys : {AccountKeys{.zone = true}, AccountKeys{.crop = true},
                                    AccountKeys{.month = true}, AccountKeys{.land = true}}) {
        Amounts sum;
        for (const AccountGroup& group : groupsOf(account, keys)) sum.add(group.sum());
        for (const NamedQuantity& named : kQuantities) {
            const AccountResidual one{worst.identity, sum.*named.quantity - total.*named.quantity,
                                      total.*named.quantity};
            if (one.relative() > worst.relative() || worst.of == 0) worst = one;
        }
    }
    residuals.push_back(worst);
}

void addMissingCells(std::vector<AccountResidual>& residuals, const Account& account) {
    const auto add = [&](const std::string& identity, bool AccountMonth::*has, Quantity missing,
                         bool efficientAlone) {
        if (!anyHas(account, has)) return;
        AccountResidual cells{identity};
        cells.isArea = true;
        for (const AccountEntry& entry : account.entries) {
            for (std::size_t m = 0; m < entry.months.size(); ++m) {
                if (!(account.months[m].*has)) continue;
                const Amounts land =
                    efficientAlone ? efficient(entry.months[m]) : balanced(entry.months[m]);
                cells.of += land.cells;
                cells.left += land.*missing;
                if (land.*missing > 0 && cells.where.empty()) {
                    cells.where = placeText(account, entry, m);
                }
            }
        }
        residuals.push_back(cells);
    };
    add("Land with crop ET and precipitation, but no net requirement = 0", &AccountMonth::net,
        &Amounts::withoutNet, false);
    add("Land with net requirement and efficiency, but no water requirement = 0",
        &AccountMonth::water, &Amounts::withoutWater, true);
}

}  // namespace

double AccountResidual::relative() const {
    if (left == 0) return 0;
    return of == 0 ? std::fabs(left) : std::fabs(left / of);
}

std::vector<AccountResidual> residualsOf(const Account& account) {
    std::vector<AccountResidual> residuals;
    addSums(residuals, account);
    addGroupings(residuals, account);
    addIdentity(
        residuals, account, "Net requirement = crop ET - effective precipitation + surplus",
        [](const AccountMonth& month) { return month.net && month.precipitation; },
        [](const AmountsByLand& lands) { return netLeft(balanced(lands)); },
        [](const AmountsByLand& lands) {
            const Amounts land = balanced(lands);
            return std::fabs(land.cropEt) + land.effective;
        });
    addIdentity(
        residuals, account, "Water requirement x efficiency = net requirement",
        [](const AccountMonth& month) { return month.net && month.water && month.efficiency; },
        [](const AmountsByLand& lands) { return efficient(lands).used - efficient(lands).net; },
        [](const AmountsByLand& lands) { return efficient(lands).net; });
    addMissingCells(residuals, account);
    return residuals;
}

std::vector<std::string> unclosed(const std::vector<AccountResidual>& residuals) {
    std::vector<std::string> texts;
    for (const AccountResidual& residual : residuals) {
        if (residual.closes()) continue;
        texts.push_back(fmt::format(
            "The account does not close: {} leaves {:.2g} of the total{}; grids of different runs "
            "lie side by side, or one was changed: velmora run all makes them anew",
            residual.identity, residual.relative(),
            residual.where.empty() ? "" : " (" + residual.where + ")"));
    }
    return texts;
}

}  // namespace velmora
