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
    TextBox txtKcDBName{"txtKcDBName"};
    CommandButton cmdOpenDB{"cmdOpenDB", "Open Kc Table"};
    CommandButton cmdCreateDB{"cmdCreateDB", "Create New Kc Table"};
    DataGrid grdKc{"grdKc"};
    CommandButton cmdSave{"cmdSave", "Save"};
    CommandButton cmdSaveNew{"cmdSaveNew", "Save New"};
    // The monthly curve of the current crop
    Chart picCurve{"picCurve"};
    CommandButton cmdBackward{"cmdBackward", "Backward"};
    CommandButton cmdForward{"cmdForward", "Forward"};
    // The land cover
    TextBox txtLandCover{"txtLandCover"};
    CommandButton cmdLandCover{"cmdLandCover", "..."};
    ListBox cboFieldList{"cboFieldList"};
    CommandButton cmdListLuType{"cmdListLuType", "List Land Use Types"};
    ListBox cboLuTypeList{"cboLuTypeList"};
    CommandButton cmdMatch{"cmdMatch", "Match with Kc Table"};
    CommandButton cmdSummary{"cmdSummary", "Summarize Crop Types"};
    DataGrid grdSummary{"grdSummary"};
    // The maps
    TextBox txtCellSize{"txtCellSize"};
    CommandButton cmdMakeMap{"cmdMakeMap", "Make Kc Maps"};
    CommandButton cmdClose{"cmdClose", "Close"};

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
    std::string fieldOfCrops(const IFeatureClass& landCover) const;
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
