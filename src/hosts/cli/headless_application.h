// SPDX-License-Identifier: MIT
// The headless host: the application hook whose windows are lines of text and whose dialogs are
// driven by the command line.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "forms/form.h"
#include "gis/application.h"
#include "hosts/cli/cancelling.h"
#include "hosts/cli/progress.h"
#include "hosts/cli/terminal.h"
#include "hosts/results/diagnostics_report.h"
#include "platform/platform.h"

namespace velmora::cli {

// Choosers that answer what the command line gave them, in order; then "" (cancelled).
class ScriptedBrowsers : public IBrowsers {
  public:
    void answer(const std::string& path) { answers_.push_back(path); }
    std::string browseFolder(const std::string&) override { return next(); }
    std::string browseDataset(DatasetKind, const std::string&, const std::string&,
                              const std::string&) override {
        return next();
    }
    std::string openFile(const std::string&) override { return next(); }
    std::string saveFile(const std::string&) override { return next(); }
    std::string lastBrowseLocation() override { return {}; }

  private:
    std::string next();
    std::deque<std::string> answers_;
};

// Shows modal forms to a driver, and the progress monitor as lines where progress has no other
// form.
class HeadlessDialogs : public IDialogs {
  public:
    explicit HeadlessDialogs(const TerminalOptions& options) : options_(options) {}
    std::function<void(Form&)> driver;  // what the command does with the next modal form
    void showModal(Form& form) override;
    void show(Form& form) override;

  private:
    const TerminalOptions& options_;
};

// The map document without a map: it keeps the layers and tables that steps add.
class HeadlessDocument : public IMxDocument {
  public:
    std::unique_ptr<IRasterLayer> createRasterLayer(const std::string& path) override;
    void addLayer(std::unique_ptr<IRasterLayer> layer) override;
    void addTable(std::shared_ptr<ITable> table) override;
    void refreshContents() override {}
    std::vector<std::string> paths() const;  // of the layers and tables, in their order

  private:
    std::vector<std::unique_ptr<IRasterLayer>> layers_;
    std::vector<std::shared_ptr<ITable>> tables_;
};

class HeadlessApplication : public IApplication {
  public:
    HeadlessApplication(std::string settingsFolder, const TerminalOptions& options);

    IPlatform& platform() override { return platform_; }
    TerminalPrompts& prompts() override { return prompts_; }
    ScriptedBrowsers& browsers() override { return browsers_; }
    HeadlessDialogs& dialogs() override { return dialogs_; }
    HeadlessDocument& document() override { return document_; }
    Feedback& feedback() override { return cli::feedback(); }
    std::string extensionFolder() override { return settingsFolder_; }
    IDiagnostics* diagnostics() override { return diagnose_ ? &report_ : nullptr; }
    bool wantsStandardRun() const override { return standard_; }
    bool wantsQualityGrids() const override { return quality_; }
    bool wantsWorkDatabase() const override { return workDatabase_; }
    void noteOutcome(StepOutcome outcome) override { outcome_ = outcome; }
    StepOutcome outcome() const { return outcome_; }

    // From now on steps send their diagnostics to report().
    void askForDiagnostics() { diagnose_ = true; }
    // From now on the reference ET run makes the grids by the papers' choices too.
    void askForStandardRun() { standard_ = true; }
    // And the grids of flags.
    void askForQualityGrids() { quality_ = true; }
    // And no work database.
    void forgoWorkDatabase() { workDatabase_ = false; }
    const DiagnosticsReport& report() const { return report_; }

  private:
    std::string settingsFolder_;
    platform::Platform platform_;
    TerminalPrompts prompts_;
    ScriptedBrowsers browsers_;
    HeadlessDialogs dialogs_;
    HeadlessDocument document_;
    DiagnosticsReport report_;
    Progress progress_;
    Listening listening_;
    bool diagnose_ = false;
    bool standard_ = false;
    bool quality_ = false;
    bool workDatabase_ = true;
    StepOutcome outcome_ = StepOutcome::done;
};

// $XDG_CONFIG_HOME/velmora, or ~/.config/velmora.
std::string defaultSettingsFolder();

}  // namespace velmora::cli
