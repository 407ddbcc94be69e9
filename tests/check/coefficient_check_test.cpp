// SPDX-License-Identifier: MIT
// Crop coefficients that are not likely, or for another reference, and land without any.
#include "check/coefficient_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <locale>
#include <sstream>

#include "check/finding_groups.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

struct CoefficientCheck : testing::Test {
    test::MemoryCrops f;

    // A table with the same coefficient of each crop in all months.
    void make(const std::vector<std::pair<std::string, double>>& crops) {
        std::vector<test::Crop> rows;
        for (const auto& [name, kc] : crops) rows.push_back({name, std::vector<double>(12, kc)});
        f.makeKcTable(rows);
    }
    std::vector<std::string> lines() {
        const auto table = f.application.platform().features().openTable(f.settings.KcTable);
        return findingLines(checkCoefficients(*table, f.settings));
    }
    std::vector<std::string> all() {
        return findingLines(checkInputs(f.application.platform(), f.settings));
    }
};

TEST_F(CoefficientCheck, LikelyOnesAreNotTold) {
    make({{"Alfalfa", 0.95}, {"Corn", 1.2}, {"Wheat", 1.15}, {"Bare", 0}, {"Cane", 1.4}});
    EXPECT_EQ(lines(), std::vector<std::string>());
}

TEST_F(CoefficientCheck, OutOfRange) {
    make({{"Corn", 9.5}, {"Wheat", -0.1}});
    const std::string table = f.settings.KcTable;
    EXPECT_THAT(lines(), Contains("warning: " + table +
                                  ": Kc_Jun: Corn: 9.5 is not likely for a crop coefficient (4 of "
                                  "the kind, first: Kc_Jun Corn, Kc_Jul Corn, Kc_Jun Wheat)"));
    f.settings.EndMonth = "xyz";  // of no month
    EXPECT_THAT(lines(), Not(Contains(HasSubstr("not likely"))));
}

TEST_F(CoefficientCheck, ACropThatStandsTwice) {
    make({{"Corn", 1.1}, {"corn", 1.1}, {"Corn", 0.5}});
    EXPECT_THAT(lines(), Contains(HasSubstr(": Corn: stands more than once: the first record")));
}

TEST_F(CoefficientCheck, TheReferenceThatTheyAreMadeFor) {
    make({{"Alfalfa", 0.95}, {"Corn", 1.2}, {"Wheat", 1.15}});
    f.settings.RefETMethod = "1";
    EXPECT_THAT(lines(), Contains(HasSubstr("1.2 (Corn) is high for coefficients over alfalfa")));
    f.settings.RefETMethod = "5";
    EXPECT_THAT(lines(), Contains(HasSubstr("note: " + f.settings.KcTable +
                                            ": method 5 is no reference ET")));
    make({{"Alfalfa", 1}, {"Sweet Corn", 0.95}, {"Winter Wheat", 1.02}, {"Trees", 0.8}});
    f.settings.RefETMethod = "1";
    EXPECT_EQ(lines(), std::vector<std::string>());
    for (const char* method : {"2", "3", "4", "6"}) {
        f.settings.RefETMethod = method;
        EXPECT_THAT(lines(), Contains(HasSubstr("1.02 is the highest coefficient of grain, corn")))
            << method;
    }
    make({{"Grapes", 0.7}, {"Apples", 0.95}, {"Corn", 1}});  // of one crop alone nothing is said
    EXPECT_EQ(lines(), std::vector<std::string>());
}

TEST_F(CoefficientCheck, LandWithoutARowIsToldWithItsAcres) {
    const auto fields = test::MemoryCrops::fields();
    f.makeKcTable({{fields[0].key, std::vector<double>(12, 1.1)}});
    double acres = 0;
    for (const test::Shape& field : fields) {
        if (field.key == fields[1].key) acres += test::areaOf(field) / 4047;
    }
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(12);
    text << std::round(acres * 10) / 10;
    std::vector<std::string> single;
    const auto table = f.application.platform().features().openTable(f.settings.KcTable);
    for (const Finding& finding :
         checkTypesWithoutRow(f.application.platform(), f.settings, *table)) {
        single.push_back(findingLine(finding));
    }
    EXPECT_THAT(single,
                Contains("warning: " + f.settings.LandCover + ": Use: Barley: " + text.str() +
                         " acres have no row in the crop coefficient table, and so no "
                         "crop ET"));
    // What no one irrigates, and what has no type, is worth a note alone.
    EXPECT_THAT(single, Contains(testing::ContainsRegex("^note: .*: Use: Water: [0-9.]+ acres")));
    EXPECT_THAT(single, Contains(testing::ContainsRegex("^note: .*: Use: no type: [0-9.]+ acres")));
    EXPECT_EQ(single.size(), 4U);
    EXPECT_THAT(all(), Contains(HasSubstr("(2 of the kind, first: Use Barley, Use O'Brien Corn)")));
}

}  // namespace
}  // namespace velmora
