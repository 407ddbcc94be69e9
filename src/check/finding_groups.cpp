// SPDX-License-Identifier: MIT
#include "check/finding_groups.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/text.h"

namespace velmora {

namespace {

// "TM_Jan" is about "TM_", other fields are about themselves.
std::string quantityOf(const std::string& field) {
    for (int month = 1; month <= 12; ++month) {
        const std::string name = GetMonthName(month);
        if (field.size() > 3 && sameIgnoringCase(field.substr(field.size() - 3), name)) {
            return field.substr(0, field.size() - 3);
        }
    }
    return field;
}

// A text without its numbers and names of fields, which tell one station or month from another.
std::string kindOf(const std::string& text) {
    std::string kind;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        std::string word = text.substr(at, end - at);
        const bool number = word.find_first_of("0123456789") != std::string::npos;
        if (number) word = "#";
        kind += quantityOf(word) + " ";
        at = end + 1;
    }
    return kind;
}

using Key = std::tuple<Severity, std::string, std::string, std::string>;

Key keyOf(const Finding& finding) {
    return {finding.severity, finding.file, quantityOf(finding.field), kindOf(finding.text)};
}

struct Group {
    Key key;
    std::vector<const Finding*> members;
};

constexpr std::size_t kNamed = 3;

// "12 of the kind, first: TD_Jan Logan, TD_Jan Moore, TD_Feb Logan"
std::string membersOf(const Group& group) {
    std::string first;
    for (std::size_t i = 0; i < std::min(kNamed, group.members.size()); ++i) {
        const Finding& member = *group.members[i];
        const std::string blank = member.field.empty() || member.station.empty() ? "" : " ";
        const std::string label = member.field + blank + member.station;
        if (!label.empty()) first += (first.empty() ? ", first: " : ", ") + label;
    }
    return std::to_string(group.members.size()) + " of the kind" + first;
}

std::string lineOf(const Group& group) {
    const auto size = [](const Finding* f) { return std::fabs(lenientNumber(f->text)); };
    const Finding& worst =
        **std::max_element(group.members.begin(), group.members.end(),
                           [&](const Finding* a, const Finding* b) { return size(a) < size(b); });
    const std::string line = findingLine(worst);
    return group.members.size() > 1 ? line + " (" + membersOf(group) + ")" : line;
}

}  // namespace

std::vector<FindingGroup> findingGroups(const std::vector<Finding>& findings) {
    std::vector<Group> groups;
    for (const Finding& finding : findings) {
        const Key key = keyOf(finding);
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&](const Group& g) { return g.key == key; });
        if (group == groups.end()) group = groups.insert(groups.end(), Group{key, {}});
        group->members.push_back(&finding);
    }
    std::vector<FindingGroup> lines;
    for (const Severity severity : {Severity::note, Severity::warning, Severity::error}) {
        for (const Group& group : groups) {
            if (std::get<Severity>(group.key) == severity) {
                lines.push_back({severity, lineOf(group)});
            }
        }
    }
    return lines;
}

std::vector<std::string> findingLines(const std::vector<Finding>& findings) {
    std::vector<std::string> lines;
    for (const FindingGroup& group : findingGroups(findings)) lines.push_back(group.line);
    return lines;
}

std::vector<std::string> allFindingLines(const std::vector<Finding>& findings) {
    std::vector<std::string> lines;
    for (const Severity severity : {Severity::note, Severity::warning, Severity::error}) {
        for (const Finding& finding : findings) {
            if (finding.severity == severity) lines.push_back(findingLine(finding));
        }
    }
    return lines;
}

std::string findingCounts(const std::vector<Finding>& findings) {
    const auto count = [&](Severity severity) {
        return static_cast<std::size_t>(
            std::count_if(findings.begin(), findings.end(),
                          [&](const Finding& f) { return f.severity == severity; }));
    };
    return counted(count(Severity::error), "error") + ", " +
           counted(count(Severity::warning), "warning") + ", " +
           counted(count(Severity::note), "note");
}

}  // namespace velmora
