// SPDX-License-Identifier: MIT
#include "irrigation/frm_efficiency.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "gis/numbers.h"
#include "irrigation/starter_database.h"
#include "platform/files/posix_file.h"
#include "settings/settings_file.h"
#include "tests/support/irrigation_fixture.h"
#include "tests/support/jet_writer.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kEfExists = "Table<IREF> Exists, Create new one?";
constexpr const char* kSumExists = "Table<SumCrop> Exists, Replace it?";
constexpr const char* kDefaults = "Add default IR percentage?";

double numberIn(const std::string& text) { return strictNumber(text).value(); }

struct EfficiencyForm : testing::Test {
    EfficiencyForm() {
        f.makeZones({{"DAGGETT", kRing}, {"O'Dell's", kRing}});
        f.makeCropLand({{"Sorghum", kRing}, {"Barley", kRing}, {"Sorghum", kRing}});
        f.storeSettings();
        IrrigationDefaults defaults;
        defaults.methods = {{"SPR", 0.8, "Sprinkler"}, {"FLD", 0.5, "Flood"}};
        defaults.perZone = {{"DAGGETT", "", {0.6, 0.4}}, {"O'Dell's", "", {0.2, 0.8}}};
        defaults.perZoneAndCrop = {{"DAGGETT", "Sorgum", {1, 0}}, {"O'Dell's", "Barley", {0, 1}}};
        createIrrigationDatabase(f.application.platform(), path, defaults);
        prompts.answers = [this](const std::string& question) { return answers[question]; };
    }
    void applied() {
        form.load();
        form.cmdApplyIRDB.click();
        ASSERT_FALSE(form.failed()) << form.reason();
        prompts.messages.clear();
        prompts.questions.clear();
    }
    std::string share(std::size_t row, const std::string& column) const {
        const auto& columns = form.dgdShares.columns();
        const auto found = std::find(columns.begin(), columns.end(), column);
        return form.dgdShares.cell(row, static_cast<std::size_t>(found - columns.begin()));
    }
    static inline const std::vector<Point> kRing = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
    test::IrrigationFixture f;
    std::string path = f.folder.file("IrDB.mdb");
    test::FakePrompts& prompts = f.application.prompts();
    std::map<std::string, bool> answers;
    frmEfficiency form{f.application};
};

TEST_F(EfficiencyForm, OpensWithTheDatabaseBesideTheZonesAndTheRestDisabled) {
    form.load();
    EXPECT_TRUE(form.isOpen());
    EXPECT_EQ(form.title(), "Interactive Mapping of Feild Application Efficiency of Irrigation");
    EXPECT_EQ(form.txtIRDB.text(), path);
    EXPECT_EQ(form.txtCvef.text(), "1.0");
    for (const Control* control : form.controls()) {
        const bool usable = control == &form.txtIRDB || control == &form.cmdOpenIRDB ||
                            control == &form.cmdApplyIRDB || control == &form.cmdClose;
        EXPECT_EQ(control->enabled(), usable) << control->name();
    }
    std::filesystem::remove(defaultSettingsPath(f.application.folder));
    frmEfficiency refused(f.application);
    refused.load();
    EXPECT_FALSE(refused.isOpen());
    EXPECT_TRUE(refused.failed());
    EXPECT_THAT(prompts.messages, ElementsAre("Run Settings First,Please!"));
}

TEST_F(EfficiencyForm, AnotherDatabaseMayBePicked) {
    form.load();
    f.application.browsers().answers = {"/else/IrDB.mdb", "", "/third.mdb"};
    form.txtIRDB.onDoubleClick();
    EXPECT_EQ(form.txtIRDB.text(), "/else/IrDB.mdb");
    form.cmdOpenIRDB.click();  // cancelled
    EXPECT_EQ(form.txtIRDB.text(), "/else/IrDB.mdb");
    form.cmdOpenIRDB.click();
    EXPECT_EQ(form.txtIRDB.text(), "/third.mdb");
    EXPECT_THAT(f.application.browsers().asked, testing::Each("Access Database (*.mdb)|*.mdb"));
}

TEST_F(EfficiencyForm, ApplyMakesTheTablesAndListsTheZones) {
    form.load();
    form.cmdApplyIRDB.click();
    EXPECT_THAT(prompts.messages, ElementsAre("New <IREF> table is created!",
                                              "Crop types are listed in <SumCrop.dbf> "));
    EXPECT_TRUE(prompts.questions.empty());
    EXPECT_THAT(form.cmbZone.items(), ElementsAre("DAGGETT", "O'Dell's", "None"));
    EXPECT_EQ(form.dgdMethods.rowCount(), 2U);
    EXPECT_EQ(form.dgdMethods.cell(1, 0), "FLD");
    for (const Control* control : form.controls()) EXPECT_TRUE(control->enabled());
    EXPECT_TRUE(std::filesystem::exists(f.folder.file("SumCrop.dbf")));
}

TEST_F(EfficiencyForm, ApplyAsksBeforeItReplaces) {
    answers[kDefaults] = true;
    applied();
    form.cmbZone.select(0);
    prompts.messages.clear();
    prompts.questions.clear();
    prompts.questionTitles.clear();
    form.cmdApplyIRDB.click();
    EXPECT_THAT(prompts.questions, ElementsAre(kEfExists, kSumExists));
    EXPECT_THAT(prompts.questionTitles,
                ElementsAre("Confirmation to Table Creation", "Confirmation to Crop Type Summary"));
    EXPECT_TRUE(prompts.messages.empty());
    EXPECT_EQ(form.cmbZone.items().size(), 3U);
    IrrigationDatabase database(f.application.platform(), path);
    EXPECT_FALSE(database.query("SELECT * FROM IREF")->eof());
    answers[kEfExists] = answers[kSumExists] = true;
    form.cmdApplyIRDB.click();
    EXPECT_THAT(prompts.messages, ElementsAre("New <IREF> table is created!",
                                              "Crop types are listed in <SumCrop.dbf> "));
    EXPECT_TRUE(database.query("SELECT * FROM IREF")->eof());
}

TEST_F(EfficiencyForm, WrongDatabasesAreRefused) {
    form.load();
    form.txtIRDB.setText(f.folder.file("none.mdb"));
    form.cmdApplyIRDB.click();
    EXPECT_TRUE(form.failed());
    EXPECT_THAT(prompts.messages, ElementsAre("Incorrect IRDB information!"));
    EXPECT_THAT(form.reason(), HasSubstr("none.mdb"));
    EXPECT_FALSE(form.cmbZone.enabled());
    form.txtIRDB.setText(path);
    form.cmdApplyIRDB.click();
    EXPECT_FALSE(form.failed());
    EXPECT_EQ(form.reason(), "");
}

TEST_F(EfficiencyForm, LandCoverAndZonesAreChecked) {
    form.load();
    form.cmdApplyIRDB.click();
    f.makeLandCover(test::CropFixture::fields());  // its field is called otherwise
    answers[kSumExists] = true;
    form.cmdApplyIRDB.click();
    EXPECT_TRUE(std::filesystem::exists(f.folder.file("SumCrop.dbf")));  // the old one
    EXPECT_EQ(prompts.messages.back(), "There must be a field named Descriptio");
    EXPECT_TRUE(form.failed());
    f.settings.LandCover = f.folder.file("none.shp");
    f.storeSettings();
    form.load();
    form.cmdApplyIRDB.click();
    EXPECT_EQ(prompts.messages.back(), "Error in Sub<CreateSummaryTable>");
    EXPECT_THAT(form.reason(), HasSubstr("none.shp"));
    f.settings.ZoneField = "NONE";
    f.storeSettings();
    form.load();
    form.cmdApplyIRDB.click();
    EXPECT_EQ(prompts.messages.back(), "Error in listing Zones!");
    EXPECT_THAT(form.cmbZone.items(), ElementsAre("None"));
}

TEST_F(EfficiencyForm, AZoneChosenForTheFirstTimeIsFilled) {
    applied();
    answers[kDefaults] = true;
    form.txtCvef.enter("0.9");
    form.cmbZone.select(0);
    ASSERT_FALSE(form.failed());
    EXPECT_THAT(prompts.questions, ElementsAre(kDefaults));
    EXPECT_EQ(prompts.questionTitles.back(), "Confirmation to Loading Default Information");
    EXPECT_THAT(form.dgdMethods.columns(), ElementsAre("ZONEUNIT", "IRMD", "IRMDEF", "IRMDDES"));
    EXPECT_EQ(form.dgdMethods.rowCount(), 2U);
    ASSERT_EQ(form.dgdShares.rowCount(), 2U);
    EXPECT_EQ(share(0, "CropType"), "Barley");
    EXPECT_EQ(share(1, "SPR"), "0.6");
    EXPECT_EQ(share(1, "CVEF"), "0.9");
    EXPECT_NEAR(numberIn(share(1, "IREF")), 0.5806, 5e-5);
    form.cmbZone.select(2);  // None
    EXPECT_EQ(form.dgdShares.rowCount(), 0U);
    EXPECT_EQ(form.dgdMethods.rowCount(), 0U);
}

TEST_F(EfficiencyForm, NoTakesTheSharesOfZoneAndCrop) {
    applied();
    form.cmbZone.select(0);
    EXPECT_EQ(share(1, "CropType"), "Sorghum");
    EXPECT_EQ(share(1, "SPR"), "1");
    EXPECT_EQ(share(1, "FAEF"), "0.8");
    EXPECT_EQ(share(0, "SPR"), "0");
    EXPECT_EQ(share(0, "FAEF"), "");
}

TEST_F(EfficiencyForm, EditsGoStraightToTheDatabase) {
    applied();
    answers[kDefaults] = true;
    form.cmbZone.select(1);
    form.dgdShares.edit(0, 2, "0.5");
    form.dgdShares.edit(0, 3, "0.5");
    form.dgdMethods.edit(1, 2, "0.4");
    EXPECT_FALSE(form.failed());
    form.cmdCalFieldEf.click();
    EXPECT_DOUBLE_EQ(numberIn(share(0, "FAEF")), 1 / (0.5 / 0.8 + 0.5 / 0.4));
    form.dgdShares.edit(0, 2, "half");
    EXPECT_TRUE(form.failed());
    EXPECT_THAT(prompts.messages.back(), HasSubstr("\"half\" is no number: SPR"));
    form.dgdMethods.edit(2, 1, "DRP");  // a new method of the zone
    EXPECT_EQ(form.dgdMethods.cell(2, 0), "O'Dell's");
    form.dgdMethods.edit(2, 2, "0.9");
    form.dgdMethods.edit(2, 2, "");
    EXPECT_EQ(form.dgdMethods.cell(2, 2), "");
    // Another zone's rows stay what they are.
    form.cmbZone.select(0);
    EXPECT_EQ(form.dgdMethods.rowCount(), 2U);
    EXPECT_EQ(form.dgdMethods.cell(1, 2), "0.5");
}

// Choosing a zone gives its rows default shares, but not those that are declared not irrigated.
TEST_F(EfficiencyForm, LandThatIsDeclaredNotIrrigatedStaysSo) {
    applied();
    IrrigationDatabase database(f.application.platform(), path);
    database.ensureNotIrrigatedColumn();
    database.ensureNotIrrigatedColumn();  // which it has by now
    form.cmbZone.select(0);
    answers[kDefaults] = true;
    form.cmbZone.select(0);
    EXPECT_GT(numberIn(share(0, "IREF")), 0);
    const auto& columns = form.dgdShares.columns();
    const auto at = [&](const std::string& name) {
        return static_cast<std::size_t>(std::ranges::find(columns, name) - columns.begin());
    };
    EXPECT_EQ(columns.back(), "NotIrrigated");
    form.dgdShares.edit(0, at("NotIrrigated"), "1");
    form.dgdShares.edit(0, at("SPR"), "0");
    form.dgdShares.edit(0, at("FLD"), "0");
    form.dgdShares.edit(0, at("IREF"), "0");
    form.cmbZone.select(0);
    EXPECT_EQ(share(0, "SPR"), "0");
    EXPECT_EQ(share(0, "IREF"), "0");
    form.dgdShares.edit(0, at("SPR"), "1");
    form.cmdCalFieldEf.click();
    EXPECT_EQ(share(0, "IREF"), "0");  // no efficiency while it is declared so
    form.dgdShares.edit(0, at("NotIrrigated"), "");
    form.cmdCalFieldEf.click();
    EXPECT_EQ(numberIn(share(0, "IREF")), 0.8);
}

TEST_F(EfficiencyForm, WhatIsEditedIsNoted) {
    applied();
    form.cmbZone.select(0);
    const auto& columns = form.dgdShares.columns();
    const auto spr = static_cast<std::size_t>(std::ranges::find(columns, "SPR") - columns.begin());
    form.dgdShares.edit(1, spr, "0.25");
    const IrrigationDatabase database(f.application.platform(), path);
    const auto rows = database.query("Select * from IR_Changes");
    std::vector<std::string> noted;
    for (; !rows->eof(); rows->moveNext()) {
        noted.push_back(keyText(rows->value("TableName")) + " " + keyText(rows->value("ZoneUnit")) +
                        " " + keyText(rows->value("Item")) + " " + keyText(rows->value("Field")) +
                        " " + keyText(rows->value("NewValue")));
        EXPECT_EQ(keyText(rows->value("ChangedWith")), "efficiency dialog");
    }
    EXPECT_THAT(noted, testing::Contains("IREF DAGGETT Barley row "
                                         "CVEF=1, FLD=0, SPR=0"));
    EXPECT_THAT(noted, testing::Contains("IRMD DAGGETT SPR row IRMDDES=Sprinkler, IRMDEF=0.8"));
    const std::string crop = form.dgdShares.cell(1, 1);
    EXPECT_EQ(noted.back(), "IREF DAGGETT " + crop + " SPR 0.25");
}

TEST_F(EfficiencyForm, WithoutAZoneTheDefaultListIsEdited) {
    applied();
    form.dgdMethods.edit(0, 1, "0.75");
    EXPECT_EQ(form.dgdMethods.cell(0, 1), "0.75");
    form.cmbZone.select(0);
    EXPECT_EQ(form.dgdMethods.cell(0, 2), "0.75");
    form.cmbZone.select(2);
    form.cmdCalFieldEf.click();
    EXPECT_THAT(prompts.messages.back(), HasSubstr("Choose a zone first"));
}

TEST_F(EfficiencyForm, MethodsWithoutANumberAreTold) {
    applied();
    form.cmbZone.select(0);
    form.dgdMethods.edit(0, 2, "");
    form.dgdShares.edit(1, 3, "1");
    form.cmdCalFieldEf.click();
    EXPECT_THAT(prompts.messages, ElementsAre("Error in getting Method Efficiency"));
    EXPECT_EQ(share(1, "FAEF"), "0.5");
}

TEST_F(EfficiencyForm, StatementsAreTheDesigned) {
    test::RecordingConnections connections(f.application.platform().connections());
    f.world.platform.otherConnections = &connections;
    form.load();
    form.cmdApplyIRDB.click();
    form.cmbZone.select(1);
    answers[kDefaults] = true;
    form.cmbZone.select(0);
    f.world.platform.otherConnections = nullptr;
    EXPECT_THAT(connections.opened,
                testing::Each("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path));
    for (const char* statement :
         {"CREATE TABLE IREF(ZoneUnit Char(50),CropType Char(50),[SPR] Double,[FLD] Double,"
          "FAEF Double,CVEF Double,IREF Double)",
          "Select * from IRMD WHERE [ZONEUNIT] = 'O''Dell''s'",
          "Select * from IREF WHERE [ZONEUNIT] = 'DAGGETT'",
          "Select * from IR_Dis_1 WHERE [ZONEUNIT] ='DAGGETT'",
          "Select * from IR_Dis_2 WHERE [ZONEUNIT] ='O''Dell''s' AND [CropType]='Sorgum'"}) {
        EXPECT_THAT(connections.statements, testing::Contains(statement));
    }
    form.cmdApplyIRDB.click();
    answers[kEfExists] = true;
    f.world.platform.otherConnections = &connections;
    form.cmdApplyIRDB.click();
    f.world.platform.otherConnections = nullptr;
    EXPECT_THAT(connections.statements, testing::Contains("DROP TABLE IREF"));
}

TEST_F(EfficiencyForm, WorksOnAnAccessFile) {
    using test::JetType;
    const test::JetColumn zone{"ZONEUNIT"};
    const test::JetColumn crop{"CropType"};
    const test::JetColumn sprinkler{"SPR", JetType::real};
    const test::JetColumn flood{"FLD", JetType::real};
    const std::vector<test::JetColumn> method = {
        {"IRMD", JetType::text, 10}, {"IRMDEF", JetType::real}, {"IRMDDES"}};
    std::vector<test::JetColumn> methodOfZone = method;
    methodOfZone.insert(methodOfZone.begin(), zone);
    const std::string access = test::jetDatabase(
        {{"IRMDDef",
          method,
          {{std::string("SPR"), 0.8, std::string("Sprinkler")}, {std::string("FLD"), 0.5, {}}}},
         {"IRMD", methodOfZone, {}},
         {"IR_Dis_1", {zone, sprinkler, flood}, {{std::string("DAGGETT"), 0.6, 0.4}}},
         {"IR_Dis_2",
          {zone, crop, sprinkler, flood},
          {{std::string("daggett"), std::string("Sorgum"), 1.0, 0.0}}}});
    test::write(path, access);
    applied();
    form.txtCvef.enter("0.9");
    answers[kDefaults] = true;
    form.cmbZone.select(0);
    ASSERT_FALSE(form.failed());
    EXPECT_NEAR(numberIn(share(0, "IREF")), 0.5806, 5e-5);
    answers[kDefaults] = false;
    form.cmbZone.select(0);
    EXPECT_EQ(share(1, "SPR"), "1");
    EXPECT_EQ(platform::readWholeFile(path, 1 << 20), access);
    EXPECT_TRUE(std::filesystem::exists(path + ".sqlite"));
}

}  // namespace
}  // namespace velmora
