// SPDX-License-Identifier: MIT
// What a campaign found, as text.
#pragma once

#include <string>
#include <vector>

#include "tests/faults/campaign.h"

namespace velmora::faults {

// One line for each step and kind of call: tried, as it should be, not; and sums.
std::string table(const std::vector<Outcome>& outcomes);

// Faults, kills, next runs and inputs: tried, as it should be, not.
std::string summary(const std::vector<Outcome>& outcomes);

// Every point that did not end as it should, under its first complaint's cause, with the option
// that repeats it.
std::string wrongOnes(const std::vector<Outcome>& outcomes);

// All that is known of one point.
std::string whole(const Outcome& outcome);

}  // namespace velmora::faults
