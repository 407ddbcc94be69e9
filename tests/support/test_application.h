// SPDX-License-Identifier: MIT
// A host for tests: it records messages, answers choosers from a list, and stands on any platform.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "forms/form.h"
#include "gis/application.h"
#include "tests/support/fake_browsers.h"
#include "tests/support/fake_dialogs.h"
#include "tests/support/fake_document.h"
#include "tests/support/fake_feedback.h"
#include "tests/support/fake_prompts.h"

namespace velmora::test {

class FakeDiagnostics : public IDiagnostics {
  public:
    void add(const SurfaceDiagnostics& surface) override { surfaces.push_back(surface); }
    std::vector<SurfaceDiagnostics> surfaces;
};

class TestApplication : public IApplication {
  public:
    // The platform must outlive the application.
    TestApplication(IPlatform& platform, std::string settingsFolder)
        : folder(std::move(settingsFolder)), platform_(platform) {
        feedback_.listen(warnings_);
    }
    IPlatform& platform() override { return platform_; }
    FakePrompts& prompts() override { return prompts_; }
    FakeBrowsers& browsers() override { return browsers_; }
    FakeDialogs& dialogs() override { return dialogs_; }
    FakeDocument& document() override { return document_; }
    Feedback& feedback() override { return feedback_; }
    std::string extensionFolder() override { return folder; }
    IDiagnostics* diagnostics() override { return askForDiagnostics ? &diagnostics_ : nullptr; }
    bool wantsStandardRun() const override { return askForStandardRun; }
    bool wantsQualityGrids() const override { return askForQualityGrids; }
    bool wantsWorkDatabase() const override { return askForWorkDatabase; }
    const std::vector<SurfaceDiagnostics>& diagnosed() const { return diagnostics_.surfaces; }
    void noteOutcome(StepOutcome outcome) override { outcomes.push_back(outcome); }
    const std::vector<std::string>& messages() const { return prompts_.messages; }

    std::string folder;
    std::vector<StepOutcome> outcomes;
    bool askForDiagnostics = false;
    bool askForStandardRun = false;
    bool askForQualityGrids = false;
    bool askForWorkDatabase = true;

  private:
    IPlatform& platform_;
    FakePrompts prompts_;
    WarningsAsNotices warnings_{prompts_};
    Feedback feedback_;
    FakeBrowsers browsers_;
    FakeDialogs dialogs_;
    FakeDocument document_;
    FakeDiagnostics diagnostics_;
};

}  // namespace velmora::test
