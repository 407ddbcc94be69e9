// SPDX-License-Identifier: MIT
// A platform in memory: datasets, tables and files that live as long as it does. Anything that
// saves or reads can be let fail at its n-th call. Of the platform's services it does no kriging
// and no overlay, knows one geographic and one projected coordinate system, and answers plain
// queries alone.
#pragma once

#include <vector>

#include "gis/application.h"
#include "tests/support/fake_analysis.h"
#include "tests/support/fake_connections.h"
#include "tests/support/fake_features.h"
#include "tests/support/fake_joins.h"
#include "tests/support/fake_journal.h"
#include "tests/support/fake_rasters.h"
#include "tests/support/fake_spatial_references.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/memory_files.h"
#include "tests/support/serial_loop.h"

namespace velmora::test {

class FakePlatform : public IPlatform {
  public:
    FakePlatform() = default;
    FakePlatform(const FakePlatform&) = delete;
    FakePlatform& operator=(const FakePlatform&) = delete;

    FakeRasters& rasters() override { return rasters_; }
    FakeFeatures& features() override { return features_; }
    FakeConnections& connections() override { return connections_; }
    FakeAnalysis& analysis() override { return analysis_; }
    FakeSpatialReferences& spatialReferences() override { return spatialReferences_; }
    FakeMemoryRelationships& memoryRelationships() override { return memoryRelationships_; }
    FakeCalculator& calculator() override { return calculator_; }
    SerialLoop& loop() override { return loop_; }
    MemoryFiles& files() override { return files_; }
    FixedClock& clock() override { return clock_; }
    FakeJournal& journal() override { return journal_; }

    // Every place where a test may let a call fail.
    std::vector<FailurePoint*> failurePoints() {
        return {&rasters_.saves,      &rasters_.opens,  &rasters_.reads,     &features_.opens,
                &features_.creates,   &features_.saves, &connections_.opens, &connections_.queries,
                &connections_.writes, &files_.writes,   &files_.reads,       &files_.locks,
                &files_.settles,      &journal_.begins, &journal_.ends};
    }

  private:
    MemoryFiles files_;
    FakeTables tables_{files_};
    FakeSpatialReferences spatialReferences_;
    FakeRasters rasters_;
    FakeFeatures features_{tables_, spatialReferences_};
    FakeConnections connections_{tables_, files_};
    FakeAnalysis analysis_;
    FakeMemoryRelationships memoryRelationships_;
    FakeCalculator calculator_;
    SerialLoop loop_;
    FixedClock clock_;
    FakeJournal journal_;
};

}  // namespace velmora::test
