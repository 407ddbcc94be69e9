// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "gis/prompts.h"

namespace velmora::cli {

// How questions are answered when nobody sits at the terminal.
struct TerminalOptions {
    bool quiet = false;          // no progress lines
    std::optional<bool> answer;  // --yes or --no
};

// Message boxes on a terminal: each on its own line, "message: ...", answered OK. Questions take
// the option's answer, else ask on a terminal, else answer no.
class TerminalPrompts : public IPrompts {
  public:
    explicit TerminalPrompts(const TerminalOptions& options) : options_(options) {}
    void message(const std::string& text, const std::string& title) override;
    bool confirm(const std::string& question, const std::string& title) override;
    int shown() const { return shown_; }  // messages so far
    const std::string& last() const { return last_; }

  private:
    const TerminalOptions& options_;
    int shown_ = 0;
    std::string last_;
};

// One line of text: line ends inside become blanks.
std::string oneLine(std::string text);

}  // namespace velmora::cli
