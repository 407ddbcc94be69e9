// SPDX-License-Identifier: MIT
#include "hosts/results/report/quality_section.h"

#include <algorithm>
#include <map>

#include "gis/text.h"
#include "hosts/results/report/html.h"
#include "hosts/results/report/quality_maps.h"
#include "modelling/quality_text.h"

namespace velmora {

namespace {

using Rows = std::vector<std::vector<std::string>>;

const std::string kNone = "&ndash;";

// Shares by flag in the order of their bits, a column a month.
std::string shares(const std::vector<QualityNote>& months) {
    std::vector<std::string> heads = {"Flag"};
    std::map<unsigned, std::vector<std::string>> rows;
    for (const QualityNote& month : months) {
        heads.push_back(escaped(month.month));
        for (const QualityNote::Flag& flag : month.flags) {
            auto& row = rows.try_emplace(flag.bit, std::vector{escaped(flag.flag)}).first->second;
            row.resize(heads.size() - 1, kNone);
            row.push_back(shareText(flag.cells, flag.share));
        }
    }
    Rows all;
    for (auto& [bit, row] : rows) {
        row.resize(heads.size(), kNone);
        all.push_back(std::move(row));
    }
    return "<div class=\"scroll\">" + htmlTable(heads, all, 1) + "</div>\n";
}

std::string counts(const std::vector<QualityNote>& months) {
    Rows rows;
    for (const QualityNote& month : months) {
        for (const QualityNote::Flag& flag : month.flags) {
            const auto placed = [&](std::size_t QualityNote::Worst::*part) {
                return flag.worst ? std::to_string(*flag.worst.*part) : kNone;
            };
            rows.push_back({escaped(month.month), escaped(flag.flag),
                            flag.surfaces.empty() ? kNone : escaped(joinedNames(flag.surfaces)),
                            flag.worst ? escaped(worstText(flag)) : kNone,
                            placed(&QualityNote::Worst::column), placed(&QualityNote::Worst::row),
                            std::to_string(flag.cells), std::to_string(month.cells),
                            shareText(flag.cells, flag.share)});
        }
    }
    return folded(counted(rows.size(), "flag") + " by month: how many cells, and the worst of them",
                  htmlTable({"Month", "Flag", "In", "Worst cell", "Column", "Row", "Cells",
                             "of cells with data", "Share"},
                            rows, 4));
}

}  // namespace

std::string qualitySection(IPlatform& platform, const RunResults& results, SmallMaps& maps) {
    std::string html =
        "<h2 id=\"quality\">Quality of reference ET</h2>\n<p class=\"note\">Cells whose values no "
        "physics allows or no station bears out, counted while reference ET was made. No number is "
        "changed: a negative reference ET goes into crop ET as it is. Columns and rows count from "
        "the upper left cell of the grid.</p>\n";
    const RecordedStep* run = results.records.of("refet");
    if (!run || run->quality.empty()) {
        return html + "<p>No record tells of the cells of reference ET.</p>\n";
    }
    const bool any = std::ranges::any_of(
        run->quality, [](const QualityNote& month) { return !month.flags.empty(); });
    if (!any) return html + "<p>No cell has a flag in any month.</p>\n";
    return html + shares(run->quality) + counts(run->quality) +
           qualityMaps(platform, run->settings, maps);
}

bool isOfQuality(const RecordedStep& step, const std::string& warning) {
    return std::ranges::any_of(step.quality, [&](const QualityNote& month) {
        return warning.starts_with(month.grid + ": ") &&
               std::ranges::any_of(month.flags, [&](const QualityNote::Flag& flag) {
                   return warning.find(flag.flag) != std::string::npos;
               });
    });
}

}  // namespace velmora
