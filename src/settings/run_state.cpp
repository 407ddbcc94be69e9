// SPDX-License-Identifier: MIT
#include "settings/run_state.h"

namespace velmora {

mduVariables& processState() {
    static mduVariables state;
    return state;
}

}  // namespace velmora
