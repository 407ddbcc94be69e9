// SPDX-License-Identifier: MIT
// Takes a statement of a query language apart, from left to right in one pass: time grows with its
// length and the stack does not, whatever texts a user has put into it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::platform {

enum class TokenKind {
    word,    // letters, digits, "_", "$" and everything beyond ASCII, not beginning with a digit
    name,    // [in brackets] or "in double quotes"
    text,    // 'in single quotes'
    number,  // 12, .5, 1e-3
    symbol   // any other character
};

struct Token {
    TokenKind kind = TokenKind::symbol;
    std::string value;  // without brackets and quotes; a doubled closing one stands for one
    std::size_t begin = 0;
    std::size_t end = 0;  // behind its last character in the statement

    bool isWord(std::string_view word) const;  // letters without regard to case
    bool isSymbol(char symbol) const;
};

class StatementScanner {
  public:
    // The statement must outlive the scanner.
    explicit StatementScanner(std::string_view statement, std::size_t from = 0)
        : statement_(statement), at_(from) {}
    // The next token, none at the end. Throws PlatformError for a quote or bracket without its end.
    std::optional<Token> next();
    std::size_t position() const { return at_; }  // behind the last token

  private:
    Token enclosed(char closing, TokenKind kind);

    std::string_view statement_;
    std::size_t at_ = 0;
};

// All tokens from a place of the statement on. Throws PlatformError.
std::vector<Token> tokensOf(std::string_view statement, std::size_t from = 0);

// A statement as messages show it: its beginning, when it is long.
std::string shownStatement(std::string_view statement);

}  // namespace velmora::platform
