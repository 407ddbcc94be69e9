// SPDX-License-Identifier: MIT
#include "gis/numbers.h"

#include <array>
#include <charconv>
#include <cmath>

namespace velmora {

namespace {

std::string_view trimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// Parses a number at the start of `text`, a leading plus sign allowed. Words such as "inf" are no
// numbers here. Returns the characters taken, 0 for none.
std::size_t leadingNumber(std::string_view text, double& value) {
    std::string_view digits = text;
    if (digits.starts_with('+')) digits.remove_prefix(1);
    const std::string_view unsigned_ = digits.starts_with('-') ? digits.substr(1) : digits;
    if (unsigned_.empty() || (unsigned_[0] != '.' && (unsigned_[0] < '0' || unsigned_[0] > '9'))) {
        return 0;
    }
    if (digits.data() != text.data() && digits.starts_with('-')) return 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc{}) return 0;
    return static_cast<std::size_t>(end - text.data());
}

// Plain digits where they are readable, an exponent for what is very large or very small.
template <class Number>
std::string shortest(Number value) {
    std::array<char, 64> buffer{};
    char* const begin = buffer.data();
    char* const limit = begin + buffer.size();
    const Number size = std::fabs(value);
    const bool plain = size == 0 || (size >= Number(1e-4) && size < Number(1e15));
    const auto [end, error] = plain ? std::to_chars(begin, limit, value, std::chars_format::fixed)
                                    : std::to_chars(begin, limit, value);
    return error == std::errc{} ? std::string(begin, end) : std::string("nan");
}

}  // namespace

std::string numberText(double value) { return shortest(value); }

std::string singleText(float value) { return shortest(value); }

std::optional<double> strictNumber(std::string_view text) {
    const std::string_view trimmed = trimBlanks(text);
    double value = 0;
    const std::size_t taken = leadingNumber(trimmed, value);
    if (taken == 0 || taken != trimmed.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

double lenientNumber(std::string_view text) {
    double value = 0;
    return leadingNumber(trimBlanks(text), value) == 0 ? 0.0 : value;
}

std::string formatPlaces(double value, int decimals) {
    if (!std::isfinite(value)) return numberText(value);
    const double scale = std::pow(10.0, decimals);
    const double rounded = std::round(std::fabs(value) * scale) / scale;
    std::array<char, 400> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), rounded,
                                            std::chars_format::fixed, decimals);
    if (error != std::errc{}) return numberText(value);
    std::string text(buffer.data(), end);
    if (decimals > 0) {
        text.erase(text.find_last_not_of('0') + 1);
    }
    if (text.starts_with("0")) text.erase(0, 1);
    if (value < 0 && rounded != 0) text.insert(0, "-");
    return text;
}

}  // namespace velmora
