// SPDX-License-Identifier: MIT
#pragma once

namespace velmora {

// The style sheet of the report.
const char* reportStyle();

}  // namespace velmora
