// SPDX-License-Identifier: MIT
// What the equations of the reference ET run give for the inputs of a published figure.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "refet/validation/figure_inputs.h"

namespace velmora {

struct Quantity {
    std::string name;     // as the figures' files have it
    std::string meaning;  // "net radiation"
    std::string unit;     // "MJ/m2 d"
    std::function<double(const FigureInputs&)> ours;
};

const std::vector<Quantity>& quantities();

// Throws PlatformError for a name that no quantity has.
const Quantity& quantityNamed(const std::string& name);

}  // namespace velmora
