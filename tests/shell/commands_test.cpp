// SPDX-License-Identifier: MIT
#include "shell/commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>

#include "gis/errors.h"
#include "platform/files/file_system.h"
#include "settings/run_state.h"
#include "settings/settings_file.h"
#include "shell/component_server.h"
#include "shell/frm_monitor.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

struct Commands : testing::Test {
    test::RunFixture fixture;
    test::TestApplication& application = fixture.application;

    template <class Class>
    void click() {
        auto* command = new Class;
        command->OnCreate(&application);
        const std::unique_ptr<ICommand, void (*)(ICommand*)> release(
            command, [](ICommand* c) { c->Release(); });
        command->OnClick();
    }
    template <class... Classes>
    void clickAll() {
        (click<Classes>(), ...);
    }
    void storeSettings() {
        std::filesystem::create_directories(application.folder);
        platform::FileSystem files;
        writeSettings(files, defaultSettingsPath(application.folder), fixture.settings);
    }
    std::size_t outputs() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(fixture.folder.file("out")),
                          std::filesystem::directory_iterator()));
    }
};

TEST_F(Commands, WithoutSettingsAllModelCommandsRefuse) {
    clickAll<clsET_ReferenceET, clsET_CropCoefficient, clsET_CropET, clsPPT, clsIR_NIR, clsIR_EFF,
             clsIR_IRR>();
    EXPECT_EQ(application.messages(), std::vector<std::string>(7, "Run Settings First,Please!"));
    EXPECT_EQ(application.outcomes, std::vector<StepOutcome>(7, StepOutcome::failed));
    EXPECT_EQ(application.dialogs().modal, 0);
    EXPECT_EQ(outputs(), 0U);
}

TEST_F(Commands, SettingsAlwaysOpenAndOnce) {
    std::vector<const Form*> forms;
    application.dialogs().driver = [&](Form& form) {
        forms.push_back(&form);
        EXPECT_EQ(form.title(), "General Settings");
        EXPECT_TRUE(form.isOpen());
    };
    click<clsSettings>();
    click<clsSettings>();
    EXPECT_EQ(application.dialogs().modal, 2);
    EXPECT_EQ(forms.at(0), forms.at(1));
}

TEST_F(Commands, TheGateReadsTheFileAtEveryClick) {
    storeSettings();
    click<clsPPT>();
    EXPECT_EQ(processState().settings.Year, "2006");
    fixture.settings.Year = "2010";
    storeSettings();
    click<clsPPT>();
    EXPECT_EQ(processState().settings.Year, "2010");
    std::filesystem::remove(defaultSettingsPath(application.folder));
    click<clsPPT>();
    EXPECT_EQ(application.messages().back(), "Run Settings First,Please!");
}

TEST_F(Commands, AShortSettingsFileIsTold) {
    std::filesystem::create_directories(application.folder);
    test::write(defaultSettingsPath(application.folder), "\x03");
    click<clsET_ReferenceET>();
    EXPECT_NE(application.messages().back().find("ends inside the field DEM"), std::string::npos);
    EXPECT_EQ(application.outcomes.back(), StepOutcome::failed);
}

TEST_F(Commands, StepsToComeSayThatTheyAreNotBuilt) {
    storeSettings();
    click<clsET_CropET>();
    EXPECT_NE(application.messages().back().find("\"Estimate Crop ET\" is not built yet"),
              std::string::npos);
    EXPECT_EQ(application.outcomes.back(), StepOutcome::failed);
    EXPECT_EQ(outputs(), 0U);
}

TEST_F(Commands, PrecipitationRuns) {
    fixture.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather, {"P_"});
    storeSettings();
    click<clsPPT>();
    EXPECT_EQ(application.outcomes.back(), StepOutcome::done);
    EXPECT_TRUE(fixture.hasOutput("PPT_Jul"));
    EXPECT_EQ(application.dialogs().modeless, 0);
}

TEST_F(Commands, AnOutputFolderThatCannotBeMadeIsTheClicksFailure) {
    fixture.settings.OutputWorkspace = fixture.folder.file("none/out");
    storeSettings();
    EXPECT_THROW(click<clsPPT>(), PlatformError);
    EXPECT_EQ(application.outcomes, std::vector<StepOutcome>{StepOutcome::failed});
    EXPECT_TRUE(application.messages().empty());
}

TEST_F(Commands, ReferenceEtRunsAndShowsItsMonitor) {
    fixture.settings.ShowMonitor = true;
    storeSettings();
    std::vector<std::string> lines;
    Form* monitor = nullptr;
    application.dialogs().driver = [&](Form& form) {
        monitor = &form;
        EXPECT_FALSE(form.control<CommandButton>("cmdClose").enabled());
        auto& label = form.control<Label>("lblMessage");
        label.hostRefresh = [&lines, &label] { lines.push_back(label.text()); };
    };
    click<clsET_ReferenceET>();
    EXPECT_EQ(application.outcomes.back(), StepOutcome::done);
    ASSERT_NE(monitor, nullptr);
    EXPECT_EQ(application.dialogs().modeless, 1);
    EXPECT_EQ(lines.front(), "Velmora is starting to run ...");
    EXPECT_TRUE(monitor->control<CommandButton>("cmdClose").enabled());
    monitor->control<CommandButton>("cmdClose").click();
    EXPECT_FALSE(monitor->isOpen());
}

TEST_F(Commands, WithoutTheFlagThereIsNoMonitor) {
    storeSettings();
    click<clsET_ReferenceET>();
    EXPECT_EQ(application.dialogs().modeless, 0);
    EXPECT_TRUE(fixture.hasOutput("RefET_Jul_2"));
}

TEST(ProgressMonitor, HasItsTexts) {
    frmMonitor monitor;
    EXPECT_EQ(monitor.title(), "Progress  Monitor");
    EXPECT_EQ(monitor.lblProgress.text(), "Progress:");
    EXPECT_EQ(monitor.lblMessage.text(), "");
    EXPECT_EQ(monitor.lblStatus.text(), "Velmora is working ...");
    EXPECT_EQ(monitor.lblWarning.text(),
              "Warning:  Using  ArcMap during this  time may cause unexpected problems ...");
    EXPECT_EQ(monitor.cmdClose.text(), "Close");
}

}  // namespace
}  // namespace velmora
