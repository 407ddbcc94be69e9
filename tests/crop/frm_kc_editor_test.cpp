// SPDX-License-Identifier: MIT
#include "crop/frm_kc_editor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "settings/run_state.h"
#include "tests/support/crop_fixture.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct KcEditor : testing::Test {
    test::CropFixture f;
    frmKcEditor form{f.application, f.settings};
    const std::string table = f.folder.file("crops.dbf");

    KcEditor() { processState().mapsMade = false; }
    const std::vector<std::string>& messages() { return f.application.messages(); }
    FieldValue stored(const std::string& path, std::size_t record, const std::string& field) {
        return f.application.platform().features().openTable(path)->value(record, field);
    }
    std::size_t records(const std::string& path) {
        return f.application.platform().features().openTable(path)->recordCount();
    }
};

TEST_F(KcEditor, OpensWithTheSettings) {
    form.load();
    EXPECT_EQ(form.txtKcDBName.text(), table);
    EXPECT_EQ(form.grdKc.rowCount(), 3U);
    EXPECT_EQ(form.grdKc.columns().size(), 13U);
    EXPECT_EQ(form.grdKc.cell(0, 4), "0.8");
    EXPECT_EQ(form.cboFieldList.text(), "Use");
    EXPECT_EQ(form.txtCellSize.text(), "400");
    EXPECT_EQ(form.picCurve.text(), "Alfalfa");
    EXPECT_FALSE(form.cmdSave.enabled());
    EXPECT_TRUE(messages().empty()) << f.allMessages();
}

TEST_F(KcEditor, ProposesTheFieldThatNamesMostCrops) {
    f.application.platform().features().createFeatureClass(
        f.settings.LandCover, true, f.geometry().crs,
        {{"ID", FieldType::text, 5, 0},
         {"OLD", FieldType::text, 9, 0},
         {"Crop", FieldType::text, 9, 0}},
        {rectangle({400000, 4499000, 401000, 4500000},
                   {std::string("1"), std::string("Barley"), std::string("Alfalfa")}),
         rectangle({401000, 4499000, 402000, 4500000},
                   {std::string("2"), std::string("?"), std::string("Barley")})});
    form.load();
    EXPECT_EQ(form.cboFieldList.text(), "Crop");
    EXPECT_THAT(form.cboFieldList.items(), ElementsAre("ID", "OLD", "Crop"));
}

TEST_F(KcEditor, TheCurveStepsThroughTheCrops) {
    form.load();
    EXPECT_EQ(form.picCurve.labels().size(), 12U);
    EXPECT_EQ(form.picCurve.values()[6], 1.1);
    form.cmdBackward.click();
    EXPECT_EQ(form.picCurve.text(), "Alfalfa");
    form.cmdForward.click();
    EXPECT_EQ(form.picCurve.text(), "Barley");
    EXPECT_EQ(form.picCurve.values()[5], 1.15);
    form.cmdForward.click();
    form.cmdForward.click();
    EXPECT_EQ(form.picCurve.text(), "O'Brien Corn");
    form.cmdBackward.click();
    EXPECT_EQ(form.grdKc.currentRow(), 1U);
}

TEST_F(KcEditor, EditsAreStoredBySave) {
    form.load();
    form.grdKc.edit(1, 7, "0.45");
    EXPECT_TRUE(form.cmdSave.enabled());
    EXPECT_EQ(std::get<double>(stored(table, 1, "Kc_Jul")), 0.4);
    form.grdKc.edit(3, 0, "Potato \"Russet\"");  // the row behind the last begins a crop
    form.grdKc.edit(3, 7, "1.15");
    form.cmdSave.click();
    EXPECT_EQ(std::get<double>(stored(table, 1, "Kc_Jul")), 0.45);
    EXPECT_EQ(std::get<std::string>(stored(table, 3, "CropType")), "Potato \"Russet\"");
    EXPECT_EQ(std::get<double>(stored(table, 3, "Kc_Jul")), 1.15);
    EXPECT_EQ(std::get<double>(stored(table, 3, "Kc_Jan")), 0);
    EXPECT_FALSE(form.cmdSave.enabled());
    EXPECT_TRUE(messages().empty()) << f.allMessages();
}

TEST_F(KcEditor, TheCurveFollowsAnEdit) {
    form.load();
    form.grdKc.edit(0, 1, "0.2");
    EXPECT_EQ(form.picCurve.values()[0], 0.2);
}

TEST_F(KcEditor, BadCellsAreRefused) {
    form.load();
    for (const auto& [column, text] :
         {std::pair<std::size_t, const char*>{3, "high"}, {3, ""}, {0, " "}, {0, "Barley"}}) {
        form.grdKc.edit(0, column, text);
        EXPECT_TRUE(form.failed());
    }
    form.grdKc.edit(3, 2, "0.4");
    EXPECT_THAT(messages(),
                ElementsAre(HasSubstr("\"high\" is no number: Kc_Mar"), HasSubstr("is no number"),
                            HasSubstr("needs a name"), HasSubstr("already"),
                            HasSubstr("Begin a new crop with its name")));
    EXPECT_EQ(form.grdKc.rowCount(), 3U);
    EXPECT_FALSE(form.cmdSave.enabled());
}

TEST_F(KcEditor, AnEditThatCannotBeStoredChangesNothing) {
    form.load();
    const std::string before = test::contentOf(table);
    form.grdKc.edit(0, 3, "0.5");
    form.grdKc.edit(1, 0, std::string(80, 'x'));
    form.cmdSave.click();
    EXPECT_TRUE(form.failed());
    EXPECT_THAT(messages().back(), HasSubstr("longer than the 75 characters"));
    EXPECT_EQ(test::contentOf(table), before);
    EXPECT_TRUE(form.cmdSave.enabled());
}

TEST_F(KcEditor, ClosingAsksAboutChanges) {
    form.load();
    form.grdKc.edit(0, 3, "0.55");
    f.application.prompts().answer = false;
    form.cmdClose.click();
    EXPECT_FALSE(form.isOpen());
    EXPECT_EQ(std::get<double>(stored(table, 0, "Kc_Mar")), 0.35);
    form.load();
    form.grdKc.edit(0, 3, "0.55");
    f.application.prompts().answer = true;
    form.close();
    EXPECT_EQ(std::get<double>(stored(table, 0, "Kc_Mar")), 0.55);
}

TEST_F(KcEditor, ANewTableIsEmptyAndOpened) {
    form.load();
    test::write(f.folder.file("TEMP.MDB"), "an old work database");
    test::write(f.folder.file("new crops.DBF"), "an old table");
    f.application.browsers().answers = {f.folder.file("new crops.dbf")};
    form.cmdCreateDB.click();
    EXPECT_TRUE(messages().empty()) << f.allMessages();
    EXPECT_EQ(form.txtKcDBName.text(), f.folder.file("new crops.dbf"));
    EXPECT_EQ(form.grdKc.rowCount(), 0U);
    const auto made = f.application.platform().features().openTable(f.folder.file("new crops"));
    ASSERT_EQ(made->fields().size(), 13U);
    EXPECT_EQ(made->fields()[0].name, "CropType");
    EXPECT_EQ(made->fields()[0].type, FieldType::text);
    EXPECT_EQ(made->fields()[0].width, 75);
    EXPECT_EQ(made->fields()[1].name, "Kc_Jan");
    EXPECT_EQ(made->fields()[12].name, "Kc_Dec");
    EXPECT_EQ(made->fields()[12].type, FieldType::number);
    EXPECT_FALSE(std::filesystem::exists(f.folder.file("TEMP.MDB")));
    EXPECT_FALSE(std::filesystem::exists(f.folder.file("new crops.DBF")));
    f.application.browsers().answers.clear();  // cancelled
    form.cmdCreateDB.click();
    EXPECT_EQ(form.txtKcDBName.text(), f.folder.file("new crops.dbf"));
}

TEST_F(KcEditor, WhereCapitalsMakeNoOtherNameTheNewTableStays) {
    // As on such a folder, the name in capitals leads to the same file.
    const std::string lower = f.folder.file("new.dbf");
    const std::string upper = f.folder.file("new.DBF");
    test::write(lower, "an old table");
    std::filesystem::create_symlink("new.dbf", upper);
    form.load();
    f.application.browsers().answers = {lower};
    form.cmdCreateDB.click();
    EXPECT_TRUE(messages().empty()) << f.allMessages();
    EXPECT_EQ(records(lower), 0U);
    EXPECT_TRUE(std::filesystem::exists(upper));
}

TEST_F(KcEditor, AnOldTableStaysWhenTheNewOneCannotBeMade) {
    test::write(f.folder.file("new.DBF"), "an old table");
    test::write(f.folder.file("new.shp"), "whose attributes they may be");
    form.load();
    f.application.browsers().answers = {f.folder.file("new.dbf")};
    form.cmdCreateDB.click();
    EXPECT_THAT(f.allMessages(), HasSubstr("belongs to a shapefile"));
    EXPECT_EQ(test::contentOf(f.folder.file("new.DBF")), "an old table");
}

TEST_F(KcEditor, SaveNewCopiesTheTableWithItsChanges) {
    form.load();
    form.grdKc.edit(0, 3, "0.55");
    f.application.browsers().answers = {f.folder.file("copy")};
    form.cmdSaveNew.click();
    EXPECT_TRUE(messages().empty()) << f.allMessages();
    EXPECT_EQ(form.txtKcDBName.text(), f.folder.file("copy.dbf"));
    EXPECT_EQ(std::get<double>(stored(f.folder.file("copy"), 0, "Kc_Mar")), 0.55);
    EXPECT_EQ(std::get<double>(stored(table, 0, "Kc_Mar")), 0.35);
    EXPECT_EQ(records(f.folder.file("copy")), 3U);
    // What says the encoding goes along, and an old one of another table goes away.
    test::write(f.folder.file("copy.cpg"), "UTF-8");
    test::write(f.folder.file("third.cpg"), "CP1251");
    f.application.browsers().answers = {f.folder.file("second.dbf")};
    form.cmdSaveNew.click();
    EXPECT_EQ(test::contentOf(f.folder.file("second.cpg")), "UTF-8");
    form.txtKcDBName.enter(table);
    f.application.browsers().answers = {f.folder.file("third.dbf")};
    form.cmdSaveNew.click();
    EXPECT_FALSE(std::filesystem::exists(f.folder.file("third.cpg")));
}

TEST_F(KcEditor, TheAttributesOfAShapefileAreNeverReplaced) {
    form.load();
    const std::string before = test::contentOf(f.folder.file("land.dbf"));
    for (CommandButton* button : {&form.cmdCreateDB, &form.cmdSaveNew}) {
        f.application.browsers().answers = {f.folder.file("land.dbf")};
        button->click();
        EXPECT_TRUE(form.failed());
        EXPECT_THAT(messages().back(), HasSubstr("belongs to a shapefile"));
    }
    EXPECT_EQ(test::contentOf(f.folder.file("land.dbf")), before);
    EXPECT_EQ(form.txtKcDBName.text(), table);
}

TEST_F(KcEditor, OtherTablesAreOpened) {
    f.application.platform().features().createTable(
        f.folder.file("other.dbf"),
        {{"Crop", FieldType::text, 9, 0}, {"Kc_Jan", FieldType::number, 5, 2}},
        {{std::string("Rye"), 0.3}});
    form.load();
    f.application.browsers().answers = {f.folder.file("other.dbf")};
    form.cmdOpenDB.click();
    EXPECT_EQ(form.grdKc.cell(0, 0), "Rye");
    form.txtKcDBName.enter(f.folder.file("none.dbf"));
    EXPECT_TRUE(form.failed());
    EXPECT_THAT(messages().back(), HasSubstr("There is no table"));
    EXPECT_EQ(form.grdKc.rowCount(), 0U);
}

TEST_F(KcEditor, ListsTheLandUseTypes) {
    form.load();
    form.cmdListLuType.click();
    EXPECT_THAT(form.cboLuTypeList.items(),
                ElementsAre("Alfalfa", "Barley", "O'Brien Corn", "Water"));
    form.txtLandCover.enter("");
    form.cmdListLuType.click();
    EXPECT_TRUE(form.failed());
}

TEST_F(KcEditor, MatchingGivesEveryTypeARecord) {
    form.load();
    form.cmdListLuType.click();
    form.cmdMatch.click();
    EXPECT_THAT(messages(), ElementsAre("match-1", "match-2"));
    ASSERT_EQ(form.grdKc.rowCount(), 4U);
    EXPECT_EQ(form.grdKc.cell(3, 0), "Water");
    const std::vector<double> expected = {0,    0,    0.75, 0.75, 0.75, 0.75,
                                          0.75, 0.75, 0.75, 0.75, 0,    0};
    for (std::size_t m = 0; m < 12; ++m) {
        EXPECT_EQ(std::get<double>(stored(table, 3, form.grdKc.columns()[m + 1])), expected[m])
            << m;
    }
    form.cmdMatch.click();  // all are there now
    EXPECT_EQ(records(table), 4U);
}

TEST_F(KcEditor, TypesThatDifferInCapitalsAreTwo) {
    f.makeLandCover({{"alfalfa", f.fields()[0].ring}, {"Alfalfa", f.fields()[1].ring}});
    form.load();
    form.cmdListLuType.click();
    EXPECT_THAT(form.cboLuTypeList.items(), ElementsAre("Alfalfa", "alfalfa"));
    form.cmdMatch.click();
    ASSERT_EQ(records(table), 4U) << f.allMessages();
    EXPECT_EQ(keyText(stored(table, 3, "CropType")), "alfalfa");
}

TEST_F(KcEditor, FieldsOfAnyNameAreListedAndMatched) {
    for (const std::string field :
         {"Gr\u00F6\u00DFe", "A\u00F1o", "crop type", "GROUP", "it's", "2020"}) {
        f.application.platform().features().createFeatureClass(
            f.settings.LandCover, true, f.geometry().crs,
            {{"Gr", FieldType::text, 5, 0}, {field, FieldType::text, 9, 0}},
            {rectangle({400000, 4499000, 401000, 4500000},
                       {std::string("1"), std::string("Rye")})});
        form.load();
        form.cboFieldList.setText(field);
        form.cmdListLuType.click();
        EXPECT_THAT(form.cboLuTypeList.items(), ElementsAre("Rye")) << field << f.allMessages();
    }
    // The key of the table may be called anything, too.
    f.application.platform().features().createTable(
        table, {{"Art der Gr\u00F6", FieldType::text, 20, 0}, {"Kc_Jan", FieldType::number, 20, 5}},
        {{std::string("Oats"), 0.5}});
    form.load();
    form.cmdListLuType.click();
    form.cmdMatch.click();
    EXPECT_EQ(records(table), 1U);  // of a month that the table lacks: refused, nothing is added
    EXPECT_FALSE(f.allMessages().empty());
}

TEST_F(KcEditor, WorksInFoldersOfAnyName) {
    for (const std::string name : {"b;x", "x]y", "[z", "q'r", "s\"t", "a=b", "to where it"}) {
        const std::string folder = f.folder.file(name);
        f.application.platform().files().createFolder(folder);
        f.application.browsers().answers = {folder + "/new].dbf"};
        f.application.prompts().messages.clear();
        form.load();
        form.cmdCreateDB.click();
        EXPECT_TRUE(messages().empty()) << name << ": " << f.allMessages();
        form.cmdListLuType.click();
        form.cmdMatch.click();
        EXPECT_EQ(records(folder + "/new].dbf"), 4U) << name << ": " << f.allMessages();
    }
    EXPECT_FALSE(f.application.platform().files().fileExists(f.folder.file("b")));
}

TEST_F(KcEditor, MatchingStoresChangesFirstAndNeedsItsInputs) {
    form.load();
    form.grdKc.edit(0, 3, "0.55");
    form.cmdListLuType.click();
    form.cmdMatch.click();
    EXPECT_EQ(std::get<double>(stored(table, 0, "Kc_Mar")), 0.55);
    form.txtLandCover.enter("");
    form.cmdMatch.click();
    EXPECT_EQ(messages().back(), "Land Use Info is not available, please input!");
    form.txtLandCover.enter(f.settings.LandCover);
    form.txtKcDBName.enter("");
    form.cmdMatch.click();
    EXPECT_EQ(messages().back(), "Crop Coefficient Info is not available, please input!");
}

TEST_F(KcEditor, FurtherColumnsOfATableStay) {
    f.application.platform().features().createTable(
        table,
        {{"CropType", FieldType::text, 20, 0},
         {"Source", FieldType::text, 8, 0},
         {"Kc_Mar", FieldType::number, 8, 3},
         {"Kc_Nov", FieldType::number, 8, 3},
         {"Kc_Jan", FieldType::number, 8, 3},
         {"Kc_Feb", FieldType::number, 8, 3},
         {"Kc_Apr", FieldType::number, 8, 3},
         {"Kc_May", FieldType::number, 8, 3},
         {"Kc_Jun", FieldType::number, 8, 3},
         {"Kc_Jul", FieldType::number, 8, 3},
         {"Kc_Aug", FieldType::number, 8, 3},
         {"Kc_Sep", FieldType::number, 8, 3},
         {"Kc_Oct", FieldType::number, 8, 3},
         {"Kc_Dec", FieldType::number, 8, 3}},
        {{std::string("Alfalfa"), std::string("FAO-56"), 0.1, 0.0}});
    form.load();
    form.cmdListLuType.click();
    form.cmdMatch.click();
    EXPECT_EQ(std::get<std::string>(stored(table, 0, "Source")), "FAO-56");
    EXPECT_EQ(std::get<double>(stored(table, 1, "Kc_Mar")), 0.75);
    EXPECT_EQ(std::get<double>(stored(table, 1, "Kc_Nov")), 0);
    EXPECT_TRUE(isNull(stored(table, 1, "Source")));
    EXPECT_EQ(form.picCurve.labels().size(), 12U);
}

TEST_F(KcEditor, ATableThatLibreOfficeCalcSavedIsReadAndEdited) {
    const std::string path = f.folder.file("calc.dbf");
    std::filesystem::copy_file(std::string(VELMORA_TEST_DATA) + "/libreoffice_kc.dbf", path);
    form.load();
    form.txtKcDBName.enter(path);
    EXPECT_TRUE(messages().empty()) << f.allMessages();
    EXPECT_EQ(form.grdKc.columns().size(), 13U);
    EXPECT_EQ(form.grdKc.rowCount(), 9U);
    EXPECT_EQ(form.grdKc.cell(0, 0), "Alfalfa");
    EXPECT_EQ(form.grdKc.cell(0, 7), "1.07");
    EXPECT_EQ(form.grdKc.cell(8, 0), "Hopfen \"fr\u00FCh\"");
    EXPECT_EQ(form.grdKc.cell(8, 12), "1.2");
    form.grdKc.edit(8, 0, "Hopfen \"sp\u00E4t\"");
    form.grdKc.edit(8, 1, "0.35");
    form.cmdSave.click();
    EXPECT_EQ(std::get<std::string>(stored(path, 8, "CropType")), "Hopfen \"sp\u00E4t\"");
    EXPECT_EQ(std::get<double>(stored(path, 8, "Kc_Jan")), 0.35);
    EXPECT_EQ(std::get<double>(stored(path, 0, "Kc_Jul")), 1.07);
}

TEST_F(KcEditor, SummarizesTheLandUseTypes) {
    form.load();
    form.cmdSummary.click();
    EXPECT_THAT(form.grdSummary.columns(),
                ElementsAre("Land use type", "Polygons", "Acres", "In the table"));
    ASSERT_EQ(form.grdSummary.rowCount(), 5U);  // and those without a type
    EXPECT_EQ(form.grdSummary.cell(1, 0), "Alfalfa");
    EXPECT_EQ(form.grdSummary.cell(1, 1), "6");
    EXPECT_EQ(form.grdSummary.cell(1, 3), "yes");
    EXPECT_EQ(form.grdSummary.cell(4, 0), "Water");
    EXPECT_EQ(form.grdSummary.cell(4, 3), "no");
    double square = 0;
    for (const test::Shape& field : test::CropFixture::fields()) {
        if (field.key == "Alfalfa") square += test::areaOf(field);
    }
    EXPECT_NEAR(lenientNumber(form.grdSummary.cell(1, 2)), square / 4047, 0.06);
}

TEST_F(KcEditor, MakesMapsAndShowsTheWay) {
    form.load();
    form.txtCellSize.enter("20");
    form.cmdMakeMap.click();
    EXPECT_THAT(messages(), ElementsAre("Joined_kc", "pre", f.settings.OutputWorkspace, "post",
                                        "Kc_loop", "Kc-Maps have been generated successfully"));
    EXPECT_TRUE(processState().mapsMade);
    EXPECT_FALSE(form.busy());
    EXPECT_TRUE(form.picCurve.values().empty());
    EXPECT_EQ(f.output("Kc_Jun_4").geometry.cellSize, 100);
    EXPECT_TRUE(f.hasOutput("Kc_Jul_4"));
    EXPECT_FALSE(f.hasOutput("Kc_May_4"));
    form.txtCellSize.enter("800");
    form.cmdMakeMap.click();
    EXPECT_EQ(f.output("Kc_Jun_4").geometry.cellSize, 500);
    form.txtCellSize.enter("250 m");
    form.cmdMakeMap.click();
    EXPECT_EQ(f.output("Kc_Jun_4").geometry.cellSize, 250);
}

TEST_F(KcEditor, MapsNeedTheirInputs) {
    form.load();
    form.txtCellSize.enter("");
    form.cmdMakeMap.click();
    EXPECT_EQ(messages().back(), "Please input GRID cell size <10 - 500>");
    form.txtLandCover.enter("");
    form.cmdMakeMap.click();
    EXPECT_EQ(messages().back(), "Land Use Info is not available, please input!");
    form.txtLandCover.enter(f.settings.LandCover);
    form.txtKcDBName.enter("");
    form.cmdMakeMap.click();
    EXPECT_EQ(messages().back(), "Crop Coefficient Info is not available, please input!");
    EXPECT_FALSE(processState().mapsMade);
    EXPECT_TRUE(std::filesystem::is_empty(f.folder.file("out")));
}

TEST_F(KcEditor, AFailureOfTheMapsIsShownAndLeavesTheFlag) {
    // The table has June but not July.
    f.application.platform().features().createTable(
        table, {{"CropType", FieldType::text, 20, 0}, {"Kc_Jun", FieldType::number, 8, 3}},
        {{std::string("Alfalfa"), 0.9}});
    form.load();
    form.cmdMakeMap.click();
    EXPECT_THAT(messages().back(), HasSubstr("There is no field crops.Kc_Jul"));
    EXPECT_TRUE(form.failed());
    EXPECT_FALSE(form.busy());
    EXPECT_FALSE(processState().mapsMade);
    EXPECT_TRUE(f.hasOutput("Kc_Jun_4"));
}

TEST_F(KcEditor, LandCoverInDegreesNeedsADomain) {
    auto& systems = f.application.platform().spatialReferences();
    const std::string geographic = systems.createGeographic(4269);
    std::vector<NewFeature> shapes;
    for (test::Shape field : test::CropFixture::fields()) {
        field.ring.push_back(field.ring.front());
        shapes.push_back({systems.project(field.ring, f.geometry().crs, geographic), {field.key}});
    }
    f.application.platform().features().createFeatureClass(
        f.settings.LandCover, true, geographic, {{"Use", FieldType::text, 30, 0}}, shapes);
    form.load();
    form.cmdMakeMap.click();  // transformed to the domain's system
    EXPECT_EQ(messages().back(), "Kc-Maps have been generated successfully");
    EXPECT_EQ(f.output("Kc_Jun_4").geometry.cellSize, 400);
    f.settings.ExtentProvider = "";
    form.cmdMakeMap.click();
    EXPECT_THAT(messages().back(), HasSubstr("is in degrees"));
}

}  // namespace
}  // namespace velmora
