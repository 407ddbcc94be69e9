// SPDX-License-Identifier: MIT
#include "tests/support/each_failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace velmora::test {

namespace {

using Records = std::vector<std::vector<FieldValue>>;

Outputs outputsOf(MemoryIrrigation& f, const std::vector<std::string>& tables) {
    Outputs outputs;
    for (const auto& [path, stored] : f.world.platform.rasters().datasets()) {
        outputs.grids[path] = stored.grid->values;
    }
    for (const std::string& table : tables) {
        if (f.world.platform.files().fileExists(f.folder.file("out/" + table + ".dbf"))) {
            outputs.tables[table] = f.tableRows(table);
        }
    }
    for (const auto& layer : f.application.document().layers) {
        outputs.layers.push_back(layer->name());
    }
    outputs.shownTables = f.application.document().tables.size();
    return outputs;
}

// One attempt on a prepared fixture.
Attempt attempt(MemoryIrrigation& f, const std::function<bool(MemoryIrrigation&)>& step,
                const std::vector<std::string>& tables) {
    Attempt made;
    made.done = step(f);
    made.failures = f.application.prompts().failures();
    made.messages = f.application.messages();
    made.outputs = outputsOf(f, tables);
    return made;
}

// Whether the records stand in the whole in their order: a month's rows may be missing.
bool areAmong(const Records& part, const Records& whole) {
    auto from = whole.begin();
    for (const auto& record : part) {
        from = std::find(from, whole.end(), record);
        if (from == whole.end()) return false;
        ++from;
    }
    return true;
}

// What is there is as it is in the whole.
void expectPartOf(const Outputs& part, const Outputs& whole) {
    for (const auto& [path, values] : part.grids) {
        const auto found = whole.grids.find(path);
        ASSERT_NE(found, whole.grids.end()) << path;
        EXPECT_EQ(values, found->second) << path;
    }
    for (const auto& [name, records] : part.tables) {
        EXPECT_TRUE(areAmong(records, whole.tables.at(name))) << name;
    }
    ASSERT_LE(part.layers.size(), whole.layers.size());
    EXPECT_TRUE(std::equal(part.layers.begin(), part.layers.end(), whole.layers.begin()));
}

}  // namespace

Attempts failEachCall(const std::function<void(MemoryIrrigation&)>& prepare,
                      const std::function<bool(MemoryIrrigation&)>& step,
                      const std::vector<std::string>& tables) {
    Attempts attempts;
    MemoryIrrigation undisturbed;
    prepare(undisturbed);
    std::vector<int> calls;  // of each point, by the step alone
    const auto points = undisturbed.world.platform.failurePoints();
    for (const FailurePoint* point : points) calls.push_back(-point->calls());
    attempts.whole.done = step(undisturbed);
    for (std::size_t p = 0; p < points.size(); ++p) calls[p] += points[p]->calls();
    attempts.whole.failures = undisturbed.application.prompts().failures();
    attempts.whole.outputs = outputsOf(undisturbed, tables);
    for (std::size_t p = 0; p < points.size(); ++p) {
        for (int call = 1; call <= calls[p]; ++call) {
            MemoryIrrigation f;
            prepare(f);
            f.world.platform.failurePoints()[p]->failAt(call);
            attempts.failed.push_back(attempt(f, step, tables));
            attempts.failed.back().failing = points[p]->doing();
            attempts.failed.back().call = call;
        }
    }
    return attempts;
}

void expectNothingLostInSilence(const Attempts& attempts) {
    EXPECT_TRUE(attempts.whole.done);
    EXPECT_EQ(attempts.whole.failures, 0U);
    EXPECT_FALSE(attempts.failed.empty());
    for (const Attempt& made : attempts.failed) {
        SCOPED_TRACE(made.failing + "at call " + std::to_string(made.call));
        expectPartOf(made.outputs, attempts.whole.outputs);
        if (made.failures == 0) {
            EXPECT_TRUE(made.done);
            EXPECT_EQ(made.outputs, attempts.whole.outputs);
        } else {
            EXPECT_FALSE(made.messages.empty());
        }
        if (!made.done) {
            EXPECT_GT(made.failures, 0U);
        }
        // Months that were not begun are a step's end.
        if (made.outputs.layers.size() < attempts.whole.outputs.layers.size()) {
            EXPECT_FALSE(made.done);
        }
    }
}

void expectEnds(const Attempts& attempts, const std::string& failing) {
    int ended = 0;
    for (const Attempt& made : attempts.failed) {
        if (made.failing != failing) continue;
        ++ended;
        EXPECT_FALSE(made.done) << failing << made.call;
        EXPECT_EQ(made.failures, 1U) << failing << made.call;
        ASSERT_FALSE(made.messages.empty()) << failing << made.call;
        EXPECT_THAT(made.messages.back(),
                    testing::AllOf(testing::StartsWith(failing),
                                   testing::EndsWith(": the test lets it fail")));
    }
    EXPECT_GT(ended, 0) << failing;
}

}  // namespace velmora::test
