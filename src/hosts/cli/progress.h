// SPDX-License-Identifier: MIT
// What a terminal or a calling program sees of work that goes on.
#pragma once

#include <chrono>
#include <string>

#include "gis/feedback.h"
#include "gis/prompts.h"
#include "hosts/cli/terminal.h"

namespace velmora::cli {

// Whether progress is shown as a bar: where it is asked for, and on a terminal unless something
// else is.
bool showsBar(const TerminalOptions& options);

// Draws a bar at the bottom of the terminal, or writes a JSON object for each change; nothing where
// lines are wanted, which the progress monitor gives. Warnings become notes.
class Progress : public IFeedbackListener {
  public:
    // Both must outlive it.
    Progress(const TerminalOptions& options, IPrompts& prompts);

    void begins(const std::string& title) override;
    void ends() override;
    void fractionChanged(double done) override;
    void messageChanged(const std::string& text) override;
    void warned(const std::string& text) override { prompts_.notice(text); }

  private:
    void draw();

    IPrompts& prompts_;
    const bool json_;
    const bool bar_;
    std::string title_;
    std::string message_;
    double done_ = 0;
    std::chrono::steady_clock::time_point told_;
};

}  // namespace velmora::cli
