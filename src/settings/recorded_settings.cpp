// SPDX-License-Identifier: MIT
#include "settings/recorded_settings.h"

#include "gis/errors.h"
#include "gis/numbers.h"
#include "settings/settings_fields.h"

namespace velmora {

namespace {

struct Take {
    RunSettings& settings;
    const std::string& field;
    const std::string& text;

    void operator()(std::string RunSettings::*member) const { settings.*member = text; }
    void operator()(double RunSettings::*member) const {
        const auto number = strictNumber(text);
        if (!number) throw notUnderstood();
        settings.*member = *number;
    }
    void operator()(bool RunSettings::*member) const {
        if (text != "true" && text != "false") throw notUnderstood();
        settings.*member = text == "true";
    }
    PlatformError notUnderstood() const {
        return PlatformError("The recorded setting " + field + "=" + text + " is not understood",
                             {.field = field});
    }
};

}  // namespace

SettingsTexts settingsTexts(const RunSettings& settings) {
    SettingsTexts texts;
    for (const SettingsField& field : settingsFields()) {
        texts.emplace_back(field.name, settingsText(settings, field));
    }
    return texts;
}

RunSettings recordedRunSettings(const SettingsTexts& texts) {
    RunSettings settings;
    for (const auto& [name, text] : texts) {
        if (const SettingsField* field = findSettingsField(name)) {
            std::visit(Take{settings, name, text}, field->member);
        }
    }
    return settings;
}

}  // namespace velmora
