// SPDX-License-Identifier: MIT
// The Kc-Map Maker: chooses, makes and edits the crop coefficient table, compares it with the land
// cover, shows the monthly curve of each crop, and makes the Kc maps.
#pragma once

#include <string>
#include <vector>

#include "forms/trapped_form.h"
#include "settings/run_settings.h"

namespace velmora {

class frmKcEditor : public TrappedForm {
  public:
    // Both must outlive the form.
    frmKcEditor(IApplication& application, const RunSettings& settings);

    // Shows the table and land cover of the settings and proposes the run's cell size and the field
    // of the land cover that holds the table's crop types.
    void load() override;

    // The crop coefficient table
    TextBox txtKcDBName{*this, "txtKcDBName"};
    CommandButton cmdOpenDB{*this, "cmdOpenDB", "Open Kc Table"};
    CommandButton cmdCreateDB{*this, "cmdCreateDB", "Create New Kc Table"};
    DataGrid grdKc{*this, "grdKc"};
    CommandButton cmdSave{*this, "cmdSave", "Save"};
    CommandButton cmdSaveNew{*this, "cmdSaveNew", "Save New"};
    // The monthly curve of the current crop
    Chart picCurve{*this, "picCurve"};
    CommandButton cmdBackward{*this, "cmdBackward", "Backward"};
    CommandButton cmdForward{*this, "cmdForward", "Forward"};
    // The land cover
    TextBox txtLandCover{*this, "txtLandCover"};
    CommandButton cmdLandCover{*this, "cmdLandCover", "..."};
    ListBox cboFieldList{*this, "cboFieldList"};
    CommandButton cmdListLuType{*this, "cmdListLuType", "List Land Use Types"};
    ListBox cboLuTypeList{*this, "cboLuTypeList"};
    CommandButton cmdMatch{*this, "cmdMatch", "Match with Kc Table"};
    CommandButton cmdSummary{*this, "cmdSummary", "Summarize Crop Types"};
    DataGrid grdSummary{*this, "grdSummary"};
    // The maps
    TextBox txtCellSize{*this, "txtCellSize"};
    CommandButton cmdMakeMap{*this, "cmdMakeMap", "Make Kc Maps"};
    CommandButton cmdClose{*this, "cmdClose", "Close"};

  private:
    void openTable(const std::string& path);
    void createTable();
    void showRecords();
    void edit(std::size_t row, std::size_t column, const std::string& text);
    void save();
    void saveNew();
    void offerToSave();
    void showCurve(std::size_t row);
    void stepCurve(int step);

    void openLandCover(const std::string& path);
    void listLuTypes();
    bool inputsAreThere();
    void match();
    void summarize();
    void makeMaps();

    const RunSettings& settings_;
    std::string openedTable_;                       // path of the table that the grid shows
    std::vector<std::vector<std::string>> stored_;  // the records as the table holds them
};

}  // namespace velmora
