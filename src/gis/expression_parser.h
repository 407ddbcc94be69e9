// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "gis/expression.h"

namespace velmora {

// Turns an expression text into a program in postfix order by recursive descent.
class ExpressionParser {
  public:
    explicit ExpressionParser(const std::string& text) : text_(text) {}

    // Throws PlatformError with the position of a mistake.
    void parse();
    std::vector<Expression::Step> program;
    std::vector<std::string> names;

  private:
    void parseOr();
    void parseAnd();
    void parseNot();
    void parseCompare();
    void parseSum();
    void parseProduct();
    void parseUnary();
    void parsePrimary();
    void parseNumber();
    void parseName(std::string name);
    void emit(Expression::Kind kind) { program.push_back({kind, 0, 0}); }
    void skipBlanks();
    bool take(std::string_view symbol);
    bool takeWord(std::string_view word);
    [[noreturn]] void fail(const std::string& what) const;

    const std::string& text_;
    std::size_t at_ = 0;
    int nesting_ = 0;
};

}  // namespace velmora
