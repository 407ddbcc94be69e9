// SPDX-License-Identifier: MIT
#include "platform/tables/statement_scanner.h"

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kMostShown = 200;

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool beginsWord(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           (static_cast<unsigned char>(c) & 0x80U) != 0;
}
bool continuesWord(char c) { return beginsWord(c) || isDigit(c) || c == '$'; }
bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Behind the number that begins at `at`.
std::size_t endOfNumber(std::string_view text, std::size_t at) {
    const auto digits = [&] {
        while (at < text.size() && isDigit(text[at])) ++at;
    };
    digits();
    if (at < text.size() && text[at] == '.') ++at;
    digits();
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        std::size_t exponent = at + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
        if (exponent < text.size() && isDigit(text[exponent])) {
            at = exponent;
            digits();
        }
    }
    return at;
}

}  // namespace

bool Token::isWord(std::string_view word) const {
    return kind == TokenKind::word && sameIgnoringCase(value, word);
}

bool Token::isSymbol(char symbol) const {
    return kind == TokenKind::symbol && value.front() == symbol;
}

Token StatementScanner::enclosed(char closing, TokenKind kind) {
    Token token{kind, {}, at_, at_};
    for (++at_; at_ < statement_.size(); ++at_) {
        if (statement_[at_] == closing) {
            const bool doubled = at_ + 1 < statement_.size() && statement_[at_ + 1] == closing;
            if (!doubled) {
                token.end = ++at_;
                return token;
            }
            ++at_;
        }
        token.value += statement_[at_];
    }
    throw PlatformError("A quote or bracket is opened and not closed in \"" +
                        shownStatement(statement_.substr(token.begin)) + "\"");
}

std::optional<Token> StatementScanner::next() {
    while (at_ < statement_.size() && isBlank(statement_[at_])) ++at_;
    if (at_ >= statement_.size()) return std::nullopt;
    const char first = statement_[at_];
    if (first == '[') return enclosed(']', TokenKind::name);
    if (first == '"') return enclosed('"', TokenKind::name);
    if (first == '\'') return enclosed('\'', TokenKind::text);
    Token token{TokenKind::symbol, {}, at_, at_ + 1};
    const bool point = first == '.' && at_ + 1 < statement_.size() && isDigit(statement_[at_ + 1]);
    if (isDigit(first) || point) {
        token.kind = TokenKind::number;
        token.end = endOfNumber(statement_, at_);
    } else if (beginsWord(first)) {
        token.kind = TokenKind::word;
        while (token.end < statement_.size() && continuesWord(statement_[token.end])) ++token.end;
    }
    token.value = statement_.substr(token.begin, token.end - token.begin);
    at_ = token.end;
    return token;
}

std::vector<Token> tokensOf(std::string_view statement, std::size_t from) {
    StatementScanner scanner(statement, from);
    std::vector<Token> tokens;
    while (auto token = scanner.next()) tokens.push_back(std::move(*token));
    return tokens;
}

std::string shownStatement(std::string_view statement) {
    if (statement.size() <= kMostShown) return std::string(statement);
    std::size_t end = kMostShown;
    while ((static_cast<unsigned char>(statement[end]) & 0xC0U) == 0x80U) --end;
    return std::string(statement.substr(0, end)) + " ...";
}

}  // namespace velmora::platform
