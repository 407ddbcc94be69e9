// SPDX-License-Identifier: MIT
// Every published figure against the equations, and the files that hold them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "gis/errors.h"
#include "refet/validation/quantities.h"
#include "refet/validation/validation.h"

namespace velmora {
namespace {

using testing::HasSubstr;

TEST(PublishedFigures, AreMetWithinTheirTolerances) {
    std::set<std::string> seen;
    for (const ComparedGroup& group : compared(publishedFigures())) {
        for (const Comparison& c : group.figures) {
            EXPECT_NE(c.verdict, Verdict::outside)
                << group.group->title << ": " << c.figure->quantity << " (" << c.figure->inputs
                << ") ours " << c.ours << ", figure " << c.figure->printed << ", tolerance "
                << c.figure->tolerance;
            seen.insert(c.figure->quantity);
        }
    }
    EXPECT_TRUE(seen.contains("sum"));
    for (const Quantity& q : quantities()) EXPECT_TRUE(seen.contains(q.name)) << q.name;
}

// A tolerance about what is expected must not let the figure itself through, or the departure is
// none.
TEST(PublishedFigures, DeparturesAreDepartures) {
    for (const FigureGroup& group : publishedFigures()) {
        for (const Figure& figure : group.figures) {
            if (!figure.expected) continue;
            EXPECT_GT(std::abs(*figure.expected - figure.value), figure.tolerance) << group.title;
        }
    }
}

std::vector<FigureGroup> read(const std::string& lines) {
    return readFigures("== A group\nsource: a paper\n" + lines, "file.txt");
}

Comparison only(const std::vector<FigureGroup>& groups) {
    return compared(groups).at(0).figures.at(0);
}

TEST(PublishedFigures, SaysWhatIsOutside) {
    const auto near = read("e0 | T=24.5 | 3.075 | 0.0006\n");
    const auto far = read("e0 | T=24.5 | 3.079 | 0.0006\n");
    EXPECT_EQ(only(near).verdict, Verdict::met);
    EXPECT_EQ(only(far).verdict, Verdict::outside);
    EXPECT_NEAR(only(far).difference(), -0.0043, 0.0001);
    EXPECT_GT(only(far).share(), 1);
}

TEST(PublishedFigures, ADepartureIsHeldToWhatIsExpected) {
    const auto expected = read("kt | F=30 | .300 | 0.0005 | 0.205 | no floor\n");
    const auto wrong = read("kt | F=30 | .300 | 0.0005 | 0.210 | no floor\n");
    const auto met = read("kt | F=30 choices=papers | .300 | 0.0005 | 0.205 | no floor\n");
    EXPECT_EQ(only(expected).verdict, Verdict::departs);
    EXPECT_EQ(only(wrong).verdict, Verdict::outside);
    EXPECT_EQ(only(met).verdict, Verdict::outside);
}

TEST(PublishedFigures, InputsOfAFigureGoBeforeThoseOfItsGroup) {
    const auto groups = read("with: T=15\ne0 | T=24.5 | 3.075 | 0.0006\ne0 | | 1.705 | 0.0006\n");
    const auto results = compared(groups);
    for (const Comparison& c : results.at(0).figures) EXPECT_EQ(c.verdict, Verdict::met);
}

TEST(PublishedFigures, ASumTakesTheFiguresOfItsSeries) {
    const auto groups = read(
        "e0 | T=24.5 series=a | 3.075 | 0.1\ne0 | T=15 series=b | 1.705 | 0.1\n"
        "e0 | T=15 series=a | 1.705 | 0.1\nsum | series=a | 4.780 | 0.001\n");
    EXPECT_EQ(compared(groups).at(0).figures.back().verdict, Verdict::met);
}

TEST(PublishedFigures, AToleranceMayBeAPercentage) {
    EXPECT_DOUBLE_EQ(read("p | lat=40 month=1 | 6.75 | 2 %\n")[0].figures[0].tolerance, 0.135);
}

TEST(PublishedFigures, AFileThatIsWrongNamesTheLine) {
    for (const auto& [lines, what] : {std::pair{"e0 | T=15 | 1.705\n", "4 or 6 columns"},
                                      {"e0 | T=15 | much | 0.1\n", "\"much\" is no number"},
                                      {"e0 | T=15 | 1.7 | 0\n", "above 0"},
                                      {"e0 | T=15 | 1.7 | 0.1 | 1.6 | \n", "a word why"},
                                      {"origin: heard\n", "no origin"}}) {
        EXPECT_THAT([&] { read(lines); }, testing::ThrowsMessage<PlatformError>(testing::AllOf(
                                              HasSubstr("file.txt, line 3: "), HasSubstr(what))))
            << lines;
    }
    EXPECT_THAT([] { read(""); },
                testing::ThrowsMessage<PlatformError>(HasSubstr("needs figures")));
    EXPECT_THAT([] { readFigures("e0 | T=15 | 1.7 | 0.1\n", "file.txt"); },
                testing::ThrowsMessage<PlatformError>(HasSubstr("before the first group")));
}

TEST(PublishedFigures, AFigureThatCannotBeComputedIsNamed) {
    for (const auto& [line, what] : {std::pair{"e7 | T=15 | 1 | 1\n", "\"e7\""},
                                     {"e0 | | 1 | 1\n", "the input T is missing"},
                                     {"e0 | T=warm | 1 | 1\n", "T=warm is no number"},
                                     {"e0 | T | 1 | 1\n", "is no input"},
                                     {"sum | series=x | 1 | 1\n", "no figure before it"}}) {
        const auto groups = read(line);
        EXPECT_THAT([&] { compared(groups); }, testing::ThrowsMessage<PlatformError>(testing::AllOf(
                                                   HasSubstr("A group, "), HasSubstr(what))))
            << line;
    }
}

TEST(PublishedFigures, AYearsDayIsThatOfAYearOf365Days) {
    for (const auto& [J, day, month] : {std::tuple{1, 1, 1},
                                        {31, 31, 1},
                                        {32, 1, 2},
                                        {60, 29, 2},
                                        {61, 1, 3},
                                        {246, 2, 9},
                                        {366, 31, 12}}) {
        const Date date = FigureInputs("J=" + std::to_string(J), "").date();
        EXPECT_EQ(date.day, day) << J;
        EXPECT_EQ(date.month, month) << J;
        EXPECT_EQ(date.year % 4, 0);
    }
}

}  // namespace
}  // namespace velmora
