// SPDX-License-Identifier: MIT
// What the command prints. Standard output holds results alone, standard error all that is told on
// the way. No print fails in the middle of a step: that standard output could not be written is
// told at the end (closeOutput); for standard error nobody is left to tell.
#pragma once

#include <fmt/core.h>

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace velmora::cli {

// A text without what would steer a terminal: control characters, and bytes that are no UTF-8, as
// "\x1b". Line ends and tabs stay.
std::string visible(const std::string& text);
// A visible text of one line: line ends and tabs inside become blanks.
std::string oneLine(const std::string& text);

// To standard output: a visible text; data, which only a terminal gets visible and everything else
// as they stand; JSON, in which control characters are escaped.
void printText(const std::string& text);
void printData(const std::string& data);
void printJson(const nlohmann::ordered_json& json);
// To standard error, behind what standard output has so far.
void tellText(const std::string& text);

// One thing that is told: "kind: text". What is told of the kind "velmora" is an error.
void tellOf(const std::string& kind, const std::string& text);

// From now on all that is told are lines that each hold a JSON object with its "kind", for a
// program that reads them; what has no kind of its own is of the kind "text".
void tellAsJson();
bool tellsAsJson();
void tellJson(const nlohmann::ordered_json& json);

// A line that stays below all that is told on a terminal, cut at its width; "" takes it away.
void setStatusLine(const std::string& text);

template <class... T>
void print(fmt::format_string<T...> format, T&&... values) {
    printText(fmt::vformat(format, fmt::make_format_args(values...)));
}
template <class... T>
void tell(fmt::format_string<T...> format, T&&... values) {
    tellText(fmt::vformat(format, fmt::make_format_args(values...)));
}

// Writes out and closes standard output. The exit status: 1 with a line of what failed when a
// status of 0 would not be true.
int closeOutput(int status);

// Opens what the caller has closed of the three standard files, so that no file of the user's takes
// their place. What is written to such an output fails.
void holdStandardFiles();

// A word of a shell's command line, in quotes where it needs them.
std::string shellWord(const std::string& text);

}  // namespace velmora::cli
