// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <string>

#include "gis/application.h"
#include "hosts/qgis/widgets/qt_browsers.h"
#include "hosts/qgis/widgets/qt_dialogs.h"
#include "hosts/qgis/widgets/qt_prompts.h"
#include "hosts/qgis/widgets/work_bar.h"
#include "platform/platform.h"

namespace velmora::qt {

// The application hook of a desktop: windows over its main window, its map as the document. While a
// step works on the main thread, the desktop stays painted.
class DesktopApplication : public IApplication {
  public:
    // The document must outlive the application.
    DesktopApplication(QWidget* mainWindow, IMxDocument& document, std::string settingsFolder);
    ~DesktopApplication() override;
    DesktopApplication(const DesktopApplication&) = delete;
    DesktopApplication& operator=(const DesktopApplication&) = delete;

    IPlatform& platform() override { return platform_; }
    QtPrompts& prompts() override { return prompts_; }
    QtBrowsers& browsers() override { return browsers_; }
    QtDialogs& dialogs() override { return dialogs_; }
    IMxDocument& document() override { return document_; }
    Feedback& feedback() override { return feedback_; }
    std::string extensionFolder() override { return settingsFolder_; }
    void noteOutcome(StepOutcome outcome) override;
    StepOutcome outcome() const { return outcome_; }

  private:
    IMxDocument& document_;
    std::string settingsFolder_;
    platform::Platform platform_;
    QtPrompts prompts_;
    QtBrowsers browsers_;
    QtDialogs dialogs_;
    Feedback feedback_;
    WorkBar workBar_;
    StepOutcome outcome_ = StepOutcome::done;
};

}  // namespace velmora::qt
