// SPDX-License-Identifier: MIT
#include "hosts/results/report/messages_section.h"

#include <fmt/format.h>

#include <algorithm>

#include "check/finding_groups.h"
#include "gis/text.h"
#include "hosts/results/report/html.h"

namespace velmora {

namespace {

constexpr std::size_t kMostUnfolded = 3;

// Warnings stand under the records.
std::string messagesOf(const StepRun& run, const RecordedStep* record) {
    std::string html;
    std::size_t count = 0;
    for (const std::string& message : run.messages) {
        if (record && std::ranges::find(record->warnings, message) != record->warnings.end()) {
            continue;
        }
        html += "<span class=\"message\">" + escaped(message) + "</span> ";
        ++count;
    }
    return count > kMostUnfolded ? folded(counted(count, "message"), html) : html;
}

std::string lastRuns(const RunResults& results) {
    if (results.runs.empty()) {
        return "<p>No run of the command has been noted in this folder.</p>\n";
    }
    std::vector<std::vector<std::string>> rows;
    for (const StepRun& run : results.runs) {
        rows.push_back({escaped(run.step), escaped(run.ended), fmt::format("{:.2f} s", run.seconds),
                        run.done ? "done" : "<span class=\"error\">failed</span>",
                        messagesOf(run, results.records.of(run.step))});
    }
    return "<h3>The last run of each step</h3>\n<div class=\"tight\">" +
           htmlTable({"Step", "Ended", "Time", "Outcome", "Messages"}, rows, 5) + "</div>\n";
}

std::string findings(const std::vector<Finding>& found) {
    std::string html = "<h3>What the inputs' check says</h3>\n";
    if (found.empty()) return html + "<p>Nothing.</p>\n";
    html +=
        "<p class=\"note\">" + findingCounts(found) +
        "; those of one kind are one line, and <code>velmora check --all</code> lists each.</p>\n"
        "<ul>\n";
    for (const FindingGroup& group : findingGroups(found)) {
        const char* kind = group.severity == Severity::error     ? "error"
                           : group.severity == Severity::warning ? "warning"
                                                                 : "note";
        html += std::string("<li class=\"") + kind + "\">" + escaped(group.line) + "</li>\n";
    }
    return html + "</ul>\n";
}

}  // namespace

std::string messagesSection(const RunResults& results) {
    return "<h2 id=\"messages\">Messages and warnings</h2>\n" + lastRuns(results) +
           findings(results.findings);
}

}  // namespace velmora
