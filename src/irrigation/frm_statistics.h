// SPDX-License-Identifier: MIT
// The Zonal Results viewer: a table of the zones with the columns that the user chooses.
#pragma once

#include <functional>
#include <string>

#include "gis/application.h"
#include "gis/form.h"

namespace velmora {

class frmStatistics : public Form {
  public:
    // `table` is the name of a table in the output folder. The application must outlive the form.
    explicit frmStatistics(IApplication& application, std::string table = "StatIRR");

    // Passes the run gate, without which the form does not open, and shows the whole table.
    void load() override;

    // Whether the last thing that the user asked for has been refused or has failed.
    bool failed() const { return failed_; }

    ListBox cboRst{"cboRst"};  // the kinds of results; choosing one changes nothing
    MultiSelectList lstContent{"lstContent"};
    CommandButton cmdRefresh{"cmdRefresh", "Refresh"};
    Label lblNote{"lblNote"};
    DataGrid dgdResult{"dgdResult"};
    CommandButton cmdClose{"cmdClose", "Close"};

  private:
    void attempt(const std::function<void()>& body);
    void showTable();
    void query(const std::string& columns);

    IApplication& application_;
    std::string name_;
    std::string table_;  // path of the table's file
    bool failed_ = false;
};

}  // namespace velmora
