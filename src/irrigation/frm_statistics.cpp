// SPDX-License-Identifier: MIT
#include "irrigation/frm_statistics.h"

#include <algorithm>
#include <utility>

#include "forms/record_rows.h"
#include "gis/connection_text.h"
#include "gis/text.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"

namespace velmora {

namespace {

constexpr const char* kResultSource =
    "Provider=MSDASQL.1;Persist Security Info=False;Data Source=dBASE Files";

}  // namespace

frmStatistics::frmStatistics(IApplication& application, std::string table)
    : TrappedForm(application, "frmStatistics", "Zonal Results"), name_(std::move(table)) {
    cmdRefresh.setEnabled(false);
    lstContent.onClick = [this] { cmdRefresh.setEnabled(true); };
    cmdRefresh.onClick = [this] {
        attempt([this] {
            std::string columns;
            for (const std::string& column : lstContent.chosenItems()) {
                columns += (columns.empty() ? "" : ",") + fieldInQuery(column);
            }
            query(columns);
        });
    };
    cmdClose.onClick = [this] { close(); };
}

void frmStatistics::load() {
    if (!passRunGate(application())) {
        fail();
        return;
    }
    Form::load();
    std::vector<const Product*> tabled = tabledProducts();
    std::ranges::reverse(tabled);  // the last one first
    for (const Product* product : tabled) {
        const ZoneTable& table = product->table;
        const std::string entry = std::string(table.name) + ": " + std::string(table.entry);
        cboRst.addItem(entry);
        if (table.name == name_) cboRst.setText(entry);
    }
    table_ = joinedPath(processState().settings.OutputWorkspace, name_ + ".dbf");
    attempt([this] { showTable(); });
}

void frmStatistics::showTable() {
    const IFileSystem& files = platform().files();
    if (!files.fileExists(table_)) {
        fail("Source table does not exist.");
        return;
    }
    lblNote.setText("Note: The shown results was obtained on " + files.lastModified(table_));
    query("*");
    for (const std::string& field : dgdResult.columns()) lstContent.addItem(field);
    cmdRefresh.setEnabled(true);
}

void frmStatistics::query(const std::string& columns) {
    const auto adoResult = platform()
                               .connections()
                               .open(kResultSource)
                               ->open("SELECT " + columns + " FROM " + tableInQuery(table_));
    showRows(dgdResult, *adoResult);
}

}  // namespace velmora
