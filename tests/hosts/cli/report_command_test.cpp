// SPDX-License-Identifier: MIT
// `velmora report` and the totals of `velmora run all` speak of what the records tell, not of what
// the settings say by now.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "platform/records/record_parts.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using nlohmann::json;
using test::Outcome;
using testing::HasSubstr;
using testing::Not;

struct ReportCommand : test::BasinCommand {
    std::string pageOf(const std::string& options) {
        const Outcome made = inBasin("report " + options + " page.html");
        EXPECT_EQ(made.status, 0) << made.output;
        return test::contentOf(folder + "/page.html");
    }
};

TEST_F(ReportCommand, IsRefusedWhenTheSettingsSayOtherwiseThanTheRecords) {
    ASSERT_EQ(inBasin("report page.html").status, 0);
    const std::string before = test::contentOf(folder + "/page.html");
    EXPECT_THAT(before, HasSubstr("<p>Jan to Dec, 2023; reference ET by ASCE Penman-Monteith, "
                                  "short reference; cells of 200 m</p>"));
    EXPECT_THAT(before, Not(HasSubstr("class=\"banner\"")));
    EXPECT_THAT(before, HasSubstr("<p class=\"path\">" + basin("IrDB.mdb") + "</p>"));
    EXPECT_THAT(before, HasSubstr("by zone and crop (IREF): 48 rows</summary>"));
    EXPECT_THAT(before, HasSubstr("Where the figures come from (IR_Sources): "));
    ASSERT_EQ(inBasin("settings apply BeginMonth=Jun RefETMethod=4 Year=2024").status, 0);
    const Outcome refused = inBasin("report page.html");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.told, HasSubstr("ran with BeginMonth=Jan, and the settings now say Jun"));
    EXPECT_THAT(refused.told, HasSubstr("ran with RefETMethod=2, and the settings now say 4"));
    EXPECT_THAT(refused.told, HasSubstr("velmora report --draft"));
    EXPECT_EQ(test::contentOf(folder + "/page.html"), before);
    const std::string draft = pageOf("--draft");
    EXPECT_THAT(draft, HasSubstr("<p>Jan to Dec, 2023; reference ET by ASCE Penman-Monteith, "
                                 "short reference; cells of 200 m</p>"));
    EXPECT_THAT(draft, HasSubstr("ran with Year=2023, and the settings now say 2024</li>"));
    EXPECT_THAT(draft, HasSubstr(">Zone totals, Jan to Dec, 2023</h2>"));
}

TEST_F(ReportCommand, IsPrintedByABrowserWithAllThatIsFoldedOpen) {
    const auto printed = [&](const std::string& path) {
        Outcome outcome =
            shell("--settings-folder basin/settings report --pdf page.pdf >both 2>both.err", path);
        outcome.told = test::contentOf(folder + "/both.err");
        return outcome;
    };
    const Outcome without = printed("PATH=nowhere");
    EXPECT_EQ(without.status, 1);
    EXPECT_THAT(without.told, HasSubstr("No browser that can print a page into a PDF file is in "
                                        "PATH (chromium, chromium-browser, google-chrome)"));
    // A browser whose paper is the page itself.
    const std::string browser = folder + "/bin/chromium";
    const auto make = [&](const std::string& head) {
        std::filesystem::create_directory(folder + "/bin");
        test::write(browser,
                    "#!/bin/sh\n[ $1 = --version ] && { echo Chromium 131.0.1; exit; }\n"
                    "echo \"$@\" > " +
                        folder +
                        "/said\n"
                        "for word; do case $word in --print-to-pdf=*) to=${word#*=};; "
                        "file://*) from=${word#file://};; esac; done\n"
                        "{ echo " +
                        head + "; cat \"$from\"; } > \"$to\"\n");
        std::filesystem::permissions(browser, std::filesystem::perms::owner_all);
    };
    make("nothing");
    const Outcome failed = printed("PATH=" + folder + "/bin:$PATH");
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.told, HasSubstr("chromium has not printed the page into "));
    EXPECT_FALSE(std::filesystem::exists(folder + "/page.pdf"));
    make("%PDF-1.4");
    const Outcome done = printed("PATH=" + folder + "/bin:$PATH");
    EXPECT_EQ(done.status, 0) << done.told;
    const std::string paper = test::contentOf(folder + "/page.pdf");
    EXPECT_THAT(paper, testing::StartsWith("%PDF-1.4\n<!doctype html>"));
    EXPECT_THAT(paper, HasSubstr("<details open>"));
    EXPECT_THAT(paper, HasSubstr("<details open class=\"figures\">"));
    EXPECT_THAT(paper, Not(HasSubstr("<details>")));
    EXPECT_THAT(paper, Not(HasSubstr("<details class")));
    EXPECT_THAT(test::contentOf(folder + "/said"),
                HasSubstr("--no-pdf-header-footer --generate-pdf-document-outline "));
    EXPECT_FALSE(std::filesystem::exists(folder + "/page.pdf.printing.html"));
}

TEST_F(ReportCommand, NamesTheRunsThatDoNotFollowFromEachOther) {
    ASSERT_EQ(inBasin("settings apply BeginMonth=Jul EndMonth=Jul").status, 0);
    const Outcome ran = inBasin("--yes --json run all --only refet");
    ASSERT_EQ(ran.status, 0) << ran.output;
    const json made = json::parse(ran.results).at("zoneTablesMadeFor");
    EXPECT_EQ(made.at("StatIRR").at("beginMonth"), "Jan");
    EXPECT_EQ(made.at("StatIRR").at("endMonth"), "Dec");
    EXPECT_EQ(made.at("StatIRR").at("year"), "2023");
    EXPECT_THAT(inBasin("--yes run all --only refet").output,
                HasSubstr("Zone totals, acre-feet, Jan to Dec, 2023: "));
    const Outcome refused = inBasin("report page.html");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.told, HasSubstr("cropet read another run of refet than the last one"));
    const std::string draft = pageOf("--draft");
    EXPECT_THAT(draft, HasSubstr("<p>Reference ET: Jul to Jul, 2023; "));
    EXPECT_THAT(draft, HasSubstr("<p>Crop coefficients, Crop ET, Precipitation, Net irrigation "
                                 "requirement, Irrigation efficiency, Irrigation water "
                                 "requirement: Jan to Dec, 2023; "));
    EXPECT_THAT(draft, HasSubstr("<li>" + basin("output/velmora_record_refet.json") +
                                 ": cropet read another run of refet than the last one</li>"));
}

TEST_F(ReportCommand, IsRefusedForFailedRunsChangedInputsAndMissingRecords) {
    const std::string record = basin("output/velmora_record_irr.json");
    const std::string whole = test::contentOf(record);
    auto failed = platform::Json::parse(whole);
    failed["state"] = "failed";
    failed.erase("xxh3");
    test::write(record, platform::recordText(failed));
    EXPECT_THAT(inBasin("report page.html").told,
                HasSubstr("the run of irr did not come to its end (failed)"));
    test::write(record, "{");
    EXPECT_THAT(inBasin("report page.html").told, HasSubstr("cannot be understood"));
    std::filesystem::remove(record);
    const Outcome without = inBasin("report page.html");
    EXPECT_EQ(without.status, 1);
    EXPECT_THAT(without.told, HasSubstr("IRR_Jan: there is no record of the run of irr"));
    test::write(record, whole);
    std::string weather = test::contentOf(basin("weather.dbf"));
    weather.back() ^= 1;
    test::write(basin("weather.dbf"), weather);
    EXPECT_THAT(inBasin("report page.html").told,
                HasSubstr("weather.dbf: input of refet, has changed"));
    EXPECT_FALSE(std::filesystem::exists(folder + "/page.html"));
    for (const auto& file : std::filesystem::directory_iterator(basin("output"))) {
        if (file.path().filename().string().starts_with("velmora_record_")) remove(file.path());
    }
    EXPECT_THAT(inBasin("report page.html").told, HasSubstr("has no records of runs"));
    EXPECT_THAT(pageOf("--draft"), HasSubstr("has no records of runs"));
}

}  // namespace
}  // namespace velmora
