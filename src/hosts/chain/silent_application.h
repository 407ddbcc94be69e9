// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "gis/application.h"

namespace velmora {

// A host that shows nothing and has no map, over a platform of another host: what steps say when
// they run again to be compared. The first failure is kept.
class SilentApplication : public IApplication {
  public:
    explicit SilentApplication(IPlatform& platform) : platform_(platform) {}

    IPlatform& platform() override { return platform_; }
    IPrompts& prompts() override { return prompts_; }
    IBrowsers& browsers() override { return browsers_; }
    IDialogs& dialogs() override { return dialogs_; }
    IMxDocument& document() override { return document_; }
    Feedback& feedback() override { return feedback_; }
    std::string extensionFolder() override { return {}; }
    void noteOutcome(StepOutcome) override {}
    const std::string& firstFailure() const { return prompts_.first; }
    const std::vector<std::string>& messages() const { return prompts_.texts; }

  private:
    struct Prompts : IPrompts {
        void message(const std::string& text, const std::string&) override {
            texts.push_back(text);
        }
        bool confirm(const std::string&, const std::string&) override { return false; }
        void showFailure(const std::string& text, const std::string&) override { keep(text); }
        void showReason(const std::string& text) override { keep(text); }
        void showNotice(const std::string& text) override { texts.push_back(text); }
        void keep(const std::string& text) {
            if (first.empty()) first = text;
        }
        std::string first;
        std::vector<std::string> texts;
    };
    struct Browsers : IBrowsers {
        std::string browseFolder(const std::string&) override { return {}; }
        std::string browseDataset(DatasetKind, const std::string&, const std::string&,
                                  const std::string&) override {
            return {};
        }
        std::string openFile(const std::string&) override { return {}; }
        std::string saveFile(const std::string&) override { return {}; }
        std::string lastBrowseLocation() override { return {}; }
    };
    struct Dialogs : IDialogs {
        void showModal(Form&) override {}
        void show(Form&) override {}
    };
    struct Layer : IRasterLayer {
        explicit Layer(std::string file) : path_(std::move(file)) {}
        std::string name() const override { return path_; }
        std::string path() const override { return path_; }
        void setStretchedRenderer(const AlgorithmicColorRamp&) override {}
        std::string path_;
    };
    struct Document : IMxDocument {
        std::unique_ptr<IRasterLayer> createRasterLayer(const std::string& path) override {
            return std::make_unique<Layer>(path);
        }
        void addLayer(std::unique_ptr<IRasterLayer>) override {}
        void addTable(std::shared_ptr<ITable>) override {}
        void refreshContents() override {}
    };

    IPlatform& platform_;
    Prompts prompts_;
    Browsers browsers_;
    Dialogs dialogs_;
    Document document_;
    Feedback feedback_;
};

}  // namespace velmora
