// SPDX-License-Identifier: MIT
#include "shell/commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include "gis/errors.h"
#include "settings/run_state.h"
#include "settings/settings_file.h"
#include "shell/component_server.h"
#include "shell/frm_monitor.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

struct Commands : testing::Test {
    test::MemoryRun fixture;
    test::TestApplication& application = fixture.application;
    test::MemoryFiles& files = fixture.world.platform.files();
    const std::string settingsPath = defaultSettingsPath(application.folder);

    template <class Class>
    std::unique_ptr<ICommand, void (*)(ICommand*)> made() {
        std::unique_ptr<ICommand, void (*)(ICommand*)> command(new Class,
                                                               [](ICommand* c) { c->Release(); });
        command->OnCreate(&application);
        return command;
    }
    template <class Class>
    void click() {
        made<Class>()->OnClick();
    }
    template <class... Classes>
    void clickAll() {
        (click<Classes>(), ...);
    }
    void storeSettings() { writeSettings(files, settingsPath, fixture.settings); }
    // Nothing lies in the output folder.
    bool outputIsEmpty() {
        const auto inside = [&](const auto& entry) {
            return entry.first.starts_with(fixture.folder.file("out/"));
        };
        return std::ranges::none_of(fixture.world.platform.rasters().datasets(), inside) &&
               std::ranges::none_of(files.files, inside);
    }
};

TEST_F(Commands, WithoutSettingsAllModelCommandsRefuse) {
    clickAll<clsET_ReferenceET, clsET_CropCoefficient, clsET_CropET, clsPPT, clsIR_NIR, clsIR_EFF,
             clsIR_IRR>();
    EXPECT_EQ(application.messages(), std::vector<std::string>(7, "Run Settings First,Please!"));
    EXPECT_EQ(application.prompts().titles, std::vector<std::string>(7));
    EXPECT_EQ(application.outcomes, std::vector<StepOutcome>(7, StepOutcome::failed));
    EXPECT_EQ(application.dialogs().modal, 0);
    EXPECT_TRUE(outputIsEmpty());
}

// A step that does what a test wants.
class ScriptedStep : public ModelCommand {
  public:
    explicit ScriptedStep(std::function<bool(IPrompts&)> step)
        : ModelCommand({"", "", ""}), step_(std::move(step)) {}

  protected:
    bool runStep() override { return step_(application().prompts()); }

  private:
    std::function<bool(IPrompts&)> step_;
};

TEST_F(Commands, AStepThatShowsAFailureAndGoesOnHasFailed) {
    storeSettings();
    const auto outcomeOf = [&](const std::function<bool(IPrompts&)>& step) {
        auto* command = new ScriptedStep(step);
        command->OnCreate(&application);
        command->OnClick();
        command->Release();
        return application.outcomes.back();
    };
    const auto tells = [&](void (*tell)(IPrompts&)) {
        return outcomeOf([tell](IPrompts& prompts) {
            tell(prompts);
            return true;
        });
    };
    EXPECT_EQ(tells([](IPrompts& p) { p.failure("Error in 'GridReadin'"); }), StepOutcome::failed);
    EXPECT_EQ(tells([](IPrompts& p) { p.reason("cannot be read"); }), StepOutcome::failed);
    EXPECT_EQ(tells([](IPrompts& p) { p.notice("is used as it stands"); }), StepOutcome::done);
    EXPECT_EQ(tells([](IPrompts& p) { p.message("RefET_Jul_2"); }), StepOutcome::done);
    EXPECT_EQ(outcomeOf([](IPrompts&) { return false; }), StepOutcome::failed);
    EXPECT_EQ(application.messages(),
              (std::vector<std::string>{"Error in 'GridReadin'", "RefET_Jul_2"}));
}

TEST_F(Commands, SettingsAlwaysOpenAndOnce) {
    std::vector<const Form*> forms;
    application.dialogs().driver = [&](Form& form) {
        forms.push_back(&form);
        EXPECT_EQ(form.title(), "General Settings");
        EXPECT_TRUE(form.isOpen());
    };
    const auto first = made<clsSettings>();
    const auto second = made<clsSettings>();
    first->OnClick();
    second->OnClick();
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
    files.deleteFile(settingsPath);
    click<clsPPT>();
    EXPECT_EQ(application.messages().back(), "Run Settings First,Please!");
}

TEST_F(Commands, AShortSettingsFileIsTold) {
    files.files[settingsPath] = "\x03";
    click<clsET_ReferenceET>();
    EXPECT_NE(application.messages().back().find("ends inside the field DEM"), std::string::npos);
    EXPECT_EQ(application.outcomes.back(), StepOutcome::failed);
}

TEST_F(Commands, TheEfficiencyDialogOpens) {
    storeSettings();
    std::string title;
    application.dialogs().driver = [&](Form& form) { title = form.title(); };
    click<clsIR_EFF>();
    EXPECT_EQ(title, "Interactive Mapping of Feild Application Efficiency of Irrigation");
    EXPECT_EQ(application.outcomes.back(), StepOutcome::done);
    application.dialogs().driver = [&](Form& form) {
        form.control<CommandButton>("cmdApplyIRDB").click();  // there is no database
    };
    click<clsIR_EFF>();
    EXPECT_EQ(application.outcomes.back(), StepOutcome::failed);
    EXPECT_TRUE(outputIsEmpty());
}

TEST_F(Commands, TheRequirementNeedsAnEfficiencyGrid) {
    storeSettings();
    click<clsIR_IRR>();
    EXPECT_EQ(application.outcomes.back(), StepOutcome::failed);
    EXPECT_NE(application.messages().back().find("faef_500"), std::string::npos);
}

TEST_F(Commands, PrecipitationRuns) {
    fixture.makeWeather(test::RunDomain::stations(), test::RunDomain::usualWeather, {"P_"});
    storeSettings();
    click<clsPPT>();
    EXPECT_EQ(application.outcomes.back(), StepOutcome::done);
    EXPECT_TRUE(fixture.hasOutput("PPT_Jul"));
    EXPECT_EQ(application.dialogs().modeless, 0);
}

// The Kc-Map Maker on settings with everything that it needs.
struct CropCommands : testing::Test {
    test::MemoryCrops f;
    const std::string settingsPath = defaultSettingsPath(f.application.folder);
    CropCommands() {
        processState().mapsMade = false;
        writeSettings(f.application.platform().files(), settingsPath, f.settings);
    }
    template <class Class>
    void click() {
        auto* command = new Class;
        command->OnCreate(&f.application);
        command->OnClick();
        command->Release();
    }
};

TEST_F(CropCommands, ClosingTheKcMapMakerWithoutMapsIsTold) {
    click<clsET_CropCoefficient>();
    EXPECT_EQ(f.application.dialogs().modal, 1);
    EXPECT_EQ(f.application.messages(),
              std::vector<std::string>{"Kc Maps will not be generated at this time"});
    EXPECT_TRUE(f.application.document().layers.empty());
}

TEST_F(CropCommands, MapsAreShownInTheMap) {
    f.application.dialogs().driver = [](Form& form) {
        EXPECT_EQ(form.name(), "frmKcEditor");
        EXPECT_EQ(form.title(), "Kc-Map Maker");
        form.control<CommandButton>("cmdMakeMap").click();
    };
    click<clsET_CropCoefficient>();
    EXPECT_EQ(f.application.outcomes.back(), StepOutcome::done);
    ASSERT_EQ(f.application.document().layers.size(), 2U);
    const auto& layer = static_cast<const test::FakeLayer&>(*f.application.document().layers[1]);
    EXPECT_EQ(layer.name(), "Kc_Jul_4");
    EXPECT_EQ(layer.ramp.from, (Rgb{0, 0, 255}));
    EXPECT_EQ(layer.ramp.to, (Rgb{0, 255, 0}));
    // Once maps have been made, later clicks show them again, made or not.
    f.application.dialogs().driver = nullptr;
    click<clsET_CropCoefficient>();
    EXPECT_EQ(f.application.document().layers.size(), 4U);
}

TEST_F(CropCommands, SettingsThatGoAwayWhileTheDialogIsOpenAreMissed) {
    f.application.dialogs().driver = [this](Form& form) {
        form.control<CommandButton>("cmdMakeMap").click();
        f.application.platform().files().deleteFile(settingsPath);
    };
    click<clsET_CropCoefficient>();
    EXPECT_EQ(f.application.messages().back(), "Run Settings First,Please!");
    EXPECT_TRUE(f.application.document().layers.empty());
}

TEST_F(CropCommands, CropEtRuns) {
    ASSERT_TRUE(f.run());
    f.application.dialogs().driver = [](Form& form) {
        form.control<CommandButton>("cmdMakeMap").click();
    };
    click<clsET_CropCoefficient>();
    f.copyKcMaps({"Jun", "Jul"});
    click<clsET_CropET>();
    EXPECT_EQ(f.application.outcomes.back(), StepOutcome::done);
    EXPECT_TRUE(f.hasOutput("ET_Jul_4"));
}

TEST_F(Commands, AnOutputFolderThatCannotBeMadeIsTheClicksFailure) {
    fixture.settings.OutputWorkspace = fixture.folder.file("none/out");
    storeSettings();
    EXPECT_THROW(click<clsPPT>(), PlatformError);
    EXPECT_EQ(application.outcomes, std::vector<StepOutcome>{StepOutcome::failed});
    EXPECT_TRUE(application.messages().empty());
}

TEST_F(Commands, AGridThatCannotBeSavedIsTheClicksFailure) {
    fixture.makeWeather(test::RunDomain::stations(), test::RunDomain::usualWeather, {"P_"});
    storeSettings();
    fixture.world.platform.rasters().saves.failAt(2);
    click<clsPPT>();
    EXPECT_EQ(application.outcomes, std::vector<StepOutcome>{StepOutcome::failed});
    EXPECT_NE(application.messages().back().find("PPT_Jul: the test lets it fail"),
              std::string::npos);
    EXPECT_TRUE(fixture.hasOutput("PPT_Jun"));
    EXPECT_FALSE(fixture.hasOutput("PPT_Jul"));
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
    const auto command = made<clsET_ReferenceET>();
    command->OnClick();
    EXPECT_EQ(application.outcomes.back(), StepOutcome::done);
    ASSERT_NE(monitor, nullptr);
    EXPECT_EQ(application.dialogs().modeless, 1);
    EXPECT_EQ(lines.front(), "Velmora is starting to run ...");
    EXPECT_TRUE(monitor->control<CommandButton>("cmdClose").enabled());
    monitor->control<CommandButton>("cmdClose").click();
    EXPECT_FALSE(monitor->isOpen());
}

TEST_F(Commands, AMonitorGoesWithTheNextRunAndWithItsCommand) {
    fixture.settings.ShowMonitor = true;
    fixture.settings.DEM = fixture.folder.file("none");  // the run fails soon
    storeSettings();
    int taken = 0;
    application.dialogs().driver = [&](Form& form) { form.hostClose = [&] { ++taken; }; };
    {
        const auto command = made<clsET_ReferenceET>();
        command->OnClick();
        EXPECT_EQ(taken, 0);
        command->OnClick();
        EXPECT_EQ(taken, 1);
    }
    EXPECT_EQ(taken, 2);
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
    monitor.stepEnded();
    EXPECT_EQ(monitor.lblStatus.text(), "The step has ended.");
}

}  // namespace
}  // namespace velmora
