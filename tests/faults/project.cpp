// SPDX-License-Identifier: MIT
#include "tests/faults/project.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

#include "tests/faults/contents.h"

namespace velmora::faults {

namespace fs = std::filesystem;

namespace {

struct Part {
    std::string name;  // empty: it only prepares the next one
    std::vector<std::string> words;
};

// The commands of a whole job in their order. What the user's steps read of each other stands
// between.
std::vector<Part> parts(const std::string& share, const std::string& basin) {
    return {{"settings", {"settings", "apply", "Year=2022"}},
            {"", {"settings", "apply", "Year=2023"}},
            {"refet", {"run", "refet"}},
            {"kc", {"run", "kc"}},
            {"copy", {"grid", "copy", "Kc_Jun_2", "Kc_Jun"}},
            {"", {"grid", "copy", "Kc_Jul_2", "Kc_Jul"}},
            {"cropet", {"run", "cropet"}},
            {"ppt", {"run", "ppt"}},
            {"nir", {"run", "nir"}},
            {"eff", {"run", "eff", "--default-shares", "crop", "--cvef", share}},
            {"", {"grid", "copy", "IREF", "faef_500"}},
            {"irr", {"run", "irr"}},
            {"report", {"report"}},
            {"irdb", {"irdb", "create", basin + "/made.mdb", "--replace-database"}}};
}

}  // namespace

Project::Project(std::string program, std::string folder)
    : program_(std::move(program)),
      basin_(folder + "/basin"),
      scratch_(folder + "/scratch"),
      kept_(folder + "/kept") {
    for (const std::string& made : {scratch_, kept_}) fs::create_directories(made);
    makeInputs();
    use("2000");
    runThrough("0.9", "@first");
    makeInputs();
    use("2500");
    for (const Part& part : parts("0.8", basin_)) {
        if (part.name != "report" && part.name != "irdb") succeed(part.words);
    }
    use("2000");
    runThrough("0.9", "");
}

std::vector<std::string> Project::steps() const {
    std::vector<std::string> names;
    for (const auto& [name, stage] : stages_) names.push_back(name);
    return names;
}

const Stage& Project::stage(const std::string& step) const {
    const auto found = stages_.find(step);
    if (found == stages_.end()) throw std::runtime_error("no step is called \"" + step + "\" here");
    return found->second;
}

void Project::restore(const std::string& step) const { copyFolder(stage(step).folder, basin_); }

Command Project::command(const std::string& step) const { return commandOf(stage(step).words); }

Contents Project::contents() const { return contentsOf(basin_); }

Counts Project::count() const {
    Counts counts;
    for (const std::string& step : steps()) {
        restore(step);
        const Ending ending = runCounting(command(step));
        if (ending.status != 0) throw std::runtime_error(step + " fails when it is traced");
        counts[step] = ending.calls;
    }
    return counts;
}

Command Project::commandOf(const Words& words) const {
    Words all = {
        program_, "--settings-folder", basin_ + "/settings", "--quiet", "--yes", "--threads", "1"};
    all.insert(all.end(), words.begin(), words.end());
    return {all, scratch_};
}

std::string Project::succeed(const Words& words) const {
    const Command command = commandOf(words);
    const Ending ending = run(command);
    if (ending.status == 0) return ending.errors;
    std::string text;
    for (const std::string& word : command.words) text += word + " ";
    throw std::runtime_error(text + "fails undisturbed:\n" + ending.errors);
}

void Project::makeInputs() const {
    fs::remove_all(basin_);
    succeed({"demo", basin_, "--inputs-only"});
}

void Project::use(const std::string& cellSize) const {
    succeed({"settings", "apply", "CellSize=" + cellSize, "BeginMonth=Jun", "EndMonth=Jul"});
}

void Project::runThrough(const std::string& share, const std::string& suffix) {
    for (const Part& part : parts(share, basin_)) {
        if (part.name.empty()) {
            succeed(part.words);
            continue;
        }
        const std::string name = part.name + suffix;
        Stage stage{part.words, kept_ + "/" + name, {contents(), {}, {}}};
        copyFolder(basin_, stage.folder);
        stage.undisturbed.errors = succeed(part.words);
        stage.undisturbed.after = contents();
        stages_.emplace(name, std::move(stage));
    }
}

}  // namespace velmora::faults
