// SPDX-License-Identifier: MIT
#include "hosts/results/report/html.h"

#include <fmt/format.h>

#include <cctype>
#include <cstdint>

namespace velmora {

std::string escaped(std::string_view text) {
    std::string html;
    for (const char c : text) {
        switch (c) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '"':
                html += "&quot;";
                break;
            default:
                html += c;
        }
    }
    return html;
}

std::string styleText(std::string_view text) {
    std::string style;
    for (const char c : text) {
        const bool plain = c == ' ' || static_cast<unsigned char>(c) >= 0x80 ||
                           std::isalnum(static_cast<unsigned char>(c)) ||
                           std::string_view(",.;:-_/()").find(c) != std::string_view::npos;
        style += plain ? std::string(1, c) : fmt::format("\\{:X} ", static_cast<unsigned>(c));
    }
    return style;
}

std::string base64(std::string_view bytes) {
    static constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t block = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            block = block << 8U | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k])
                                                        : std::uint32_t{0});
        }
        for (std::size_t k = 0; k < 4; ++k) {
            text += i + k <= bytes.size() ? digits[block >> (18U - 6U * k) & 0x3FU] : '=';
        }
    }
    return text;
}

std::string htmlTable(const std::vector<std::string>& headings,
                      const std::vector<std::vector<std::string>>& rows, std::size_t firstNumber) {
    const auto cell = [&](const char* tag, std::size_t column, const std::string& content) {
        return std::string("<") + tag + (column >= firstNumber ? " class=\"n\">" : ">") + content +
               "</" + tag + ">";
    };
    std::string html = "<table><thead><tr>";
    for (std::size_t c = 0; c < headings.size(); ++c) html += cell("th", c, headings[c]);
    html += "</tr></thead><tbody>\n";
    for (const auto& row : rows) {
        html += "<tr>";
        for (std::size_t c = 0; c < row.size(); ++c) html += cell("td", c, row[c]);
        html += "</tr>\n";
    }
    return html + "</tbody></table>\n";
}

std::string pathHtml(const std::string& path) {
    return "<span class=\"path\">" + escaped(path) + "</span>";
}

std::string inTwo(const std::string& table) { return "<div class=\"two\">" + table + "</div>\n"; }

std::string folded(const std::string& heading, const std::string& content) {
    return "<details><summary>" + heading + "</summary><div class=\"scroll\">" + content +
           "</div></details>\n";
}

}  // namespace velmora
