// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_groups.h"

#include <limits>
#include <map>
#include <numeric>
#include <tuple>

namespace velmora {

namespace {

constexpr std::size_t kLast = std::numeric_limits<std::size_t>::max();
using Place = std::tuple<std::size_t, std::size_t, std::size_t, std::size_t>;

class Groups {
  public:
    Groups(const Account& account, const AccountKeys& keys) : account_(account), keys_(keys) {}

    void add(const AccountEntry& entry) {
        for (std::size_t land = 0; land < kLands; ++land) {
            for (std::size_t m = 0; m < entry.months.size(); ++m) {
                const Amounts& amounts = entry.months[m][land];
                // Without crop ET there are cells alone, which a whole period counts once.
                const bool counts = keys_.month || hasCropEt(static_cast<Land>(land));
                if (amounts.cells == 0 || !counts) continue;
                AccountGroup& group = of(entry, m, land);
                group.amounts[land].add(amounts);
                if (keys_.month) group.cells[land] += amounts.cells;
            }
            if (!keys_.month && entry.cells[land] > 0) {
                of(entry, 0, land).cells[land] += entry.cells[land];
            }
        }
    }

    // Zones without a cell.
    void addEmptyZones() {
        for (std::size_t z = 0; z < account_.zones.size(); ++z) {
            for (std::size_t m = 0; m < (keys_.month ? account_.months.size() : 1); ++m) {
                at({z, 0, m, 0}, z, std::nullopt, m, 0);
            }
        }
    }

    std::vector<AccountGroup> taken() {
        std::vector<AccountGroup> groups;
        for (const auto& [place, group] : groups_) groups.push_back(group);
        return groups;
    }

  private:
    AccountGroup& of(const AccountEntry& entry, std::size_t month, std::size_t land) {
        return at({keys_.zone ? entry.zone.value_or(kLast) : 0,
                   keys_.crop ? entry.crop.value_or(kLast) : 0, keys_.month ? month : 0,
                   keys_.land ? land : 0},
                  entry.zone, entry.crop, month, land);
    }
    AccountGroup& at(const Place& place, std::optional<std::size_t> zone,
                     std::optional<std::size_t> crop, std::size_t month, std::size_t land) {
        const auto [found, isNew] = groups_.try_emplace(place);
        AccountGroup& group = found->second;
        if (isNew && keys_.zone) group.zone = zone;
        if (isNew && keys_.crop) group.crop = crop;
        if (isNew && keys_.month) group.month = month;
        if (isNew && keys_.land) group.land = static_cast<Land>(land);
        return group;
    }

    const Account& account_;
    AccountKeys keys_;
    std::map<Place, AccountGroup> groups_;
};

}  // namespace

double AccountGroup::allCells() const { return std::accumulate(cells.begin(), cells.end(), 0.0); }

double AccountGroup::cellsWithCropEt() const {
    double count = 0;
    for (std::size_t l = 0; l < kLands; ++l)
        count += hasCropEt(static_cast<Land>(l)) ? cells[l] : 0;
    return count;
}

Amounts AccountGroup::sum() const {
    Amounts all;
    for (const Amounts& amounts_ : amounts) all.add(amounts_);
    return all;
}

bool AccountGroup::knowsWater() const {
    return amounts[static_cast<std::size_t>(Land::withEfficiency)].cells > 0 ||
           amounts[static_cast<std::size_t>(Land::withoutEfficiency)].cells == 0;
}

std::vector<AccountGroup> groupsOf(const Account& account, const AccountKeys& keys) {
    Groups groups(account, keys);
    if (keys.zone && !keys.crop && !keys.land) groups.addEmptyZones();
    for (const AccountEntry& entry : account.entries) groups.add(entry);
    return groups.taken();
}

AccountGroup totalOf(const Account& account) { return groupsOf(account, {}).front(); }

}  // namespace velmora
