// SPDX-License-Identifier: MIT
#pragma once

#include "gis/application.h"

namespace velmora {

// What every model command does first: without the default settings file it shows "Run Settings
// First,Please!" and says no; otherwise it reads the whole record afresh into the process-wide
// settings. A file that cannot be read is shown and says no as well. The record's content is not
// checked; paths that lost characters on their way into the file are told.
bool passRunGate(IApplication& application);

}  // namespace velmora
