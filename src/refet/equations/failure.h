// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <stdexcept>
#include <string>

#include "gis/errors.h"

namespace velmora {

// An equation that has no value for its inputs: a division by zero, the root of a negative number,
// an overflow. Tested explicitly, because in C++ such operations yield infinities that a later step
// can turn into a harmless-looking number.
class EquationError : public std::domain_error, public PlacedError {
  public:
    using std::domain_error::domain_error;
    EquationError(const std::string& what, ErrorPlace place)
        : std::domain_error(what), PlacedError(std::move(place)) {}
};

// The value itself when it is a number; throws EquationError otherwise.
inline double finite(double value, const char* what) {
    if (!std::isfinite(value)) throw EquationError(what);
    return value;
}

inline double nonZero(double value, const char* what) {
    if (value == 0) throw EquationError(what);
    return value;
}

}  // namespace velmora
