// SPDX-License-Identifier: MIT
// What the command prints where: results on standard output, all else on standard error.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "hosts/cli/console.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using test::ChainCommand;
using test::Command;
using test::CropCommand;
using test::Outcome;
using testing::HasSubstr;
using testing::Not;
using Json = nlohmann::json;

TEST(Console, ControlCharactersBecomeVisible) {
    EXPECT_EQ(cli::visible("a\x1b[31m\tb\n\x7f"), "a\\x1b[31m\tb\n\\x7f");
    EXPECT_EQ(cli::visible("\xc2\x9b"
                           "5m \xc3\xa9 \x9b \xe6\xb0\xb4"),
              "\\x9b5m \xc3\xa9 \\x9b \xe6\xb0\xb4");
    EXPECT_EQ(cli::oneLine("a\r\nb\x07"), "a  b\\x07");
    EXPECT_EQ(cli::shellWord("out/a"), "out/a");
    EXPECT_EQ(cli::shellWord("it's $HOME"), "'it'\\''s $HOME'");
    EXPECT_EQ(cli::shellWord(""), "''");
}

TEST_F(Command, OutputThatCannotBeWrittenIsAFailure) {
    fixture.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather,
                        {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"});
    ASSERT_EQ(apply().status, 0);
    for (const char* command : {"settings show", "--json settings show", "commands", "check",
                                "grid info dem", "--help", "--version", "settings --help"}) {
        EXPECT_EQ(run(command).status, 0) << command;
        EXPECT_EQ(shell(std::string(command) + " >/dev/full 2>err").status, 1) << command;
        EXPECT_THAT(test::contentOf(folder + "/err"),
                    HasSubstr("velmora: standard output cannot be written (No space left on "
                              "device)"))
            << command;
        EXPECT_EQ(shell(std::string(command) + " >&- 2>err").status, 1) << command;
    }
    EXPECT_EQ(shell("grid info nosuch 2>/dev/full").status, 1);  // and no abort
    EXPECT_EQ(shell("grid info nosuch >/dev/full 2>/dev/full").status, 1);
    EXPECT_EQ(shell("run refet >/dev/null 2>/dev/full").status, 0);
    EXPECT_EQ(shell("nonsense >/dev/full 2>/dev/full").status, 2);
}

TEST_F(CropCommand, ACutTableIsAFailure) {
    EXPECT_EQ(run("run refet").status, 0);
    EXPECT_EQ(run("run all --only kc").status, 0);
    EXPECT_EQ(run("run all --only cropet").status, 0);
    EXPECT_EQ(run("table StatCET --csv").status, 0);
    EXPECT_EQ(shell("table StatCET --csv >/dev/full 2>err").status, 1);
    EXPECT_EQ(shell("run all --only kc >/dev/full 2>err").status, 1);
}

TEST_F(Command, NoThreadToBeHadIsNoEnd) {
#ifdef VELMORA_SANITIZE
    GTEST_SKIP() << "the sanitizer needs more address space than this leaves";
#endif
    ASSERT_EQ(apply().status, 0);
    // The address space has no room for the stack of another thread.
    const Outcome ran =
        shell("--threads 2 run refet >/dev/null 2>err", "ulimit -s 6000000; ulimit -v 5000000;");
    EXPECT_EQ(ran.status, 0) << test::contentOf(folder + "/err");
    EXPECT_THAT(test::contentOf(folder + "/err"),
                HasSubstr("note: the system gives 1 thread instead of 2"));
}

TEST_F(ChainCommand, TheHintAfterAFailureKeepsAllOptions) {
    const std::string options =
        " --cvef 0.9 --default-shares crop --overwrite-shares --diagnose --standard --quality "
        "--no-work-database --use-old";
    const Outcome stopped =
        run("--quiet --yes --threads 2 --no-sync run all "
            "--from cropet --database 'my shares.mdb'" +
            options);
    EXPECT_EQ(stopped.status, 1);
    EXPECT_THAT(stopped.told, HasSubstr("\n  velmora --quiet --yes --threads 2 --no-sync run all "
                                        "--from cropet --database '" +
                                        folder + "/my shares.mdb'" + options + "\n"));
    EXPECT_THAT(run("--no --settings-folder other run all --only cropet").told,
                HasSubstr("\n  velmora --settings-folder " + folder +
                          "/other --no run all --only cropet\n"));
}

TEST_F(ChainCommand, JsonStandsAloneOnStandardOutput) {
    const Outcome step = run("--json run refet");
    EXPECT_EQ(step.status, 0) << step.output;
    const Json one = Json::parse(step.results);
    EXPECT_EQ(one.at("step"), "refet");
    EXPECT_EQ(one.at("done"), true);
    EXPECT_THAT(one.at("messages").at(0).get<std::string>(), HasSubstr("Time for estimating"));
    EXPECT_THAT(one.at("made").at(0).get<std::string>(), HasSubstr("/out/RefET_Jun_4"));

    const Outcome stopped = run("--json run all");
    EXPECT_EQ(stopped.status, 1);
    const Json failed = Json::parse(stopped.results);
    EXPECT_EQ(failed.at("done"), false);
    EXPECT_EQ(failed.at("stoppedAt"), "eff");
    EXPECT_EQ(failed.at("goOnWith"), "velmora --json run all --from eff");
    EXPECT_THAT(failed.at("steps").back().at("errors").at(0).get<std::string>(),
                HasSubstr("No zone has shares"));
    EXPECT_THAT(stopped.told, HasSubstr("velmora: No zone has shares"));
    EXPECT_THAT(test::contentOf(folder + "/out/velmora_runs.json"),
                HasSubstr("No zone has shares"));

    const Outcome all = run("--json run all --default-shares crop --diagnose");
    EXPECT_EQ(all.status, 0) << all.output;
    const Json whole = Json::parse(all.results);
    EXPECT_EQ(whole.at("steps").size(), 7U);
    EXPECT_EQ(whole.at("steps").at(0).at("diagnostics").at(0).at("method"), "IDW");
    EXPECT_EQ(whole.at("zoneTotalsAcreFeet").size(), 3U);
    EXPECT_GT(whole.at("zoneTotalsAcreFeet").at(0).at("asInches").at("StatNIR").get<double>(), 0);
    EXPECT_TRUE(Json::parse(run("--json settings apply Year=2006").results).at("changes").empty());
    for (const char* command :
         {"--json grid copy IREF x", "--json report", "--json irdb create other.mdb",
          "--json kc set Barley May=0.5", "--json grid info nosuch"}) {
        EXPECT_EQ(run(command).results, "") << command;
    }
    EXPECT_EQ(Json::parse(run("--json eff map").results).at("grid"), folder + "/out/IREF");
    EXPECT_FALSE(Json::parse(run("--json eff apply").results).at("zones").empty());
}

TEST_F(CropCommand, ControlCharactersReachNoTerminal) {
    EXPECT_EQ(run("kc set --new 'Rye\x1b[2J' Jul=0.5").status, 0);
    EXPECT_EQ(shell("kc set --new \"$(printf 'Oats\\033[2J')\" Jul=0.5 >/dev/null").status, 0);
    EXPECT_THAT(run("kc list").output, HasSubstr("Oats\\x1b[2J"));
    EXPECT_THAT(run("kc list").output, Not(HasSubstr("\x1b")));
    EXPECT_THAT(run("--json kc list").results, HasSubstr("Oats\\u001b[2J"));
    EXPECT_EQ(shell("\"$(printf 'a\\033b')\" 2>err").status, 2);
    EXPECT_THAT(test::contentOf(folder + "/err"), Not(HasSubstr("\x1b")));
}

TEST_F(Command, AFailureThatIsShownIsTheStepsFailure) {
    ASSERT_EQ(apply("ShowMonitor=no").status, 0);
    // A folder stands where the database of the cells is to be written: the grids are made.
    std::filesystem::create_directories(folder + "/out/GridOP.mdb/x");
    const Outcome ran = run("--quiet run refet");
    EXPECT_EQ(ran.status, 1) << ran.output;
    EXPECT_THAT(ran.told, HasSubstr("GridOP.mdb"));
    const auto runs = Json::parse(test::contentOf(folder + "/out/velmora_runs.json"));
    EXPECT_EQ(runs.at(0).at("done"), false);
    EXPECT_FALSE(runs.at(0).at("messages").empty());
}

TEST_F(Command, SmallTexts) {
    fixture.makeWeather(test::RunFixture::stations(), test::RunFixture::usualWeather,
                        {"TM_", "TN_", "TD_", "SR_", "WS_", "P_"});
    const Outcome check = run("check");
    EXPECT_EQ(check.status, 1);
    EXPECT_EQ(check.results, "");
    EXPECT_THAT(check.told, testing::StartsWith("message: Run Settings First,Please!"));
    ASSERT_EQ(apply("DEM=gone").status, 0);
    EXPECT_THAT(run("check").results, HasSubstr("\n1 error, "));
    EXPECT_EQ(run("grid stats nosuch").results, "");
    const Outcome threads = run("--threads x check");
    EXPECT_EQ(threads.status, 2);
    EXPECT_THAT(threads.told, HasSubstr("x is no number of threads such as 4"));
}

}  // namespace
}  // namespace velmora
