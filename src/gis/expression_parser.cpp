// SPDX-License-Identifier: MIT
#include "gis/expression_parser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora {

namespace {

using Kind = Expression::Kind;

constexpr int kDeepest = 200;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isNamePart(char c) { return isLetter(c) || isDigit(c) || c == '.'; }

// Longer symbols first, so that "<=" is not taken for "<".
constexpr std::array<std::pair<std::string_view, Kind>, 8> kComparisons = {{
    {"<=", Kind::lessEqual},
    {">=", Kind::greaterEqual},
    {"<>", Kind::notEqual},
    {"!=", Kind::notEqual},
    {"==", Kind::equal},
    {"<", Kind::less},
    {">", Kind::greater},
    {"=", Kind::equal},
}};

}  // namespace

void ExpressionParser::parse() {
    parseOr();
    skipBlanks();
    if (at_ != text_.size()) fail("something unexpected");
}

void ExpressionParser::parseOr() {
    parseAnd();
    while (takeWord("OR")) {
        parseAnd();
        emit(Kind::logicalOr);
    }
}

void ExpressionParser::parseAnd() {
    parseNot();
    while (takeWord("AND")) {
        parseNot();
        emit(Kind::logicalAnd);
    }
}

void ExpressionParser::parseNot() {
    const bool negated = takeWord("NOT");
    parseCompare();
    if (negated) emit(Kind::logicalNot);
}

void ExpressionParser::parseCompare() {
    parseSum();
    const auto* found = std::find_if(kComparisons.begin(), kComparisons.end(),
                                     [this](const auto& entry) { return take(entry.first); });
    if (found == kComparisons.end()) return;
    parseSum();
    emit(found->second);
}

void ExpressionParser::parseSum() {
    parseProduct();
    for (;;) {
        if (take("+")) {
            parseProduct();
            emit(Kind::add);
        } else if (take("-")) {
            parseProduct();
            emit(Kind::subtract);
        } else {
            return;
        }
    }
}

void ExpressionParser::parseProduct() {
    parseUnary();
    for (;;) {
        if (take("*")) {
            parseUnary();
            emit(Kind::multiply);
        } else if (take("/")) {
            parseUnary();
            emit(Kind::divide);
        } else {
            return;
        }
    }
}

void ExpressionParser::parseUnary() {
    if (++nesting_ > kDeepest) fail("too many nested parts");
    if (take("-")) {
        parseUnary();
        emit(Kind::negate);
    } else if (take("+")) {
        parseUnary();
    } else {
        parsePrimary();
    }
    --nesting_;
}

void ExpressionParser::parsePrimary() {
    if (take("(")) {
        parseOr();
        if (!take(")")) fail("a closing parenthesis is missing");
        return;
    }
    skipBlanks();
    const char next = at_ < text_.size() ? text_[at_] : '\0';
    if (next == '[') {
        const auto end = text_.find(']', at_);
        if (end == std::string::npos) fail("a closing bracket is missing");
        std::string name = text_.substr(at_ + 1, end - at_ - 1);
        at_ = end + 1;
        parseName(std::move(name));
    } else if (isLetter(next)) {
        const auto begin = at_;
        while (at_ < text_.size() && isNamePart(text_[at_])) ++at_;
        parseName(text_.substr(begin, at_ - begin));
    } else if (isDigit(next) || next == '.') {
        parseNumber();
    } else {
        fail("a number or a name is missing");
    }
}

void ExpressionParser::parseNumber() {
    double value = 0;
    const char* begin = text_.data() + at_;
    const auto [end, error] = std::from_chars(begin, text_.data() + text_.size(), value);
    if (error != std::errc{}) fail("this is no number");
    at_ += static_cast<std::size_t>(end - begin);
    program.push_back({Kind::number, value, 0});
}

void ExpressionParser::parseName(std::string name) {
    if (name.empty()) fail("a name is empty");
    auto found = std::find_if(names.begin(), names.end(), [&](const std::string& known) {
        return sameIgnoringCase(known, name);
    });
    if (found == names.end()) found = names.insert(names.end(), std::move(name));
    program.push_back({Kind::name, 0, static_cast<std::size_t>(found - names.begin())});
}

void ExpressionParser::skipBlanks() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
}

bool ExpressionParser::take(std::string_view symbol) {
    skipBlanks();
    if (!std::string_view(text_).substr(at_).starts_with(symbol)) return false;
    at_ += symbol.size();
    return true;
}

bool ExpressionParser::takeWord(std::string_view word) {
    skipBlanks();
    const std::string_view rest = std::string_view(text_).substr(at_);
    if (!sameIgnoringCase(rest.substr(0, word.size()), word)) return false;
    if (rest.size() > word.size() && isNamePart(rest[word.size()])) return false;
    at_ += word.size();
    return true;
}

void ExpressionParser::fail(const std::string& what) const {
    throw PlatformError("In the expression \"" + text_ + "\" at position " +
                        std::to_string(at_ + 1) + ": " + what);
}

}  // namespace velmora
