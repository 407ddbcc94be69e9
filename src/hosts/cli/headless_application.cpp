// SPDX-License-Identifier: MIT
#include "hosts/cli/headless_application.h"

#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/components/class_registry.h"

namespace velmora::cli {

namespace {

class HeadlessLayer : public IRasterLayer {
  public:
    explicit HeadlessLayer(std::string path) : path_(std::move(path)) {}
    std::string name() const override { return fileName(path_); }
    std::string path() const override { return path_; }
    void setStretchedRenderer(const AlgorithmicColorRamp& ramp) override { ramp.colors(); }

  private:
    std::string path_;
};

}  // namespace

std::string ScriptedBrowsers::next() {
    if (answers_.empty()) return {};
    std::string answer = answers_.front();
    answers_.pop_front();
    return answer;
}

void HeadlessDialogs::showModal(Form& form) {
    if (driver) driver(form);
    if (form.isOpen()) form.close();
}

// The labels that a step writes become lines as they change.
void HeadlessDialogs::show(Form& form) {
    if (options_.quiet || options_.progress == ProgressForm::json || showsBar(options_)) return;
    for (const char* name : {"lblMessage", "lblStatus"}) {
        auto& label = form.control<Label>(name);
        label.hostRefresh = [&label] {
            if (label.text().empty()) return;
            tell("{}\n", oneLine(label.text()));
        };
    }
}

std::unique_ptr<IRasterLayer> HeadlessDocument::createRasterLayer(const std::string& path) {
    return std::make_unique<HeadlessLayer>(path);
}

void HeadlessDocument::addLayer(std::unique_ptr<IRasterLayer> layer) {
    layers_.push_back(std::move(layer));
}

void HeadlessDocument::addTable(std::shared_ptr<ITable> table) {
    tables_.push_back(std::move(table));
}

std::vector<std::string> HeadlessDocument::paths() const {
    std::vector<std::string> paths;
    for (const auto& layer : layers_) paths.push_back(layer->path());
    for (const auto& table : tables_) paths.push_back(table->path());
    return paths;
}

HeadlessApplication::HeadlessApplication(std::string settingsFolder, const TerminalOptions& options)
    : settingsFolder_(std::move(settingsFolder)),
      prompts_(options),
      dialogs_(options),
      progress_(options, prompts_),
      listening_(feedback(), progress_) {}

std::string defaultSettingsFolder() { return parentFolderName(classRegistryPath()); }

}  // namespace velmora::cli
