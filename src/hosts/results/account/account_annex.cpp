// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_annex.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "gis/month_names.h"
#include "gis/zonal_tables.h"
#include "hosts/results/account/account_groups.h"
#include "hosts/results/account/account_units.h"
#include "hosts/results/zone_results.h"
#include "modelling/products.h"

namespace velmora {

namespace {

constexpr double kAgreement = 1e-6;

// By key in the tables and place of the month.
using Volumes = std::map<std::pair<std::string, std::size_t>, double>;

double quantityOf(const Amounts& amounts, std::string_view maker) {
    if (maker == "cropet") return amounts.cropEt;
    return maker == "nir" ? amounts.net : amounts.water;
}

bool hasGrid(const AccountMonth& month, std::string_view maker) {
    return maker == "cropet" || (maker == "nir" ? month.net : month.water);
}

Volumes accountVolumes(const Account& account, std::string_view maker) {
    Volumes volumes;
    for (const AccountGroup& group : groupsOf(account, {.zone = true, .month = true})) {
        if (!group.zone || !hasGrid(account.months[*group.month], maker)) continue;
        if (maker == "irr" && !group.knowsWater()) continue;
        volumes[{account.zones[*group.zone].keyInTables, *group.month}] +=
            usUnits().volumeOf(quantityOf(group.sum(), maker), account.cells);
    }
    return volumes;
}

// Those of the account's months as the table has them, and by the grids' own unit.
std::pair<Volumes, Volumes> tableVolumes(const Account& account,
                                         const std::vector<ZoneMonth>& rows) {
    Volumes table;
    Volumes inches;
    for (const ZoneMonth& row : rows) {
        const auto month = std::ranges::find(account.months, row.month, &AccountMonth::month);
        if (month == account.months.end()) continue;
        const std::pair key(row.zone, static_cast<std::size_t>(month - account.months.begin()));
        table[key] += row.acreFeet;
        inches[key] += row.acreFeet / tableOverInches(row.month, account.settings.yearNumber());
    }
    return {table, inches};
}

AccountAnnex::Agreement agreementOf(const Account& account, const std::string& table,
                                    const Volumes& expected, const Volumes& inches) {
    AccountAnnex::Agreement worst{table, 0, {}};
    double total = 0;
    for (const auto& [key, volume] : expected) total += std::fabs(volume);
    const auto compare = [&](const Volumes::key_type& key, double volume, double found) {
        // What is nothing beside the total is compared with the total.
        const double of = std::max(std::fabs(volume), 1e-9 * total);
        const double difference = volume == found ? 0 : std::fabs(volume - found) / of;
        if (difference <= worst.difference) return;
        worst.difference = difference;
        worst.where = key.first + ", " + GetMonthName(account.months[key.second].month);
    };
    for (const auto& [key, volume] : expected) {
        const auto found = inches.find(key);
        compare(key, volume, found == inches.end() ? 0 : found->second);
    }
    for (const auto& [key, volume] : inches) {
        if (!expected.contains(key)) compare(key, 0, volume);
    }
    return worst;
}

AccountAnnex::Zone& zoneIn(AccountAnnex& annex, const std::string& key) {
    const auto found = std::ranges::find(annex.zones, key, &AccountAnnex::Zone::key);
    return found != annex.zones.end() ? *found
                                      : annex.zones.emplace_back(AccountAnnex::Zone{key, {}});
}

void addVolumes(AccountAnnex& annex, const std::string& table,
                std::optional<double> TableReading::*reading, const Volumes& volumes) {
    for (const auto& [key, volume] : volumes) {
        std::optional<double>& sum = zoneIn(annex, key.first).tables[table].*reading;
        sum = sum.value_or(0) + volume;
    }
}

}  // namespace

AccountAnnex annexOf(IPlatform& platform, const Account& account) {
    AccountAnnex annex;
    const int year = account.settings.yearNumber();
    for (const AccountZone& zone : account.zones) zoneIn(annex, zone.keyInTables);
    for (const AccountMonth& month : account.months) {
        annex.factors.push_back(
            {month.month, zonalDaysOfMonth(month.month, year), tableOverInches(month.month, year)});
    }
    for (const Product* product : tabledProducts()) {
        const std::string name(product->table.name);
        const auto rows = zoneMonths(platform, account.settings.OutputWorkspace, name);
        const Volumes expected = accountVolumes(account, product->maker);
        const auto [table, inches] = tableVolumes(account, rows);
        addVolumes(annex, name, &TableReading::account, expected);
        addVolumes(annex, name, &TableReading::table, table);
        addVolumes(annex, name, &TableReading::inches, inches);
        if (!rows.empty()) annex.agreements.push_back(agreementOf(account, name, expected, inches));
    }
    return annex;
}

std::string tableReadingNote() {
    return "The zone tables take a grid's mean as millimetres a day: depth in feet = days x mean / "
           "304.8. The grids are inches a month, so a table's figure is days / 25.4 times the "
           "account's: 22 % more in a month of 31 days. For water use the account; the tables' "
           "own figures are for comparison with earlier ones by the same rule.";
}

std::string agreementText(const AccountAnnex::Agreement& agreement) {
    if (agreement.difference <= kAgreement) {
        return fmt::format(
            "{} by the grids' own unit agrees with the account to {:.1g} of each figure",
            agreement.table, std::max(agreement.difference, 1e-16));
    }
    return fmt::format(
        "{} by the grids' own unit differs from the account by {:.3g} % ({}): it was made of other "
        "grids, of other cells, or another year's days",
        agreement.table, agreement.difference * 100, agreement.where);
}

}  // namespace velmora
