// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/desktop_application.h"

#include "platform/platform.h"

namespace velmora::qt {

DesktopApplication::DesktopApplication(QWidget* mainWindow, IMxDocument& document,
                                       std::string settingsFolder)
    : document_(document),
      settingsFolder_(std::move(settingsFolder)),
      prompts_(mainWindow),
      browsers_(mainWindow),
      dialogs_(mainWindow, prompts_),
      workBar_(mainWindow, feedback_, prompts_) {
    platform::watchLoops(&feedback_);
    dialogs_.setAccount([this](bool metric) { return accountPage(platform_, metric); });
}

DesktopApplication::~DesktopApplication() { platform::watchLoops(nullptr); }

void DesktopApplication::noteOutcome(StepOutcome outcome) {
    outcome_ = outcome;
    if (outcome == StepOutcome::cancelled) {
        prompts_.notice("Stopped as you asked; what was finished before stays.");
    }
}

}  // namespace velmora::qt
