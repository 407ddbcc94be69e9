// SPDX-License-Identifier: MIT
#include "hosts/components/build_state.h"

#include "source_state.h"

namespace velmora {

std::string buildState() { return std::string(kSourceState) + ", compiler " + __VERSION__; }

}  // namespace velmora
