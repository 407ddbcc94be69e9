// SPDX-License-Identifier: MIT
// Pieces of HTML.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// A text as it stands between tags and in attributes.
std::string escaped(std::string_view text);

// A text between quotes in a style sheet.
std::string styleText(std::string_view text);

std::string base64(std::string_view bytes);

// Rows under headings. Cells are HTML; columns from `firstNumber` on are set at the right.
std::string htmlTable(const std::vector<std::string>& headings,
                      const std::vector<std::vector<std::string>>& rows, std::size_t firstNumber);

// A path, which may break anywhere.
std::string pathHtml(const std::string& path);

// What fills two columns on paper.
std::string inTwo(const std::string& table);

// What is folded on a screen, and open on paper, under a heading that is HTML.
std::string folded(const std::string& heading, const std::string& content);

}  // namespace velmora
