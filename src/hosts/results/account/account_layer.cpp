// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_layer.h"

#include <cctype>

#include "gis/month_names.h"
#include "hosts/results/account/account_layers.h"
#include "hosts/results/account/account_residuals.h"
#include "hosts/results/account/account_words.h"

namespace velmora {

namespace {

std::vector<Field> fieldsOf(const AccountTable& table) {
    std::vector<Field> fields;
    for (const AccountColumn& column : table.columns) {
        const bool isText = column.kind == AccountColumnKind::text;
        fields.push_back({column.name, isText ? FieldType::text : FieldType::number, 0, 0});
    }
    return fields;
}

std::string lowerCase(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// Its rows begin with those of the zones, in the account's order.
MemoryTable zoneTable(const Account& account, const AccountUnits& units) {
    const AccountTable period = accountTable(account, {.zone = true}, units);
    const AccountTable months = accountTable(account, {.zone = true, .month = true}, units);
    std::vector<Field> fields = fieldsOf(period);
    for (const AccountMonth& month : account.months) {
        for (const AccountColumn& column : months.columns) {
            if (column.kind != AccountColumnKind::volume) continue;
            fields.push_back({column.name + "_" + lowerCase(GetMonthName(month.month)),
                              FieldType::number, 0, 0});
        }
    }
    MemoryTable table("zones", fields);
    for (std::size_t z = 0; z < account.zones.size(); ++z) {
        std::vector<FieldValue> record = period.rows[z];
        for (std::size_t m = 0; m < account.months.size(); ++m) {
            const auto& row = months.rows[z * account.months.size() + m];
            for (std::size_t c = 0; c < row.size(); ++c) {
                if (months.columns[c].kind == AccountColumnKind::volume) record.push_back(row[c]);
            }
        }
        table.append(std::move(record));
    }
    return table;
}

MemoryTable rowTable(const Account& account, const AccountUnits& units) {
    const AccountTable rows =
        accountTable(account, {.zone = true, .crop = true, .month = true, .land = true}, units);
    MemoryTable table("account", fieldsOf(rows));
    for (const auto& row : rows.rows) table.append(row);
    return table;
}

MemoryTable residualTable(const Account& account, const AccountUnits& units) {
    MemoryTable table("residuals", {{"identity", FieldType::text},
                                    {"left", FieldType::text},
                                    {"relative", FieldType::number},
                                    {"closes", FieldType::text},
                                    {"largest_in", FieldType::text}});
    for (const AccountResidual& residual : residualsOf(account)) {
        table.append({residual.identity, residualText(account, residual, units),
                      residual.relative(), std::string(residual.closes() ? "yes" : "no"),
                      residual.where});
    }
    return table;
}

MemoryTable noteTable(const Account& account, const AccountUnits& units,
                      const AccountAnnex& annex) {
    MemoryTable table("notes", {{"note", FieldType::text}});
    table.append({"Water account, " + accountPeriod(account)});
    table.append({accountBasis(account, units)});
    table.append({accountMeaning()});
    for (const std::string& note : account.notes) table.append({note});
    table.append({tableReadingNote()});
    for (const auto& agreement : annex.agreements) table.append({agreementText(agreement)});
    return table;
}

}  // namespace

AccountLayer accountLayer(IPlatform& platform, const Account& account, const AccountUnits& units,
                          const AccountAnnex& annex) {
    return {zoneTable(account, units),
            zonePolygons(platform, account.settings, account.cells.crs).keyOfRecord,
            rowTable(account, units), residualTable(account, units),
            noteTable(account, units, annex)};
}

}  // namespace velmora
