// SPDX-License-Identifier: MIT
#include "hosts/cli/terminal.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

namespace velmora::cli {

std::string oneLine(std::string text) {
    for (char& c : text) {
        if (c == '\r' || c == '\n') c = ' ';
    }
    return text;
}

void TerminalPrompts::tell(const char* kind, const std::string& text) {
    messages_.push_back(text);
    std::fflush(stdout);  // so that the two outputs keep their order where they are one
    fmt::print(stderr, "{}: {}\n", kind, oneLine(text));
}

void TerminalPrompts::message(const std::string& text, const std::string&) {
    tell("message", text);
}

bool TerminalPrompts::confirm(const std::string& question, const std::string&) {
    const auto scripted = script ? script(question) : std::nullopt;
    const auto answer = scripted ? scripted : options_.answer;
    bool yes = answer.value_or(false);
    if (!answer && isatty(STDIN_FILENO) != 0) {
        fmt::print(stderr, "question: {} [y/N] ", oneLine(question));
        std::fflush(stdout);
        std::string line;
        std::getline(std::cin, line);
        yes = line.starts_with('y') || line.starts_with('Y');
    } else {
        if (scripted && options_.quiet) return yes;
        fmt::print(stderr, "question: {} {}\n", oneLine(question), yes ? "yes" : "no");
    }
    return yes;
}

}  // namespace velmora::cli
