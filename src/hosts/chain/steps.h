// SPDX-License-Identifier: MIT
// The model steps by the names that hosts give them.
#pragma once

#include <string>
#include <vector>

#include "gis/application.h"

namespace velmora {

// In their order.
std::vector<std::string> stepNames();
// The first of them and all after it; all for "".
std::vector<std::string> stepsFrom(const std::string& first);

// The ProgID of the step's command. Throws PlatformError for no step.
std::string progIdOf(const std::string& step);
// The step whose command has the ProgID, "" for none.
std::string stepOfProgId(const std::string& progId);

// Creates the step's command, gives it the application and clicks it. Throws PlatformError for no
// step, and when the extension cannot be loaded.
void clickStep(IApplication& application, const std::string& step);

}  // namespace velmora
