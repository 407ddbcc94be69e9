// SPDX-License-Identifier: MIT
#include "hosts/results/records/run_records.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "gis/errors.h"
#include "gis/text.h"
#include "modelling/products.h"
#include "settings/recorded_settings.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr int kDeepest = 16;  // what lies deeper is not ours

// The text under a key, "" for none and for null.
std::string textIn(const Json& json, const char* key) {
    const auto found = json.find(key);
    return found == json.end() || found->is_null() ? std::string() : found->get<std::string>();
}

RecordedTexts textsIn(const Json& json) {
    RecordedTexts texts;
    for (const auto& [name, value] : json.items()) texts.emplace_back(name, value);
    return texts;
}

RecordedFile fileOf(const Json& json) {
    return {json.at("path"), json.at("bytes"), textIn(json, "modified"), textIn(json, "sha256")};
}

RecordedInput inputOf(const Json& json) {
    RecordedInput input;
    input.path = json.at("path");
    if (const Json& crs = json.at("crs"); !crs.is_null()) {
        input.crs = textIn(crs, "name");
        input.datum = textIn(crs, "datum");
    }
    if (const auto maker = json.find("made_by"); maker != json.end()) {
        input.madeBy = maker->at("step");
    }
    if (const auto files = json.find("files"); files != json.end()) {
        for (const Json& file : *files) input.files.push_back(fileOf(file));
    }
    return input;
}

RecordedSurface surfaceOf(const Json& json) {
    RecordedSurface surface{
        json.at("surface"), json.at("field"), json.at("estimator"), json.at("stations"), {}};
    for (const Json& station : json.at("left_out")) {
        surface.leftOut.push_back({station.at("station"), station.at("reason")});
    }
    return surface;
}

QualityNote::Flag flagOf(const Json& json) {
    QualityNote::Flag flag{
        json.at("flag"), json.at("bit"), json.at("cells"), json.at("share"), {}, {}, {}};
    if (const auto worst = json.find("worst"); worst != json.end() && !worst->is_null()) {
        flag.unit = worst->at("unit");
        flag.worst = {worst->at("value"), worst->at("column"), worst->at("row")};
    }
    if (const auto surfaces = json.find("surfaces"); surfaces != json.end()) {
        flag.surfaces = surfaces->get<std::vector<std::string>>();
    }
    return flag;
}

QualityNote qualityOf(const Json& json) {
    QualityNote note{json.at("grid"), json.at("month"), json.at("cells"), {}};
    for (const Json& flag : json.at("flags")) note.flags.push_back(flagOf(flag));
    return note;
}

void readProgram(const Json& json, RecordedStep& step) {
    const Json& program = json.at("program");
    step.version = textIn(program, "version");
    step.build = textIn(program, "build");
    step.host = textIn(program, "host");
    step.libraries = textsIn(program.at("libraries"));
    const Json& who = json.at("started_by");
    if (who.is_null()) return;
    step.startedBy = textIn(who, "user") + " on " + textIn(who, "machine");
}

RecordedStep stepOf(const Json& json, const std::string& folder) {
    RecordedStep step;
    step.step = json.at("step");
    step.run = json.at("run");
    step.state = json.at("state");
    step.began = json.at("began");
    step.ended = textIn(json, "ended");
    readProgram(json, step);
    step.texts = textsIn(json.at("settings"));
    step.settings = recordedRunSettings(step.texts);
    step.settings.OutputWorkspace = folder;
    for (const auto& [name, run] : json.at("sources").items()) step.sources[name] = run;
    for (const Json& input : json.at("inputs")) step.inputs.push_back(inputOf(input));
    for (const Json& surface : json.at("surfaces")) step.surfaces.push_back(surfaceOf(surface));
    if (const auto quality = json.find("quality"); quality != json.end()) {
        for (const Json& month : *quality) step.quality.push_back(qualityOf(month));
    }
    for (const Json& warning : json.at("warnings")) step.warnings.push_back(warning);
    return step;
}

}  // namespace

std::string timeToSecond(const std::string& recorded) {
    constexpr std::size_t date = 10;
    constexpr std::size_t seconds = 19;
    if (recorded.size() < seconds || recorded[date] != 'T') return recorded;
    const std::size_t offset = recorded.find_first_of("+-", seconds);
    return recorded.substr(0, date) + " " + recorded.substr(date + 1, seconds - date - 1) +
           (offset == std::string::npos ? "" : " " + recorded.substr(offset));
}

const RecordedStep* RunRecords::of(std::string_view step) const {
    const auto found = std::ranges::find(steps, step, &RecordedStep::step);
    return found == steps.end() ? nullptr : &*found;
}

const RunSettings& RunRecords::settingsOf(std::string_view step, const RunSettings& present) const {
    const RecordedStep* record = of(step);
    return record ? record->settings : present;
}

const RunSettings& RunRecords::lastSettings(const RunSettings& present) const {
    return steps.empty() ? present : steps.back().settings;
}

RunRecords readRunRecords(const std::string& folder) {
    RunRecords records;
    for (const Product& product : products()) {
        const std::string step(product.maker);
        const std::string path = joinedPath(folder, "velmora_record_" + step + ".json");
        std::error_code error;
        const bool isThere = fs::exists(path, error);
        if (error)
            throw PlatformError("Cannot look at " + path + ": " + error.message(), {.file = path});
        if (!isThere) continue;
        try {
            std::ifstream file(path);
            const auto keep = [](int depth, Json::parse_event_t, const Json&) {
                return depth < kDeepest;
            };
            RecordedStep read = stepOf(Json::parse(file, keep), folder);
            if (read.step != step) throw PlatformError("it is of another step");
            records.steps.push_back(std::move(read));
        } catch (const std::exception& e) {
            records.unusable.push_back(path + ": the record cannot be used: " + e.what());
        }
    }
    return records;
}

}  // namespace velmora
