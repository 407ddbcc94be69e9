// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_json.h"

#include <nlohmann/json.hpp>

#include "gis/month_names.h"
#include "hosts/results/account/account_words.h"
#include "version.h"

namespace velmora {

namespace {

using Json = nlohmann::ordered_json;

Json jsonOf(const FieldValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return *number;
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    return nullptr;
}

Json rowJson(const std::vector<AccountColumn>& columns, const std::vector<FieldValue>& row) {
    Json json;
    for (std::size_t c = 0; c < columns.size(); ++c) json[columns[c].name] = jsonOf(row[c]);
    return json;
}

Json jsonOf(const std::optional<double>& figure) { return figure ? Json(*figure) : Json(); }

Json headJson(const Account& account, const AccountUnits& units) {
    Json months = Json::array();
    for (const AccountMonth& month : account.months) months.push_back(GetMonthName(month.month));
    return {{"version", kVersion},
            {"outputFolder", account.settings.OutputWorkspace},
            {"year", account.settings.yearNumber()},
            {"months", months},
            {"refETMethod", account.settings.methodNumber()},
            {"cells",
             {{"columns", account.cells.columns},
              {"rows", account.cells.rows},
              {"cellSize", account.cells.cellSize}}},
            {"units", {{"area", units.area}, {"volume", units.volume}, {"depth", units.depth}}},
            {"reading", "inches per month, the grids' own unit"}};
}

Json zonesJson(const Account& account, const AccountUnits& units) {
    Json zones = Json::array();
    for (const AccountZone& zone : account.zones) {
        zones.push_back({{"zone", zone.key},
                         {"polygons", zone.polygons},
                         {"polygon_" + std::string(units.areaTag),
                          zone.squareMetres / units.squareMetresPerArea}});
    }
    return zones;
}

Json residualsJson(const Account& account, const AccountUnits& units) {
    Json all = Json::array();
    for (const AccountResidual& residual : residualsOf(account)) {
        const auto inUnits = [&](double value) {
            return residual.isArea ? units.areaOf(value, account.cells)
                                   : units.volumeOf(value, account.cells);
        };
        all.push_back({{"identity", residual.identity},
                       {"left", inUnits(residual.left)},
                       {"of", inUnits(residual.of)},
                       {"unit", residual.isArea ? units.area : units.volume},
                       {"relative", residual.relative()},
                       {"where", residual.where},
                       {"closes", residual.closes()}});
    }
    return all;
}

Json annexJson(const AccountAnnex& annex) {
    Json json = {{"reading", "millimetres per day, as the zone tables take a grid's mean"},
                 {"note", tableReadingNote()}};
    json["factors"] = Json::array();
    for (const AccountAnnex::Factor& factor : annex.factors) {
        json["factors"].push_back({{"month", GetMonthName(factor.month)},
                                   {"days", factor.days},
                                   {"factor", factor.factor}});
    }
    json["zones"] = Json::array();
    for (const AccountAnnex::Zone& zone : annex.zones) {
        Json row = {{"zone", zone.key}};
        for (const auto& [table, reading] : zone.tables) {
            row[table] = {{"table_acft", jsonOf(reading.table)},
                          {"inches_acft", jsonOf(reading.inches)},
                          {"account_acft", jsonOf(reading.account)}};
        }
        json["zones"].push_back(row);
    }
    json["agreement"] = Json::array();
    for (const AccountAnnex::Agreement& agreement : annex.agreements) {
        json["agreement"].push_back({{"table", agreement.table},
                                     {"largestDifference", agreement.difference},
                                     {"where", agreement.where}});
    }
    return json;
}

}  // namespace

Json rowsJson(const AccountTable& table) {
    Json rows = Json::array();
    for (const auto& row : table.rows) rows.push_back(rowJson(table.columns, row));
    return rows;
}

Json accountJson(const Account& account, const AccountKeys& keys, const AccountUnits& units,
                 const AccountAnnex& annex) {
    Json json = headJson(account, units);
    const auto by = [&](const AccountKeys& k) { return rowsJson(accountTable(account, k, units)); };
    json["zones"] = zonesJson(account, units);
    json["byZone"] = by({.zone = true});
    json["byCrop"] = by({.crop = true});
    json["byMonth"] = by({.month = true});
    json["byLand"] = by({.land = true});
    json["total"] = by({}).front();
    json["rows"] = by(keys);
    json["residuals"] = residualsJson(account, units);
    json["closes"] = unclosed(residualsOf(account)).empty();
    json["annex"] = annexJson(annex);
    json["notes"] = account.notes;
    return json;
}

}  // namespace velmora
