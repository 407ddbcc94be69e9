// SPDX-License-Identifier: MIT
// Every field of the run settings declared once: its name, its kind, its place in the record, the
// control of the General Settings form that fills it, and what it means. The settings file, the
// form, the command, its help and the report follow this table.
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

enum class FieldKind {
    path,    // of a file, a folder or a dataset
    number,  // typed
    choice,  // an entry of a list, or one of a group of options
    flag,    // ticked
    text     // typed
};

// An option button of the form, and the text that the record has when it is on.
struct FieldOption {
    std::string_view value;
    std::string_view control;
};

struct SettingsField {
    std::string_view name;
    FieldKind kind;
    SettingsMember member;
    std::string_view control;  // the form's control, "" where options are
    std::string_view help;
    std::span<const FieldOption> options = {};
};

// All 35 fields in the order of the record.
std::span<const SettingsField> settingsFields();

// The field of that name (case counts), or nullptr.
const SettingsField* findSettingsField(std::string_view name);

// The option whose text is `value`, or nullptr.
const FieldOption* optionOf(const SettingsField& field, std::string_view value);

// The texts of a field's options: "Monthly or Daily".
std::string optionNames(const SettingsField& field);

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
