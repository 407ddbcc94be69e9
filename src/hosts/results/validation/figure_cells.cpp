// SPDX-License-Identifier: MIT
#include "hosts/results/validation/figure_cells.h"

#include <fmt/format.h>

#include <sstream>

namespace velmora {

namespace {

int decimalsOf(const std::string& number) {
    const auto point = number.find('.');
    return point == std::string::npos ? 0 : static_cast<int>(number.size() - point - 1);
}

// Without what only ties figures together.
std::string shownInputs(const Figure& figure) {
    if (figure.quantity == "sum") return "of the figures above, " + figure.inputs;
    std::string shown;
    std::istringstream words(figure.inputs);
    for (std::string word; words >> word;) {
        if (word.starts_with("series=")) continue;
        shown += (shown.empty() ? "" : " ") + word;
    }
    return shown;
}

// As the two columns before it have it; 0 without a sign.
std::string difference(const Comparison& c, int places) {
    const std::string text = fmt::format("{:+.{}f}", c.difference(), places);
    return text.find_first_of("123456789") == std::string::npos ? "0" : text;
}

std::string remark(const Comparison& c) {
    const Figure& figure = *c.figure;
    if (c.verdict == Verdict::outside) {
        return "OUTSIDE" + (figure.why.empty() ? std::string() : ": " + figure.why);
    }
    if (!figure.expected) return figure.why;
    return fmt::format("departs, {:g} is expected: {}", *figure.expected, figure.why);
}

}  // namespace

std::string verdictWord(Verdict verdict) {
    switch (verdict) {
        case Verdict::met:
            return "met";
        case Verdict::departs:
            return "departs";
        default:
            return "outside";
    }
}

std::array<std::string, kFigureHeads.size()> figureCells(const Comparison& c) {
    const Figure& figure = *c.figure;
    const int places = decimalsOf(figure.printed) + 1;
    return {figure.quantity,
            shownInputs(figure),
            c.unit,
            figure.printed,
            fmt::format("{:.{}f}", c.ours, places),
            difference(c, places),
            fmt::format("{:.2g}", figure.tolerance),
            remark(c)};
}

std::string verdictCounts(const ComparedGroup& group) {
    std::string counts;
    for (const Verdict verdict : {Verdict::met, Verdict::departs, Verdict::outside}) {
        const std::size_t count = group.count(verdict);
        if (count == 0) continue;
        counts += fmt::format("{}{} {}", counts.empty() ? "" : ", ", count, verdictWord(verdict));
    }
    return counts;
}

}  // namespace velmora
