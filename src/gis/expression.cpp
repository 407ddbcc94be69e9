// SPDX-License-Identifier: MIT
#include "gis/expression.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include "gis/expression_parser.h"

namespace velmora {

namespace {

using Kind = Expression::Kind;

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kChunk = 512;  // places evaluated together: their values stay in the cache

// A value of the stack: one number for all places, or a number for each.
struct Operand {
    const double* values = nullptr;  // null: the same number everywhere
    double number = 0;
};

template <class Function>
Operand combine(const Operand& a, const Operand& b, std::size_t count, double* out, Function f) {
    if (!a.values && !b.values) return {nullptr, f(a.number, b.number)};
    if (!a.values) {
        for (std::size_t i = 0; i < count; ++i) out[i] = f(a.number, b.values[i]);
    } else if (!b.values) {
        for (std::size_t i = 0; i < count; ++i) out[i] = f(a.values[i], b.number);
    } else {
        for (std::size_t i = 0; i < count; ++i) out[i] = f(a.values[i], b.values[i]);
    }
    return {out, 0};
}

bool isNothing(double x) { return x != x; }

template <class Compare>
auto comparison(Compare compare) {
    return [compare](double x, double y) {
        return isNothing(x) || isNothing(y) ? kNothing : (compare(x, y) ? 1.0 : 0.0);
    };
}

double bothHold(double x, double y) {
    if (x == 0 || y == 0) return 0;
    return isNothing(x) || isNothing(y) ? kNothing : 1;
}

double oneHolds(double x, double y) {
    if ((!isNothing(x) && x != 0) || (!isNothing(y) && y != 0)) return 1;
    return isNothing(x) || isNothing(y) ? kNothing : 0;
}

Operand apply(Kind kind, const Operand& a, const Operand& b, std::size_t n, double* out) {
    switch (kind) {
        case Kind::add:
            return combine(a, b, n, out, [](double x, double y) { return x + y; });
        case Kind::subtract:
            return combine(a, b, n, out, [](double x, double y) { return x - y; });
        case Kind::multiply:
            return combine(a, b, n, out, [](double x, double y) { return x * y; });
        case Kind::divide:
            return combine(a, b, n, out,
                           [](double x, double y) { return y == 0 ? kNothing : x / y; });
        case Kind::negate:
            return combine(a, b, n, out, [](double x, double) { return -x; });
        case Kind::less:
            return combine(a, b, n, out, comparison([](double x, double y) { return x < y; }));
        case Kind::lessEqual:
            return combine(a, b, n, out, comparison([](double x, double y) { return x <= y; }));
        case Kind::greater:
            return combine(a, b, n, out, comparison([](double x, double y) { return x > y; }));
        case Kind::greaterEqual:
            return combine(a, b, n, out, comparison([](double x, double y) { return x >= y; }));
        case Kind::equal:
            return combine(a, b, n, out, comparison([](double x, double y) { return x == y; }));
        case Kind::notEqual:
            return combine(a, b, n, out, comparison([](double x, double y) { return x != y; }));
        case Kind::logicalAnd:
            return combine(a, b, n, out, bothHold);
        case Kind::logicalOr:
            return combine(a, b, n, out, oneHolds);
        case Kind::logicalNot:
            return combine(a, b, n, out, [](double x, double) {
                return isNothing(x) ? x : (x == 0 ? 1.0 : 0.0);
            });
        case Kind::number:
        case Kind::name:
            break;
    }
    return {};
}

bool isUnary(Kind kind) { return kind == Kind::negate || kind == Kind::logicalNot; }
bool isOperand(Kind kind) { return kind == Kind::number || kind == Kind::name; }

std::size_t deepestStack(const std::vector<Expression::Step>& program) {
    std::size_t depth = 0;
    std::size_t deepest = 0;
    for (const auto& step : program) {
        if (isOperand(step.kind)) {
            deepest = std::max(deepest, ++depth);
        } else if (!isUnary(step.kind)) {
            --depth;
        }
    }
    return deepest;
}

}  // namespace

Expression::Expression(const std::string& text) : text_(text) {
    ExpressionParser parser(text_);
    parser.parse();
    names_ = std::move(parser.names);
    program_ = std::move(parser.program);
    depth_ = deepestStack(program_);
}

void Expression::evaluate(std::span<const double* const> operands, std::size_t count,
                          double* results) const {
    const auto scratch = std::make_unique_for_overwrite<double[]>(depth_ * kChunk);
    for (std::size_t first = 0; first < count; first += kChunk) {
        evaluateChunk(operands, first, std::min(kChunk, count - first), scratch.get(),
                      results + first);
    }
}

void Expression::evaluateChunk(std::span<const double* const> operands, std::size_t first,
                               std::size_t count, double* scratch, double* results) const {
    constexpr std::size_t kSmallStack = 16;
    std::vector<Operand> large(depth_ > kSmallStack ? depth_ : 0);
    std::array<Operand, kSmallStack> small{};
    Operand* stack = large.empty() ? small.data() : large.data();
    std::size_t top = 0;
    for (const auto& step : program_) {
        if (step.kind == Kind::number) {
            stack[top++] = {nullptr, step.number};
        } else if (step.kind == Kind::name) {
            stack[top++] = {operands[step.name] + first, 0};
        } else {
            const Operand right = stack[top - 1];
            if (!isUnary(step.kind)) --top;
            stack[top - 1] =
                apply(step.kind, stack[top - 1], right, count, scratch + (top - 1) * kChunk);
        }
    }
    const Operand& result = stack[0];
    if (result.values) {
        std::copy_n(result.values, count, results);
    } else {
        std::fill_n(results, count, result.number);
    }
}

}  // namespace velmora
