// SPDX-License-Identifier: MIT
#include "tests/faults/tables.h"

#include <fmt/core.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <utility>

namespace velmora::faults {

namespace {

struct Sums {
    int tried = 0;
    int missed = 0;  // the run ended before the call
    int wrong = 0;

    void add(const Outcome& outcome, bool isWrong) {
        ++tried;
        missed += outcome.ending.reached ? 0 : 1;
        wrong += isWrong ? 1 : 0;
    }
};

std::string line(const std::string& what, const std::string& call, const Sums& sums) {
    return fmt::format("{:<20}{:<10}{:>7}{:>14}{:>14}{:>7}\n", what, call, sums.tried, sums.missed,
                       sums.tried - sums.wrong, sums.wrong);
}

const std::string kHead = fmt::format("{:<20}{:<10}{:>7}{:>14}{:>14}{:>7}\n", "step", "call",
                                      "tried", "not reached", "as it should", "not");

bool startsWith(const Complaints& all, const std::string& cause) {
    return std::ranges::any_of(all, [&](const auto& text) { return text.starts_with(cause); });
}

std::string endOf(const Ending& ending) {
    if (ending.hung) return "hangs";
    return ending.signal != 0 ? fmt::format("signal {}", ending.signal)
                              : fmt::format("status {}", ending.status);
}

Complaints allOf(const Outcome& outcome) {
    Complaints all = outcome.fault;
    all.insert(all.end(), outcome.nextRun.begin(), outcome.nextRun.end());
    return all;
}

std::string causeOf(const Outcome& outcome) {
    const std::string first = allOf(outcome).front();
    return first.substr(0, first.find(':'));
}

}  // namespace

std::string table(const std::vector<Outcome>& outcomes) {
    std::map<std::pair<std::string, std::string>, Sums> rows;
    Sums all;
    for (const Outcome& outcome : outcomes) {
        rows[{outcome.point.step, outcome.point.call}].add(outcome, outcome.isWrong());
        all.add(outcome, outcome.isWrong());
    }
    std::string text = kHead;
    for (const auto& [row, sums] : rows) text += line(row.first, row.second, sums);
    return text + line("all", "", all);
}

std::string summary(const std::vector<Outcome>& outcomes) {
    Sums faults;
    Sums kills;
    Sums inputs;
    Sums next;
    int zero = 0;
    for (const Outcome& outcome : outcomes) {
        (outcome.point.error == "KILL" ? kills : faults).add(outcome, !outcome.fault.empty());
        inputs.add(outcome, startsWith(outcome.fault, "input "));
        next.add(outcome, !outcome.nextRun.empty());
        zero += startsWith(outcome.fault, "status 0") ? 1 : 0;
    }
    return kHead + line("failing calls", "", faults) + line("kills", "", kills) +
           line("inputs unchanged", "", inputs) + line("the next run", "", next) +
           fmt::format("Of those not as they should be, {} ended with status 0.\n", zero);
}

std::string wrongOnes(const std::vector<Outcome>& outcomes) {
    std::map<std::string, std::vector<const Outcome*>> causes;
    for (const Outcome& outcome : outcomes) {
        if (outcome.isWrong()) causes[causeOf(outcome)].push_back(&outcome);
    }
    std::string text;
    for (const auto& [cause, wrong] : causes) {
        text += fmt::format("\n== {} ({})\n", cause, wrong.size());
        for (const Outcome* outcome : wrong) {
            text += fmt::format("--only {}  ({}) {}\n", textOf(outcome->point),
                                endOf(outcome->ending), outcome->ending.met);
            const Complaints all = allOf(*outcome);
            for (std::size_t i = 0; i < std::min<std::size_t>(all.size(), 4); ++i) {
                text += "    " + all[i] + "\n";
            }
            if (all.size() > 4) text += fmt::format("    and {} more\n", all.size() - 4);
        }
    }
    return text;
}

std::string whole(const Outcome& outcome) {
    std::string text = fmt::format("{}: {}\n", textOf(outcome.point), endOf(outcome.ending));
    text += outcome.ending.reached ? "The fault met " + outcome.ending.met + "\n"
                                   : "The run ended before this call.\n";
    text += "Standard error:\n" + outcome.ending.errors;
    for (const std::string& complaint : allOf(outcome))
        text += "NOT AS IT SHOULD BE: " + complaint + "\n";
    return text + (outcome.isWrong() ? "" : "As it should be.\n");
}

}  // namespace velmora::faults
