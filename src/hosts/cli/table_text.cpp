// SPDX-License-Identifier: MIT
#include "hosts/cli/table_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "gis/numbers.h"
#include "hosts/cli/console.h"

namespace velmora::cli {

namespace {

// Characters of a text in UTF-8.
std::size_t lengthOf(const std::string& text) {
    return static_cast<std::size_t>(std::ranges::count_if(
        text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::string csvCell(const std::string& cell) {
    if (cell.find_first_of(",\"\r\n") == std::string::npos) return cell;
    std::string quoted = "\"";
    for (const char c : cell) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

}  // namespace

nlohmann::ordered_json rowsOf(const DataGrid& grid, const NumberColumns& isNumber) {
    auto rows = nlohmann::ordered_json::array();
    for (std::size_t r = 0; r < grid.rowCount(); ++r) {
        nlohmann::ordered_json row;
        for (std::size_t c = 0; c < grid.columns().size(); ++c) {
            auto& value = row[grid.columns()[c]];
            if (!isNumber(c)) {
                value = grid.cell(r, c);
            } else if (const auto number = strictNumber(grid.cell(r, c))) {
                value = *number;
            }
        }
        rows.push_back(row);
    }
    return rows;
}

std::string alignedText(const DataGrid& grid,
                        const std::function<std::string(const std::string&)>& heading) {
    std::vector<std::vector<std::string>> lines(1);
    for (const std::string& name : grid.columns()) lines[0].push_back(oneLine(heading(name)));
    for (std::size_t r = 0; r < grid.rowCount(); ++r) {
        lines.emplace_back();
        for (std::size_t c = 0; c < grid.columns().size(); ++c) {
            lines.back().push_back(oneLine(grid.cell(r, c)));
        }
    }
    std::vector<std::size_t> widths(grid.columns().size());
    for (const auto& line : lines) {
        for (std::size_t c = 0; c < line.size(); ++c) {
            widths[c] = std::max(widths[c], lengthOf(line[c]));
        }
    }
    std::string text;
    for (const auto& line : lines) {
        for (std::size_t c = 0; c < line.size(); ++c) {
            text += c == 0 ? fmt::format("{:<{}}", line[c], widths[c])
                           : fmt::format("  {:>{}}", line[c], widths[c]);
        }
        text += "\n";
    }
    return text;
}

std::string csvText(const DataGrid& grid) {
    std::string text;
    for (std::size_t c = 0; c < grid.columns().size(); ++c) {
        text += (c ? "," : "") + csvCell(grid.columns()[c]);
    }
    text += "\n";
    for (std::size_t r = 0; r < grid.rowCount(); ++r) {
        for (std::size_t c = 0; c < grid.columns().size(); ++c) {
            text += (c ? "," : "") + csvCell(grid.cell(r, c));
        }
        text += "\n";
    }
    return text;
}

}  // namespace velmora::cli
