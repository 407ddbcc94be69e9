// SPDX-License-Identifier: MIT
#include "hosts/results/report/page_head.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <ctime>
#include <utility>

#include "gis/text.h"
#include "hosts/results/records/made_for.h"
#include "hosts/results/report/html.h"
#include "hosts/results/report/report_style.h"
#include "version.h"

namespace velmora {

namespace {

constexpr const char* kTitle = "Evapotranspiration and irrigation water use";

std::string nowText() {
    return fmt::format("{:%Y-%m-%d %H:%M}", fmt::localtime(std::time(nullptr)));
}

// What the products were made for: one line where all were made for the same.
std::string madeForLines(const RunResults& results) {
    const std::vector<MadeFor> made = productsMadeFor(results.records);
    if (made.empty()) {
        return "<p>" + escaped(madeForText(results.settings)) +
               " (by the settings: there are no records)</p>";
    }
    if (made.size() == 1) return "<p>" + escaped(made.front().text) + "</p>";
    std::string html;
    for (const MadeFor& part : made) {
        html += "<p>" + escaped(joinedNames(part.names) + ": " + part.text) + "</p>";
    }
    return html;
}

// Over each page on paper.
std::string paperHeading(const RunResults& results) {
    const std::string title = kTitle;
    if (!results.faults.empty()) return title + " - draft: these results do not hold together";
    const std::vector<MadeFor> made = productsMadeFor(results.records);
    return made.size() == 1 ? title + " - " + made.front().text : title;
}

std::string links() {
    std::string html = "<nav>";
    for (const auto& [id, title] : {std::pair{"totals", "Zone totals"},
                                    {"account", "Water account"},
                                    {"charts", "Months"},
                                    {"maps", "Maps"},
                                    {"quality", "Quality"},
                                    {"tables", "Zone tables"},
                                    {"stations", "Stations"},
                                    {"inputs", "Inputs"},
                                    {"made-of", "Made of"},
                                    {"messages", "Messages"},
                                    {"validation", "Published figures"},
                                    {"units", "Units"}}) {
        html += fmt::format("<a href=\"#{}\">{}</a>\n", id, title);
    }
    return html + "</nav>\n";
}

}  // namespace

std::string pageHead(const RunResults& results) {
    const std::string maker = fmt::format("velmora {} on {}", kVersion, nowText());
    const std::string& folder = results.settings.OutputWorkspace;
    return "<!doctype html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><meta "
           "name=\"viewport\" "
           "content=\"width=device-width,initial-scale=1\"><title>Velmora report</title><style>" +
           reportStyle(paperHeading(results), maker + " from " + folder) +
           "</style></head><body onbeforeprint=\"document.querySelectorAll('details')"
           ".forEach(d=>d.open=true)\">\n<header><h1>" +
           kTitle + "</h1>" + madeForLines(results) + "<p>Page made by " + maker + " from " +
           escaped(folder) + "</p></header>\n" + links();
}

}  // namespace velmora
