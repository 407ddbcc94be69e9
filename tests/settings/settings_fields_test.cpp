// SPDX-License-Identifier: MIT
// The table of the fields beside the record and the form that follow it.
#include "settings/settings_fields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "settings/frm_settings.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

struct SettingsFields : testing::Test {
    test::MemoryRun fixture;
    frmSettings form{fixture.application};
};

template <class Kind>
void addNames(const Form& form, std::multiset<std::string>& names) {
    for (const Control* control : form.controls()) {
        if (dynamic_cast<const Kind*>(control)) names.insert(control->name());
    }
}

TEST_F(SettingsFields, EachHasTheControlOfItsKind) {
    for (const SettingsField& field : settingsFields()) {
        SCOPED_TRACE(field.name);
        const std::string name(field.control);
        for (const FieldOption& option : field.options) {
            EXPECT_NO_THROW(form.control<OptionButton>(std::string(option.control)));
            EXPECT_EQ(field.kind, FieldKind::choice);
        }
        if (!field.options.empty()) continue;
        switch (field.kind) {
            case FieldKind::choice:
                EXPECT_NO_THROW(form.control<ListBox>(name));
                break;
            case FieldKind::flag:
                EXPECT_NO_THROW(form.control<CheckBox>(name));
                break;
            case FieldKind::path:
            case FieldKind::number:
            case FieldKind::text:
                EXPECT_NO_THROW(form.control<TextBox>(name));
        }
    }
}

TEST_F(SettingsFields, TheFormTakesNothingThatIsNoField) {
    std::multiset<std::string> inputs;
    addNames<TextBox>(form, inputs);
    addNames<ListBox>(form, inputs);
    addNames<CheckBox>(form, inputs);
    addNames<OptionButton>(form, inputs);
    std::multiset<std::string> fields = {"cboRadiationUnit", "cboWindUnit"};  // have one entry each
    for (const SettingsField& field : settingsFields()) {
        if (field.options.empty()) fields.emplace(field.control);
        for (const FieldOption& option : field.options) fields.emplace(option.control);
    }
    EXPECT_EQ(inputs, fields);
}

TEST_F(SettingsFields, TheKindIsThatOfTheMember) {
    for (const SettingsField& field : settingsFields()) {
        SCOPED_TRACE(field.name);
        EXPECT_EQ(std::holds_alternative<double RunSettings::*>(field.member),
                  field.kind == FieldKind::number);
        EXPECT_EQ(std::holds_alternative<bool RunSettings::*>(field.member),
                  field.kind == FieldKind::flag);
    }
}

TEST_F(SettingsFields, OptionsAreKnownByTheirTexts) {
    const SettingsField& timeStep = *findSettingsField("TimeStep");
    EXPECT_EQ(optionNames(timeStep), "Monthly or Daily");
    ASSERT_TRUE(optionOf(timeStep, "Daily"));
    EXPECT_EQ(optionOf(timeStep, "Daily")->control, "optDaily");
    EXPECT_FALSE(optionOf(timeStep, "EDK"));
    EXPECT_FALSE(optionOf(*findSettingsField("Year"), ""));
    EXPECT_EQ(optionNames(*findSettingsField("PrecipitationMethod")), "EDK or PRISM_REF");
}

}  // namespace
}  // namespace velmora
