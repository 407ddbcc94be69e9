// SPDX-License-Identifier: MIT
#include "hosts/results/run_log.h"

#include <fmt/chrono.h>

#include <ctime>
#include <exception>
#include <fstream>
#include <nlohmann/json.hpp>

#include "gis/text.h"
#include "settings/stored_settings.h"

namespace velmora {

namespace {

using Json = nlohmann::ordered_json;

std::string pathIn(const std::string& outputFolder) {
    return joinedPath(outputFolder, "velmora_runs.json");
}

constexpr int kDeepest = 8;  // what lies deeper is not ours; writing it again would go as deep

// The entries of the file that are objects; none when it is none of ours.
Json read(const std::string& outputFolder) {
    std::ifstream file(pathIn(outputFolder));
    const auto keep = [](int depth, Json::parse_event_t, const Json&) { return depth < kDeepest; };
    const Json json = Json::parse(file, keep, false);
    Json entries = Json::array();
    if (!json.is_array()) return entries;
    for (const Json& entry : json) {
        if (entry.is_object()) entries.push_back(entry);
    }
    return entries;
}

bool isOf(const Json& entry, const std::string& step) {
    const auto named = entry.find("step");
    return named != entry.end() && *named == step;
}

}  // namespace

std::string noteRun(IFileSystem& files, const std::string& settingsFolder, const StepRun& run) {
    try {
        const auto settings = storedSettings(files, settingsFolder);
        if (!settings) return {};
        const std::string folder = settings->OutputWorkspace;
        if (!files.folderExists(folder)) return {};
        Json runs = Json::array();
        for (const Json& old : read(folder)) {
            if (!isOf(old, run.step)) runs.push_back(old);
        }
        const std::string now =
            fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::localtime(std::time(nullptr)));
        runs.push_back({{"step", run.step},
                        {"done", run.done},
                        {"seconds", run.seconds},
                        {"ended", now},
                        {"messages", run.messages}});
        files.storeFile(pathIn(folder), runs.dump(2, ' ', false, Json::error_handler_t::replace));
        return {};
    } catch (const std::exception& e) {
        return "The run is not noted for the report: " + std::string(e.what());
    }
}

std::vector<StepRun> notedRuns(const std::string& outputFolder) {
    std::vector<StepRun> runs;
    for (const Json& entry : read(outputFolder)) {
        try {
            runs.push_back({entry.at("step"), entry.at("done"), entry.at("seconds"),
                            entry.at("messages"), entry.at("ended")});
        } catch (const Json::exception&) {
            continue;  // somebody else's entry
        }
    }
    return runs;
}

}  // namespace velmora
