// SPDX-License-Identifier: MIT
// The comparison with published figures as the command, the document and the report show it.
#include "hosts/results/validation/validation_forms.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "hosts/cli/commands.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

using test::Command;
using testing::HasSubstr;
using testing::Not;

// One figure that is met, one that departs, one that is outside.
const std::vector<FigureGroup>& three() {
    static const auto groups = readFigures(
        "== Air & <water>\nsource: a paper\nnote: A word.\nwith: z=1800\n"
        "pressure | | 81.8 | 0.06\n"
        "kt | F=30 | .300 | 0.0005 | 0.205 | no floor\n"
        "e0 | T=24.5 | 3.079 | 0.0006\n"
        "== Apart\nsource: a calculation\norigin: recomputed\ne0 | T=15 | 1.705 | 0.0006\n",
        "three.txt");
    return groups;
}

TEST(Validation, TheDocumentIsWhatTheProgramMakes) {
    EXPECT_EQ(test::contentOf(VELMORA_TEST_DATA "/../../docs/validation.md"),
              validationPage(compared(publishedFigures())))
        << "velmora validate --markdown > docs/validation.md makes it anew";
}

TEST(Validation, AFigureOutsideIsToldAndCounts) {
    const auto groups = compared(three());
    EXPECT_FALSE(allWithin(groups));
    EXPECT_TRUE(allWithin({groups.back()}));
    EXPECT_EQ(validationCounts(groups),
              "3 published figures: 1 met, 1 departs by design, 1 outside\n"
              "1 recomputed figure: 1 met, 0 depart by design, 0 outside\n");
    EXPECT_THAT(validationText(groups), HasSubstr("OUTSIDE"));
    EXPECT_THAT(validationText({groups.back()}), Not(HasSubstr("OUTSIDE")));
}

TEST(Validation, TheTextHasEveryColumn) {
    const std::string text = validationText(compared(three()));
    for (const char* part :
         {"Air & <water> (published)", "Source: a paper.", "All with z=1800.", "A word.",
          "pressure        kPa    81.8  81.76      -0.04      0.06\n",
          ".300 0.2050    -0.0950    0.0005 departs, 0.205 is expected: no floor\n"}) {
        EXPECT_THAT(text, HasSubstr(part));
    }
}

TEST(Validation, RecomputedFiguresDoNotStandUnderPublished) {
    const std::string page = validationPage(compared(three()));
    const auto published = page.find("\n## Published\n");
    const auto recomputed = page.find("\n## Recomputed\n");
    const auto apart = page.find("\n### Apart\n");
    ASSERT_NE(apart, std::string::npos);
    EXPECT_LT(published, page.find("\n### Air"));
    EXPECT_LT(page.find("\n### Air"), recomputed);
    EXPECT_LT(recomputed, apart);
}

TEST(Validation, TheReportsSectionEscapesAndMarksWhatIsOutside) {
    const std::string html = validationSection(compared(three()));
    EXPECT_THAT(html, HasSubstr("<h2 id=\"validation\">"));
    EXPECT_THAT(html, HasSubstr("<summary class=\"error\">Air &amp; &lt;water&gt; (published): 1 "
                                "met, 1 departs, 1 outside</summary>"));
    EXPECT_THAT(html, HasSubstr("<summary>Apart (recomputed): 1 met</summary>"));
    EXPECT_THAT(html, HasSubstr("<td class=\"n\">81.76</td>"));
    EXPECT_THAT(html,
                HasSubstr("<td>Air &amp; &lt;water&gt;</td><td>published</td>"
                          "<td class=\"n\">1</td><td class=\"n\">1</td><td class=\"n\">1</td>"));
    EXPECT_THAT(html, HasSubstr("<span class=\"departs\">departs, "));
    EXPECT_THAT(html, HasSubstr("<span class=\"departs\">OUTSIDE"));
    EXPECT_EQ(html.find("<span class=\"departs\"></span>"), std::string::npos);
}

TEST(Validation, JsonHasTheNumbers) {
    const auto json = validationJson(compared(three()));
    EXPECT_EQ(json.size(), 2U);
    const auto& figure = json[0]["figures"][1];
    EXPECT_EQ(figure["verdict"], "departs");
    EXPECT_DOUBLE_EQ(figure["figure"].get<double>(), 0.3);
    EXPECT_DOUBLE_EQ(figure["expected"].get<double>(), 0.205);
    EXPECT_NEAR(figure["ours"].get<double>(), 0.205, 1e-12);
    EXPECT_NEAR(figure["difference"].get<double>(), -0.095, 1e-12);
    EXPECT_EQ(json[1]["origin"], "recomputed");
}

TEST(Validation, TheCommandFailsWhenAFigureIsOutside) {
    const auto groups = compared(three());
    for (const auto form : {cli::ValidationForm::text, cli::ValidationForm::summary}) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(cli::showComparison({}, form, groups), 1);
        EXPECT_EQ(cli::showComparison({}, form, {groups.back()}), 0);
        EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("1 outside"));
    }
}

TEST_F(Command, ValidateComparesOnTheUsersMachine) {
    const auto all = run("validate");
    EXPECT_EQ(all.status, 0);
    EXPECT_EQ(all.results, validationText(compared(publishedFigures())));
    const auto summary = run("validate --summary");
    EXPECT_EQ(summary.status, 0);
    EXPECT_THAT(summary.results, HasSubstr("FAO-56, example 17: Bangkok, April (published): "));
    EXPECT_THAT(summary.results, HasSubstr(", 0 outside\n"));
    const auto json = nlohmann::json::parse(run("--json validate").results);
    EXPECT_EQ(json.size(), publishedFigures().size());
    EXPECT_EQ(run("validate --summary --markdown").status, 2);
}

}  // namespace
}  // namespace velmora
