// SPDX-License-Identifier: MIT
#include "irrigation/frm_statistics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/zonal_tables.h"
#include "settings/settings_file.h"
#include "tests/support/memory_fixtures.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct ZonalResults : testing::Test {
    ZonalResults() {
        f.settings.OutputWorkspace = f.folder.file("out put");
        f.application.platform().files().createFolder(f.settings.OutputWorkspace);
        f.storeSettings();
    }
    void makeTable() {
        CreateStatTable(f.application.platform(), f.application.prompts(),
                        f.settings.OutputWorkspace, "StatIRR");
        IFeatureWorkspaceFactory& features = f.application.platform().features();
        const auto session = features.edit(features.openTable(path()));
        session->appendRecord({{"ZoneUnit", std::string("O'Dell Creek")},
                               {"Area_T_ac", 120.5},
                               {"Area_C_ac", 100.25},
                               {"Month", 7.0},
                               {"IRR_D_ft", 0.5},
                               {"IRR_V_acft", 50.125}});
        session->save();
    }
    std::string path() const { return f.settings.OutputWorkspace + "/StatIRR.dbf"; }
    test::MemoryIrrigation f;
    frmStatistics form{f.application};
};

TEST_F(ZonalResults, ShowTheWholeTable) {
    makeTable();
    form.load();
    EXPECT_TRUE(form.isOpen());
    EXPECT_FALSE(form.failed());
    EXPECT_EQ(form.title(), "Zonal Results");
    EXPECT_THAT(form.cboRst.items(), ElementsAre("StatIRR: Irrigation water requirement",
                                                 "StatNIR: Net Irrigation water requirement",
                                                 "StatCET: Crop Evapotranspitation"));
    EXPECT_THAT(form.lstContent.items(), ElementsAre("ZoneUnit", "Area_T_ac", "Area_C_ac", "Month",
                                                     "IRR_D_ft", "IRR_V_acft"));
    EXPECT_EQ(form.lblNote.text(), "Note: The shown results was obtained on " +
                                       f.application.platform().files().lastModified(path()));
    EXPECT_EQ(form.dgdResult.columns(), form.lstContent.items());
    EXPECT_EQ(form.dgdResult.cell(0, 0), "O'Dell Creek");
    EXPECT_EQ(form.dgdResult.cell(0, 5), "50.125");
    EXPECT_TRUE(form.cmdRefresh.enabled());
    // The list of results has no handler.
    EXPECT_EQ(form.cboRst.text(), "StatIRR: Irrigation water requirement");
    form.cboRst.select(2);
    EXPECT_EQ(form.dgdResult.columns().back(), "IRR_V_acft");
}

TEST_F(ZonalResults, ShowTheChosenColumnsInTheOrderOfTheList) {
    makeTable();
    form.load();
    for (const std::size_t column : {5U, 0U, 3U}) form.lstContent.choose(column);
    form.cmdRefresh.click();
    EXPECT_THAT(form.dgdResult.columns(), ElementsAre("ZoneUnit", "Month", "IRR_V_acft"));
    EXPECT_EQ(form.dgdResult.cell(0, 1), "7");
    EXPECT_EQ(form.lstContent.items().size(), 6U);
}

TEST_F(ZonalResults, NoChosenColumnIsRefusedByTheProvider) {
    makeTable();
    form.load();
    form.cmdRefresh.click();
    EXPECT_TRUE(form.failed());
    EXPECT_EQ(f.application.messages().size(), 1U);
    EXPECT_EQ(form.dgdResult.rowCount(), 1U);
}

TEST_F(ZonalResults, AMissingTableIsTold) {
    form.load();
    EXPECT_TRUE(form.isOpen());
    EXPECT_TRUE(form.failed());
    EXPECT_THAT(f.application.messages(), ElementsAre("Source table does not exist."));
    EXPECT_FALSE(form.cmdRefresh.enabled());
    EXPECT_EQ(form.cboRst.items().size(), 3U);
    EXPECT_EQ(form.lblNote.text(), "");
}

TEST_F(ZonalResults, ChoosingAnEntryEnablesTheButton) {
    form.load();
    form.lstContent.addItem("ZoneUnit");
    EXPECT_FALSE(form.cmdRefresh.enabled());
    form.lstContent.choose(0);
    EXPECT_TRUE(form.cmdRefresh.enabled());
}

TEST_F(ZonalResults, WithoutSettingsTheyDoNotOpen) {
    f.application.platform().files().deleteFile(defaultSettingsPath(f.application.folder));
    form.load();
    EXPECT_FALSE(form.isOpen());
    EXPECT_THAT(f.application.messages(), ElementsAre("Run Settings First,Please!"));
}

}  // namespace
}  // namespace velmora
