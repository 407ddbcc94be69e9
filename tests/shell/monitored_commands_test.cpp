// SPDX-License-Identifier: MIT
// The steps that the progress monitor shows, and what it is when their user cancels them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "shell/commands.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::Contains;

struct Monitored {
    std::string name;
    std::function<ICommand*()> make;
    std::string july;  // what the monitor says of July
    std::string grid;  // that is not there when July was cancelled
};

class MonitoredCommands : public testing::TestWithParam<Monitored> {
  protected:
    MonitoredCommands() {
        f.makeWeather(test::RunDomain::stations(), test::RunDomain::usualWeather,
                      {"TM_", "TN_", "P_"});
        f.saveMonths(6, 7);
        f.save("faef_500", f.filled(0.5F));
        for (const std::string month : {"Jun", "Jul"}) {
            f.save("Kc_" + month, f.filled(1));
            f.save("RefET_" + month + "_4", f.filled(6));
        }
        for (const char* made : {"RefET_Jul_4", "ET_Jul_4", "PPT_Jul"}) {
            if (GetParam().grid == made) remove(made);
        }
    }
    void remove(const std::string& grid) {
        f.world.platform.rasters().remove(f.folder.file("out/" + grid));
    }
    void click(bool showMonitor) {
        f.settings.ShowMonitor = showMonitor;
        f.storeSettings();
        command_.reset(GetParam().make());
        command_->OnCreate(&f.application);
        command_->OnClick();
    }
    test::MemoryIrrigation f;

  private:
    struct Release {
        void operator()(ICommand* command) const { command->Release(); }
    };
    std::unique_ptr<ICommand, Release> command_;
};

TEST_P(MonitoredCommands, ShowTheMonthInTheirMonitor) {
    std::vector<std::string> lines;
    f.application.dialogs().driver = [&](Form& form) {
        if (form.name() != "frmMonitor") return;
        auto& label = form.control<Label>("lblMessage");
        label.hostRefresh = [&] { lines.push_back(label.text()); };
        EXPECT_FALSE(form.control<CommandButton>("cmdClose").enabled());
    };
    test::RecordingMonitor recorded;
    const Listening listening(f.application.feedback(), recorded);
    click(true);
    EXPECT_EQ(f.application.outcomes.back(), StepOutcome::done) << f.allMessages();
    EXPECT_EQ(f.application.dialogs().modeless, 1);
    EXPECT_EQ(recorded.begun.size(), 1U);
    EXPECT_EQ(recorded.ended, 1);
    EXPECT_EQ(recorded.fractions.back(), 1);
    EXPECT_THAT(lines, Contains(GetParam().july));
    click(false);
    EXPECT_EQ(f.application.dialogs().modeless, 1);
}

TEST_P(MonitoredCommands, EndWhenTheyAreCancelled) {
    class CancelsAfterJune : public IFeedbackListener {
      public:
        explicit CancelsAfterJune(Feedback& feedback) : feedback_(feedback) {}
        void messageChanged(const std::string& text) override {
            if (text.find("Jun") != std::string::npos) feedback_.cancel();
        }

      private:
        Feedback& feedback_;
    } listener(f.application.feedback());
    {
        const Listening listening(f.application.feedback(), listener);
        click(false);
    }
    EXPECT_EQ(f.application.outcomes.back(), StepOutcome::cancelled) << f.allMessages();
    EXPECT_FALSE(f.hasOutput(GetParam().grid));
    EXPECT_EQ(f.application.prompts().failures(), 0U);
    f.application.feedback().resume();
    click(false);
    EXPECT_EQ(f.application.outcomes.back(), StepOutcome::done) << f.allMessages();
    EXPECT_TRUE(f.hasOutput(GetParam().grid));
}

INSTANTIATE_TEST_SUITE_P(
    Steps, MonitoredCommands,
    testing::Values(
        Monitored{"refet", [] { return new clsET_ReferenceET; },
                  "Reference ET in Julare estimated successfully ...", "RefET_Jul_4"},
        Monitored{"cropet", [] { return new clsET_CropET; }, "Crop ET of Jul ...", "ET_Jul_4"},
        Monitored{"ppt", [] { return new clsPPT; }, "Precipitation of Jul ...", "PPT_Jul"},
        Monitored{"nir", [] { return new clsIR_NIR; }, "Net irrigation requirement of Jul ...",
                  "NIR_Jul"},
        Monitored{"irr", [] { return new clsIR_IRR; }, "Irrigation water requirement of Jul ...",
                  "IRR_Jul"}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace velmora
