// SPDX-License-Identifier: MIT
// The Zonal Results viewer: a table of the zones with the columns that the user chooses.
#pragma once

#include <string>

#include "forms/trapped_form.h"
#include "modelling/products.h"

namespace velmora {

class frmStatistics : public TrappedForm {
  public:
    // `table` is the name of a table in the output folder. The application must outlive the form.
    explicit frmStatistics(IApplication& application,
                           std::string table = std::string(productMadeBy("irr").table.name));

    // Passes the run gate, without which the form does not open, and shows the whole table.
    void load() override;

    // The kinds of results, that of the shown table first; choosing another one changes nothing.
    ListBox cboRst{*this, "cboRst"};
    MultiSelectList lstContent{*this, "lstContent"};
    CommandButton cmdRefresh{*this, "cmdRefresh", "Refresh"};
    Label lblNote{*this, "lblNote"};
    DataGrid dgdResult{*this, "dgdResult"};
    CommandButton cmdClose{*this, "cmdClose", "Close"};

  private:
    void showTable();
    void query(const std::string& columns);

    std::string name_;
    std::string table_;  // path of the table's file
};

}  // namespace velmora
