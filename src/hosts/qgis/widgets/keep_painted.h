// SPDX-License-Identifier: MIT
#pragma once

namespace velmora::qt {

// Lets the windows be painted and timers run while a step works on this thread, at most every 40
// ms. Mouse and keyboard are not heard meanwhile: what the user clicks now must not start anything
// later. Calls within a call do nothing.
void keepPainted();

// The same at once, however short ago the last time was: what has just changed must be seen.
void paintNow();

}  // namespace velmora::qt
