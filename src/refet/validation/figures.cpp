// SPDX-License-Identifier: MIT
#include "refet/validation/figures.h"

#include <array>
#include <sstream>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "refet/validation/figure_texts.h"

namespace velmora {

namespace {

constexpr std::size_t kColumns = 6;

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

double numberOf(const std::string& text) {
    const auto number = strictNumber(text);
    if (!number) throw PlatformError("\"" + text + "\" is no number");
    return *number;
}

double toleranceOf(const std::string& text, double value) {
    const bool ofTheFigure = text.ends_with('%');
    const double number = numberOf(ofTheFigure ? trimmed(text.substr(0, text.size() - 1)) : text);
    if (!(number > 0)) throw PlatformError("a tolerance is above 0");
    return ofTheFigure ? number / 100 * (value < 0 ? -value : value) : number;
}

Figure figureOf(const std::string& line) {
    std::array<std::string, kColumns> parts;
    std::istringstream columns(line);
    std::size_t count = 0;
    for (std::string part; std::getline(columns, part, '|'); ++count) {
        if (count == kColumns) throw PlatformError("a figure has 4 or 6 columns");
        parts.at(count) = trimmed(part);
    }
    if (count != 4 && count != kColumns) throw PlatformError("a figure has 4 or 6 columns");
    Figure figure;
    figure.quantity = parts[0];
    figure.inputs = parts[1];
    figure.printed = parts[2];
    figure.value = numberOf(parts[2]);
    figure.tolerance = toleranceOf(parts[3], figure.value);
    if (!parts[4].empty()) figure.expected = numberOf(parts[4]);
    figure.why = parts[5];
    if (figure.expected && figure.why.empty()) {
        throw PlatformError("a departure needs a word why");
    }
    return figure;
}

// Takes "word: rest of the line"; false when the line does not begin with that word.
bool takes(std::string& rest, const std::string& line, const std::string& word) {
    if (!line.starts_with(word + ":")) return false;
    rest = trimmed(line.substr(word.size() + 1));
    return true;
}

void takeLine(std::vector<FigureGroup>& groups, const std::string& line) {
    if (line.starts_with("== ")) {
        groups.emplace_back().title = trimmed(line.substr(3));
        return;
    }
    if (groups.empty()) throw PlatformError("a line before the first group");
    FigureGroup& group = groups.back();
    std::string rest;
    if (takes(rest, line, "source")) {
        group.source = rest;
    } else if (takes(rest, line, "note")) {
        group.note += (group.note.empty() ? "" : " ") + rest;
    } else if (takes(rest, line, "with")) {
        group.common = rest;
    } else if (takes(rest, line, "origin")) {
        if (rest != "recomputed") throw PlatformError("no origin is called \"" + rest + "\"");
        group.origin = Origin::recomputed;
    } else {
        group.figures.push_back(figureOf(line));
    }
}

}  // namespace

std::vector<FigureGroup> readFigures(std::string_view text, const std::string& name) {
    std::vector<FigureGroup> groups;
    std::istringstream lines{std::string(text)};
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line);) {
        ++count;
        if (line.empty() || line[0] == '#') continue;
        try {
            takeLine(groups, line);
        } catch (const PlatformError& e) {
            throw PlatformError(name + ", line " + std::to_string(count) + ": " + e.what(),
                                {.file = name});
        }
    }
    for (const FigureGroup& group : groups) {
        if (group.figures.empty() || group.source.empty()) {
            throw PlatformError(name + ": the group \"" + group.title + "\" needs " +
                                    (group.source.empty() ? "a source" : "figures"),
                                {.file = name});
        }
    }
    return groups;
}

const std::vector<FigureGroup>& publishedFigures() {
    static const std::vector<FigureGroup> all = [] {
        std::vector<FigureGroup> groups;
        for (const FigureText& file : figureTexts()) {
            auto read = readFigures(file.text, std::string(file.name));
            groups.insert(groups.end(), read.begin(), read.end());
        }
        return groups;
    }();
    return all;
}

}  // namespace velmora
