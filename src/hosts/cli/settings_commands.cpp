// SPDX-License-Identifier: MIT
#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "gis/errors.h"
#include "gis/form.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/components/loaded_extension.h"
#include "platform/files/file_system.h"
#include "settings/fill_form.h"
#include "settings/run_settings.h"
#include "settings/settings_fields.h"
#include "settings/settings_file.h"
#include "shell/interfaces.h"

namespace velmora::cli {

std::string wholePath(const std::string& path) {
    return path.empty() ? path : std::filesystem::absolute(path).lexically_normal().string();
}

namespace {

// Opens the General Settings form and lets `driver` use it.
void withSettingsForm(HeadlessApplication& application, const std::function<void(Form&)>& driver) {
    const LoadedExtension extension;
    const auto command = extension.create<ICommand>("Tarnwick.clsSettings");
    command->OnCreate(&application);
    application.dialogs().driver = driver;
    command->OnClick();
}

// Presses Apply. True when the settings file was written: the form then offers "Save As".
bool pressApply(Form& form) {
    form.control<CommandButton>("cmdApply").click();
    return form.control<CommandButton>("cmdSaveAs").enabled();
}

// Paths are stored as they stand, so a relative one is made whole first.
bool isPath(std::string_view name) {
    static const std::vector<std::string_view> paths = {
        "DEM",   "WeatherStations", "WeatherData",     "KcTable",       "LandCover",
        "Zones", "PrismGridFolder", "OutputWorkspace", "ExtentProvider"};
    return std::find(paths.begin(), paths.end(), name) != paths.end();
}

// A provider chosen while there is no cell size goes through the form's chooser, which proposes
// one.
void chooseExtent(HeadlessApplication& application, Form& form, const std::string& path,
                  bool cellSizeFollows) {
    if (cellSizeFollows || !form.control<TextBox>("txtCellSize").text().empty()) {
        form.control<TextBox>("txtExtent").enter(path);
        return;
    }
    application.browsers().answer(path);
    form.control<CommandButton>("cmdExtent").click();
    fmt::print("CellSize={} is proposed for this extent\n",
               form.control<TextBox>("txtCellSize").text());
}

using Assignments = std::map<std::string, std::string>;

void setControl(HeadlessApplication& application, Form& form, const SettingsField& field,
                const Assignments& all) {
    const std::string name(field.name);
    std::string value = all.at(name);
    if (isPath(name)) value = wholePath(value);
    if (name == "ExtentProvider") {
        chooseExtent(application, form, value, all.contains("CellSize"));
    } else {
        fillIn(form, field, value);
    }
}

// "Field=Value ..." as a map, or a PlatformError that names the first one that is none.
Assignments parsed(const std::vector<std::string>& assignments) {
    Assignments all;
    for (const std::string& assignment : assignments) {
        const auto equals = assignment.find('=');
        const std::string name = assignment.substr(0, equals);
        if (equals == std::string::npos || !findSettingsField(name)) {
            std::vector<std::string> names;
            for (const SettingsField& field : settingsFields()) names.emplace_back(field.name);
            throw PlatformError("\"" + assignment +
                                "\" is no setting: give Field=Value with one of " +
                                joinedNames(names));
        }
        all[name] = assignment.substr(equals + 1);
    }
    return all;
}

void printSettings(const RunSettings& settings, bool json) {
    if (!json) {
        for (const SettingsField& field : settingsFields()) {
            fmt::print("{}={}\n", field.name, settingsText(settings, field));
        }
        return;
    }
    nlohmann::ordered_json object;
    for (const SettingsField& field : settingsFields()) {
        std::visit([&](auto member) { object[std::string(field.name)] = settings.*member; },
                   field.member);
    }
    fmt::print("{}\n", object.dump(2));
}

}  // namespace

int applySettings(const Session& session, const std::vector<std::string>& assignments) {
    Assignments all;
    try {
        all = parsed(assignments);
    } catch (const PlatformError& e) {
        fmt::print(stderr, "velmora: {}\n", e.what());
        return kBadUsage;
    }
    HeadlessApplication application(session.settingsFolder, session.terminal);
    bool applied = false;
    withSettingsForm(application, [&](Form& form) {
        for (const SettingsField& field : settingsFields()) {
            if (all.contains(std::string(field.name))) setControl(application, form, field, all);
        }
        applied = pressApply(form);
    });
    if (!applied) return kFailed;
    fmt::print("Settings are applied: {}\n", defaultSettingsPath(session.settingsFolder));
    return kDone;
}

int showSettings(const Session& session) {
    const platform::FileSystem files;
    const std::string path = defaultSettingsPath(session.settingsFolder);
    if (!files.fileExists(path)) {
        fmt::print("message: Run Settings First,Please!\n");
        fmt::print(stderr, "velmora: there is no {} yet: velmora settings apply makes it\n", path);
        return kFailed;
    }
    printSettings(readSettings(files, path), session.json);
    return kDone;
}

int saveSettingsAs(const Session& session, const std::string& file) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const std::string path = wholePath(file);
    bool saved = false;
    withSettingsForm(application, [&](Form& form) {
        if (!pressApply(form)) return;  // "Save As" writes what Apply made
        const std::size_t before = application.prompts().messages().size();
        application.browsers().answer(path);
        form.control<CommandButton>("cmdSaveAs").click();
        saved = application.prompts().messages().size() == before;
    });
    if (!saved) return kFailed;
    fmt::print("Settings are saved: {}\n", path);
    return kDone;
}

int loadSettings(const Session& session, const std::string& file) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const std::string path = wholePath(file);
    if (!application.platform().files().fileExists(path)) {
        fmt::print(stderr, "velmora: there is no settings file {}\n", path);
        return kFailed;
    }
    bool applied = false;
    withSettingsForm(application, [&](Form& form) {
        const TerminalPrompts& prompts = application.prompts();
        const std::size_t before = prompts.messages().size();
        application.browsers().answer(path);
        form.control<CommandButton>("cmdLoad").click();
        // A file that could not be restored must not put a mixture of old and new into force.
        const auto& shown = prompts.messages();
        if (shown.size() > before && shown.back() == "Error with 'Info' file") return;
        applied = pressApply(form);
    });
    if (!applied) return kFailed;
    fmt::print("Settings are loaded and applied: {}\n",
               defaultSettingsPath(session.settingsFolder));
    return kDone;
}

}  // namespace velmora::cli
