// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "gis/prompts.h"
#include "hosts/cli/console.h"

namespace velmora::cli {

enum class ProgressForm { automatic, lines, bar, json };

// How questions are answered when nobody sits at the terminal, and how much is told.
struct TerminalOptions {
    bool quiet = false;  // no progress lines
    bool json = false;   // a line for programs behind each failure
    ProgressForm progress = ProgressForm::automatic;
    std::optional<bool> answer;  // --yes or --no
};

// What a step has told: "message", "reason" or "note" (and "error" for what ended it).
struct Told {
    std::string kind;
    std::string text;
    bool failed = false;
    ErrorPlace place = {};  // of what failed
};

// Message boxes on a terminal, each on its own line of standard error: "message: ..." (answered
// OK), "reason: ..." and "note: ...". Questions take the option's answer, else ask on a terminal,
// else answer no.
// Where programs read, each failure is followed by its line for them.
class TerminalPrompts : public IPrompts {
  public:
    explicit TerminalPrompts(const TerminalOptions& options) : options_(options) {}
    using IPrompts::message;
    void message(const std::string& text, const std::string& title) override;
    bool confirm(const std::string& question, const std::string& title) override;
    // Answers questions by their texts before the options do.
    std::function<std::optional<bool>(const std::string& question)> script;
    const std::vector<std::string>& messages() const { return messages_; }  // all told so far
    const std::vector<Told>& told() const { return told_; }                 // with its kinds

  protected:
    void showReason(const std::string& text) override { showLine("reason", text); }
    void showNotice(const std::string& text) override { showLine("note", text); }
    void showPlace(const ErrorPlace& place) override;

  private:
    void showLine(const char* kind, const std::string& text);

    const TerminalOptions& options_;
    std::vector<std::string> messages_;
    std::vector<Told> told_;
};

}  // namespace velmora::cli
