// SPDX-License-Identifier: MIT
// A run that is killed, wherever it is, leaves nothing broken under a final name, and the next run
// gives what an undisturbed one gives.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>
#include <thread>

#include "gis/memory_raster.h"
#include "irrigation/irrigation_database.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Files = std::map<std::string, std::string>;

constexpr int kKills = 8;  // of each step
constexpr int kCancels = 4;

struct Kill : testing::Test {
    test::IrrigationFixture f;
    fs::path out = f.folder.file("out");
    std::mt19937 random{20260421};

    Kill() {
        f.makeCropLand(f.fields());
        f.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather,
                      {"TM_", "TN_", "P_"});
        f.settings.BeginMonth = "May";
        f.settings.EndMonth = "Aug";
        f.storeSettings();
    }

    pid_t start(const std::vector<std::string>& arguments) const {
        std::vector<std::string> words = {VELMORA_PROGRAM, "--settings-folder",
                                          f.application.folder, "--quiet"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> pointers;
        for (std::string& word : words) pointers.push_back(word.data());
        pointers.push_back(nullptr);
        const pid_t child = ::fork();
        if (child == 0) {
            const int nowhere = ::open("/dev/null", O_RDWR);
            for (const int stream : {0, 1, 2}) ::dup2(nowhere, stream);
            ::signal(SIGINT, SIG_DFL);  // whoever runs the tests may ignore it
            ::execv(VELMORA_PROGRAM, pointers.data());
            ::_exit(127);
        }
        return child;
    }
    // The exit status, or 128 when it was killed.
    static int end(pid_t child) {
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
    }
    int run(const std::vector<std::string>& arguments) const { return end(start(arguments)); }

    // Everything in the output folder but the notes of when runs ended.
    Files files() const {
        Files all;
        for (const auto& entry : fs::recursive_directory_iterator(out)) {
            const std::string name = fs::relative(entry.path(), out).string();
            if (!entry.is_regular_file() || name == "velmora_runs.json" ||
                name.find("velmora_made_") != std::string::npos ||
                name.find("velmora_record_") != std::string::npos) {
                continue;
            }
            if (name == ".velmora-lock" || name.starts_with(kUnfinishedPrefix)) continue;
            all[name] = test::contentOf(entry.path().string());
        }
        return all;
    }
    // The rows of the efficiency table, which a killed run may have emptied.
    std::vector<std::string> efficiencies() {
        std::vector<std::string> rows;
        const IrrigationDatabase database(f.application.platform(), f.folder.file("IrDB.mdb"));
        if (!database.hasEfficiencyTable()) return rows;
        const auto all = database.query("SELECT * FROM IREF ORDER BY ZoneUnit, CropType");
        for (; !all->eof(); all->moveNext()) {
            rows.emplace_back();
            for (int i = 0; i < all->fieldCount(); ++i) {
                rows.back() += keyText(all->value(all->fieldName(i))) + "|";
            }
        }
        return rows;
    }

    void expectWholeDatabase(const std::string& path) {
        const auto database = f.application.platform().connections().open(
            "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path);
        const auto check = database->open("PRAGMA integrity_check");
        EXPECT_EQ(std::get<std::string>(check->value("integrity_check")), "ok") << path;
    }
    // Whatever stands under a final name can be read to its end.
    void expectNothingBroken() {
        IPlatform& platform = f.application.platform();
        const auto workspace = platform.rasters().openFromFolder(out.string());
        for (const auto& entry : fs::directory_iterator(out)) {
            const std::string name = entry.path().filename().string();
            const std::string kind = entry.path().extension().string();
            if (name.starts_with(".velmora")) continue;
            if (entry.is_directory()) {
                EXPECT_NO_THROW(
                    wholeGrid(*workspace->openRasterDataset(name)->createDefaultRaster()))
                    << name;
            } else if (kind == ".shp") {
                const auto layer = platform.features().openFeatureClass(entry.path().string());
                EXPECT_EQ(layer->areas().size(), layer->recordCount());
                EXPECT_GE(layer->fieldIndex("ZONE"), 0);
                EXPECT_GT(layer->recordCount(), 20U);
            } else if (kind == ".dbf") {
                const auto table = platform.features().openTable(entry.path().string());
                EXPECT_FALSE(table->fields().empty()) << name;
                if (name.starts_with("Stat")) {
                    EXPECT_EQ(table->recordCount() % 3, 0U) << name;
                }
            } else if (kind == ".mdb") {
                expectWholeDatabase(entry.path().string());
            }
        }
        expectWholeDatabase(f.folder.file("IrDB.mdb"));
        const auto stations = platform.features().openFeatureClass(f.settings.WeatherStations);
        EXPECT_EQ(stations->recordCount(), test::RunFixture::stations().size());
    }

    static std::vector<std::string> step(const std::string& name) {
        if (name != "eff") return {"run", name};
        return {"run", "eff", "--default-shares", "crop", "--overwrite-shares", "--cvef", "0.9"};
    }
};

TEST_F(Kill, NeverLeavesAnythingBroken) {
    ASSERT_EQ(run({"run", "all", "--default-shares", "crop", "--cvef", "0.9"}), 0);
    // The order of the database's rows does not change what the second run gives.
    ASSERT_EQ(run({"run", "all", "--default-shares", "crop", "--cvef", "0.9"}), 0);
    const Files undisturbed = files();
    const auto rows = efficiencies();
    ASSERT_GT(undisturbed.size(), 100U);
    ASSERT_FALSE(rows.empty());
    int killed = 0;
    for (const char* name : {"refet", "kc", "cropet", "ppt", "nir", "eff", "irr"}) {
        const auto began = Clock::now();
        ASSERT_EQ(run(step(name)), 0) << name;
        const auto whole = Clock::now() - began;
        for (int i = 0; i < kKills; ++i) {
            SCOPED_TRACE(std::string(name) + ", kill " + std::to_string(i));
            const pid_t child = start(step(name));
            const double share = std::uniform_real_distribution<>(0, 1)(random);
            std::this_thread::sleep_for(whole * share);
            ::kill(child, SIGKILL);
            killed += end(child) == 128 ? 1 : 0;
            expectNothingBroken();
        }
        ASSERT_EQ(run(step(name)), 0) << name;
        const Files again = files();
        EXPECT_EQ(again.size(), undisturbed.size()) << name;
        for (const auto& [file, content] : undisturbed) {
            ASSERT_TRUE(again.contains(file)) << name << ' ' << file;
            EXPECT_TRUE(again.at(file) == content) << name << ' ' << file;
        }
        EXPECT_EQ(efficiencies(), rows) << name;
        for (const auto& entry : fs::directory_iterator(out)) {
            EXPECT_FALSE(entry.path().filename().string().starts_with(".velmora")) << entry;
        }
    }
    EXPECT_GT(killed, 7 * kKills / 2);
}

// Ctrl-C is no kill: the step itself ends, with nothing unfinished left.
TEST_F(Kill, CtrlCEndsAStepAndLeavesNothingUnfinished) {
    ASSERT_EQ(run({"run", "all", "--default-shares", "crop", "--cvef", "0.9"}), 0);
    ASSERT_EQ(run({"run", "all", "--default-shares", "crop", "--cvef", "0.9"}), 0);
    const Files undisturbed = files();
    int cancelled = 0;
    for (const char* name : {"refet", "kc", "cropet", "ppt", "nir", "eff", "irr"}) {
        const auto began = Clock::now();
        ASSERT_EQ(run(step(name)), 0) << name;
        const auto whole = Clock::now() - began;
        for (int i = 0; i < kCancels; ++i) {
            SCOPED_TRACE(std::string(name) + ", Ctrl-C " + std::to_string(i));
            const pid_t child = start(step(name));
            std::this_thread::sleep_for(whole * std::uniform_real_distribution<>(0, 1)(random));
            ::kill(child, SIGINT);
            const int status = end(child);
            // Before it listens to signals they end the program; when it is done it is done.
            EXPECT_THAT(status, testing::AnyOf(0, 128, 130));
            cancelled += status == 130 ? 1 : 0;
            expectNothingBroken();
            for (const auto& entry : fs::recursive_directory_iterator(f.folder.path())) {
                EXPECT_FALSE(entry.path().filename().string().starts_with(kUnfinishedPrefix))
                    << entry;
            }
        }
        ASSERT_EQ(run(step(name)), 0) << name;
        const Files again = files();
        for (const auto& [file, content] : undisturbed) {
            ASSERT_TRUE(again.contains(file)) << name << ' ' << file;
            EXPECT_TRUE(again.at(file) == content) << name << ' ' << file;
        }
    }
    // A sanitized program starts and ends slowly, so that most come too early or too late.
    EXPECT_GT(cancelled, 0);
}

TEST_F(Kill, AStarterDatabaseIsWholeOrNotThere) {
    const std::string path = f.folder.file("IrDB.mdb");
    const auto began = Clock::now();
    ASSERT_EQ(run({"irdb", "create"}), 0);
    const auto whole = Clock::now() - began;
    const std::string undisturbed = test::contentOf(path);
    for (int i = 0; i < 2 * kKills; ++i) {
        if (i % 2 == 0) fs::remove(path);
        const pid_t child = start({"irdb", "create", "--replace-database"});
        std::this_thread::sleep_for(whole * std::uniform_real_distribution<>(0, 1)(random));
        ::kill(child, SIGKILL);
        end(child);
        if (fs::exists(path)) {
            EXPECT_TRUE(test::contentOf(path) == undisturbed) << i;
        }
    }
    ASSERT_EQ(run({"irdb", "create", "--replace-database"}), 0);
    EXPECT_TRUE(test::contentOf(path) == undisturbed);
    for (const auto& entry : fs::directory_iterator(f.folder.path())) {
        EXPECT_FALSE(entry.path().filename().string().starts_with(".velmora")) << entry;
    }
}

}  // namespace
}  // namespace velmora
