// SPDX-License-Identifier: MIT
#include "settings/fill_form.h"

#include <algorithm>
#include <map>

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

void chooseOption(Form& form, const std::string& name, const std::string& value) {
    using Options = std::map<std::string, std::string>;
    static const Options steps = {{textOf(TimeStep::monthly), "optMonthly"},
                                  {textOf(TimeStep::daily), "optDaily"}};
    static const Options methods = {{textOf(PrecipitationMethod::detrended), "optEDK"},
                                    {textOf(PrecipitationMethod::reference), "optPRISM"}};
    const Options& options = name == "TimeStep" ? steps : methods;
    const auto found = options.find(value);
    if (found == options.end()) {
        throw PlatformError(name + "=" + value + ": choose " +
                                (name == "TimeStep" ? "Monthly or Daily" : "EDK or PRISM_REF"),
                            {.field = name});
    }
    form.control<OptionButton>(found->second).choose();
}

}  // namespace

void fillIn(Form& form, const SettingsField& field, const std::string& value) {
    const std::string name(field.name);
    Control* control = form.find(std::string(field.control));
    if (name == "TimeStep" || name == "PrecipitationMethod") {
        chooseOption(form, name, value);
    } else if (auto* list = dynamic_cast<ListBox*>(control)) {
        if (name == "ZoneField" && !form.control<TextBox>("txtZones").text().empty()) list->focus();
        chooseEntry(*list, name, value);
    } else if (auto* box = dynamic_cast<TextBox*>(control)) {
        box->enter(value);
    } else if (auto* check = dynamic_cast<CheckBox*>(control)) {
        if (!isTrue(value) && !isFalse(value)) {
            throw PlatformError(name + "=" + value + ": choose true or false", {.field = name});
        }
        check->setValue(isTrue(value));
    }
}

}  // namespace velmora
