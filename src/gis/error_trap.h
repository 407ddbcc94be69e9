// SPDX-License-Identifier: MIT
// The one form of an error trap. What a user has cancelled is no error and passes every trap.
#pragma once

#include <exception>
#include <string>

#include "gis/prompts.h"

namespace velmora {

// Runs the body; what its failure says goes to `fails` while it is being handled. True when there
// was none.
template <class Body, class Fails>
bool tried(Body body, Fails fails) {
    try {
        body();
        return true;
    } catch (const std::exception& e) {
        fails(std::string(e.what()));
        return false;
    }
}

// The single error trap of a procedure: runs the body and shows what a failure says, behind
// `heading`. True when there was none.
template <class Body>
bool trapped(IPrompts& prompts, const std::string& heading, Body body) {
    return tried(body, [&](const std::string& why) { prompts.failure(heading + why); });
}
template <class Body>
bool trapped(IPrompts& prompts, Body body) {
    return trapped(prompts, {}, body);
}

}  // namespace velmora
