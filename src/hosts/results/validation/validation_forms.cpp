// SPDX-License-Identifier: MIT
#include "hosts/results/validation/validation_forms.h"

#include <fmt/format.h>

#include <algorithm>

#include "gis/text.h"
#include "hosts/results/report/html.h"
#include "hosts/results/validation/figure_cells.h"
#include "refet/validation/quantities.h"

namespace velmora {

namespace {

using Cells = std::array<std::string, kFigureHeads.size()>;

constexpr std::array kOrigins = {Origin::published, Origin::recomputed};
constexpr std::size_t kFirstNumber = 3;

std::string originWord(Origin origin) {
    return origin == Origin::published ? "published" : "recomputed";
}

std::string countsOf(const std::vector<ComparedGroup>& groups, Origin origin) {
    std::array<std::size_t, 4> counts{};
    for (const ComparedGroup& group : groups) {
        if (group.group->origin != origin) continue;
        counts[0] += group.figures.size();
        counts[1] += group.count(Verdict::met);
        counts[2] += group.count(Verdict::departs);
        counts[3] += group.count(Verdict::outside);
    }
    return fmt::format("{}: {} met, {} {} by design, {} outside",
                       counted(counts[0], originWord(origin) + " figure"), counts[1], counts[2],
                       counts[2] == 1 ? "departs" : "depart", counts[3]);
}

Cells heads() {
    Cells cells;
    std::ranges::copy(kFigureHeads, cells.begin());
    return cells;
}

// Numbers at the right, the rest at the left; no blanks at the end of a line.
std::string aligned(const std::vector<Cells>& rows) {
    std::array<std::size_t, kFigureHeads.size()> widths{};
    for (const Cells& row : rows) {
        for (std::size_t c = 0; c < row.size(); ++c) {
            widths.at(c) = std::max(widths.at(c), row.at(c).size());
        }
    }
    std::string text;
    for (const Cells& row : rows) {
        std::string line = " ";
        for (std::size_t c = 0; c < row.size(); ++c) {
            const bool right = c >= kFirstNumber && c + 1 < row.size();
            line += right ? fmt::format(" {:>{}}", row.at(c), widths.at(c))
                          : fmt::format(" {:<{}}", row.at(c), widths.at(c));
        }
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

std::string settingLines(const FigureGroup& group, const std::string& before,
                         const std::string& after) {
    std::string text = before + "Source: " + group.source + "." + after;
    if (!group.common.empty()) text += before + "All with " + group.common + "." + after;
    if (!group.note.empty()) text += before + group.note + after;
    return text;
}

std::string markdownTable(const ComparedGroup& group) {
    std::string text = "|";
    for (const char* head : kFigureHeads) text += fmt::format(" {} |", head);
    text += "\n|---|---|---|---:|---:|---:|---:|---|\n";
    for (const Comparison& c : group.figures) {
        text += "|";
        for (const std::string& cell : figureCells(c)) {
            text += cell.empty() ? " |" : " " + cell + " |";
        }
        text += "\n";
    }
    return text;
}

std::string sourcesTable(const std::vector<ComparedGroup>& groups) {
    std::vector<std::vector<std::string>> rows;
    for (const ComparedGroup& group : groups) {
        rows.push_back({escaped(group.group->title), originWord(group.group->origin)});
        for (const Verdict verdict : {Verdict::met, Verdict::departs, Verdict::outside}) {
            rows.back().push_back(std::to_string(group.count(verdict)));
        }
        rows.back().push_back(fmt::format("{:.0f} %", 100 * group.largestShare()));
    }
    return htmlTable({"Source", "Figures", "met", "depart", "outside", "Most of a tolerance"}, rows,
                     2);
}

// The figures of a group; on paper (style sheet) those alone that are not met.
std::string foldedFigures(const ComparedGroup& group) {
    std::vector<std::vector<std::string>> rows;
    for (const Comparison& c : group.figures) {
        auto& row = rows.emplace_back();
        for (const std::string& cell : figureCells(c)) row.push_back(escaped(cell));
        if (c.verdict == Verdict::met) continue;
        row.back() = "<span class=\"departs\">" + row.back() + "</span>";
    }
    return fmt::format(
        "<details class=\"figures\"><summary{}>{} ({}): {}</summary><p class=\"note\">{}</p>"
        "<div class=\"scroll\">{}</div></details>\n",
        group.count(Verdict::outside) > 0 ? " class=\"error\"" : "", escaped(group.group->title),
        originWord(group.group->origin), verdictCounts(group),
        escaped(settingLines(*group.group, "", " ")),
        htmlTable({kFigureHeads.begin(), kFigureHeads.end()}, rows, kFirstNumber));
}

constexpr const char* kPageHead = R"(# Validation

What the equations of reference ET give for figures that others have published, made by
`velmora validate --markdown`. `velmora validate` prints the same comparison on your machine and ends with
exit status 1 when a figure is outside of its tolerance; a test holds this page to what the program gives.

- **figure** is as the source prints it, **ours** what the equations in this program give for the same inputs.
- **tolerance** allows for the digits of figure and inputs, and, where the remark says so, for a constant in
  which we and the source differ. A month's tolerance allows for one day of mean weather standing for all of it.
- A figure that **departs** is not met by design; ours is then held to what it has to be. [Where our method
  departs from the papers](departures.md) tells the sizes.
- `J` is a day of a year that counts 365 days; `date` is a day as a run counts it; `choices=papers` stands for the
  papers' choices, as in `velmora run refet --standard`.
- **Recomputed** figures are printed nowhere: they were computed from the same papers by another program, so that
  more digits, months and latitudes can be compared. They show that the equations are coded right, not that
  anybody measured or published them.
)";

std::string quantityTable() {
    std::string text = "\n| quantity | what | unit |\n|---|---|---|\n";
    for (const Quantity& q : quantities()) {
        text +=
            fmt::format("| {} | {} |{} |\n", q.name, q.meaning, q.unit.empty() ? "" : " " + q.unit);
    }
    return text;
}

constexpr const char* kPageEnd = R"(## What is not compared

| published | why not |
|---|---|
| hourly values of ASCE-EWRI, appendix C | there is no hourly time step |
| vapour pressure from wet and dry bulb (FAO-56, example 4), radiation from sunshine (example 10) | the run has no such input |
| net radiation as the difference of two given numbers (FAO-56, example 16) | no equation takes part |
| Ref-ET's full clear-sky radiation and what follows from it alone | ours is the simple one; what it is worth is in the tables |
| Makkink, Turc, FAO-24 Blaney-Criddle, Penman's open water, Hargreaves-Samani with a coefficient of the range (McMahon and others; the R package) | these methods are not among the six |
| crop growth stage coefficients of TR-21 | Blaney-Criddle is taken without one |
| Blaney-Criddle for bluegrass at Laramie | its inputs are not printed |
| effective precipitation by TR-21, USBR or CROPWAT | the requirement takes 0.8 of precipitation |
)";

}  // namespace

bool allWithin(const std::vector<ComparedGroup>& groups) {
    return std::ranges::all_of(
        groups, [](const ComparedGroup& group) { return group.count(Verdict::outside) == 0; });
}

std::string validationCounts(const std::vector<ComparedGroup>& groups) {
    return countsOf(groups, Origin::published) + "\n" + countsOf(groups, Origin::recomputed) + "\n";
}

std::string validationText(const std::vector<ComparedGroup>& groups) {
    std::string text;
    for (const ComparedGroup& group : groups) {
        text += fmt::format("{} ({})\n", group.group->title, originWord(group.group->origin)) +
                settingLines(*group.group, "  ", "\n");
        std::vector<Cells> rows = {heads()};
        for (const Comparison& c : group.figures) rows.push_back(figureCells(c));
        text += aligned(rows) + "\n";
    }
    return text + validationCounts(groups);
}

std::string validationSummary(const std::vector<ComparedGroup>& groups) {
    std::string text;
    for (const ComparedGroup& group : groups) {
        text += fmt::format("{} ({}): {}; at most {:.0f} % of the tolerance\n", group.group->title,
                            originWord(group.group->origin), verdictCounts(group),
                            100 * group.largestShare());
    }
    return text + validationCounts(groups);
}

std::string validationPage(const std::vector<ComparedGroup>& groups) {
    std::string page = kPageHead + quantityTable();
    for (const Origin origin : kOrigins) page += "\n" + countsOf(groups, origin) + ".\n";
    for (const Origin origin : kOrigins) {
        page += origin == Origin::published ? "\n## Published\n" : "## Recomputed\n";
        for (const ComparedGroup& group : groups) {
            if (group.group->origin != origin) continue;
            page += "\n### " + group.group->title + "\n\n" +
                    settingLines(*group.group, "", "\n\n") + markdownTable(group);
        }
        page += "\n";
    }
    return page + kPageEnd;
}

std::string validationSection(const std::vector<ComparedGroup>& groups) {
    std::string html =
        "<h2 id=\"validation\">Published figures</h2>\n<p class=\"note\">What the equations of "
        "reference ET in this program give for figures that others have published, and for "
        "others that were computed apart from the same papers.</p>\n";
    for (const Origin origin : kOrigins) html += "<p>" + countsOf(groups, origin) + ".</p>\n";
    html +=
        sourcesTable(groups) +
        "<p class=\"paper\">Of the single figures only those that are not met stand below, each "
        "with its reason; the report on a screen has all of them, and so has docs/validation.md "
        "of the program.</p>\n";
    for (const ComparedGroup& group : groups) html += foldedFigures(group);
    return html;
}

nlohmann::ordered_json validationJson(const std::vector<ComparedGroup>& groups) {
    auto list = nlohmann::ordered_json::array();
    for (const ComparedGroup& group : groups) {
        nlohmann::ordered_json entry = {
            {"title", group.group->title},   {"origin", originWord(group.group->origin)},
            {"source", group.group->source}, {"note", group.group->note},
            {"with", group.group->common},   {"figures", nlohmann::ordered_json::array()}};
        for (const Comparison& c : group.figures) {
            nlohmann::ordered_json figure = {{"quantity", c.figure->quantity},
                                             {"inputs", c.figure->inputs},
                                             {"unit", c.unit},
                                             {"figure", c.figure->value},
                                             {"ours", c.ours},
                                             {"difference", c.difference()},
                                             {"tolerance", c.figure->tolerance},
                                             {"verdict", verdictWord(c.verdict)}};
            if (c.figure->expected) figure["expected"] = *c.figure->expected;
            if (!c.figure->why.empty()) figure["why"] = c.figure->why;
            entry["figures"].push_back(std::move(figure));
        }
        list.push_back(std::move(entry));
    }
    return list;
}

}  // namespace velmora
