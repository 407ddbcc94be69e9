// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <functional>

namespace velmora::qt {

// Lets the windows be painted and timers run while a step works on this thread, at most every 40
// ms. Mouse and keyboard are not heard meanwhile: what the user clicks now must not start anything
// later. Calls within a call do nothing.
void keepPainted();

// The same at once, however short ago the last time was: what has just changed must be seen.
void paintNow();

// What is heard all the same: the mouse in that widget and its children (nullptr for none), and the
// Esc key, which calls `cancel`.
void hearWhileWorking(QWidget* heard, std::function<void()> cancel);

}  // namespace velmora::qt
