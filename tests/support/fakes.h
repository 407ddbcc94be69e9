// SPDX-License-Identifier: MIT
// A host for tests: it records messages, answers choosers from a list, and stands on the real
// platform, parts of which a test may replace.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "forms/form.h"
#include "gis/application.h"
#include "platform/platform.h"
#include "tests/support/temp_folder.h"

namespace velmora::test {

class FakePrompts : public IPrompts {
  public:
    using IPrompts::message;
    void message(const std::string& text, const std::string& title) override {
        messages.push_back(text);
        titles.push_back(title);
    }
    bool confirm(const std::string& question, const std::string& title) override {
        questions.push_back(question);
        questionTitles.push_back(title);
        return answers ? answers(question) : answer;
    }
    std::vector<std::string> messages;
    std::vector<std::string> titles;
    std::vector<std::string> questions;
    std::vector<std::string> questionTitles;
    bool answer = false;  // unless `answers` is set
    std::function<bool(const std::string&)> answers;
    std::vector<std::string> reasons;
    std::vector<std::string> notices;

  protected:
    void showReason(const std::string& text) override { reasons.push_back(text); }
    void showNotice(const std::string& text) override { notices.push_back(text); }
};

class FakeBrowsers : public IBrowsers {
  public:
    std::string browseFolder(const std::string& title) override { return next(title); }
    std::string browseDataset(DatasetKind, const std::string& title, const std::string&,
                              const std::string&) override {
        return next(title);
    }
    std::string openFile(const std::string& filter) override { return next(filter); }
    std::string saveFile(const std::string& filter) override { return next(filter); }
    std::string lastBrowseLocation() override;
    std::deque<std::string> answers;  // then "" (cancelled)
    std::vector<std::string> asked;   // titles and filters
    bool locationFails = false;

  private:
    std::string next(const std::string& what);
};

class FakeDialogs : public IDialogs {
  public:
    void showModal(Form& form) override {
        ++modal;
        if (driver) driver(form);
    }
    void show(Form& form) override {
        ++modeless;
        if (driver) driver(form);
    }
    std::function<void(Form&)> driver;
    int modal = 0;
    int modeless = 0;
};

class FakeLayer : public IRasterLayer {
  public:
    FakeLayer(std::string path, bool fails) : path_(std::move(path)), fails_(fails) {}
    std::string name() const override { return path_.substr(path_.rfind('/') + 1); }
    std::string path() const override { return path_; }
    void setStretchedRenderer(const AlgorithmicColorRamp& given) override;
    AlgorithmicColorRamp ramp;

  private:
    std::string path_;
    bool fails_;
};

class FakeDocument : public IMxDocument {
  public:
    std::unique_ptr<IRasterLayer> createRasterLayer(const std::string& path) override {
        return std::make_unique<FakeLayer>(path, layersFail);
    }
    void addLayer(std::unique_ptr<IRasterLayer> layer) override {
        layers.push_back(std::move(layer));
    }
    void addTable(std::shared_ptr<ITable> table) override;
    void refreshContents() override { ++refreshed; }
    std::vector<std::unique_ptr<IRasterLayer>> layers;
    std::vector<std::shared_ptr<ITable>> tables;
    int refreshed = 0;
    bool layersFail = false;
    bool tablesFail = false;
};

class FixedClock : public IClock {
  public:
    double seconds() const override { return now += step; }
    int currentYear() const override { return 2031; }
    mutable double now = 0;
    double step = 0;  // that each look at the clock takes
};

// The real platform with a clock that stands, and a file system that a test may replace.
class TestPlatform : public platform::Platform {
  public:
    IClock& clock() override { return clock_; }
    IFileSystem& files() override { return otherFiles ? *otherFiles : Platform::files(); }
    IConnectionFactory& connections() override {
        return otherConnections ? *otherConnections : Platform::connections();
    }
    FixedClock clock_;
    IFeatureWorkspaceFactory& features() override {
        return otherFeatures ? *otherFeatures : Platform::features();
    }
    IFileSystem* otherFiles = nullptr;
    IFeatureWorkspaceFactory* otherFeatures = nullptr;
    IConnectionFactory* otherConnections = nullptr;
};

class FakeDiagnostics : public IDiagnostics {
  public:
    void add(const SurfaceDiagnostics& surface) override { surfaces.push_back(surface); }
    std::vector<SurfaceDiagnostics> surfaces;
};

class TestApplication : public IApplication {
  public:
    explicit TestApplication(std::string settingsFolder) : folder(std::move(settingsFolder)) {}
    TestPlatform& platform() override { return platform_; }
    FakePrompts& prompts() override { return prompts_; }
    FakeBrowsers& browsers() override { return browsers_; }
    FakeDialogs& dialogs() override { return dialogs_; }
    FakeDocument& document() override { return document_; }
    std::string extensionFolder() override { return folder; }
    IDiagnostics* diagnostics() override { return askForDiagnostics ? &diagnostics_ : nullptr; }
    const std::vector<SurfaceDiagnostics>& diagnosed() const { return diagnostics_.surfaces; }
    void noteOutcome(StepOutcome outcome) override { outcomes.push_back(outcome); }
    const std::vector<std::string>& messages() const { return prompts_.messages; }

    std::string folder;
    std::vector<StepOutcome> outcomes;
    bool askForDiagnostics = false;

  private:
    TestPlatform platform_;
    FakePrompts prompts_;
    FakeBrowsers browsers_;
    FakeDialogs dialogs_;
    FakeDocument document_;
    FakeDiagnostics diagnostics_;
};

// The real connections, noting what is opened and run through them.
class RecordingConnections : public IConnectionFactory {
  public:
    explicit RecordingConnections(IConnectionFactory& real) : real_(real) {}
    void createDatabase(const std::string& connectionString) override {
        real_.createDatabase(connectionString);
    }
    std::unique_ptr<IConnection> open(const std::string& connectionString) override;
    void makeDatabase(const std::string& path,
                      const std::function<void(const std::string& unfinished)>& fill) override {
        real_.makeDatabase(path, fill);
    }
    std::string staleCopy(const std::string& path) override { return real_.staleCopy(path); }
    std::vector<std::string> opened;      // connection strings
    std::vector<std::string> statements;  // and queries

  private:
    IConnectionFactory& real_;
};

// A file system without a disk.
class MemoryFiles : public IFileSystem {
  public:
    bool fileExists(const std::string& path) const override { return files.contains(path); }
    bool folderExists(const std::string& path) const override { return folders.contains(path); }
    std::string specialFolder(SpecialFolder) const override { return "/temporary"; }
    std::string lastModified(const std::string&) const override { return "2031-01-02 03:04:05"; }
    void deleteFile(const std::string& path) override { files.erase(path); }
    void createFolder(const std::string& path) override { folders[path] = true; }
    void copyFile(const std::string& from, const std::string& to) override {
        files[to] = files.at(from);
    }
    void replaceFile(const std::string& from, const std::string& to) override;
    void storeFile(const std::string& path, const std::string& bytes) override {
        files[path] = bytes;
    }
    std::string readBeginning(const std::string& path, std::size_t most) const override;
    void writeOver(const std::string& path, const std::string& bytes) override;
    std::unique_ptr<IFolderLock> lockFolder(const std::string&) override { return nullptr; }
    std::unique_ptr<IFolderLock> shareFolder(const std::string&) override { return nullptr; }
    void settle(const std::string&) override {}
    std::uint64_t freeMemory() const override { return 1ULL << 40U; }
    std::map<std::string, std::string> files;
    std::map<std::string, bool> folders;
    bool writesFail = false;
};

}  // namespace velmora::test
