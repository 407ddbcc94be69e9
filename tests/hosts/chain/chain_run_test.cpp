// SPDX-License-Identifier: MIT
#include "hosts/chain/chain_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "gis/errors.h"
#include "hosts/chain/steps.h"
#include "modelling/products.h"
#include "platform/grid/geotiff_export.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Notes what it hears, in order; a step of `failing` is not done.
class RecordingHost : public IChainHost {
  public:
    explicit RecordingHost(const RunSettings& settings) : settings_(settings) {}
    std::optional<RunSettings> settings() override { return settings_; }
    void begins(const std::string& step) override { heard.push_back(step); }
    void prepare(const std::string& step) override {
        if (step == unprepared) throw PlatformError("no database");
    }
    bool carryOut(const std::string& step) override {
        heard.push_back("run " + step);
        return step != failing;
    }
    void fails(const std::string& step, const std::string& why) override {
        heard.push_back(step + " fails: " + why);
    }
    void refuses(const std::string& step, const std::vector<std::string>& old) override {
        heard.push_back(step + " refused: " + old.at(0));
    }
    void ends(const std::string&, double) override { ++ended; }
    void copied(const std::string& from, const std::string& to) override {
        heard.push_back(std::filesystem::path(from).filename().string() + " to " +
                        std::filesystem::path(to).filename().string());
    }
    void keeps(const StepInputs::Copy& names) override { heard.push_back("keeps " + names.read); }

    std::string failing;
    std::string unprepared;
    std::vector<std::string> heard;
    int ended = 0;

  private:
    const RunSettings& settings_;
};

struct ChainRuns : testing::Test {
    test::IrrigationFixture f;
    RecordingHost host{f.settings};
    ChainPlan plan;
    ChainRuns() {
        f.settings.RefETMethod = "4";
        f.settings.BeginMonth = "Jul";
    }
    std::string run(const std::vector<std::string>& steps) {
        plan.steps = steps;
        host.heard.clear();
        return runChain(f.application.platform(), host, plan);
    }
    // What stands under the name that is read is older than its source, and differs.
    void makeOldCopy() {
        f.save("faef_500", f.filled(0.5F));
        f.save("IREF", f.filled(0.7F));
        makeOlder("faef_500/w001001.adf");
    }
    void makeOlder(const std::string& file) {
        const std::filesystem::path values = f.folder.file("out/" + file);
        std::filesystem::last_write_time(
            values, std::filesystem::last_write_time(values) - std::chrono::hours(1));
    }
    float efficiency() { return f.output("faef_500").at(3, 3); }
};

TEST_F(ChainRuns, StepsGoInTheOrderOfTheProducts) {
    std::vector<std::string> makers;
    for (const Product& product : products()) makers.emplace_back(product.maker);
    EXPECT_EQ(stepNames(), makers);
    EXPECT_THAT(stepsFrom("nir"), ElementsAre("nir", "eff", "irr"));
    EXPECT_THAT(stepsFrom("rain"), IsEmpty());
    for (const std::string& step : stepNames()) EXPECT_EQ(stepOfProgId(progIdOf(step)), step);
    EXPECT_THROW(progIdOf("rain"), PlatformError);
    EXPECT_EQ(stepOfProgId("Tarnwick.clsSettings"), "");
}

TEST_F(ChainRuns, StopsAtTheStepThatIsNotDone) {
    host.failing = "ppt";
    EXPECT_EQ(run({"refet", "ppt", "nir"}), "ppt");
    EXPECT_THAT(host.heard, ElementsAre("refet", "run refet", "ppt", "run ppt"));
    EXPECT_EQ(host.ended, 2);
    host.unprepared = "refet";
    EXPECT_EQ(run({"refet", "nir"}), "refet");
    EXPECT_THAT(host.heard, ElementsAre("refet", "refet fails: no database"));
    EXPECT_EQ(run({"kc", "nir"}), "");
}

TEST_F(ChainRuns, CopiesWhatItMadeAndKeepsWhatStands) {
    f.save("Kc_Jul_4", f.filled(1.0F));
    EXPECT_EQ(run({"cropet"}), "");  // where nothing stands
    EXPECT_THAT(host.heard, ElementsAre("cropet", "Kc_Jul_4 to Kc_Jul", "run cropet"));
    EXPECT_EQ(run({"cropet"}), "");
    EXPECT_THAT(host.heard, ElementsAre("cropet", "keeps Kc_Jul", "run cropet"));
    EXPECT_EQ(run({"kc", "cropet"}), "");
    EXPECT_THAT(host.heard,
                ElementsAre("kc", "run kc", "cropet", "Kc_Jul_4 to Kc_Jul", "run cropet"));
}

// A raster file under the name that is read is the user's own: also a chain that has made the grid
// anew leaves it, and says so.
TEST_F(ChainRuns, AUsersOwnRasterFileIsNotCopiedOver) {
    f.save("Kc_Jul_4", f.filled(1.0F));
    platform::exportGeoTiff(*f.filled(0.5F), f.folder.file("out/Kc_Jul.tif"));
    makeOlder("Kc_Jul.tif");
    EXPECT_EQ(run({"kc", "cropet"}), "cropet");
    EXPECT_THAT(host.heard, ElementsAre("kc", "run kc", "cropet", "keeps Kc_Jul",
                                        HasSubstr("cropet refused: Kc_Jul is older")));
    plan.useOld = true;
    EXPECT_EQ(run({"kc", "cropet"}), "");
    EXPECT_EQ(f.output("Kc_Jul").at(3, 3), 0.5F);
    EXPECT_FALSE(std::filesystem::exists(f.folder.file("out/Kc_Jul")));
}

TEST_F(ChainRuns, RefusesWhatIsOldUnlessTold) {
    makeOldCopy();
    EXPECT_EQ(run({"irr"}), "irr");
    EXPECT_THAT(host.heard, ElementsAre("irr", "keeps faef_500",
                                        HasSubstr("irr refused: faef_500 is older than IREF")));
    EXPECT_EQ(efficiency(), 0.5F);
    plan.useOld = true;
    EXPECT_EQ(run({"irr"}), "");
    EXPECT_THAT(host.heard, ElementsAre("irr", "keeps faef_500", "run irr"));
    EXPECT_EQ(efficiency(), 0.5F);
    plan.useOld = false;
    EXPECT_EQ(run({"eff", "irr"}), "");
    EXPECT_EQ(efficiency(), 0.7F);
}

}  // namespace
}  // namespace velmora
