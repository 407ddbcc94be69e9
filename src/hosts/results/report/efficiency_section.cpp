// SPDX-License-Identifier: MIT
#include "hosts/results/report/efficiency_section.h"

#include <fmt/format.h>

#include "gis/errors.h"
#include "gis/field_value.h"
#include "gis/text.h"
#include "hosts/results/report/html.h"
#include "irrigation/irrigation_database.h"

namespace velmora {

namespace {

std::string databaseOf(const RunRecords& records) {
    const RecordedStep* efficiency = records.of("eff");
    if (!efficiency) return {};
    for (const RecordedInput& input : efficiency->inputs) {
        const std::string& path = input.path;
        if (path.size() > 4 && sameIgnoringCase(path.substr(path.size() - 4), ".mdb")) return path;
    }
    return {};
}

// A cell of a table; numbers to six places.
std::string shown(const FieldValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return fmt::format("{:.6g}", *number);
    return isNull(value) ? "&ndash;" : escaped(std::get<std::string>(value));
}

// Columns from `firstNumber` on are set at the right.
std::string tableOf(const IrrigationDatabase& database, const std::string& name,
                    const std::string& title, std::size_t firstNumber) {
    if (!database.hasTable(name)) return "<p>" + title + ": there is no table " + name + ".</p>\n";
    const auto records = database.query("SELECT * FROM " + name);
    std::vector<std::string> columns;
    std::vector<std::string> heads;
    for (int i = 0; i < records->fieldCount(); ++i) {
        columns.push_back(records->fieldName(i));
        heads.push_back(escaped(columns.back()));
    }
    std::vector<std::vector<std::string>> rows;
    for (; !records->eof(); records->moveNext()) {
        auto& row = rows.emplace_back();
        for (const std::string& column : columns) row.push_back(shown(records->value(column)));
    }
    return folded(title + " (" + name + "): " + counted(rows.size(), "row"),
                  htmlTable(heads, rows, firstNumber));
}

}  // namespace

std::string efficiencySection(IPlatform& platform, const RunResults& results,
                              std::vector<std::string>* missing) {
    const std::string path = databaseOf(results.records);
    if (path.empty()) return {};
    std::string html =
        "<h3>Irrigation database</h3>\n<p class=\"path\">" + escaped(path) + "</p>\n";
    try {
        const IrrigationDatabase database(platform, path);
        return html +
               tableOf(database, "IREF",
                       "Shares, conveyance (CVEF) and efficiencies by zone and crop", 2) +
               tableOf(database, "IRMD", "Efficiencies of the zones' methods", 9) +
               tableOf(database, "IR_Sources", "Where the figures come from", 9);
    } catch (const PlatformError& e) {
        if (missing) {
            missing->push_back("The report lacks the irrigation database: " +
                               std::string(e.what()));
        }
        return html + "<p class=\"error\">Not shown: " + escaped(e.what()) + "</p>\n";
    }
}

}  // namespace velmora
