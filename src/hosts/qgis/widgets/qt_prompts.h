// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "gis/prompts.h"

namespace velmora::qt {

// Modal message boxes over the window in front. Their texts are shown as they stand, never as
// markup.
class QtPrompts : public IPrompts {
  public:
    explicit QtPrompts(QWidget* mainWindow) : mainWindow_(mainWindow) {}
    using IPrompts::message;
    void message(const std::string& text, const std::string& title) override;
    bool confirm(const std::string& question, const std::string& title) override;

  private:
    QWidget* mainWindow_;
};

// The window over which a modal one belongs: the modal window in front, else the main window.
QWidget* windowInFront(QWidget* mainWindow);

}  // namespace velmora::qt
