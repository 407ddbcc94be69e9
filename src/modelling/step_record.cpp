// SPDX-License-Identifier: MIT
#include "modelling/step_record.h"

#include <algorithm>
#include <chrono>
#include <sstream>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "modelling/products.h"

namespace velmora {

namespace {

constexpr std::size_t kLongestNote = 1'000'000;  // bytes

std::string pathOf(const std::string& outputFolder, const std::string& step) {
    return joinedPath(outputFolder, "velmora_made_" + step + ".txt");
}

std::string markOfThisRun() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::to_string(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

PlatformError notUnderstood(const std::string& path) {
    return PlatformError("The note " + path + " is damaged", {.file = path});
}

// Whether other steps read the grids of the step.
bool isSource(const std::string& step) {
    return std::ranges::any_of(products(), [&](const Product& product) {
        return !step.empty() && std::ranges::find(product.sources, step) != product.sources.end();
    });
}

// Takes "field=value" apart into the map; false when it is none.
bool takePair(std::map<std::string, std::string>& pairs, const std::string& text) {
    const auto equals = text.find('=');
    if (equals == std::string::npos) return false;
    pairs[text.substr(0, equals)] = text.substr(equals + 1);
    return true;
}

// One entry a line: a word that says what it is, and the rest of the line; the run comes first.
// False for a line that is no entry.
bool takeEntry(StepRecord& record, const std::string& line) {
    const auto blank = line.find(' ');
    if (blank == std::string::npos || blank + 1 == line.size()) return false;
    const std::string kind = line.substr(0, blank);
    const std::string rest = line.substr(blank + 1);
    if ((kind == "run") != record.run.empty()) return false;
    if (kind == "run") record.run = rest;
    if (kind == "made") record.made.push_back(rest);
    if (kind == "set") return takePair(record.settings, rest);
    if (kind == "used") {
        return isSource(rest.substr(0, rest.find('='))) && takePair(record.used, rest);
    }
    return kind == "run" || kind == "made";
}

// The mark of a source's last run, nothing when none is noted. A note that cannot be read gives a
// mark that no run has: what is made of its grids is made anew after the source.
std::optional<std::string> markOfLastRun(const IFileSystem& files, const std::string& outputFolder,
                                         const std::string& step) {
    try {
        const auto last = lastRun(files, outputFolder, step);
        return last ? std::optional(last->run) : std::nullopt;
    } catch (const PlatformError&) {
        return "unknown";
    }
}

// An entry of the note is one line.
std::string inOneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

}  // namespace

bool StepRecord::lists(const std::string& grid) const {
    return std::ranges::find(made, grid) != made.end();
}

std::map<std::string, std::string> recordedSettings(const RunSettings& settings) {
    return {{"CellSize", numberText(settings.CellSize)},
            {"ExtentProvider", inOneLine(settings.ExtentProvider)},
            {"Year", inOneLine(settings.Year)}};
}

std::optional<StepRecord> lastRun(const IFileSystem& files, const std::string& outputFolder,
                                  const std::string& step) {
    const std::string path = pathOf(outputFolder, step);
    if (!files.fileExists(path)) return std::nullopt;
    const std::string text = files.readBeginning(path, kLongestNote + 1);
    if (text.size() > kLongestNote || !text.ends_with('\n')) throw notUnderstood(path);
    StepRecord record;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!takeEntry(record, line)) throw notUnderstood(path);
    }
    return record;
}

StepRecorder::StepRecorder(IFileSystem& files, const RunSettings& settings, const std::string& step,
                           const std::vector<std::string>& sources)
    : files_(files), path_(pathOf(settings.OutputWorkspace, step)) {
    record_.run = markOfThisRun();
    record_.settings = recordedSettings(settings);
    for (const std::string& source : sources) {
        if (const auto run = markOfLastRun(files, settings.OutputWorkspace, source)) {
            record_.used[source] = *run;
        }
    }
    store();
}

void StepRecorder::made(const std::string& grid) {
    record_.made.push_back(grid);
    store();
}

void StepRecorder::store() const {
    std::string text = "run " + record_.run + "\n";
    for (const auto& [field, value] : record_.settings) text += "set " + field + "=" + value + "\n";
    for (const auto& [step, run] : record_.used) text += "used " + step + "=" + run + "\n";
    for (const std::string& grid : record_.made) text += "made " + grid + "\n";
    files_.storeFile(path_, text);
}

}  // namespace velmora
