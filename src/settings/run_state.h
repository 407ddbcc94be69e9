// SPDX-License-Identifier: MIT
// The process-wide state of the extension (mduVariables): the settings as last read or applied, the
// status of the reference ET run, and whether Kc maps have been made. Everything else lives in the
// objects of a click.
#pragma once

#include "settings/run_settings.h"

namespace velmora {

struct mduVariables {
    RunSettings settings;
    bool runStatus = false;  // cleared by the error traps of a run's procedures
    bool mapsMade = false;   // set when a run of Kc maps has finished, never cleared
};

mduVariables& processState();

}  // namespace velmora
