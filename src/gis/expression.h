// SPDX-License-Identifier: MIT
// The expression texts of map algebra, the field calculator and where clauses:
//   or      := and { OR and }              numbers     1  .5  2.1e-05
//   and     := not { AND not }             names       [any characters]  or  table.field
//   not     := [NOT] compare
//   compare := sum [ (< <= > >= = == <> !=) sum ]
//   sum     := product { (+ -) product }
//   product := unary { (* /) unary }
//   unary   := [+ -] unary | primary       so "a--2" is a minus minus 2
//   primary := number | name | ( or )
// No-data (not-a-number) in an operand and division by zero give no-data. AND and OR are decided by
// one operand where that is possible (false AND no-data is false).
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace velmora {

class Expression {
  public:
    // Throws PlatformError with the position of a mistake.
    explicit Expression(const std::string& text);

    const std::string& text() const { return text_; }
    // The distinct names in order of appearance, as written.
    const std::vector<std::string>& names() const { return names_; }

    // Evaluates `count` places at once. operands[i] points to the values of names()[i].
    void evaluate(std::span<const double* const> operands, std::size_t count,
                  double* results) const;

    enum class Kind {
        number,
        name,
        add,
        subtract,
        multiply,
        divide,
        negate,
        less,
        lessEqual,
        greater,
        greaterEqual,
        equal,
        notEqual,
        logicalAnd,
        logicalOr,
        logicalNot
    };
    struct Step {  // one step of the program in postfix order
        Kind kind = Kind::number;
        double number = 0;
        std::size_t name = 0;
    };

  private:
    void evaluateChunk(std::span<const double* const> operands, std::size_t first,
                       std::size_t count, double* scratch, double* results) const;

    std::string text_;
    std::vector<std::string> names_;
    std::vector<Step> program_;
    std::size_t depth_ = 0;  // the deepest stack that the program needs
};

}  // namespace velmora
