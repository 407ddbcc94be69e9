// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_section.h"

#include <fmt/format.h>

#include <utility>

#include "gis/month_names.h"
#include "hosts/results/account/account_table.h"
#include "hosts/results/account/account_words.h"
#include "hosts/results/report/html.h"
#include "modelling/products.h"

namespace velmora {

namespace {

using Rows = std::vector<std::vector<std::string>>;

const std::string kNone = "&ndash;";

// A text document, which knows of no folding, has the heading all the same.
std::string foldedUnder(const std::string& heading, const std::string& content) {
    return folded("<h3>" + heading + "</h3>", content);
}

std::string cellOf(const AccountColumn& column, const FieldValue& value) {
    return isNull(value) ? kNone : escaped(figureText(column, value));
}

std::string sums(const Account& account, const AccountKeys& keys, const AccountUnits& units) {
    AccountTable whole = accountTable(account, keys, units);
    whole.rows.push_back(totalRow(account, keys, units));
    const AccountTable table = chosenColumns(whole, pageColumns(keys), units);
    std::vector<std::string> heads;
    for (const AccountColumn& column : table.columns) {
        heads.push_back(column.kind == AccountColumnKind::area
                            ? fmt::format("{}, {}", escaped(column.heading), units.area)
                            : escaped(column.heading));
    }
    Rows rows;
    for (const auto& row : table.rows) {
        rows.emplace_back();
        for (std::size_t c = 0; c < row.size(); ++c) {
            rows.back().push_back(cellOf(table.columns[c], row[c]));
        }
    }
    return htmlTable(heads, rows, 1);
}

std::string residuals(const Account& account, const AccountUnits& units) {
    const std::vector<AccountResidual> all = residualsOf(account);
    Rows rows;
    for (const AccountResidual& residual : all) {
        rows.push_back(
            {escaped(residual.identity),
             residual.closes() ? "closes" : "<span class=\"error\">does not close</span>",
             escaped(residual.where), residualText(account, residual, units),
             relativeText(residual)});
    }
    const std::vector<std::string> open = unclosed(all);
    std::string html = foldedUnder(
        fmt::format("What is left over: {} of {} sums close", all.size() - open.size(), all.size()),
        htmlTable({"Identity", "", "Largest in", "Left", "Of the total"}, rows, 3));
    for (const std::string& text : open) {
        html += "<p class=\"error\">" + escaped(text) + "</p>\n";
    }
    return html;
}

std::string figure(const std::optional<double>& volume) {
    return volume ? fmt::format("{:.1f}", *volume) : kNone;
}

std::string annexOf(const AccountAnnex& annex) {
    std::vector<std::string> heads = {"Zone"};
    for (const Product* product : tabledProducts()) {
        heads.push_back(std::string(product->table.name) + " as it stands");
        heads.emplace_back("account");
    }
    Rows rows;
    for (const AccountAnnex::Zone& zone : annex.zones) {
        rows.push_back({escaped(zone.key)});
        for (const Product* product : tabledProducts()) {
            const auto found = zone.tables.find(std::string(product->table.name));
            const TableReading reading =
                found == zone.tables.end() ? TableReading{} : found->second;
            rows.back().push_back(figure(reading.table));
            rows.back().push_back(figure(reading.account));
        }
    }
    Rows factors;
    for (const AccountAnnex::Factor& f : annex.factors) {
        factors.push_back(
            {GetMonthName(f.month), std::to_string(f.days), fmt::format("{:.4f}", f.factor)});
    }
    std::string html = foldedUnder("Annex: the zone tables' reading",
                                   "<p class=\"note\">" + escaped(tableReadingNote()) +
                                       " Volumes are acre-feet.</p>\n" + htmlTable(heads, rows, 1) +
                                       htmlTable({"Month", "Days", "Table / account"}, factors, 1));
    html += "<ul>\n";
    for (const AccountAnnex::Agreement& agreement : annex.agreements) {
        html += "<li>" + escaped(agreementText(agreement)) + "</li>\n";
    }
    return html + "</ul>\n";
}

}  // namespace

std::string accountSection(const Account& account, const AccountAnnex& annex,
                           const AccountUnits& units) {
    std::string html =
        fmt::format("<h2 id=\"account\">Water account, {}</h2>\n<p class=\"note\">{} {}</p>\n",
                    escaped(accountPeriod(account)), escaped(accountBasis(account, units)),
                    escaped(accountMeaning()));
    html += fmt::format("<h3>By zone, {}</h3>\n<div class=\"scroll\">{}</div>\n", units.volume,
                        sums(account, {.zone = true}, units));
    for (const auto& [title, keys] : {std::pair{"By month", AccountKeys{.month = true}},
                                      std::pair{"By crop", AccountKeys{.crop = true}},
                                      std::pair{"By kind of land", AccountKeys{.land = true}}}) {
        html += foldedUnder(fmt::format("{}, {}", title, units.volume), sums(account, keys, units));
    }
    html += residuals(account, units);
    if (!account.notes.empty()) {
        html += "<ul>\n";
        for (const std::string& note : account.notes) {
            html += "<li class=\"warning\">" + escaped(note) + "</li>\n";
        }
        html += "</ul>\n";
    }
    return html + annexOf(annex);
}

}  // namespace velmora
