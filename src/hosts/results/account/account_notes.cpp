// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_notes.h"

#include <fmt/format.h>

#include <algorithm>

#include "gis/text.h"
#include "hosts/results/account/account_groups.h"
#include "modelling/old_results.h"

namespace velmora {

namespace {

constexpr std::size_t kNamed = 5;

struct Share {
    std::string name;
    double amount = 0;
};

// The largest first: "a (12.3 %), b (4.5 %) and 3 more".
std::string largest(std::vector<Share> shares, double total) {
    std::ranges::stable_sort(shares, std::ranges::greater(), &Share::amount);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(shares.size(), kNamed); ++i) {
        names.push_back(
            fmt::format("{} ({:.2g} %)", shares[i].name, shares[i].amount / total * 100));
    }
    std::string text = joinedNames(names);
    if (shares.size() > kNamed) text += fmt::format(" and {} more", shares.size() - kNamed);
    return text;
}

std::string cropText(const Account& account, const std::optional<std::size_t>& crop) {
    if (!crop) return "no land cover";
    return account.crops[*crop].empty() ? "no crop type" : account.crops[*crop];
}

std::string zonesWithoutCells(const Account& account) {
    std::vector<std::string> names;
    for (const AccountGroup& group : groupsOf(account, {.zone = true})) {
        if (group.zone && group.allCells() == 0) names.push_back(account.zones[*group.zone].key);
    }
    return names.empty() ? "" : "Zones without a cell: " + joinedNames(names);
}

// Land outside all zones has no shares of methods, and so no efficiency, by design.
std::string withoutEfficiency(const Account& account) {
    if (std::ranges::none_of(account.months, &AccountMonth::efficiency)) return {};
    const double total = totalOf(account).sum().net;
    std::vector<Share> shares;
    double sum = 0;
    for (const AccountGroup& group : groupsOf(account, {.zone = true, .crop = true})) {
        const double net = group.amounts[static_cast<std::size_t>(Land::withoutEfficiency)].net;
        if (net <= 0) continue;
        sum += net;
        shares.push_back(
            {fmt::format("{}: {}",
                         group.zone ? account.zones[*group.zone].key : "outside all zones",
                         cropText(account, group.crop)),
             net});
    }
    if (shares.empty()) return {};
    return fmt::format(
        "{:.2g} % of the net requirement is of land without an efficiency, for which no water "
        "requirement is known: {}",
        sum / total * 100, largest(shares, total));
}

std::string withoutKc(const Account& account) {
    std::vector<Share> shares;
    double sum = 0;
    double total = 0;
    for (const AccountGroup& group : groupsOf(account, {.crop = true})) {
        if (!group.crop) continue;
        total += group.allCells();
        const double bare = group.cells[static_cast<std::size_t>(Land::withoutKc)];
        if (bare == 0) continue;
        sum += bare;
        shares.push_back({cropText(account, group.crop), bare});
    }
    if (shares.empty()) return {};
    return fmt::format(
        "{:.2g} % of the land cover has no crop coefficient in any month, and so no crop ET: {}",
        sum / total * 100, largest(shares, total));
}

}  // namespace

void addNotes(IPlatform& platform, const std::vector<std::string>& ofGrids, Account& account) {
    const auto add = [&](const std::string& note) {
        if (note.empty() || std::ranges::find(account.notes, note) != account.notes.end()) return;
        account.notes.push_back(note);
    };
    for (const std::string& note : ofGrids) add(note);
    for (const char* step : {"cropet", "nir", "irr"}) {
        for (const std::string& old : oldInputs(platform, account.settings, step)) add(old);
    }
    add(zonesWithoutCells(account));
    add(withoutEfficiency(account));
    add(withoutKc(account));
}

}  // namespace velmora
