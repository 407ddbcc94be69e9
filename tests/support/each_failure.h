// SPDX-License-Identifier: MIT
// A step tried again and again, each time with another call of the platform that fails.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/support/memory_fixtures.h"

namespace velmora::test {

// What a step left in the output folder and in the map.
struct Outputs {
    std::map<std::string, std::vector<float>> grids;                     // by path
    std::map<std::string, std::vector<std::vector<FieldValue>>> tables;  // by name
    std::vector<std::string> layers;
    std::size_t shownTables = 0;
    bool operator==(const Outputs&) const = default;
};

struct Attempt {
    std::string failing;  // what fails: "Cannot save the raster ", "" in an attempt without failure
    int call = 0;         // the first, the second ... call of that kind
    bool done = false;    // what the step gave
    std::size_t failures = 0;  // told as failures
    std::vector<std::string> messages;
    Outputs outputs;
};

struct Attempts {
    Attempt whole;  // without a failure
    std::vector<Attempt> failed;
};

// Prepares a fixture of its own for every attempt; `tables` are the names of the step's tables.
Attempts failEachCall(const std::function<void(MemoryIrrigation&)>& prepare,
                      const std::function<bool(MemoryIrrigation&)>& step,
                      const std::vector<std::string>& tables);

// Expects that what an attempt lacks of the whole was told as a failure, that the rest is what it
// is in the whole, and that a step that ended early gave false.
void expectNothingLostInSilence(const Attempts& attempts);

// Expects that every failure of this kind ended the step, with its own text as the last message.
void expectEnds(const Attempts& attempts, const std::string& failing);

}  // namespace velmora::test
