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
                     "warning: w.dbf: TM_Jul: S4: -120.5 is not likely in deg C (and 2 more of the "
                     "kind)",
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
                     "is above (and 1 more of the kind)"}));
}

TEST(FindingGroups, ErrorsComeLastAndAreCounted) {
    const std::vector<Finding> findings = {{Severity::error, "a", "", "", "x"},
                                           {Severity::warning, "b", "", "", "y"},
                                           {Severity::note, "c", "", "", "z"},
                                           {Severity::warning, "d", "", "", "y"}};
    EXPECT_EQ(findingLines(findings),
              (Lines{"note: c: z", "warning: b: y", "warning: d: y", "error: a: x"}));
    EXPECT_EQ(findingCounts(findings), "1 error, 2 warnings, 1 note");
    EXPECT_EQ(findingCounts({}), "0 errors, 0 warnings, 0 notes");
}

}  // namespace
}  // namespace velmora
