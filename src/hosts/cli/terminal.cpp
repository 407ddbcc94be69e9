// SPDX-License-Identifier: MIT
#include "hosts/cli/terminal.h"

#include <unistd.h>

#include <iostream>

#include "hosts/cli/cancelling.h"
#include "hosts/cli/failure.h"

namespace velmora::cli {

void TerminalPrompts::showLine(const char* kind, const std::string& text) {
    messages_.push_back(text);
    told_.push_back({kind, text});
    tellOf(kind, text);
}

void TerminalPrompts::showPlace(const ErrorPlace& place) {
    Told& told = told_.back();
    told.failed = true;
    told.place = place;
    if (options_.json) tellFailureJson(told.text, place);
}

void TerminalPrompts::message(const std::string& text, const std::string&) {
    showLine("message", text);
}

bool TerminalPrompts::confirm(const std::string& question, const std::string&) {
    const auto scripted = script ? script(question) : std::nullopt;
    const auto answer = scripted ? scripted : options_.answer;
    bool yes = answer.value_or(false);
    if (!answer && isatty(STDIN_FILENO) != 0) {
        tell("question: {} [y/N] ", oneLine(question));
        waitForInput();
        std::string line;
        std::getline(std::cin, line);
        yes = line.starts_with('y') || line.starts_with('Y');
    } else {
        if (scripted && options_.quiet) return yes;
        tell("question: {} {}\n", oneLine(question), yes ? "yes" : "no");
    }
    return yes;
}

}  // namespace velmora::cli
