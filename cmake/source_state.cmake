# SPDX-License-Identifier: MIT
# Writes the header that says what state of the source a program was built from; run at each build
# with -DOUT=HEADER -DSOURCE=FOLDER. The header changes only when the state does.
execute_process(COMMAND git describe --always --dirty --abbrev=12 WORKING_DIRECTORY ${SOURCE}
                OUTPUT_VARIABLE STATE OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE FAILED)
if(FAILED OR NOT STATE)
  set(STATE "unknown")
endif()
file(CONFIGURE OUTPUT ${OUT} CONTENT
"// SPDX-License-Identifier: MIT
#pragma once

namespace velmora {

constexpr const char* kSourceState = \"@STATE@\";

}  // namespace velmora
" @ONLY)
