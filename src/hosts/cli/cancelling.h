// SPDX-License-Identifier: MIT
// Ctrl-C (SIGINT) and SIGTERM cancel what the command does: work ends at the next safe place, as
// when it fails. The second one ends the program at once.
#pragma once

#include "gis/feedback.h"

namespace velmora::cli {

// Where everything that this command does reports to, the platform's loops too.
Feedback& feedback();

// From now on the two signals cancel what feedback() carries.
void cancelOnSignals();

// Waits until there is something to read from standard input. Throws Cancelled.
void waitForInput();

// 128 and the number of the signal that has cancelled; Ctrl-C gives 130.
int cancelledStatus();

}  // namespace velmora::cli
