// SPDX-License-Identifier: MIT
#include "check/finding_groups.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using Lines = std::vector<std::string>;

TEST(FindingGroups, OneLineForAKindWithTheLargestAndTheCount) {
    const std::vector<Finding> findings = {
        {Severity::warning, "w.dbf", "TM_Jun", "S1", "99 is not likely in deg C"},
        {Severity::warning, "w.dbf", "TM_Jul", "S4", "-120.5 is not likely in deg C"},
        {Severity::warning, "w.dbf", "TM_Jul", "S5", "60 is not likely in deg C"},
        {Severity::warning, "w.dbf", "TN_Jul", "S5", "60 is not likely in deg C"},
        {Severity::warning, "v.dbf", "TM_Jul", "S5", "60 is not likely in deg C"},
        {Severity::warning, "w.dbf", "TM_Jul", "S5", "has no value"},
        {Severity::note, "w.dbf", "TM_Jul", "S5", "60 is not likely in deg C"},
    };
    EXPECT_EQ(findingLines(findings),
              (Lines{"note: w.dbf: TM_Jul: S5: 60 is not likely in deg C",
                     "warning: w.dbf: TM_Jul: S4: -120.5 is not likely in deg C (3 of the "
                     "kind, first: TM_Jun S1, TM_Jul S4, TM_Jul S5)",
                     "warning: w.dbf: TN_Jul: S5: 60 is not likely in deg C",
                     "warning: v.dbf: TM_Jul: S5: 60 is not likely in deg C",
                     "warning: w.dbf: TM_Jul: S5: has no value"}));
}

TEST(FindingGroups, TheFieldWithinATextIsNoKindOfItsOwn) {
    const std::vector<Finding> findings = {
        {Severity::warning, "w.dbf", "TN_Jun", "S1", "9 > TM_Jun 5: the minimum is above"},
        {Severity::warning, "w.dbf", "TN_Jul", "S1", "8 > TM_Jul 5: the minimum is above"}};
    EXPECT_EQ(findingLines(findings),
              (Lines{"warning: w.dbf: TN_Jun: S1: 9 > TM_Jun 5: the minimum "
                     "is above (2 of the kind, first: TN_Jun S1, TN_Jul S1)"}));
}

TEST(FindingGroups, TheFirstThreeAreNamedAndAllAreListedWhenAsked) {
    const std::vector<Finding> findings = {{Severity::error, "w", "TM_Jan", "", "is missing"},
                                           {Severity::note, "w", "TD_Jan", "S1", "has no value"},
                                           {Severity::note, "w", "TD_Jan", "S2", "has no value"},
                                           {Severity::note, "w", "TD_Feb", "S3", "has no value"},
                                           {Severity::note, "w", "TD_Mar", "S4", "has no value"},
                                           {Severity::note, "out", "", "", "grid 1 is old"},
                                           {Severity::note, "out", "", "", "grid 2 is old"}};
    EXPECT_EQ(findingLines(findings),
              (Lines{"note: w: TD_Jan: S1: has no value (4 of the kind, first: TD_Jan S1, TD_Jan "
                     "S2, TD_Feb S3)",
                     "note: out: grid 1 is old (2 of the kind)", "error: w: TM_Jan: is missing"}));
    EXPECT_EQ(allFindingLines(findings),
              (Lines{"note: w: TD_Jan: S1: has no value", "note: w: TD_Jan: S2: has no value",
                     "note: w: TD_Feb: S3: has no value", "note: w: TD_Mar: S4: has no value",
                     "note: out: grid 1 is old", "note: out: grid 2 is old",
                     "error: w: TM_Jan: is missing"}));
}

TEST(FindingGroups, ErrorsComeLastAndAreCounted) {
    const std::vector<Finding> findings = {{Severity::error, "a", "", "", "x"},
                                           {Severity::warning, "b", "", "", "y"},
                                           {Severity::note, "c", "", "", "z"},
                                           {Severity::warning, "d", "", "", "y"}};
    EXPECT_EQ(findingLines(findings),
              (Lines{"note: c: z", "warning: b: y", "warning: d: y", "error: a: x"}));
    EXPECT_EQ(allFindingLines(findings), findingLines(findings));
    EXPECT_EQ(findingCounts(findings), "1 error, 2 warnings, 1 note");
    EXPECT_EQ(findingCounts({}), "0 errors, 0 warnings, 0 notes");
}

}  // namespace
}  // namespace velmora
