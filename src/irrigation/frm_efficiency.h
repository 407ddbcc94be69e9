// SPDX-License-Identifier: MIT
// The irrigation efficiency dialog: which share of each crop's land in a zone is irrigated by which
// method, the field application efficiencies that follow, and the efficiency map.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "forms/trapped_form.h"
#include "irrigation/change_log.h"
#include "irrigation/irrigation_database.h"

namespace velmora {

class frmEfficiency : public TrappedForm {
  public:
    // The application must outlive the form.
    explicit frmEfficiency(IApplication& application);

    // Passes the run gate, without which the form does not open, and proposes the database beside
    // the zone shapefile.
    void load() override;

    // Why the last failure that has a fixed text happened, "" when it says so itself.
    const std::string& reason() const { return reason_; }

    // The database. Until it is applied the rest of the form is disabled.
    TextBox txtIRDB{*this, "txtIRDB"};
    CommandButton cmdOpenIRDB{*this, "cmdOpenIRDB", "..."};  // as a double click into the box
    CommandButton cmdApplyIRDB{*this, "cmdApplyIRDB", "Apply"};
    // The methods: the default list, or that of the chosen zone
    Frame fraMethods{*this, "fraMethods", "Irrigation methods"};
    Label lblZone{*this, "lblZone", "Zone"};
    ListBox cmbZone{*this, "cmbZone"};
    Label lblMethods{*this, "lblMethods", "Methods of the zone and their efficiencies"};
    DataGrid dgdMethods{*this, "dgdMethods"};
    // The shares and efficiencies of the zone's crops
    Frame fraShares{*this, "fraShares", "Shares of the methods"};
    Label lblCvef{*this, "lblCvef", "Conveyance efficiency"};
    TextBox txtCvef{*this, "txtCvef", "1.0"};
    DataGrid dgdShares{*this, "dgdShares"};
    CommandButton cmdCalFieldEf{*this, "cmdCalFieldEf", "Estimate EF"};
    // The map
    Frame fraMap{*this, "fraMap", "Efficiency map"};
    CommandButton cmdEFMap{*this, "cmdEFMap", "Make Map"};
    ProgressBar PBar1{*this, "PBar1"};
    CommandButton cmdClose{*this, "cmdClose", "Close"};

  private:
    void enableRest(bool enabled);
    void browse();
    void apply();
    void InitializeEnv();
    void CreateEFTable();
    void CreateSummaryTable(const std::string& name);
    void ListZones();
    void chooseZone();
    void ShowEFTable(const std::string& zone);
    void calculate();
    void makeMap();
    void editCell(DataGrid& grid, const std::string& query, std::size_t row, std::size_t column,
                  const std::string& text);
    void showMethods();
    void showShares();
    std::string methodQuery() const;
    std::string zone() const;  // "" for none
    std::string summaryPath() const;
    IrrigationDatabase& database() const;
    // Does something to the database, and notes what it changed, after a failure too.
    void noting(const std::function<void()>& change);

    std::string databasePath_;
    std::unique_ptr<IrrigationDatabase> database_;
    std::optional<ChangeLog> changes_;  // of that database
    std::string reason_;
};

}  // namespace velmora
