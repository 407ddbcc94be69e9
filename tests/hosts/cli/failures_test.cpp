// SPDX-License-Identifier: MIT
// What the command tells of failures to programs (--json).
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "hosts/cli/failure.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using test::Command;
using test::Outcome;
using test::RunFixture;
using test::Station;
using testing::HasSubstr;
using testing::Not;
using Json = nlohmann::json;

// The failures of the lines for programs.
std::vector<Json> failuresIn(const std::string& told) {
    std::vector<Json> failures;
    std::istringstream lines(told);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("{")) failures.push_back(Json::parse(line).at("failure"));
    }
    return failures;
}

struct FailingCommand : Command {
    // Stores other bytes in a number of the weather table, record counted from 1.
    void spoil(const std::string& field, std::size_t record, const std::string& text) const {
        const std::string path = folder + "/weather.dbf";
        std::string bytes = test::contentOf(path);
        const auto number = [&](std::size_t at) {
            return static_cast<unsigned char>(bytes[at]) +
                   256U * static_cast<unsigned char>(bytes[at + 1]);
        };
        std::size_t at = number(8) + (record - 1) * number(10) + 1;
        for (std::size_t d = 32; field != bytes.c_str() + d; d += 32) {
            at += static_cast<unsigned char>(bytes[d + 16]);
        }
        bytes.replace(at, text.size(), text);
        test::write(path, bytes);
    }
};

TEST(Failures, HoldWhatIsKnown) {
    EXPECT_EQ(cli::failureJson("bad", {}).dump(), R"({"text":"bad"})");
    EXPECT_EQ(cli::failureJson("bad", {.file = "/a",
                                       .field = "F",
                                       .record = 2,
                                       .station = "S",
                                       .month = 7,
                                       .column = 3,
                                       .row = 4})
                  .dump(),
              R"({"text":"bad","file":"/a","field":"F","record":2,"station":"S","month":"Jul",)"
              R"("column":3,"row":4})");
}

TEST_F(FailingCommand, ACommandsOwnFailureIsALineForPrograms) {
    const Outcome plain = run("grid info nosuch");
    EXPECT_THAT(plain.told, Not(HasSubstr("{")));
    const Outcome json = run("--json grid info nosuch");
    EXPECT_EQ(json.status, 1);
    EXPECT_EQ(json.results, "");
    EXPECT_THAT(json.told, testing::StartsWith(plain.told));
    const auto failures = failuresIn(json.told);
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_THAT(failures[0].at("text"), HasSubstr("There is no raster dataset"));
    EXPECT_EQ(failures[0].at("file"), "nosuch");

    const auto settings = failuresIn(run("--json check").told);
    ASSERT_EQ(settings.size(), 1U);
    EXPECT_THAT(settings[0].at("file"), HasSubstr("Zav.inf"));
    EXPECT_EQ(failuresIn(run("--json settings apply Nosuch=1").told).size(), 1U);
}

TEST_F(FailingCommand, ANumberThatIsNoneHasFileFieldRecordAndStation) {
    ASSERT_EQ(apply("RefETMethod=4").status, 0);
    spoil("TM_Jul", 3, "12,5");
    const Outcome ran = run("--json run refet");
    EXPECT_EQ(ran.status, 1);
    const Json failures = Json::parse(ran.results).at("failures");
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_THAT(failures[0].at("text"), testing::AllOf(HasSubstr("Error in 'GetParameters': In "),
                                                       HasSubstr("record 3, field TM_Jul: \"12,5"),
                                                       HasSubstr("is no number")));
    EXPECT_EQ(failures[0].at("file"), folder + "/weather.dbf");
    EXPECT_EQ(failures[0].at("field"), "TM_Jul");
    EXPECT_EQ(failures[0].at("record"), 3);
    EXPECT_EQ(failures[0].at("station"), RunFixture::stations().at(2).name);
    EXPECT_THAT(failuresIn(ran.told), testing::ElementsAre(failures[0]));
    EXPECT_EQ(failuresIn(run("run refet").told).size(), 0U);
}

TEST_F(FailingCommand, ASurfaceThatCannotBeMadeHasTableFieldAndMonth) {
    fixture.makeWeather(RunFixture::stations(),
                        [](const std::string& p, const Station& s, int m) -> FieldValue {
                            return p == "TN_" && m == 7 ? FieldValue(-90.0)
                                                        : RunFixture::usualWeather(p, s, m);
                        },
                        {"TM_", "TN_"});
    ASSERT_EQ(apply("RefETMethod=4").status, 0);
    const Json failures = Json::parse(run("--json run refet").results).at("failures");
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0].at("file"), folder + "/weather.dbf");
    EXPECT_EQ(failures[0].at("field"), "TN_Jul");
    EXPECT_EQ(failures[0].at("month"), "Jul");
    EXPECT_FALSE(failures[0].contains("station"));
}

TEST_F(FailingCommand, AnEquationThatFailsHasItsCellAndMonth) {
    // Far north in December there is no sunrise.
    fixture.makeDomain({400000, 9200000, 414800, 9208400}, fixture.geometry().crs);
    test::write(folder + "/north.asc",
                "ncols 2\nnrows 2\nxllcorner 390000\nyllcorner 9190000\ncellsize 20000\n10 20\n30 "
                "40\n");
    ASSERT_EQ(
        apply("DEM=north.asc RefETMethod=4 BeginMonth=Dec EndMonth=Dec ExtentProvider=domain.shp")
            .status,
        0);
    const Outcome ran = run("--json run refet");
    const Json failures = Json::parse(ran.results).at("failures");
    ASSERT_EQ(failures.size(), 2U) << ran.output;
    for (const Json& failure : failures) {
        EXPECT_EQ(failure.at("month"), "Dec");
        EXPECT_EQ(failure.at("column"), 1);
        EXPECT_EQ(failure.at("row"), 1);
    }
    EXPECT_THAT(failures[0].at("text"), HasSubstr("no sunrise or sunset"));
    EXPECT_EQ(failures[1].at("text"), "Error found in RefET calculation module");
}

}  // namespace
}  // namespace velmora
