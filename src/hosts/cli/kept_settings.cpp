// SPDX-License-Identifier: MIT
#include "hosts/cli/kept_settings.h"

#include "gis/errors.h"
#include "platform/platform.h"
#include "settings/fill_form.h"
#include "settings/settings_fields.h"
#include "settings/settings_file.h"
#include "settings/stored_settings.h"

namespace velmora::cli {

namespace {

bool isFlagOfTheTable(const SettingsField& field) {
    return field.kind == FieldKind::flag && field.name != "ShowMonitor";
}

// Fields that a command leaves as they were: those that nobody named, but for what a weather table
// named anew holds.
bool stays(const SettingsField& field, const Assignments& named) {
    if (named.contains(std::string(field.name))) return false;
    return !(isFlagOfTheTable(field) && named.contains("WeatherData"));
}

void requireSound(const RunSettings& settings, const std::string& path) {
    try {
        requireRestorable(settings);
    } catch (const PlatformError& e) {
        ErrorPlace place = e.place();
        place.file = path;
        throw PlatformError(path + ": " + e.what(), place);
    }
}

}  // namespace

RunSettings soundRecord(const std::string& path) {
    RunSettings settings = readSettings(platform::FileSystem(), path);
    requireSound(settings, path);
    return settings;
}

std::optional<RunSettings> soundRecordInForce(const std::string& settingsFolder) {
    auto settings = storedSettings(platform::FileSystem(), settingsFolder);
    if (settings) requireSound(*settings, defaultSettingsPath(settingsFolder));
    return settings;
}

std::optional<RunSettings> recordInForce(const std::string& settingsFolder) {
    try {
        return soundRecordInForce(settingsFolder);
    } catch (const PlatformError& e) {
        throw PlatformError(std::string(e.what()) +
                                ". Nothing is changed: load saved settings (velmora settings load "
                                "FILE), or delete the file and apply all settings anew",
                            e.place());
    }
}

void showAsStored(Form& form, const RunSettings& record, const Assignments& named) {
    for (const SettingsField& field : settingsFields()) {
        const bool amongOptions = !field.options.empty();
        const bool shownDifferently =
            amongOptions || field.name == "PrismGridFolder" || isFlagOfTheTable(field);
        const std::string value = settingsText(record, field);
        if (!shownDifferently || !stays(field, named) || (amongOptions && value.empty())) continue;
        fillIn(form, field, value);
    }
}

RunSettings withFieldsPutBack(const std::string& path, const RunSettings& before,
                              const Assignments& named) {
    platform::FileSystem files;
    const RunSettings applied = readSettings(files, path);
    RunSettings wanted = applied;
    for (const SettingsField& field : settingsFields()) {
        if (stays(field, named)) copyField(field, before, wanted);
    }
    if (!changesBetween(applied, wanted).empty()) writeSettings(files, path, wanted);
    return wanted;
}

}  // namespace velmora::cli
