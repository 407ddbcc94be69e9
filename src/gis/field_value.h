// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <variant>

namespace velmora {

// What a field of a record holds: nothing (null), a number or a text. A blank dBASE number is null,
// not 0.
using FieldValue = std::variant<std::monostate, double, std::string>;

inline bool isNull(const FieldValue& value) { return value.index() == 0; }

// The key form of a value, as joins compare it: a text without trailing blanks, a number as its
// shortest text, "" for null.
std::string keyText(const FieldValue& value);

enum class FieldType { text, number, integer, other };

struct Field {
    std::string name;
    FieldType type = FieldType::other;
    int width = 0;     // characters; 0 for the engine's default
    int decimals = 0;  // of a number
};

}  // namespace velmora
