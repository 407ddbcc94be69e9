// SPDX-License-Identifier: MIT
// The parts of the fault tests: drawing, failing calls, and the judge, who must find what is wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "tests/faults/contents.h"
#include "tests/faults/dbase_text.h"
#include "tests/faults/judge.h"
#include "tests/faults/points.h"
#include "tests/faults/tracer.h"
#include "tests/support/temp_folder.h"

namespace velmora::faults {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(FaultPoints, AreTheSameForASeedAndDifferentForAnother) {
    const Counts counts = {{"nir", {{"read", 100}, {"write", 40}}}, {"irr", {{"close", 7}}}};
    EXPECT_EQ(draw(counts, 30, 5), draw(counts, 30, 5));
    EXPECT_NE(draw(counts, 30, 5), draw(counts, 30, 6));
}

TEST(FaultPoints, EveryKindComesOnceBeforeAnyComesAgain) {
    const Counts counts = {{"nir", {{"read", 100}, {"write", 40}}}, {"irr", {{"close", 7}}}};
    const std::size_t kinds = callKind("read").errors.size() + callKind("write").errors.size() +
                              callKind("close").errors.size();
    std::map<std::string, int> drawn;
    for (const Point& point : draw(counts, 2 * kinds, 1)) {
        ++drawn[point.step + point.call + point.error];
        EXPECT_GE(point.number, 1);
        EXPECT_LE(point.number, counts.at(point.step).at(point.call));
    }
    EXPECT_EQ(drawn.size(), kinds);
    for (const auto& [kind, times] : drawn) EXPECT_EQ(times, 2) << kind;
}

TEST(FaultPoints, NoPointComesTwiceAndDrawingEndsWhenAllAreDrawn) {
    const auto all = draw({{"nir", {{"thread", 3}}}}, 100, 1);
    EXPECT_EQ(all.size(), 3 * callKind("thread").errors.size());
}

TEST(FaultPoints, TextsOfPointsAreRead) {
    const Point point{"nir@first", "write", "ENOSPC+", 12};
    EXPECT_EQ(textOf(point), "nir@first:write:ENOSPC+:12");
    EXPECT_EQ(pointFrom(textOf(point)), point);
    for (const char* wrong : {"", "nir", "nir:write:EIO", "nir:write:EIO:x", "nir:wrote:EIO:1",
                              "nir:write:EWHAT:1", "nir:write:EIO:1:2"}) {
        EXPECT_THROW(pointFrom(wrong), std::runtime_error) << wrong;
    }
}

// dd writes one byte at a time, so that its calls are known.
struct Tracing : testing::Test {
    test::TempFolder folder;

    void SetUp() override {
        ::setenv("LC_ALL", "C", 1);  // dd's own words
        const std::string why = whyNoTracing(folder.path());
        if (!why.empty()) GTEST_SKIP() << why;
        test::write(folder.file("in"), "abcdefgh");
    }
    Command copy() const {
        return {
            {"/bin/dd", "if=in", "of=out", "bs=1", "count=5", "status=none"}, folder.path(), 20};
    }
    Ending copyWith(const std::string& call, const std::string& error, long number) const {
        return runWithFault(copy(), {&callKind(call), number, faultOf(error)});
    }
    std::string made() const { return test::contentOf(folder.file("out")); }
};

TEST_F(Tracing, CountsTheCallsOfTheProgramItself) {
    const Ending ending = runCounting(copy());
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.calls.at("write"), 5);
    EXPECT_GE(ending.calls.at("read"), 5);
    EXPECT_LT(ending.calls.at("read"), 20);  // the loader reads more
}

TEST_F(Tracing, LetsOneCallFail) {
    const Ending ending = copyWith("write", "EIO", 3);
    EXPECT_TRUE(ending.reached);
    EXPECT_EQ(ending.status, 1);
    EXPECT_EQ(made(), "ab");
    EXPECT_THAT(ending.errors, HasSubstr("Input/output error"));
    EXPECT_EQ(ending.met, folder.file("out"));
}

// What is closed before the output is no matter to dd.
TEST_F(Tracing, TellsTheProgramThatClosingFailed) {
    int told = 0;
    const long closes = runCounting(copy()).calls.at("close");
    for (long n = 1; n <= closes; ++n) {
        const Ending ending = copyWith("close", "EIO", n);
        EXPECT_TRUE(ending.reached);
        const bool says = ending.errors.find("Input/output error") != std::string::npos;
        EXPECT_EQ(ending.status, says ? 1 : 0);
        told += says ? 1 : 0;
    }
    EXPECT_GE(told, 1);
}

TEST_F(Tracing, AFullDiskStaysFull) {
    Command command{
        {"/bin/sh", "-c", "echo a >x; echo b >y; echo c >z; cat x y z"}, folder.path(), 20};
    const Ending once = runWithFault(command, {&callKind("write"), 1, faultOf("ENOSPC")});
    EXPECT_EQ(once.status, 0);
    EXPECT_EQ(test::contentOf(folder.file("stdout.txt")), "b\nc\n");
    runWithFault(command, {&callKind("write"), 1, faultOf("ENOSPC+")});
    EXPECT_EQ(test::contentOf(folder.file("z")), "");
}

TEST_F(Tracing, KillsAsTheCallIsEntered) {
    const Ending ending = copyWith("write", "KILL", 4);
    EXPECT_TRUE(ending.reached);
    EXPECT_EQ(ending.signal, SIGKILL);
    EXPECT_EQ(made(), "abc");
}

TEST_F(Tracing, TellsWhenTheCallDoesNotCome) {
    const Ending ending = copyWith("write", "EIO", 6);
    EXPECT_FALSE(ending.reached);
    EXPECT_EQ(ending.status, 0);
}

TEST_F(Tracing, StopsAProgramThatHangs) {
    const Ending ending = run({{"/bin/sleep", "60"}, folder.path(), 1});
    EXPECT_TRUE(ending.hung);
    EXPECT_TRUE(runWithFault({{"/bin/sleep", "60"}, folder.path(), 1},
                             {&callKind("write"), 1, faultOf("EIO")})
                    .hung);
}

std::string dbase(const std::vector<std::string>& names, const std::vector<std::string>& records) {
    const auto low = [](std::size_t n) { return static_cast<char>(n); };
    std::string bytes = "\x03\x7e\x0b\x15";
    bytes +=
        {low(records.size()), 0, 0, 0, low(33 + 32 * names.size()), 0, low(1 + names.size()), 0};
    bytes.resize(32, '\0');
    for (const std::string& name : names) {
        std::string field = name;
        field.resize(32, '\0');
        field[11] = 'C';
        field[16] = 1;
        bytes += field;
    }
    bytes += '\r';
    for (const std::string& record : records) bytes += " " + record;
    return bytes + '\x1a';
}

TEST(DbaseText, KnowsWholeTables) {
    const std::string table = dbase({"A", "B"}, {"ab", "cd"});
    EXPECT_TRUE(dbaseText(table).whole);
    EXPECT_FALSE(dbaseText(table.substr(0, table.size() - 2)).whole);
    EXPECT_FALSE(dbaseText("").whole);
    EXPECT_FALSE(dbaseText("x").whole);
}

TEST(DbaseText, ComparesAllButTheNamedFields) {
    const std::string table = dbase({"A", "TempTTT"}, {"ab", "cd"});
    EXPECT_TRUE(sameBut({"TempTTT"}, table, dbase({"A", "TempTTT"}, {"ax", "cy"})));
    EXPECT_TRUE(sameBut({"TempTTT"}, table, dbase({"A"}, {"a", "c"})));
    EXPECT_FALSE(sameBut({"TempTTT"}, table, dbase({"A", "TempTTT"}, {"xb", "cd"})));
    EXPECT_FALSE(sameBut({"TempTTT"}, table, dbase({"A", "TempTTT"}, {"ab"})));
    EXPECT_TRUE(holdsRecordsOf(dbase({"A"}, {"a"}), dbase({"A"}, {"a", "c"})));
    EXPECT_TRUE(holdsRecordsOf(dbase({"A"}, {"a", "c"}), dbase({"A"}, {"a", "b", "c"})));
    EXPECT_FALSE(holdsRecordsOf(dbase({"A"}, {"c", "a"}), dbase({"A"}, {"a", "c"})));
    EXPECT_FALSE(holdsRecordsOf(dbase({"A"}, {"a", "a"}), dbase({"A"}, {"a", "c"})));
    EXPECT_FALSE(holdsRecordsOf(dbase({"A"}, {"b"}), dbase({"A"}, {"a", "c"})));
}

TEST(FaultContents, TimesInNotesAndTablesDoNotCount) {
    test::TempFolder folder;
    const auto notes = [](const std::string& ended, bool done) {
        return Contents{{"output/velmora_runs.json",
                         R"([{"step":"nir","seconds":1.5,"ended":")" + ended + R"(","done":)" +
                             (done ? "true" : "false") + R"(,"messages":["Time: .01 Minutes"]}])"}};
    };
    const std::string path = "output/velmora_runs.json";
    EXPECT_TRUE(same(path, notes("2026-01-01", true), notes("2027-01-01", true), folder.path()));
    EXPECT_FALSE(same(path, notes("2026-01-01", true), notes("2026-01-01", false), folder.path()));
    std::string later = dbase({"A"}, {"a"});
    later[3] = 1;
    EXPECT_TRUE(same("t.dbf", {{"t.dbf", dbase({"A"}, {"a"})}}, {{"t.dbf", later}}, folder.path()));
    EXPECT_FALSE(same("t.dbf", {{"t.dbf", later}}, {}, folder.path()));
}

struct Judging : testing::Test {
    test::TempFolder folder;
    const Undisturbed step{{{"dem/hdr.adf", "d"}, {"output/A/hdr.adf", "old"}},
                           {{"dem/hdr.adf", "d"}, {"output/A/hdr.adf", "new"}, {"output/B", "b"}},
                           "message: usual\n"};
    Ending ended(int status, const std::string& errors = "the reason") const {
        Ending ending;
        ending.status = status;
        ending.errors = errors;
        ending.reached = true;
        return ending;
    }
    Complaints judge(const Ending& ending, const Contents& now, bool killed = false) const {
        return judgeFault(step, ending, killed, now, folder.path());
    }
};

TEST_F(Judging, FindsWhatShouldBe) {
    EXPECT_THAT(judge(ended(0), step.after), IsEmpty());
    EXPECT_THAT(judge(ended(1), step.before), IsEmpty());
    EXPECT_THAT(judge(ended(1), step.after), IsEmpty());
}

TEST_F(Judging, StatusZeroMeansThatEverythingIsMade) {
    EXPECT_THAT(judge(ended(0), step.before),
                ElementsAre(HasSubstr("not made anew: output/A"), HasSubstr("missing: output/B")));
    Contents other = step.after;
    other["output/B"] = "x";
    EXPECT_THAT(judge(ended(0), other), ElementsAre(HasSubstr("different: output/B")));
}

TEST_F(Judging, AFailureHasAReasonOfItsOwn) {
    EXPECT_THAT(judge(ended(1, "message: usual\n"), step.before),
                ElementsAre(StartsWith("no reason on standard error")));
}

TEST_F(Judging, NothingBrokenOrLost) {
    Contents now = step.before;
    now["output/A/hdr.adf"] = "ne";
    EXPECT_THAT(judge(ended(1), now), ElementsAre(StartsWith("broken under its final name")));
    now.erase("output/A/hdr.adf");
    EXPECT_THAT(judge(ended(1), now), ElementsAre(StartsWith("old dataset lost")));
    now["output/A/hdr.adf"] = "old";
    now["output/.velmora-unfinished-1-A"] = "n";
    EXPECT_THAT(judge(ended(1), now), IsEmpty());
}

TEST_F(Judging, InputsStayAsTheyAre) {
    Contents now = step.before;
    now["dem/hdr.adf"] = "e";
    EXPECT_THAT(judge(ended(1), now), ElementsAre(StartsWith("input changed")));
    now.erase("dem/hdr.adf");
    EXPECT_THAT(judge(ended(1), now), ElementsAre(StartsWith("input lost")));
}

TEST_F(Judging, OnlyTheFaultMayKill) {
    Ending ending = ended(-1);
    ending.signal = SIGKILL;
    EXPECT_THAT(judge(ending, step.before, true), IsEmpty());
    ending.signal = SIGABRT;
    EXPECT_THAT(judge(ending, step.before), ElementsAre(StartsWith("ended by a signal")));
}

TEST_F(Judging, TheNextRunMendsEverything) {
    Contents now = step.after;
    EXPECT_THAT(judgeNextRun(step, ended(0), now, folder.path()), IsEmpty());
    EXPECT_THAT(judgeNextRun(step, ended(1), now, folder.path()),
                ElementsAre(StartsWith("next run fails")));
    now["output/.velmora-unfinished-1-A"] = "n";
    EXPECT_THAT(judgeNextRun(step, ended(0), now, folder.path()),
                ElementsAre(StartsWith("left over after the next run")));
}

}  // namespace
}  // namespace velmora::faults
