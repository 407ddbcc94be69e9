// SPDX-License-Identifier: MIT
#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>

#include "forms/form.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "gis/windows1252.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/failure.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/kept_settings.h"
#include "hosts/components/loaded_extension.h"
#include "platform/platform.h"
#include "settings/fill_form.h"
#include "settings/modelling_extent.h"
#include "settings/run_settings.h"
#include "settings/settings_fields.h"
#include "settings/settings_file.h"
#include "settings/stored_settings.h"
#include "settings/weather_inspection.h"
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

// A provider chosen while there is no cell size goes through the form's chooser, which proposes
// one.
void chooseExtent(HeadlessApplication& application, Form& form, const std::string& path,
                  bool cellSizeFollows) {
    const auto& cellSize = form.control<TextBox>("txtCellSize");
    if (cellSizeFollows || !cellSize.text().empty()) {
        form.control<TextBox>("txtExtent").enter(path);
        return;
    }
    application.browsers().answer(path);
    form.control<CommandButton>("cmdExtent").click();
    if (cellSize.text().empty()) return;
    application.prompts().notice("CellSize=" + cellSize.text() + " is proposed for this extent");
}

void setControl(HeadlessApplication& application, Form& form, const SettingsField& field,
                const Assignments& all) {
    const std::string& value = all.at(std::string(field.name));
    if (field.name == "ExtentProvider") {
        chooseExtent(application, form, value, all.contains("CellSize"));
    } else {
        fillIn(form, field, value);
    }
}

// "Field=Value ..." as a map, or a PlatformError that names the first one that is none. Paths are
// stored as they stand, so a relative one is made whole.
Assignments parsed(const std::vector<std::string>& assignments) {
    Assignments all;
    for (const std::string& assignment : assignments) {
        const auto equals = assignment.find('=');
        const std::string name = assignment.substr(0, equals);
        const SettingsField* field = findSettingsField(name);
        if (equals == std::string::npos || !field) {
            std::vector<std::string> names;
            for (const SettingsField& known : settingsFields()) names.emplace_back(known.name);
            throw PlatformError("\"" + assignment +
                                "\" is no setting: give Field=Value with one of " +
                                joinedNames(names));
        }
        const std::string value = assignment.substr(equals + 1);
        all[name] = field->kind == FieldKind::path ? wholePath(value) : value;
    }
    return all;
}

// What Apply would take without a look: a weather table whose fields cannot be listed, an extent
// provider that cannot be opened or is in degrees.
void requireReadable(IPlatform& platform, const Assignments& named, const RunSettings& stored) {
    const auto pathOf = [&](const char* name) {
        return named.contains(name) ? named.at(name)
                                    : settingsText(stored, *findSettingsField(name));
    };
    const std::string weather = pathOf("WeatherData");
    try {
        if (!weather.empty()) weatherFieldNames(platform.connections(), weather);
    } catch (const PlatformError& e) {
        ErrorPlace place = e.place();
        place.file = weather;
        throw PlatformError("WeatherData: the table " + weather +
                                " cannot be opened, so nothing is applied: " + e.what(),
                            place);
    }
    if (!named.contains("ExtentProvider")) return;
    const std::string provider = pathOf("ExtentProvider");
    if (provider.empty()) return;
    const auto layer = platform.features().openFeatureClass(provider);
    layer->extent();
    requireMetres(platform, *layer, "extent provider");
}

// Every field that changed as one line, "CellSize: 500 -> 250".
void tellChanges(const Session& session, const std::string& what, const std::string& path,
                 const std::optional<RunSettings>& before, const RunSettings& now) {
    const auto changes = before ? changesBetween(*before, now) : std::vector<FieldChange>();
    if (session.json) {
        auto list = nlohmann::ordered_json::array();
        for (const FieldChange& change : changes) {
            list.push_back(
                {{"field", change.name}, {"before", change.before}, {"after", change.after}});
        }
        printJson({{"file", path}, {"changes", list}});
        return;
    }
    const auto shown = [](const std::string& text) {
        return text.empty() ? std::string("\"\"") : oneLine(text);
    };
    for (const FieldChange& change : changes) {
        print("{}: {} -> {}\n", change.name, shown(change.before), shown(change.after));
    }
    print("{}: {}\n", what, path);
}

void printSettings(const RunSettings& settings, bool json) {
    if (!json) {
        for (const SettingsField& field : settingsFields()) {
            print("{}={}\n", field.name, settingsText(settings, field));
        }
        return;
    }
    nlohmann::ordered_json object;
    for (const SettingsField& field : settingsFields()) {
        std::visit([&](auto member) { object[std::string(field.name)] = settings.*member; },
                   field.member);
    }
    printJson(object);
}

}  // namespace

int applySettings(const Session& session, const std::vector<std::string>& assignments) {
    Assignments named;
    try {
        named = parsed(assignments);
    } catch (const PlatformError& e) {
        tellFailure(e.what(), e.place(), session.json);
        return kBadUsage;
    }
    const std::string path = defaultSettingsPath(session.settingsFolder);
    const std::optional<RunSettings> before = recordInForce(session.settingsFolder);
    HeadlessApplication application(session.settingsFolder, session.terminal);
    requireReadable(application.platform(), named, before.value_or(RunSettings()));
    bool applied = false;
    withSettingsForm(application, [&](Form& form) {
        if (before) showAsStored(form, *before, named);
        for (const SettingsField& field : settingsFields()) {
            if (named.contains(std::string(field.name))) {
                setControl(application, form, field, named);
            }
        }
        applied = pressApply(form);
    });
    if (!applied) return kFailed;
    const RunSettings now = before ? withFieldsPutBack(path, *before, named) : soundRecord(path);
    tellChanges(session, "Settings are applied", path, before, now);
    const bool lost = std::any_of(named.begin(), named.end(), [](const auto& assignment) {
        return !lostCharacters(assignment.second).empty();
    });
    return lost ? kFailed : kDone;
}

int failWithoutSettings(const Session& session) {
    tell("message: {}\n", kNoSettings);
    const std::string path = defaultSettingsPath(session.settingsFolder);
    tellFailure("there is no " + path + " yet: velmora settings apply makes it", {.file = path},
                session.json);
    return kFailed;
}

int showSettings(const Session& session) {
    const auto settings = storedSettings(platform::FileSystem(), session.settingsFolder);
    if (!settings) return failWithoutSettings(session);
    printSettings(*settings, session.json);
    return kDone;
}

// "Save As" writes what the last Apply stored; nothing in force changes.
int saveSettingsAs(const Session& session, const std::string& file) {
    const std::optional<RunSettings> record = recordInForce(session.settingsFolder);
    if (!record) return failWithoutSettings(session);
    const std::string path = wholePath(file);
    platform::FileSystem files;
    writeSettings(files, path, *record);
    sayDone(session, "Settings are saved: {}\n", path);
    return kDone;
}

int loadSettings(const Session& session, const std::string& file) {
    const std::string path = wholePath(file);
    const std::string defaultPath = defaultSettingsPath(session.settingsFolder);
    const RunSettings record = soundRecord(path);
    HeadlessApplication application(session.settingsFolder, session.terminal);
    IFileSystem& files = application.platform().files();
    if (!files.folderExists(record.OutputWorkspace)) {
        throw PlatformError(path + ": the output folder \"" + record.OutputWorkspace +
                                "\" does not exist, so nothing is loaded: make the folder first",
                            {.file = path, .field = "OutputWorkspace"});
    }
    std::optional<RunSettings> before;
    try {
        before = soundRecordInForce(session.settingsFolder);
    } catch (const PlatformError& e) {
        application.prompts().notice(std::string("The damaged settings in force are replaced: ") +
                                     e.what());
    }
    bool applied = false;
    withSettingsForm(application, [&](Form& form) {
        application.browsers().answer(path);
        form.control<CommandButton>("cmdLoad").click();
        showAsStored(form, record, {});
        applied = pressApply(form);
    });
    if (!applied) return kFailed;
    tellChanges(session, "Settings are loaded and applied", defaultPath, before,
                withFieldsPutBack(defaultPath, record, {}));
    return kDone;
}

}  // namespace velmora::cli
