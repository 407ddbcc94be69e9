// SPDX-License-Identifier: MIT
// Every field of the run settings declared once: its name, its place in the record, the control of
// the General Settings form that fills it, and what it means. The settings file, the form, the
// command and its help follow this table.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "settings/run_settings.h"

namespace velmora {

using SettingsMember =
    std::variant<std::string RunSettings::*, double RunSettings::*, bool RunSettings::*>;

struct SettingsField {
    std::string_view name;
    SettingsMember member;
    std::string_view control;  // the form's control; for a pair of options the first of them
    std::string_view help;
};

// All 35 fields in the order of the record.
std::span<const SettingsField> settingsFields();

// The field of that name (case counts), or nullptr.
const SettingsField* findSettingsField(std::string_view name);

// Whether the field holds the path of a file, a folder or a dataset.
bool isPath(const SettingsField& field);

// Puts one record's value of a field into another record.
void copyField(const SettingsField& field, const RunSettings& from, RunSettings& to);

struct FieldChange {
    std::string_view name;
    std::string before;
    std::string after;
};

// The fields in which two records differ, in the order of the record.
std::vector<FieldChange> changesBetween(const RunSettings& before, const RunSettings& after);

// A field's value as text: numbers with a decimal point, flags as "true" or "false".
std::string settingsText(const RunSettings& settings, const SettingsField& field);

}  // namespace velmora
