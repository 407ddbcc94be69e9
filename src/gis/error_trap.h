// SPDX-License-Identifier: MIT
// The one form of an error trap. What a user has cancelled is no error and passes every trap.
#pragma once

#include <exception>
#include <optional>
#include <string>

#include "gis/prompts.h"

namespace velmora {

// Runs the body; what its failure says, none when there was none.
template <class Body>
std::optional<std::string> failureOf(Body body) {
    try {
        body();
        return std::nullopt;
    } catch (const std::exception& e) {
        return e.what();
    }
}

// The single error trap of a procedure: runs the body and shows what a failure says, behind
// `heading`. True when there was none.
template <class Body>
bool trapped(IPrompts& prompts, const std::string& heading, Body body) {
    const std::optional<std::string> failure = failureOf(body);
    if (failure) prompts.failure(heading + *failure);
    return !failure;
}
template <class Body>
bool trapped(IPrompts& prompts, Body body) {
    return trapped(prompts, {}, body);
}

}  // namespace velmora
