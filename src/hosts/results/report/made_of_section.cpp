// SPDX-License-Identifier: MIT
#include "hosts/results/report/made_of_section.h"

#include <fmt/format.h>

#include <map>

#include "gis/text.h"
#include "hosts/results/report/html.h"
#include "hosts/results/report/quality_section.h"
#include "modelling/products.h"

namespace velmora {

namespace {

using Rows = std::vector<std::vector<std::string>>;

std::string runs(const RunRecords& records) {
    Rows rows;
    for (const RecordedStep& step : records.steps) {
        const std::string state = escaped(step.state);
        rows.push_back({escaped(step.step + ": " + std::string(productMadeBy(step.step).title)),
                        escaped(timeToSecond(step.began)), escaped(timeToSecond(step.ended)),
                        step.complete() ? state : "<span class=\"error\">" + state + "</span>",
                        escaped(step.version), escaped(step.build), escaped(step.host),
                        step.startedBy.empty() ? "not told" : escaped(step.startedBy)});
    }
    return "<h3>Runs</h3>\n<div class=\"scroll\">" +
           htmlTable({"Step", "Began", "Ended", "State", "Version", "Build", "Host", "Started by"},
                     rows, 8) +
           "</div>\n";
}

// Steps by the versions of the libraries that they ran with.
std::string libraries(const RunRecords& records) {
    std::map<std::string, std::vector<std::string>> steps;
    for (const RecordedStep& step : records.steps) {
        std::vector<std::string> versions;
        for (const auto& [name, version] : step.libraries) versions.push_back(name + " " + version);
        steps[joinedNames(versions)].push_back(step.step);
    }
    std::string html = "<h3>Libraries</h3>\n";
    for (const auto& [versions, names] : steps) {
        html += "<p>" + escaped(joinedNames(names) + ": " + versions) + "</p>\n";
    }
    return html;
}

// A dataset as the first of some runs has read it.
struct Input {
    std::string crs;
    std::string files;   // names, sizes, times and hashes, as HTML
    std::string hashes;  // which are the same while its content is
    std::vector<std::string> steps;
};

Input inputOf(const RecordedInput& recorded) {
    Input input;
    input.crs = recorded.crs;
    if (!recorded.datum.empty()) input.crs += "; " + recorded.datum;
    for (const RecordedFile& file : recorded.files) {
        input.hashes += file.sha256 + " ";
        input.files +=
            fmt::format("{}{}, {} bytes, written {}:<br><code>{}</code>",
                        input.files.empty() ? "" : "<br>", escaped(fileName(file.path)), file.bytes,
                        escaped(timeToSecond(file.modified)), escaped(file.sha256));
    }
    return input;
}

std::string inputs(const RunRecords& records) {
    std::map<std::pair<std::string, std::string>, Input> all;  // by path and hashes
    for (const RecordedStep& step : records.steps) {
        for (const RecordedInput& recorded : step.inputs) {
            if (!recorded.madeBy.empty()) continue;
            Input input = inputOf(recorded);
            const auto [place, isNew] =
                all.try_emplace({recorded.path, input.hashes}, std::move(input));
            place->second.steps.push_back(step.step);
        }
    }
    Rows rows;
    for (const auto& [key, input] : all) {
        rows.push_back({pathHtml(key.first), input.crs.empty() ? "&ndash;" : escaped(input.crs),
                        input.files, escaped(joinedNames(input.steps))});
    }
    return "<h3>Inputs as they were read</h3>\n<p class=\"note\">Grids that another step has made "
           "are not listed again. Of a station table the hash leaves out the fields that every run "
           "overwrites.</p>\n" +
           folded(counted(rows.size(), "dataset"),
                  htmlTable({"Dataset", "CRS; datum", "Files with SHA-256", "Read by"}, rows, 4));
}

std::string leftOut(const RecordedSurface& surface) {
    std::map<std::string, std::vector<std::string>> byReason;
    for (const auto& [station, reason] : surface.leftOut) byReason[reason].push_back(station);
    std::string text;
    for (const auto& [reason, stations] : byReason) {
        text += (text.empty() ? "" : "<br>") + escaped(reason + ": " + joinedNames(stations));
    }
    return text.empty() ? "none" : text;
}

std::string surfaces(const RunRecords& records) {
    Rows rows;
    std::size_t lacking = 0;
    for (const RecordedStep& step : records.steps) {
        for (const RecordedSurface& surface : step.surfaces) {
            lacking += surface.leftOut.empty() ? 0 : 1;
            rows.push_back({escaped(surface.surface), escaped(surface.field),
                            escaped(surface.estimator), std::to_string(surface.stations),
                            leftOut(surface)});
        }
    }
    if (rows.empty()) return {};
    return "<h3>Stations behind each surface</h3>\n" +
           folded(counted(rows.size(), "surface") + ", " + std::to_string(lacking) +
                      " of them without some station",
                  inTwo(htmlTable({"Surface", "Field", "Estimator", "Stations", "Left out"}, rows,
                                  5)));
}

std::string warnings(const RunRecords& records) {
    std::string html;
    for (const RecordedStep& step : records.steps) {
        for (const std::string& text : step.warnings) {
            if (isOfQuality(step, text)) continue;
            html += "<li class=\"warning\">" + escaped(step.step + ": " + text) + "</li>\n";
        }
    }
    return html.empty() ? html : "<h3>What the runs told</h3>\n<ul>\n" + html + "</ul>\n";
}

}  // namespace

std::string madeOfSection(const RunResults& results) {
    const RunRecords& records = results.records;
    std::string html = "<h2 id=\"made-of\">What this was made of</h2>\n";
    if (records.steps.empty()) return html + "<p>There are no records of runs.</p>\n";
    return html + runs(records) + inputs(records) + surfaces(records) + warnings(records) +
           libraries(records);
}

}  // namespace velmora
