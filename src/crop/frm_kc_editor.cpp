// SPDX-License-Identifier: MIT
#include "crop/frm_kc_editor.h"

#include <map>
#include <set>
#include <utility>

#include "crop/crop_field.h"
#include "crop/kc_maps.h"
#include "crop/kc_table.h"
#include "forms/record_rows.h"
#include "gis/connection_text.h"
#include "gis/errors.h"
#include "gis/gis_functions.h"
#include "gis/month_names.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "gis/units.h"
#include "settings/modelling_extent.h"
#include "settings/run_state.h"

namespace velmora {

namespace {

// The records of the grid and of the curve; the types are compared through another string.
constexpr const char* kRecordSource = "Provider = MSDASQL.1;Data Source=dBASE Files";
constexpr const char* kMatchSource = "Provider=MSDASQL.1;Data Source=dBASE Files";
constexpr const char* kTableFilter = "dBASE tables (*.dbf)|*.dbf";

}  // namespace

frmKcEditor::frmKcEditor(IApplication& application, const RunSettings& settings)
    : TrappedForm(application, "frmKcEditor", "Kc-Map Maker"), settings_(settings) {
    IBrowsers& browsers = application.browsers();
    const auto onClick = [this](CommandButton& button, void (frmKcEditor::*action)()) {
        button.onClick = [this, action] { attempt([this, action] { (this->*action)(); }); };
    };
    cmdOpenDB.onClick = [&] {
        const std::string path = browsers.openFile(kTableFilter);
        if (!path.empty()) attempt([&] { openTable(path); });
    };
    cmdLandCover.onClick = [&] {
        const std::string path = BrowseFeatureDataset(browsers);
        if (!path.empty()) attempt([&] { openLandCover(path); });
    };
    txtKcDBName.onLeave = [this] { attempt([this] { openTable(txtKcDBName.text()); }); };
    txtLandCover.onLeave = [this] { attempt([this] { openLandCover(txtLandCover.text()); }); };
    grdKc.onEdit = [this](std::size_t row, std::size_t column, const std::string& text) {
        attempt([&] { edit(row, column, text); });
    };
    grdKc.onSelect = [this] { showCurve(grdKc.currentRow()); };
    onClick(cmdCreateDB, &frmKcEditor::createTable);
    onClick(cmdSave, &frmKcEditor::save);
    onClick(cmdSaveNew, &frmKcEditor::saveNew);
    onClick(cmdListLuType, &frmKcEditor::listLuTypes);
    onClick(cmdMatch, &frmKcEditor::match);
    onClick(cmdSummary, &frmKcEditor::summarize);
    onClick(cmdMakeMap, &frmKcEditor::makeMaps);
    cmdForward.onClick = [this] { stepCurve(+1); };
    cmdBackward.onClick = [this] { stepCurve(-1); };
    cmdClose.onClick = [this] { close(); };
    onClosing = [this] { attempt([this] { offerToSave(); }); };
}

void frmKcEditor::load() {
    Form::load();
    txtCellSize.setText(settings_.CellSize > 0 ? numberText(settings_.CellSize) : std::string());
    if (!settings_.KcTable.empty()) attempt([this] { openTable(settings_.KcTable); });
    const bool tableFailed = failed();
    if (!settings_.LandCover.empty()) attempt([this] { openLandCover(settings_.LandCover); });
    if (tableFailed) fail();
}

void frmKcEditor::openTable(const std::string& path) {
    offerToSave();
    openedTable_ = path;
    txtKcDBName.setText(path);
    stored_.clear();
    grdKc.show({}, {});
    picCurve.clear();
    cmdSave.setEnabled(false);
    if (!path.empty()) showRecords();
}

void frmKcEditor::createTable() {
    const std::string path = application().browsers().saveFile(kTableFilter);
    if (path.empty()) return;
    offerToSave();
    const std::string folder = parentFolderName(path);
    const std::string name = fileName(withoutDbf(path));
    createKcTable(platform(), folder, name);
    openTable(joinedPath(folder, name + ".dbf"));
}

void frmKcEditor::showRecords() {
    const auto records = platform().connections().open(kRecordSource)->open(kcQuery(openedTable_));
    stored_ = showRows(grdKc, *records);
    cmdSave.setEnabled(false);
    if (grdKc.rowCount() > 0) showCurve(grdKc.currentRow());
}

void frmKcEditor::edit(std::size_t row, std::size_t column, const std::string& text) {
    if (grdKc.columns().empty()) throw PlatformError("Open or create a crop coefficient table");
    const std::string& name = grdKc.columns().at(column);
    const bool coefficient = isKcField(name);
    if (coefficient && !strictNumber(text)) {
        throw PlatformError("\"" + text + "\" is no number: " + name +
                            " holds crop coefficients, such as 0.75");
    }
    if (column == 0) {
        if (trimmedRight(text).empty()) throw PlatformError("A crop type needs a name");
        for (std::size_t r = 0; r < grdKc.rowCount(); ++r) {
            if (r != row && grdKc.cell(r, 0) == text) {
                throw PlatformError("The table has the crop type \"" + text + "\" already");
            }
        }
    }
    if (row == grdKc.rowCount()) {
        if (column != 0) throw PlatformError("Begin a new crop with its name");
        std::vector<std::string> cells(grdKc.columns().size());
        for (std::size_t c = 1; c < cells.size(); ++c) {
            if (isKcField(grdKc.columns()[c])) cells[c] = "0";
        }
        grdKc.addRow(std::move(cells));
    }
    grdKc.setCell(row, column, coefficient ? numberText(*strictNumber(text)) : text);
    cmdSave.setEnabled(true);
    if (row == grdKc.currentRow()) showCurve(row);
}

// All changes of the grid at once. Nothing happens when there are none.
void frmKcEditor::save() {
    if (!cmdSave.enabled()) return;
    const auto table = platform().features().openTable(withoutDbf(openedTable_));
    const auto session = platform().features().edit(table);
    const auto valueOf = [&](std::size_t row, std::size_t column) {
        const std::string& text = grdKc.cell(row, column);
        const bool number = table->fields()[column].type != FieldType::text;
        if (text.empty()) return FieldValue();
        return number ? FieldValue(lenientNumber(text)) : FieldValue(text);
    };
    for (std::size_t row = 0; row < grdKc.rowCount(); ++row) {
        std::vector<std::pair<std::string, FieldValue>> fresh;
        for (std::size_t column = 0; column < grdKc.columns().size(); ++column) {
            const std::string& name = grdKc.columns()[column];
            if (row >= stored_.size()) {
                fresh.emplace_back(name, valueOf(row, column));
            } else if (grdKc.cell(row, column) != stored_[row][column]) {
                session->setValue(row, name, valueOf(row, column));
            }
        }
        if (!fresh.empty()) session->appendRecord(fresh);
    }
    session->save();
    showRecords();
}

// A copy of the table under a new name, with the changes of the grid; the old table stays as it is.
void frmKcEditor::saveNew() {
    if (grdKc.columns().empty()) throw PlatformError("There is no table to save: open one first");
    std::string path = application().browsers().saveFile(kTableFilter);
    if (path.empty()) return;
    if (path == withoutDbf(path)) path += ".dbf";
    copyKcTable(platform().files(), openedTable_, path);
    openedTable_ = path;
    txtKcDBName.setText(path);
    save();
    cmdSave.setEnabled(false);
}

void frmKcEditor::offerToSave() {
    if (!cmdSave.enabled() || grdKc.columns().empty()) return;
    if (prompts().confirm("Save the changes of " + openedTable_ + "?", title())) {
        save();
    } else {
        cmdSave.setEnabled(false);
    }
}

void frmKcEditor::showCurve(std::size_t row) {
    std::vector<std::string> labels;
    std::vector<double> values;
    for (std::size_t column = 1; column < grdKc.columns().size(); ++column) {
        const std::string& name = grdKc.columns()[column];
        if (!isKcField(name)) continue;
        labels.push_back(name.substr(3));
        values.push_back(lenientNumber(grdKc.cell(row, column)));
    }
    picCurve.show(grdKc.cell(row, 0), std::move(labels), std::move(values));
}

// The next or previous crop; at the end of the table the curve stays.
void frmKcEditor::stepCurve(int step) {
    const std::size_t row = grdKc.currentRow();
    if (step > 0 && row + 1 < grdKc.rowCount()) grdKc.select(row + 1);
    if (step < 0 && row > 0 && row < grdKc.rowCount()) grdKc.select(row - 1);
}

void frmKcEditor::openLandCover(const std::string& path) {
    txtLandCover.setText(path);
    cboFieldList.clear();
    cboLuTypeList.clear();
    grdSummary.show({}, {});
    if (path.empty()) return;
    const auto landCover = platform().features().openFeatureClass(path);
    for (const Field& field : landCover->fields()) cboFieldList.addItem(field.name);
    std::set<std::string> crops;
    for (std::size_t row = 0; row < grdKc.rowCount(); ++row) crops.insert(grdKc.cell(row, 0));
    const std::string field = fieldOfCrops(*landCover, crops);
    if (!field.empty()) cboFieldList.setText(field);
}

void frmKcEditor::listLuTypes() {
    cboLuTypeList.clear();
    if (txtLandCover.text().empty() || cboFieldList.text().empty()) {
        throw PlatformError("Choose the land cover and its field of crop types first");
    }
    const std::string table = withoutEnding(txtLandCover.text(), ".shp");
    const auto types = platform()
                           .connections()
                           .open(kRecordSource)
                           ->open("SELECT DISTINCT " + fieldInQuery(cboFieldList.text()) +
                                  "  FROM " + bracketedName(table));
    std::set<std::string> sorted;
    for (; !types->eof(); types->moveNext()) {
        const std::string type = keyText(types->value(types->fieldName(0)));
        if (!type.empty()) sorted.insert(type);
    }
    for (const std::string& type : sorted) cboLuTypeList.addItem(type);
}

bool frmKcEditor::inputsAreThere() {
    if (!txtLandCover.text().empty() && !txtKcDBName.text().empty()) return true;
    fail(txtLandCover.text().empty() ? "Land Use Info is not available, please input!"
                                     : "Crop Coefficient Info is not available, please input!");
    return false;
}

void frmKcEditor::match() {
    if (!inputsAreThere()) return;
    save();
    prompts().message("match-1");
    const auto connection = platform().connections().open(kMatchSource);
    const std::string table = bracketedName(withoutDbf(txtKcDBName.text()));
    const auto all = connection->open("Select *  from " + table);
    prompts().message("match-2");
    const std::string key = fieldInQuery(all->fieldName(0));
    for (const std::string& type : cboLuTypeList.items()) {
        const auto found =
            connection->open("SELECT *  FROM " + table + " WHERE " + key + "=" + quotedText(type));
        if (found->eof()) addDefaultCrop(*all, type);
    }
    showRecords();
}

// Every land use type with its polygons and their area, and whether the maps find its crop.
void frmKcEditor::summarize() {
    if (!inputsAreThere()) return;
    const auto landCover = platform().features().openFeatureClass(txtLandCover.text(),
                                                                  domainCrs(platform(), settings_));
    const std::vector<double> areas = landCover->areas();
    std::map<std::string, std::pair<std::size_t, double>> types;
    for (std::size_t r = 0; r < landCover->recordCount(); ++r) {
        auto& [polygons, area] = types[keyText(landCover->value(r, cboFieldList.text()))];
        ++polygons;
        area += areas[r];
    }
    std::set<std::string> crops;
    for (std::size_t row = 0; row < grdKc.rowCount(); ++row) {
        crops.insert(trimmedRight(grdKc.cell(row, 0)));
    }
    std::vector<std::vector<std::string>> rows;
    for (const auto& [type, sums] : types) {
        rows.push_back({type, std::to_string(sums.first),
                        formatPlaces(sums.second / kSquareMetresPerAcre, 1),
                        crops.contains(type) ? "yes" : "no"});
    }
    grdSummary.show({"Land use type", "Polygons", "Acres", "In the table"}, std::move(rows));
}

void frmKcEditor::makeMaps() {
    if (!inputsAreThere()) return;
    if (txtCellSize.text().empty()) {
        fail("Please input GRID cell size <10 - 500>");
        return;
    }
    const double cellSize = boundedKcCellSize(lenientNumber(txtCellSize.text()));
    save();
    picCurve.clear();
    const FeedbackScope scope(application().feedback(), title());
    setBusy(true);
    try {
        makeKcMaps(
            application(), settings_,
            {txtLandCover.text(), cboFieldList.text(), withoutDbf(txtKcDBName.text()), cellSize});
    } catch (...) {
        setBusy(false);
        throw;
    }
    setBusy(false);
    processState().mapsMade = true;
}

}  // namespace velmora
