// SPDX-License-Identifier: MIT
#include "settings/step_record.h"

#include <algorithm>
#include <chrono>
#include <sstream>

#include "gis/numbers.h"
#include "gis/text.h"

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

}  // namespace

bool StepRecord::lists(const std::string& grid) const {
    return std::ranges::find(made, grid) != made.end();
}

std::map<std::string, std::string> recordedSettings(const RunSettings& settings) {
    return {{"CellSize", numberText(settings.CellSize)},
            {"ExtentProvider", settings.ExtentProvider},
            {"Year", settings.Year}};
}

// One entry a line: a word that says what it is, and the rest of the line.
std::optional<StepRecord> lastRun(const IFileSystem& files, const std::string& outputFolder,
                                  const std::string& step) {
    const std::string path = pathOf(outputFolder, step);
    if (!files.fileExists(path)) return std::nullopt;
    StepRecord record;
    std::istringstream lines(files.readBeginning(path, kLongestNote));
    for (std::string line; std::getline(lines, line);) {
        const auto blank = line.find(' ');
        if (blank == std::string::npos) continue;
        const std::string kind = line.substr(0, blank);
        const std::string rest = line.substr(blank + 1);
        const auto equals = rest.find('=');
        if (kind == "run") record.run = rest;
        if (kind == "made") record.made.push_back(rest);
        if (equals == std::string::npos) continue;
        if (kind == "set") record.settings[rest.substr(0, equals)] = rest.substr(equals + 1);
        if (kind == "used") record.used[rest.substr(0, equals)] = rest.substr(equals + 1);
    }
    return record;
}

StepRecorder::StepRecorder(IFileSystem& files, const RunSettings& settings, const std::string& step,
                           const std::vector<std::string>& sources)
    : files_(files), path_(pathOf(settings.OutputWorkspace, step)) {
    record_.run = markOfThisRun();
    record_.settings = recordedSettings(settings);
    for (const std::string& source : sources) {
        if (const auto last = lastRun(files, settings.OutputWorkspace, source)) {
            record_.used[source] = last->run;
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
