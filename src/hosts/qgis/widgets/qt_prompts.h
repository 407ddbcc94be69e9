// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <functional>
#include <string>

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

    // Shows what has no box: reasons of failures, and notices. The host puts them where its user
    // looks.
    enum class Level { notice, reason };
    std::function<void(Level level, const std::string& text)> showLine;

  protected:
    void showFailure(const std::string& text, const std::string& title) override;
    void showReason(const std::string& text) override { line(Level::reason, text); }
    void showNotice(const std::string& text) override { line(Level::notice, text); }

  private:
    void line(Level level, const std::string& text) const {
        if (showLine) showLine(level, text);
    }

    QWidget* mainWindow_;
};

// The window over which a modal one belongs: the modal window in front, else the main window.
QWidget* windowInFront(QWidget* mainWindow);

}  // namespace velmora::qt
