// SPDX-License-Identifier: MIT
#include "settings/fill_form.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/text.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

bool isTrue(const std::string& text) {
    for (const char* word : {"true", "yes", "1", "-1", "on"}) {
        if (sameIgnoringCase(text, word)) return true;
    }
    return false;
}

bool isFalse(const std::string& text) {
    for (const char* word : {"false", "no", "0", "off"}) {
        if (sameIgnoringCase(text, word)) return true;
    }
    return false;
}

// A list shows the entry of that text; the method list shows the entry that begins with the digit.
void chooseEntry(ListBox& list, const std::string& name, const std::string& value) {
    const auto& items = list.items();
    const bool byDigit = name == "RefETMethod";
    const auto found = std::find_if(items.begin(), items.end(), [&](const std::string& item) {
        return byDigit ? item.starts_with(value + ":") : item == value;
    });
    if (found != items.end()) {
        list.select(static_cast<int>(found - items.begin()));
    } else if (items.empty()) {
        list.setText(value);
    } else {
        throw PlatformError(name + "=" + value + ": choose one of " + joinedNames(items),
                            {.field = name});
    }
}

void choose(Form& form, const SettingsField& field, const std::string& value) {
    const std::string name(field.name);
    if (field.options.empty()) {
        auto& list = form.control<ListBox>(std::string(field.control));
        if (name == "ZoneField" && !form.control<TextBox>("txtZones").text().empty()) list.focus();
        chooseEntry(list, name, value);
    } else if (const FieldOption* option = optionOf(field, value)) {
        form.control<OptionButton>(std::string(option->control)).choose();
    } else {
        throw PlatformError(name + "=" + value + ": choose " + optionNames(field), {.field = name});
    }
}

void tick(CheckBox& box, const SettingsField& field, const std::string& value) {
    if (!isTrue(value) && !isFalse(value)) {
        throw PlatformError(std::string(field.name) + "=" + value + ": choose true or false",
                            {.field = std::string(field.name)});
    }
    box.setValue(isTrue(value));
}

}  // namespace

void fillIn(Form& form, const SettingsField& field, const std::string& value) {
    const std::string control(field.control);
    switch (field.kind) {
        case FieldKind::choice:
            return choose(form, field, value);
        case FieldKind::flag:
            return tick(form.control<CheckBox>(control), field, value);
        case FieldKind::path:
        case FieldKind::number:
        case FieldKind::text:
            return form.control<TextBox>(control).enter(value);
    }
}

}  // namespace velmora
