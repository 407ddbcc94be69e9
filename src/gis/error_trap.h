// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

#include "gis/prompts.h"

namespace velmora {

// The single error trap of a procedure: runs the body and shows what a failure says. True when
// there was none.
template <class Body>
bool trapped(IPrompts& prompts, Body body) {
    try {
        body();
        return true;
    } catch (const std::exception& e) {
        prompts.failure(e.what());
        return false;
    }
}

}  // namespace velmora
