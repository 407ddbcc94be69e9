// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "gis/prompts.h"

namespace velmora::cli {

// How questions are answered when nobody sits at the terminal.
struct TerminalOptions {
    bool quiet = false;          // no progress lines
    std::optional<bool> answer;  // --yes or --no
};

// Message boxes on a terminal, each on its own line of standard error: "message: ..." (answered
// OK), "reason: ..." and "note: ...". Questions take the option's answer, else ask on a terminal,
// else answer no.
class TerminalPrompts : public IPrompts {
  public:
    explicit TerminalPrompts(const TerminalOptions& options) : options_(options) {}
    void message(const std::string& text, const std::string& title) override;
    bool confirm(const std::string& question, const std::string& title) override;
    // Answers questions by their texts before the options do.
    std::function<std::optional<bool>(const std::string& question)> script;
    const std::vector<std::string>& messages() const { return messages_; }  // all told so far

  protected:
    void showReason(const std::string& text) override { tell("reason", text); }
    void showNotice(const std::string& text) override { tell("note", text); }

  private:
    void tell(const char* kind, const std::string& text);

    const TerminalOptions& options_;
    std::vector<std::string> messages_;
};

// One line of text: line ends inside become blanks.
std::string oneLine(std::string text);

}  // namespace velmora::cli
