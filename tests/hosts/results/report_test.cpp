// SPDX-License-Identifier: MIT
#include "hosts/results/report/report_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fmt/format.h>

#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "gis/errors.h"
#include "gis/memory_raster.h"
#include "gis/zonal_tables.h"
#include "hosts/results/report/html.h"
#include "hosts/results/report/monthly_chart.h"
#include "modelling/step_record.h"
#include "settings/settings_fields.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora::cli {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Html, TextsAndBytesAreEncoded) {
    EXPECT_EQ(escaped("<O'Dell & \"Co\">"), "&lt;O'Dell &amp; &quot;Co&quot;&gt;");
    EXPECT_EQ(base64(""), "");
    EXPECT_EQ(base64("f"), "Zg==");
    EXPECT_EQ(base64("fo"), "Zm8=");
    EXPECT_EQ(base64("foo"), "Zm9v");
    EXPECT_EQ(base64("foob\xff"), "Zm9vYv8=");
}

TEST(MonthlyChart, AMissingMonthInterruptsTheLine) {
    MonthlySeries series{"ET", "#123456", {}};
    for (const std::size_t month : {0U, 1U, 4U, 5U}) series.values[month] = 3.4;
    const std::string svg = monthlyChart("A < B", "inches", {series});
    EXPECT_THAT(svg, HasSubstr("A &lt; B"));
    EXPECT_THAT(svg, HasSubstr("<title>ET May: 3.40</title>"));
    const std::string path =
        svg.substr(svg.find("<path d="), svg.find("fill=\"none\"") - svg.find("<path d="));
    EXPECT_EQ(std::count(path.begin(), path.end(), 'M'), 2);
    EXPECT_EQ(std::count(path.begin(), path.end(), 'L'), 2);
    EXPECT_THAT(monthlyChart("empty", "inches", {{"ET", "#1", {}}}), HasSubstr("</svg>"));
}

TEST(TableOverInches, IsDaysOverMillimetresPerInch) {
    EXPECT_DOUBLE_EQ(tableOverInches(7, 2006), 31 / 25.4);
    EXPECT_DOUBLE_EQ(tableOverInches(2, 2004), 29 / 25.4);
    EXPECT_EQ(tableOverInches(0, 2004), 0);
}

struct Report : testing::Test {
    test::IrrigationFixture f;
    IPlatform& platform = f.application.platform();

    void makeTable(const std::string& name, double depth, double volume) {
        CreateStatTable(platform, f.application.prompts(), f.folder.file("out"), name);
        const std::string tag = name.substr(4);
        const auto session =
            platform.features().edit(platform.features().openTable(f.folder.file("out/" + name)));
        session->appendRecord({{"ZoneUnit", std::string("West")},
                               {"Area_T_ac", 200.0},
                               {"Area_C_ac", 100.0},
                               {"Month", 7.0},
                               {tag + "_D_ft", depth},
                               {tag + "_V_acft", volume}});
        session->save();
    }

    // A record of a step's run as the settings say it, changed.
    void record(const std::string& step, const std::map<std::string, std::string>& changes = {}) {
        nlohmann::ordered_json settings;
        for (const SettingsField& field : settingsFields()) {
            settings[std::string(field.name)] = settingsText(f.settings, field);
        }
        for (const auto& [field, text] : changes) settings[field] = text;
        const nlohmann::ordered_json json = {{"step", step},
                                             {"run", "1"},
                                             {"state", "complete"},
                                             {"began", "2023-10-01T10:00:00-06:00"},
                                             {"ended", "2023-10-01T10:00:10-06:00"},
                                             {"program",
                                              {{"version", "0.1"},
                                               {"build", "b"},
                                               {"host", "h"},
                                               {"libraries", nlohmann::json::object()}}},
                                             {"started_by", nullptr},
                                             {"settings", settings},
                                             {"sources", nlohmann::json::object()},
                                             {"inputs", nlohmann::json::array()},
                                             {"surfaces", nlohmann::json::array()},
                                             {"outputs", nlohmann::json::array()},
                                             {"warnings", nlohmann::json::array()}};
        test::write(f.folder.file("out/velmora_record_" + step + ".json"), json.dump());
    }
};

TEST_F(Report, TablesAreOfTheMonthsAndTheYearOfTheirRecord) {
    makeTable("StatCET", 0.5, 50);  // of July
    makeTable("StatNIR", 0.5, 50);
    record("cropet", {{"BeginMonth", "Jan"}, {"EndMonth", "Feb"}, {"Year", "2004"}});
    record("nir", {{"BeginMonth", "Jul"}, {"EndMonth", "Jul"}, {"Year", "2005"}});
    const RunResults results = readResults(platform, f.settings);
    EXPECT_TRUE(results.tables.at("StatCET").empty());
    EXPECT_EQ(results.tables.at("StatNIR").size(), 1U);
    ASSERT_EQ(results.totals.size(), 1U);
    EXPECT_FALSE(results.totals[0].table.contains("StatCET"));
    EXPECT_EQ(results.totals[0].table.at("StatNIR"), 50);
    const std::string page = reportPage(platform, results);
    EXPECT_THAT(page, HasSubstr("1 row of other months left out: the run was made for Jan to Feb"));
    EXPECT_THAT(page, HasSubstr("<h3>Net irrigation requirement (StatNIR), Jul to Jul, 2005</h3>"));
    EXPECT_THAT(page,
                HasSubstr("<p class=\"error\">The tables were made for different periods: "
                          "StatCET for Jan to Feb, 2004. StatNIR, StatIRR for Jul to Jul, 2005."));
}

TEST_F(Report, ADatasetOfTheUsersOwnNeedsNoRecord) {
    f.save("faef_500", f.filled(0.5F));
    record("irr");
    EXPECT_THAT(readResults(platform, f.settings).faults,
                testing::ElementsAre(HasSubstr("faef_500: there is no record of the run of eff")));
    const std::string path = f.folder.file("out/velmora_record_irr.json");
    auto irr = nlohmann::json::parse(test::contentOf(path));
    irr["inputs"].push_back(
        {{"path", "faef_500"}, {"crs", nullptr}, {"files", nlohmann::json::array()}});
    test::write(path, irr.dump());
    EXPECT_THAT(readResults(platform, f.settings).faults, testing::IsEmpty());
    test::write(path, "[1]");
    EXPECT_THAT(readResults(platform, f.settings).faults,
                testing::Contains(HasSubstr("velmora_record_irr.json: the record cannot be used")));
}

TEST(RecordedTime, IsToldToTheSecond) {
    EXPECT_EQ(timeToSecond("2023-10-01T10:00:00.123456789-06:00"), "2023-10-01 10:00:00 -06:00");
    EXPECT_EQ(timeToSecond("2023-10-01T10:00:00+00:00"), "2023-10-01 10:00:00 +00:00");
    EXPECT_EQ(timeToSecond("2023-10-01T10:00:00"), "2023-10-01 10:00:00");
    EXPECT_EQ(timeToSecond(""), "");
    EXPECT_EQ(timeToSecond("when it was ready"), "when it was ready");
}

TEST_F(Report, TellsRunsInputsAndStationsOfTheRecords) {
    record("ppt");
    const std::string path = f.folder.file("out/velmora_record_ppt.json");
    auto ppt = nlohmann::json::parse(test::contentOf(path));
    ppt["program"]["libraries"] = {{"PROJ", "9.1"}};
    ppt["started_by"] = {{"user", "ann<"}, {"machine", "m1"}};
    ppt["inputs"] = {{{"path", "/data/weather.dbf"},
                      {"crs", {{"name", "UTM 12N"}, {"datum", "NAD83"}}},
                      {"files",
                       {{{"path", "/data/weather.dbf"},
                         {"bytes", 77},
                         {"modified", "2023-01-01T00:00:00.123456789-07:00"},
                         {"sha256", "abc123"}}}}},
                     {{"path", "ET_Jul_4"},
                      {"crs", nullptr},
                      {"made_by", {{"step", "cropet"}, {"run", "1"}}},
                      {"files", nlohmann::json::array()}}};
    ppt["surfaces"] = {{{"surface", "PPT_Jul"},
                        {"field", "weather.P_Jul"},
                        {"estimator", "kriging"},
                        {"stations", 15},
                        {"left_out", {{{"station", "Malad"}, {"reason", "has no value"}}}}}};
    ppt["warnings"] = {"a far station"};
    test::write(path, ppt.dump());
    record("nir");  // which has read the same bytes later
    const std::string later = f.folder.file("out/velmora_record_nir.json");
    auto nir = nlohmann::json::parse(test::contentOf(later));
    nir["inputs"] = {ppt["inputs"][0]};
    nir["inputs"][0]["files"][0]["modified"] = "2023-01-02T00:00:00-07:00";
    test::write(later, nir.dump());
    const std::string page = reportPage(platform, readResults(platform, f.settings));
    for (const char* part :
         {"<td>ppt: Precipitation</td><td>2023-10-01 10:00:00 -06:00</td><td>2023-10-01 10:00:10 "
          "-06:00</td>"
          "<td>complete</td><td>0.1</td><td>b</td><td>h</td><td>ann&lt; on m1</td>",
          "<td>UTM 12N; NAD83</td><td>weather.dbf, 77 bytes, written 2023-01-01 00:00:00 -07:00:"
          "<br><code>abc123</code></td><td>ppt, nir</td>",
          "<summary>1 dataset</summary>", "<td>kriging</td><td>15</td><td>has no value: Malad</td>",
          "<li class=\"warning\">ppt: a far station</li>", "<p>ppt: PROJ 9.1</p>"}) {
        EXPECT_THAT(page, HasSubstr(part));
    }
}

TEST_F(Report, ADatabaseThatCannotBeReadIsMissing) {
    record("eff");
    const std::string path = f.folder.file("out/velmora_record_eff.json");
    auto eff = nlohmann::json::parse(test::contentOf(path));
    eff["inputs"] = {{{"path", f.folder.file("gone.mdb")}, {"crs", nullptr}}};
    test::write(path, eff.dump());
    std::vector<std::string> missing;
    EXPECT_THAT(reportPage(platform, readResults(platform, f.settings), &missing),
                HasSubstr("<p class=\"error\">Not shown: "));
    EXPECT_THAT(missing, testing::Contains(HasSubstr("lacks the irrigation database: ")));
}

TEST_F(Report, BothReadingsOfTheTables) {
    // A mean of 6 inches in July: half a foot over 100 acres.
    const double depth = 31 * 6 / 304.8;
    makeTable("StatCET", depth, depth * 100);
    const RunResults results = readResults(platform, f.settings);
    ASSERT_EQ(results.totals.size(), 1U);
    EXPECT_NEAR(results.totals[0].inches.at("StatCET"), 50, 1e-9);
    EXPECT_NEAR(results.totals[0].table.at("StatCET"), 50 * 31 / 25.4, 1e-9);
    EXPECT_FALSE(results.totals[0].table.contains("StatIRR"));
    const std::string page = reportPage(platform, results);
    EXPECT_THAT(page, HasSubstr("<td>West</td><td class=\"n\">50.0</td>"));
    EXPECT_THAT(page, HasSubstr("<td class=\"n\">61.0</td>"));
    EXPECT_THAT(page, HasSubstr("<td class=\"n\">1.2205</td>"));
}

TEST_F(Report, EachFigureOfTheTablesStandsInItsColumn) {
    constexpr double july = 31 / 25.4;  // table over inches
    makeTable("StatCET", 0.5 * july, 50 * july);
    const auto table = platform.features().openTable(f.folder.file("out/StatCET"));
    const auto session = platform.features().edit(table);
    session->appendRecord({{"ZoneUnit", std::string("East")},
                           {"Area_T_ac", 40.0},
                           {"Area_C_ac", 30.0},
                           {"Month", 6.0},
                           {"CET_D_ft", 2 * 30 / 25.4},
                           {"CET_V_acft", 60 * 30 / 25.4}});
    session->save();
    const std::string page = reportPage(platform, readResults(platform, f.settings));
    const auto row = [](const std::vector<std::string>& texts, const std::vector<std::string>& n) {
        std::string html = "<tr>";
        for (const auto& text : texts) html += "<td>" + text + "</td>";
        for (const auto& number : n) html += "<td class=\"n\">" + number + "</td>";
        return html + "</tr>";
    };
    const std::string none = "&ndash;";
    // Polygon and counted acres; depth and volume of inches, of the table; their ratio.
    EXPECT_THAT(page, HasSubstr(row({"West", "Jul"}, {"200.0", "100.0", "0.5000", "50.0", "0.6102",
                                                      "61.0", "1.2205"})));
    EXPECT_THAT(page, HasSubstr(row({"East", "Jun"}, {"40.0", "30.0", "2.0000", "60.0", "2.3622",
                                                      "70.9", "1.1811"})));
    EXPECT_THAT(page, HasSubstr(row({"West"}, {"50.0", none, none, "61.0", none, none})));
    EXPECT_THAT(page, HasSubstr(row({"East"}, {"60.0", none, none, "70.9", none, none})));
    EXPECT_THAT(page, HasSubstr(row({"All zones"}, {"110.0", none, none, "131.9", none, none})));
}

TEST_F(Report, EachProductHasItsUnit) {
    f.save("PPT_Jun", f.filled(1));
    f.save("PPT_Jul", f.filled(3));
    const RunResults results = readResults(platform, f.settings);
    std::vector<std::pair<std::string, std::string>> units;
    for (const ProductGrids& grids : results.products) {
        units.emplace_back(grids.product->title, grids.product->unit);
    }
    const std::string depth = "inches per month";
    EXPECT_THAT(units,
                testing::ElementsAre(std::pair("Reference ET", depth),
                                     std::pair("Crop coefficients", "ratio"),
                                     std::pair("Crop ET", depth), std::pair("Precipitation", depth),
                                     std::pair("Net irrigation requirement", depth),
                                     std::pair("Irrigation efficiency", "fraction"),
                                     std::pair("Irrigation water requirement", depth)));
    EXPECT_THAT(reportPage(platform, results), HasSubstr("</i>3 inches per month &middot;"));
}

// Crop ET, precipitation and net requirement of July in the upper left part of the domain.
struct AccountedReport : Report {
    AccountedReport() {
        f.settings.BeginMonth = f.settings.EndMonth = "Jul";
        f.makeCropLand(
            {{"Corn",
              {{400000, 4491000}, {400000, 4500000}, {415000, 4500000}, {415000, 4491000}}}});
        f.storeSettings();
        f.save("Kc_Jul", f.filled(1));
        f.save("RefET_Jul_4", f.filled(6));
        Grid et(f.cells, 6);
        et.at(0, 0) = kNoData;  // where nothing is averaged
        f.save("ET_Jul_4", std::make_shared<MemoryRaster>(et));
        Grid rain(f.cells, 1.5F);
        rain.at(0, 0) = 900;
        f.save("PPT_Jul", std::make_shared<MemoryRaster>(rain));
    }
};

TEST_F(AccountedReport, LinesOfAChartAreMeansOverTheSameCells) {
    const RunResults results = readResults(platform, f.settings);
    ASSERT_TRUE(results.account) << results.noAccount;
    ASSERT_FALSE(results.zoneMeans.empty());
    EXPECT_NEAR(*results.zoneMeans[0].byProduct.at(&productMadeBy("cropet"))[6], 6, 1e-6);
    EXPECT_NEAR(*results.zoneMeans[0].byProduct.at(&productMadeBy("ppt"))[6], 1.5, 1e-6);
    EXPECT_NEAR(*results.basinMeans.at(&productMadeBy("ppt"))[6], 1.5, 1e-6);
    EXPECT_NEAR(*results.basinMeans.at(&productMadeBy("refet"))[6], 6, 1e-6);
    std::vector<std::string> missing;
    const std::string page = reportPage(platform, results, &missing);
    EXPECT_THAT(page, HasSubstr("<h2 id=\"account\">Water account, Jul"));
    EXPECT_THAT(page,
                HasSubstr("<figure class=\"wide\"><div class=\"map\"><img alt=\"RefET_Jul_4"));
    EXPECT_THAT(page, HasSubstr("<svg class=\"over\" viewBox=\"0 0 30 18\"><path "
                                "id=\"zones-0\" fill=\"none\" stroke="));
    EXPECT_THAT(page, HasSubstr("<use href=\"#zones-0\"/>"));
    // A third of 15 km.
    EXPECT_THAT(
        page,
        HasSubstr("<p class=\"bar wide\"><i style=\"width:calc(0.3333*var(--map))\"></i>5 km</p>"));
    EXPECT_THAT(page, HasSubstr("<h2 id=\"validation\">"));
    EXPECT_THAT(missing, testing::Not(testing::Contains(HasSubstr("Water account"))));
}

TEST_F(AccountedReport, PolygonAcresAreThoseOfTheKeyAndZonesWithoutRowsAreNamed) {
    const auto zones = readResults(platform, f.settings).account->zones;
    ASSERT_GE(zones.size(), 2U);
    CreateStatTable(platform, f.application.prompts(), f.folder.file("out"), "StatCET");
    const auto session =
        platform.features().edit(platform.features().openTable(f.folder.file("out/StatCET")));
    session->appendRecord({{"ZoneUnit", zones[1].keyInTables},
                           {"Area_T_ac", 1.0},
                           {"Area_C_ac", 1e6},
                           {"Month", 7.0},
                           {"CET_D_ft", 0.5},
                           {"CET_V_acft", 5e5}});
    session->save();
    const std::string page = reportPage(platform, readResults(platform, f.settings));
    EXPECT_THAT(page, HasSubstr(fmt::format("<td>Jul</td><td class=\"n\">{:.1f}</td>"
                                            "<td class=\"n\"><span class=\"error\">1000000.0<",
                                            zones[1].squareMetres / 4047)));
    EXPECT_THAT(page, HasSubstr("More acres of cells than the polygon has: " +
                                escaped(zones[1].keyInTables)));
    EXPECT_THAT(page, HasSubstr("Zones without a row, since no cell of theirs has data: "));
}

TEST_F(AccountedReport, WithoutAnAccountThePageSaysWhy) {
    f.settings.Zones = f.folder.file("gone.shp");
    const RunResults results = readResults(platform, f.settings);
    EXPECT_FALSE(results.account);
    std::vector<std::string> missing;
    const std::string page = reportPage(platform, results, &missing);
    EXPECT_THAT(page, HasSubstr("<h2 id=\"account\">Water account</h2>\n<p class=\"error\">Not "
                                "made: "));
    EXPECT_THAT(page, HasSubstr("gone.shp"));
    EXPECT_THAT(missing, testing::Contains(HasSubstr("The report's maps have no zones: ")));
    EXPECT_THAT(missing, testing::Contains(testing::AllOf(HasSubstr("lacks \"Water account\""),
                                                          HasSubstr("gone.shp"))));
}

TEST_F(Report, MapsOfAProductShareOneScale) {
    f.save("PPT_Jun", f.filled(1));
    f.save("PPT_Jul", f.filled(3));
    f.save("faef_500", f.filled(0.5F));
    f.save("RefET_Jun_4", f.filled(kNoData));
    const RunResults results = readResults(platform, f.settings);
    const ProductGrids& ppt = results.products.at(3);
    EXPECT_EQ(ppt.product, &productMadeBy("ppt"));
    EXPECT_EQ(ppt.minimum, 1);
    EXPECT_EQ(ppt.maximum, 3);
    EXPECT_EQ(results.products.at(0).of(6), nullptr);
    EXPECT_THAT(results.products.at(0).missing, testing::ElementsAre("RefET_Jul_4"));
    const std::string page = reportPage(platform, results);
    EXPECT_THAT(page, HasSubstr("alt=\"PPT_Jul Jul\" src=\"data:image/png;base64,iVBOR"));
    EXPECT_THAT(page, HasSubstr("<b>all months</b> mean 0.5"));
    EXPECT_THAT(page, HasSubstr("No cell of these grids has data."));
    EXPECT_THAT(page, HasSubstr("Not made: IRR_Jun, IRR_Jul."));
}

TEST_F(Report, PrecipitationIsWordedByItsRecord) {
    const auto page = [&] { return reportPage(platform, readResults(platform, f.settings)); };
    f.settings.PrecipitationMethod = "PRISM_REF";
    EXPECT_THAT(page(), HasSubstr("no record tells how it was made.</p>"));
    record("ppt");
    f.settings.PrecipitationMethod = "EDK";
    EXPECT_THAT(page(), HasSubstr(">Reference grids, scaled by their ratios to the stations"));
    record("ppt");
    EXPECT_THAT(page(), HasSubstr(">Interpolated from the stations.</p>"));
}

TEST_F(Report, PagesOfPaperAreHeadedByWhatTheyShow) {
    record("ppt", {{"BeginMonth", "Ju\"n}"}});
    const auto page = [&](const std::vector<std::string>& mismatches) {
        return reportPage(platform, readResults(platform, f.settings, mismatches));
    };
    EXPECT_THAT(page({}),
                HasSubstr("@top-left{content:\"Evapotranspiration and irrigation water use "
                          "- Ju\\22 n\\7D  to Jul, 2006; reference ET by "));
    EXPECT_THAT(page({"it changed"}),
                HasSubstr("@top-left{content:\"Evapotranspiration and irrigation water use - "
                          "draft: these results do not hold together\""));
    EXPECT_THAT(page({}), HasSubstr("@bottom-right{content:\"Page \" counter(page) \" of \""));
}

struct QualityReport : Report {
    // A record of June (no flag but that of all cells) and July.
    void recordFlags() {
        record("refet");
        const std::string path = f.folder.file("out/velmora_record_refet.json");
        auto refet = nlohmann::json::parse(test::contentOf(path));
        const nlohmann::json estimated = {{"flag", "wind estimated"},
                                          {"bit", 2048},
                                          {"cells", 540},
                                          {"share", 1},
                                          {"worst", nullptr}};
        const nlohmann::json negative = {
            {"flag", "reference ET below 0"},
            {"bit", 1},
            {"cells", 54},
            {"share", 0.1},
            {"worst", {{"value", -1.24}, {"unit", "inches"}, {"column", 6}, {"row", 2}}}};
        const nlohmann::json trend = {
            {"flag", "trend over elevation not significant and extrapolated"},
            {"bit", 8192},
            {"cells", 270},
            {"share", 0.5},
            {"worst", {{"value", 312.0}, {"unit", "m"}, {"column", 7}, {"row", 3}}},
            {"surfaces", {"TD_Jul"}}};
        refet["quality"] = {
            {{"grid", "RefET_Jun_4"}, {"month", "Jun"}, {"cells", 540}, {"flags", {estimated}}},
            {{"grid", "RefET_Jul_4"},
             {"month", "Jul"},
             {"cells", 540},
             {"flags", {negative, trend}}}};
        refet["warnings"] = {"RefET_Jul_4: 10 % of the cells: reference ET below 0",
                             "RefET_Jul_4: another matter"};
        test::write(path, refet.dump());
    }
    std::string page() { return reportPage(platform, readResults(platform, f.settings)); }
};

TEST_F(QualityReport, FlagsAreToldByMonth) {
    EXPECT_THAT(page(), HasSubstr("<p>No record tells of the cells of reference ET.</p>"));
    recordFlags();
    const std::string html = page();
    const std::string none = "<td class=\"n\">&ndash;</td>";
    const std::string trend =
        "<td>Jul</td><td>trend over elevation not significant and extrapolated</td><td>TD_Jul</td>"
        "<td>by up to 312 m</td><td class=\"n\">7</td><td class=\"n\">3</td>"
        "<td class=\"n\">270</td><td class=\"n\">540</td><td class=\"n\">50 %</td>";
    for (const std::string& part : std::vector<std::string>{
             "<th>Flag</th><th class=\"n\">Jun</th><th class=\"n\">Jul</th>",
             "<td>reference ET below 0</td>" + none + "<td class=\"n\">10 %</td>",
             "<td>wind estimated</td><td class=\"n\">100 %</td>" + none,
             "<summary>3 flags by month: ", trend, "<td>lowest -1.24 inches</td>",
             "<code>velmora run refet --quality</code>",
             "<li class=\"warning\">refet: RefET_Jul_4: another matter</li>"}) {
        EXPECT_THAT(html, HasSubstr(part));
    }
    EXPECT_THAT(html, Not(HasSubstr("refet: RefET_Jul_4: 10 %")));
}

TEST_F(QualityReport, MapsAreThoseOfTheLastRunWithTheGravestFlagOfACell) {
    recordFlags();
    Grid flags(f.cells, 0);
    flags.at(0, 0) = kNoData;
    flags.at(1, 0) = 1 + 2 + 2048;
    flags.at(2, 0) = 128 + 8192;
    flags.at(3, 0) = 2048;  // which is the table's
    flags.at(4, 0) = -1;    // which no run has written
    flags.at(5, 0) = 1e30F;
    f.save("QA_Jul_4", std::make_shared<MemoryRaster>(flags));
    StepRecorder(platform.files(), f.settings, "refet").made("RefET_Jul_4");
    EXPECT_THAT(page(), Not(HasSubstr("alt=\"QA_Jul_4\"")));  // of an earlier run
    StepRecorder(platform.files(), f.settings, "refet").made("QA_Jul_4");
    const std::string html = page();
    EXPECT_THAT(html, HasSubstr("<img alt=\"QA_Jul_4\" src=\"data:image/png;base64,iVBOR"));
    EXPECT_THAT(html, HasSubstr("<figcaption><b>Jul</b> 0.4 %</figcaption>"));  // 2 of 539
    EXPECT_THAT(html, HasSubstr("rgb(165,0,38)\"></i>reference ET below 0</span>"));
    EXPECT_THAT(html,
                HasSubstr("</i>trend over elevation not significant and extrapolated</span>"));
    for (const char* hidden : {"dew point above the mean temperature", "wind estimated",
                               "elevation beyond the range of the stations"}) {
        EXPECT_THAT(html, Not(HasSubstr("</i>" + std::string(hidden))));
    }
    EXPECT_THAT(html, Not(HasSubstr("run refet --quality")));
}

TEST_F(Report, StandsAloneAndNamesWhatIsWrong) {
    f.settings.KcTable = f.folder.file("none & nothing.dbf");
    const std::string page = reportPage(platform, readResults(platform, f.settings));
    for (const char* outside : {"http://", "https://", "<script", "<link", "@import"}) {
        EXPECT_THAT(page, Not(HasSubstr(outside)));
    }
    EXPECT_THAT(page, HasSubstr("none &amp; nothing.dbf</span></td><td>no record</td>"));
    EXPECT_THAT(page, HasSubstr("<li class=\"error\">"));
    EXPECT_THAT(page, HasSubstr("class=\"station\""));
    EXPECT_THAT(page, HasSubstr("days / 25.4"));
    f.settings.OutputWorkspace = f.folder.file("nowhere");
    EXPECT_THROW(readResults(platform, f.settings), PlatformError);
}

TEST_F(Report, AnInputIsToldByItsFieldNotByItsText) {
    f.settings.KcTable = "kc.dbf";
    f.settings.Year = "2006/07";
    const std::string page = reportPage(platform, readResults(platform, f.settings));
    EXPECT_THAT(page, HasSubstr("<span class=\"path\">kc.dbf</span>"));
    EXPECT_THAT(page, Not(HasSubstr("<span class=\"path\">2006/07</span>")));
    EXPECT_THAT(page, Not(HasSubstr("<span class=\"path\">" + f.settings.OutputWorkspace)));
}

TEST_F(Report, InputsAndSettingsAreThoseOfTheRecords) {
    const std::string dem = f.settings.DEM;
    record("refet", {{"Ks", "0.17"}});
    record("ppt", {{"Ks", "0.19"}});
    const std::string path = f.folder.file("out/velmora_record_refet.json");
    auto refet = nlohmann::json::parse(test::contentOf(path));
    const auto file = [](const char* name, int bytes, const char* modified) {
        return nlohmann::json{{"path", name}, {"bytes", bytes}, {"modified", modified}};
    };
    refet["inputs"] = {
        {{"path", dem},
         {"crs", nullptr},
         {"files",
          {file("a", 20'000, "2021-05-01T00:00:00.5-07:00"),
           file("b", 1'000, "2021-06-01T00:00:00.5-07:00")}}},
        {{"path", "own"}, {"crs", nullptr}, {"files", {file("own", 7, "long ago")}}},
        {{"path", "ET_Jul_4"}, {"crs", nullptr}, {"made_by", {{"step", "cropet"}, {"run", "1"}}}}};
    test::write(path, refet.dump());
    f.settings.DEM = "/today/dem";
    f.settings.Ks = 0.16;
    const std::string page = reportPage(platform, readResults(platform, f.settings));
    for (const std::string& part :
         {"<td>DEM</td><td><span class=\"path\">" + dem +
              "</span></td><td>2021-06-01 00:00:00 -07:00</td><td>refet</td>"
              "<td class=\"n\">21 kB</td>",
          "<td>&ndash;</td><td><span class=\"path\">" + f.folder.file("out/own") +
              "</span></td><td>long ago</td><td>refet</td><td class=\"n\">7 bytes</td>",
          std::string("<td>Ks</td><td>0.17 (refet)<br>0.19 (ppt)</td>"),
          "<td>KcTable</td><td><span class=\"path\">" + f.settings.KcTable +
              "</span></td><td>not read</td>"}) {
        EXPECT_THAT(page, HasSubstr(part));
    }
    EXPECT_THAT(page, Not(HasSubstr("/today/dem")));
    EXPECT_THAT(page, Not(HasSubstr("out/ET_Jul_4</span>")));  // which a step has made
    EXPECT_THAT(page, Not(HasSubstr("<td>0.16</td>")));
}

TEST_F(Report, WhatTheRecordKeepsIsNotToldAgainUnderTheMessages) {
    record("ppt");
    const std::string path = f.folder.file("out/velmora_record_ppt.json");
    auto ppt = nlohmann::json::parse(test::contentOf(path));
    ppt["warnings"] = {"a far station"};
    test::write(path, ppt.dump());
    RunResults results = readResults(platform, f.settings);
    results.runs = {{"ppt", true, 1.5, {"a far station", "over"}, "2023-10-01 10:00:10"}};
    const std::string page = reportPage(platform, results);
    EXPECT_THAT(page,
                HasSubstr("<td>1.50 s</td><td>done</td><td><span class=\"message\">over</span> "
                          "</td>"));
    EXPECT_THAT(page, HasSubstr("<li class=\"warning\">ppt: a far station</li>"));
}

TEST_F(Report, FindingsOfAKindAreOneLineAndErrorsComeLast) {
    RunResults results = readResults(platform, f.settings);
    results.findings = {{Severity::error, "kc.dbf", "Kc_Jun", "", "the field is missing"},
                        {Severity::warning, "w.dbf", "TM_Jun", "S1", "99 is not likely"},
                        {Severity::warning, "w.dbf", "TM_Jul", "S4", "120 is not likely"},
                        {Severity::note, "w.dbf", "TD_Jan", "S<2>", "has no value"}};
    EXPECT_THAT(
        reportPage(platform, results),
        HasSubstr("<p class=\"note\">1 error, 2 warnings, 1 note; those of one kind are one "
                  "line, and <code>velmora check --all</code> lists each.</p>\n<ul>\n"
                  "<li class=\"note\">note: w.dbf: TD_Jan: S&lt;2&gt;: has no value</li>\n"
                  "<li class=\"warning\">warning: w.dbf: TM_Jul: S4: 120 is not likely (2 "
                  "of the kind, first: TM_Jun S1, TM_Jul S4)</li>\n"
                  "<li class=\"error\">error: kc.dbf: Kc_Jun: the field is missing</li>\n"
                  "</ul>"));
}

TEST_F(Report, AnUnreadableInputCostsOnlyItsPart) {
    f.settings.DEM = f.folder.file("nothing");
    const std::string page = reportPage(platform, readResults(platform, f.settings));
    EXPECT_THAT(page, HasSubstr("<p class=\"error\">No map: "));
    EXPECT_THAT(page, HasSubstr("</html>"));
}

}  // namespace
}  // namespace velmora::cli
