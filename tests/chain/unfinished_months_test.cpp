// SPDX-License-Identifier: MIT
// Steps that go on after a failure: what they could not read or write holds no old values, and the
// failure counts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "irrigation/net_irrigation_run.h"
#include "refet/refet_run.h"
#include "settings/run_state.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

bool hasData(const Grid& grid) {
    return std::ranges::any_of(grid.values, [](float v) { return v != kNoData; });
}

// Damages the run's folder when June is done.
class Intruder : public IFeedbackListener {
  public:
    void messageChanged(const std::string& text) override {
        if (text.starts_with("Reference ET in Jun") && afterJune) afterJune();
    }
    std::function<void()> afterJune;
};

struct UnfinishedMonths : testing::Test {
    UnfinishedMonths() { f.settings.RefETMethod = "2"; }
    test::IrrigationFixture f;

    bool runWith(std::function<void()> afterJune) {
        Intruder monitor;
        monitor.afterJune = std::move(afterJune);
        const Listening listening(f.application.feedback(), monitor);
        return ReferenceEtRun(f.application, f.settings).run();
    }
    // A grid of fewer cells than the run's.
    void replaceBySmaller(const std::string& name) {
        f.save(name, std::make_shared<MemoryRaster>(Grid({2, 2, 400000, 4500000, 400, ""}, 20)));
    }
};

TEST_F(UnfinishedMonths, ATemperatureThatCannotBeReadIsNoData) {
    EXPECT_TRUE(runWith([&] { replaceBySmaller("TM_Jul"); }));
    EXPECT_TRUE(processState().runStatus);
    EXPECT_EQ(f.application.prompts().failures(), 1U);
    EXPECT_THAT(f.allMessages(), HasSubstr("Error in 'GridReadin': the grid has 2 x 2 cells"));
    EXPECT_TRUE(hasData(f.output("RefET_Jun_2")));
    EXPECT_FALSE(hasData(f.output("RefET_Jul_2")));
}

TEST_F(UnfinishedMonths, ASoilHeatFluxThatCannotBeMadeIsNoData) {
    EXPECT_TRUE(runWith([&] { std::filesystem::remove_all(f.folder.file("out/TN_Aug")); }));
    EXPECT_EQ(f.application.prompts().failures(), 1U);
    EXPECT_THAT(f.allMessages(), HasSubstr("Error in 'GetSoilHeatFlux': "));
    EXPECT_FALSE(hasData(f.output("RefET_Jul_2")));
}

TEST_F(UnfinishedMonths, AMissingSurfaceEndsTheRunWithAReason) {
    EXPECT_FALSE(runWith([&] { std::filesystem::remove_all(f.folder.file("out/TN_Jul")); }));
    EXPECT_FALSE(processState().runStatus);
    EXPECT_THAT(f.application.messages(), IsEmpty());
    EXPECT_THAT(f.application.prompts().reasons,
                ElementsAre(testing::AllOf(HasSubstr("ReadinGrids: "), HasSubstr("TN_Jul"))));
    EXPECT_FALSE(f.hasOutput("RefET_Jul_2"));
}

// The real tables, of which none can be made.
class NoNewTables : public IFeatureWorkspaceFactory {
  public:
    explicit NoNewTables(IFeatureWorkspaceFactory& real) : real_(real) {}
    std::shared_ptr<IFeatureClass> openFeatureClass(const std::string& path) override {
        return real_.openFeatureClass(path);
    }
    std::shared_ptr<IFeatureClass> openFeatureClass(const std::string& path,
                                                    const std::string& crs) override {
        return real_.openFeatureClass(path, crs);
    }
    std::shared_ptr<ITable> openTable(const std::string& path) override {
        return real_.openTable(path);
    }
    std::unique_ptr<IEditSession> edit(std::shared_ptr<ITable> table) override {
        return real_.edit(std::move(table));
    }
    bool deleteFeatureClass(const std::string& path) override {
        return real_.deleteFeatureClass(path);
    }
    void createFeatureClass(const std::string&, bool, const std::string&, const std::vector<Field>&,
                            const std::vector<NewFeature>&) override {
        throw PlatformError("the disk is full");
    }
    void createTable(const std::string&, const std::vector<Field>&,
                     const std::vector<std::vector<FieldValue>>&) override {
        throw PlatformError("the disk is full");
    }

  private:
    IFeatureWorkspaceFactory& real_;
};

// Edits that are stored, of which the first says that it failed.
class LateFailure : public IEditSession {
  public:
    LateFailure(std::unique_ptr<IEditSession> real, bool& failed)
        : real_(std::move(real)), failed_(failed) {}
    void addNumericField(const std::string& field) override { real_->addNumericField(field); }
    void setValue(std::size_t record, const std::string& field, const FieldValue& v) override {
        real_->setValue(record, field, v);
    }
    void appendRecord(const std::vector<std::pair<std::string, FieldValue>>& values) override {
        real_->appendRecord(values);
    }
    void save() override {
        real_->save();
        if (!std::exchange(failed_, true)) throw PlatformError("the disk does not answer");
    }

  private:
    std::unique_ptr<IEditSession> real_;
    bool& failed_;
};

class TablesThatFailLate : public NoNewTables {
  public:
    explicit TablesThatFailLate(IFeatureWorkspaceFactory& real) : NoNewTables(real), all_(real) {}
    std::unique_ptr<IEditSession> edit(std::shared_ptr<ITable> table) override {
        return std::make_unique<LateFailure>(all_.edit(std::move(table)), failed_);
    }
    void createTable(const std::string& path, const std::vector<Field>& fields,
                     const std::vector<std::vector<FieldValue>>& records) override {
        all_.createTable(path, fields, records);
    }

  private:
    IFeatureWorkspaceFactory& all_;
    bool failed_ = false;
};

TEST_F(UnfinishedMonths, RowsThatWereStoredBeforeAFailureAreNotAddedAgain) {
    f.settings.RefETMethod = "4";
    f.saveMonths(6, 7);
    TablesThatFailLate late(f.application.platform().features());
    f.world.platform.otherFeatures = &late;
    EXPECT_TRUE(runNetIrrigation(f.application, f.settings));
    f.world.platform.otherFeatures = nullptr;
    EXPECT_EQ(f.tableRows("StatNIR").size(), 6U);
    EXPECT_EQ(f.application.prompts().failures(), 1U);
    EXPECT_THAT(f.allMessages(), HasSubstr("the disk does not answer"));
}

TEST_F(UnfinishedMonths, NoRowGoesIntoAnOldTable) {
    f.settings.RefETMethod = "4";
    f.saveMonths(6, 7);
    ASSERT_TRUE(runNetIrrigation(f.application, f.settings)) << f.allMessages();
    const auto rows = f.tableRows("StatNIR");
    ASSERT_EQ(rows.size(), 6U);
    const std::size_t tables = f.application.document().tables.size();
    NoNewTables full(f.application.platform().features());
    f.world.platform.otherFeatures = &full;
    EXPECT_TRUE(runNetIrrigation(f.application, f.settings));  // goes on, as tables' failures ask
    f.world.platform.otherFeatures = nullptr;
    EXPECT_EQ(f.tableRows("StatNIR"), rows);
    EXPECT_EQ(f.application.document().tables.size(), tables);
    EXPECT_THAT(
        f.application.messages(),
        ElementsAre("the disk is full", "Error in sub <GotoStatTable>: the table is not open",
                    "Error in sub <GotoStatTable>: the table is not open",
                    "Error in opening table"));
    EXPECT_EQ(f.application.prompts().failures(), 4U);
    EXPECT_TRUE(f.hasOutput("NIR_Jul"));
}

}  // namespace
}  // namespace velmora
