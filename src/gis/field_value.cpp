// SPDX-License-Identifier: MIT
#include "gis/field_value.h"

#include "gis/numbers.h"
#include "gis/text.h"

namespace velmora {

std::string keyText(const FieldValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return numberText(*number);
    if (const auto* text = std::get_if<std::string>(&value)) return trimmedRight(*text);
    return {};
}

}  // namespace velmora
