// SPDX-License-Identifier: MIT
#include <algorithm>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>

#include "gis/text.h"
#include "hosts/chain/sample_rerun.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/headless_application.h"
#include "hosts/results/reading_results.h"
#include "settings/recorded_settings.h"
#include "settings/stored_settings.h"

namespace velmora::cli {

namespace {

using Json = nlohmann::ordered_json;

struct Folder {
    std::string path;
    SettingsTexts settings;  // none for a folder that is not that of the settings
};

// The given folder, or the output folder of the settings.
Folder folderOf(HeadlessApplication& application, const Session& session,
                const std::string& given) {
    IFileSystem& files = application.platform().files();
    if (!given.empty()) return {wholePath(given), {}};
    const RunSettings settings = requiredSettings(files, session.settingsFolder);
    return {settings.OutputWorkspace, settingsTexts(settings)};
}

using Samples = std::vector<SampledProduct>;

// Cells of every product of a complete run, made again with its recorded settings.
Samples rerun(HeadlessApplication& application, const platform::Verification& found,
              const std::string& folder, int bands) {
    Samples samples;
    for (const platform::RecordedRun& run : found.runs) {
        if (!run.complete) continue;
        RunSettings settings = recordedRunSettings(run.settings);
        settings.OutputWorkspace = folder;
        const auto seed = std::hash<std::string>()(run.run);
        samples.push_back(rerunSample(application.platform(), settings, run.step, bands, seed));
    }
    return samples;
}

// What reruns found, as mismatches of their steps.
std::vector<platform::Mismatch> mismatchesOf(const Samples& samples) {
    std::vector<platform::Mismatch> mismatches;
    for (const SampledProduct& sample : samples) {
        for (const std::string& text : sample.differences) {
            const auto colon = text.find(": ");
            mismatches.push_back({sample.step, text.substr(0, colon), text.substr(colon + 2)});
        }
        if (!sample.failure.empty()) {
            mismatches.push_back(
                {sample.step, sample.step, "cannot be made again: " + sample.failure});
        }
    }
    return mismatches;
}

std::vector<std::string> stepsOf(const platform::Verification& found) {
    std::vector<std::string> steps;
    for (const platform::RecordedRun& run : found.runs) steps.push_back(run.step);
    return steps;
}

Json jsonOf(const platform::Verification& found, const Samples& samples,
            const std::string& folder) {
    Json mismatches = Json::array();
    for (const platform::Mismatch& mismatch : found.mismatches) {
        mismatches.push_back(
            {{"step", mismatch.step}, {"path", mismatch.path}, {"text", mismatch.text}});
    }
    Json again = Json::array();
    for (const SampledProduct& sample : samples) {
        again.push_back({{"step", sample.step}, {"grids", sample.grids}, {"cells", sample.cells}});
        if (!sample.notMade.empty()) again.back()["not_made"] = sample.notMade;
    }
    return {{"folder", folder},
            {"steps", stepsOf(found)},
            {"inputs", found.inputs},
            {"outputs", found.outputs},
            {"made_again", again},
            {"mismatches", mismatches},
            {"clean", found.mismatches.empty()}};
}

void printVerification(const platform::Verification& found, const Samples& samples,
                       const std::string& folder) {
    for (const platform::Mismatch& mismatch : found.mismatches) {
        print("{}: {}\n", mismatch.path, oneLine(mismatch.text));
    }
    std::size_t cells = 0;
    std::size_t grids = 0;
    for (const SampledProduct& sample : samples) {
        cells += sample.cells;
        grids += sample.grids;
    }
    print("{}: {} ({}), {} and {} compared, {} of {} made again: {}\n", folder,
          counted(found.runs.size(), "record"), joinedNames(stepsOf(found)),
          counted(found.inputs, "input file"), counted(found.outputs, "output file"),
          counted(cells, "cell"), counted(grids, "grid"),
          found.mismatches.empty() ? "all as recorded"
                                   : counted(found.mismatches.size(), "difference"));
}

}  // namespace

int verify(const Session& session, const std::string& given, int bands) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const Folder folder = folderOf(application, session, given);
    const auto reading = readingResults(application.platform().files(), folder.path);
    platform::Verification found = platform::verifyRecords(folder.path, folder.settings);
    Samples samples;
    if (bands > 0) samples = rerun(application, found, folder.path, bands);
    for (const SampledProduct& sample : samples) {
        if (sample.notMade.empty()) continue;
        application.prompts().notice(sample.step + " is not made again: " + sample.notMade);
    }
    std::ranges::move(mismatchesOf(samples), std::back_inserter(found.mismatches));
    if (session.json) {
        printJson(jsonOf(found, samples, folder.path));
    } else {
        printVerification(found, samples, folder.path);
    }
    return found.mismatches.empty() ? kDone : kFailed;
}

int seal(const Session& session, const std::string& given) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const Folder folder = folderOf(application, session, given);
    const auto lock = application.platform().files().lockFolder(folder.path);
    const auto [path, files] = platform::sealRecords(folder.path);
    if (session.json) {
        printJson(Json{{"seal", path}, {"files", files}});
    } else {
        sayDone(session, "{} names {}; check them with: cd {} && sha256sum -c {}\n", path,
                counted(files, "file"), folder.path, fileName(path));
    }
    return kDone;
}

}  // namespace velmora::cli
