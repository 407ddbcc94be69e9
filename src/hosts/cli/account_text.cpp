// SPDX-License-Identifier: MIT
#include "hosts/cli/account_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "gis/month_names.h"
#include "gis/numbers.h"
#include "hosts/cli/console.h"
#include "hosts/cli/table_text.h"
#include "hosts/results/account/account_words.h"
#include "modelling/products.h"

namespace velmora::cli {

namespace {

using Rows = std::vector<std::vector<std::string>>;

std::string aligned(std::vector<std::string> heads, Rows rows) {
    DataGrid grid("grid");
    grid.show(std::move(heads), std::move(rows));
    return alignedText(grid);
}

// Key columns are one, so that only the first stands at the left.
std::string tableText(const AccountTable& table, std::size_t keys) {
    std::vector<std::string> heads;
    Rows rows(table.rows.size());
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
        const AccountColumn& column = table.columns[c];
        const bool joins = c > 0 && c < keys;
        joins ? heads.back() += ", " + column.heading : heads.emplace_back(column.heading);
        for (std::size_t r = 0; r < rows.size(); ++r) {
            const std::string text = figureText(column, table.rows[r][c]);
            if (!joins) {
                rows[r].push_back(text);
            } else if (!text.empty()) {
                rows[r].back() += ", " + text;
            }
        }
    }
    return aligned(std::move(heads), std::move(rows));
}

std::size_t count(const AccountKeys& keys) {
    return static_cast<std::size_t>(
        std::ranges::count(std::array{keys.zone, keys.crop, keys.month, keys.land}, true));
}

std::string sums(const Account& account, const AccountKeys& keys, const AccountUnits& units) {
    AccountTable table = accountTable(account, keys, units);
    table.rows.push_back(totalRow(account, keys, units));
    return tableText(chosenColumns(table, pageColumns(keys), units), count(keys));
}

std::string head(const Account& account, const AccountUnits& units) {
    return fmt::format("Water account, {}, reference ET by method {}\n{}\n{}\n",
                       accountPeriod(account), account.settings.methodNumber(),
                       accountBasis(account, units), accountMeaning());
}

std::string residuals(const Account& account, const AccountUnits& units) {
    Rows rows;
    for (const AccountResidual& residual : residualsOf(account)) {
        rows.push_back({residual.identity, residualText(account, residual, units),
                        relativeText(residual), residual.closes() ? "closes" : "DOES NOT CLOSE"});
    }
    std::string text = "\nWhat is left over\n" +
                       aligned({"identity", "left", "of the total", ""}, std::move(rows));
    for (const AccountResidual& residual : residualsOf(account)) {
        if (!residual.where.empty() && !residual.closes()) {
            text += residual.identity + ": " + oneLine(residual.where) + "\n";
        }
    }
    return text;
}

std::string volume(const std::optional<double>& figure) {
    return figure ? fmt::format("{:.1f}", *figure) : "-";
}

std::string annexText(const AccountAnnex& annex) {
    std::vector<std::string> heads = {"zone"};
    for (const Product* product : tabledProducts()) {
        heads.emplace_back(product->table.name);
        heads.emplace_back("account");
    }
    Rows rows;
    for (const AccountAnnex::Zone& zone : annex.zones) {
        rows.push_back({zone.key});
        for (const Product* product : tabledProducts()) {
            const auto found = zone.tables.find(std::string(product->table.name));
            const TableReading reading =
                found == zone.tables.end() ? TableReading{} : found->second;
            rows.back().push_back(volume(reading.table));
            rows.back().push_back(volume(reading.account));
        }
    }
    std::string factors;
    for (const AccountAnnex::Factor& f : annex.factors) {
        factors += fmt::format("{}{} {:.4f}", factors.empty() ? "" : ", ", GetMonthName(f.month),
                               f.factor);
    }
    std::string text = fmt::format(
        "\nAnnex: the zone tables as they stand, acre-feet, beside the account\n{}\nTable / "
        "account: {}\n{}",
        tableReadingNote(), factors, aligned(std::move(heads), std::move(rows)));
    for (const AccountAnnex::Agreement& agreement : annex.agreements) {
        text += oneLine(agreementText(agreement)) + "\n";
    }
    return text;
}

std::string csvField(const FieldValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return numberText(*number);
    const auto* text = std::get_if<std::string>(&value);
    return text ? *text : std::string();
}

}  // namespace

std::string accountText(const Account& account, const AccountUnits& units,
                        const AccountAnnex& annex) {
    std::string text = head(account, units);
    for (const auto& [title, keys] : {std::pair{"By zone", AccountKeys{.zone = true}},
                                      std::pair{"By month", AccountKeys{.month = true}},
                                      std::pair{"By crop", AccountKeys{.crop = true}},
                                      std::pair{"By kind of land", AccountKeys{.land = true}}}) {
        text += fmt::format("\n{}: {}, {}\n", title, units.area, units.volume) +
                sums(account, keys, units);
    }
    text += residuals(account, units);
    if (!account.notes.empty()) text += "\nNotes\n";
    for (const std::string& note : account.notes) text += oneLine(note) + "\n";
    return text + annexText(annex);
}

std::string accountText(const Account& account, const AccountUnits& units,
                        const AccountKeys& keys) {
    return fmt::format("{}\n{}, {}\n", head(account, units), units.area, units.volume) +
           sums(account, keys, units);
}

std::string accountCsv(const AccountTable& table) {
    std::vector<std::string> heads;
    for (const AccountColumn& column : table.columns) heads.push_back(column.name);
    Rows rows;
    for (const auto& row : table.rows) {
        rows.emplace_back();
        for (const FieldValue& value : row) rows.back().push_back(csvField(value));
    }
    DataGrid grid("csv");
    grid.show(std::move(heads), std::move(rows));
    return csvText(grid);
}

}  // namespace velmora::cli
