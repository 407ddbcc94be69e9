// SPDX-License-Identifier: MIT
#include "irrigation/frm_efficiency.h"

#include "forms/record_rows.h"
#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "gis/working_folder.h"
#include "irrigation/crop_summary.h"
#include "irrigation/efficiency_map.h"
#include "modelling/run_record.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"

namespace velmora {

namespace {

constexpr const char* kDatabaseFilter = "Access Database (*.mdb)|*.mdb";
constexpr const char* kNoZone = "None";
constexpr const char* kSummary = "SumCrop";

bool isTextColumn(const std::string& name) {
    for (const char* text : {"ZONEUNIT", "CropType", "IRMD", "IRMDDES"}) {
        if (sameIgnoringCase(name, text)) return true;
    }
    return false;
}

const RunSettings& settings() { return processState().settings; }

// Shows in a bar how much of the work is done.
class BarListener : public IFeedbackListener {
  public:
    explicit BarListener(ProgressBar& bar) : bar_(bar) {}
    void begins(const std::string&) override { bar_.setFraction(0); }
    void fractionChanged(double done) override { bar_.setFraction(done); }

  private:
    ProgressBar& bar_;
};

}  // namespace

frmEfficiency::frmEfficiency(IApplication& application)
    : TrappedForm(application, "frmEfficiency",
                  "Interactive Mapping of Feild Application Efficiency of Irrigation") {
    txtIRDB.onDoubleClick = [this] { browse(); };
    cmdOpenIRDB.onClick = [this] { browse(); };
    cmdApplyIRDB.onClick = [this] { apply(); };
    cmbZone.onClick = [this] { attempt([this] { noting([this] { chooseZone(); }); }); };
    dgdMethods.onEdit = [this](std::size_t row, std::size_t column, const std::string& text) {
        attempt([&] { noting([&] { editCell(dgdMethods, methodQuery(), row, column, text); }); });
    };
    dgdShares.onEdit = [this](std::size_t row, std::size_t column, const std::string& text) {
        attempt([&] {
            noting([&] {
                editCell(dgdShares, IrrigationDatabase::efficienciesOf(zone()), row, column, text);
            });
        });
    };
    cmdCalFieldEf.onClick = [this] { attempt([this] { noting([this] { calculate(); }); }); };
    cmdEFMap.onClick = [this] { attempt([this] { makeMap(); }); };
    cmdClose.onClick = [this] { close(); };
    enableRest(false);
}

void frmEfficiency::load() {
    if (!passRunGate(application())) {
        fail();
        return;
    }
    Form::load();
    txtIRDB.setText(irrigationDatabasePath(settings()));
}

void frmEfficiency::enableRest(bool enabled) {
    for (Control* control : std::initializer_list<Control*>{
             &fraMethods, &lblZone, &cmbZone, &lblMethods, &dgdMethods, &fraShares, &lblCvef,
             &txtCvef, &dgdShares, &cmdCalFieldEf, &fraMap, &cmdEFMap, &PBar1}) {
        control->setEnabled(enabled);
    }
}

void frmEfficiency::browse() {
    const std::string path = application().browsers().openFile(kDatabaseFilter);
    if (!path.empty()) txtIRDB.setText(path);
}

void frmEfficiency::apply() {
    attempt([this] {
        reason_.clear();
        try {
            databasePath_ = txtIRDB.text();
            enableRest(true);
            InitializeEnv();
        } catch (const PlatformError& e) {
            enableRest(false);
            changes_.reset();
            database_.reset();
            reason_ = e.what();
            throw PlatformError("Incorrect IRDB information!");
        }
    });
    if (failed() && !reason_.empty()) prompts().reason(reason_);
}

void frmEfficiency::InitializeEnv() {
    cmbZone.clear();
    dgdShares.show({}, {});
    changes_.reset();
    database_ = std::make_unique<IrrigationDatabase>(platform(), databasePath_);
    changes_.emplace(*database_);
    const std::string stale = platform().connections().staleCopy(databasePath_);
    if (!stale.empty()) prompts().notice(stale);
    showRows(dgdMethods, *database().query("Select * from IRMDDef"));
    noting([this] { CreateEFTable(); });
    CreateSummaryTable(kSummary);
    ListZones();
    cmbZone.addItem(kNoZone);
}

void frmEfficiency::CreateEFTable() {
    if (database().hasEfficiencyTable()) {
        if (!prompts().confirm("Table<IREF> Exists, Create new one?",
                               "Confirmation to Table Creation")) {
            return;
        }
        database().dropEfficiencyTable();
    }
    database().createEfficiencyTable();
    prompts().message("New <IREF> table is created!");
}

std::string frmEfficiency::summaryPath() const {
    return joinedPath(parentFolderName(databasePath_), std::string(kSummary) + ".dbf");
}

void frmEfficiency::CreateSummaryTable(const std::string& name) {
    try {
        // An old table gives way when the new one is whole.
        if (platform().files().fileExists(summaryPath()) &&
            !prompts().confirm("Table<" + name + "> Exists, Replace it?",
                               "Confirmation to Crop Type Summary")) {
            return;
        }
        const auto landCover = platform().features().openFeatureClass(settings().LandCover);
        if (landCover->fieldIndex(kCropField) < 0) {
            fail("There must be a field named Descriptio");
            return;
        }
        summarizeCrops(platform(), *landCover, summaryPath());
        prompts().message("Crop types are listed in <" + name + ".dbf> ");
    } catch (const PlatformError& e) {
        reason_ = e.what();
        fail("Error in Sub<CreateSummaryTable>");
    }
}

void frmEfficiency::ListZones() {
    try {
        const auto zones = platform().features().openFeatureClass(settings().Zones);
        for (std::size_t r = 0; r < zones->recordCount(); ++r) {
            cmbZone.addItem(keyText(zones->value(r, settings().ZoneField)));
        }
    } catch (const PlatformError& e) {
        reason_ = e.what();
        fail("Error in listing Zones!");
    }
}

std::string frmEfficiency::zone() const {
    const bool chosen = cmbZone.listIndex() >= 0 && cmbZone.text() != kNoZone;
    return chosen ? cmbZone.text() : std::string();
}

void frmEfficiency::chooseZone() {
    if (zone().empty()) {
        dgdMethods.show({}, {});
        dgdShares.show({}, {});
        return;
    }
    database().ensureMethods(zone());
    showMethods();
    ShowEFTable(zone());
    const bool perZone = prompts().confirm("Add default IR percentage?",
                                           "Confirmation to Loading Default Information");
    database().addDefaultShares(zone(),
                                perZone ? DefaultShares::ofZone : DefaultShares::ofZoneAndCrop);
    showShares();
    calculate();
}

void frmEfficiency::ShowEFTable(const std::string& zone) {
    database().ensureCrops(zone, summarizedCrops(platform(), summaryPath()),
                           lenientNumber(txtCvef.text()));
    showShares();
}

void frmEfficiency::calculate() {
    if (zone().empty()) throw PlatformError("Choose a zone first");
    try {
        database().estimateEfficiencies(zone(),
                                        [this] { fail("Error in getting Method Efficiency"); });
    } catch (...) {
        showShares();
        throw;
    }
    showShares();
}

void frmEfficiency::makeMap() {
    BarListener bar(PBar1);
    const Listening listening(application().feedback(), bar);
    const FeedbackScope scope(application().feedback(), cmdEFMap.text());
    setBusy(true);
    try {
        WorkingFolder folder(platform().files(), settings().OutputWorkspace);
        RunRecord record(application(), settings(), "eff");
        bool cut = false;
        record.during([&] {
            cut = GetLuIntersected(application(), settings());
            if (!cut) return;
            GetIREF(application(), settings(), databasePath_);
            makeEfficiencyGrid(application(), settings(), record);
            folder.settle();
            record.finish();
        });
        if (cut) {
            tellEfficiencyGrid(application(), settings());
        } else {
            fail();
        }
    } catch (...) {
        setBusy(false);
        throw;
    }
    setBusy(false);
}

// An edit goes straight to the database. The row behind the last begins a new one.
void frmEfficiency::editCell(DataGrid& grid, const std::string& query, std::size_t row,
                             std::size_t column, const std::string& text) {
    const std::string& name = grid.columns().at(column);
    FieldValue value;
    if (isTextColumn(name)) {
        value = text;
    } else if (!text.empty()) {
        const auto number = strictNumber(text);
        if (!number)
            throw PlatformError("\"" + text + "\" is no number: " + name + " holds numbers");
        value = *number;
    }
    const auto records = database().query(query);
    if (row < grid.rowCount()) {
        for (std::size_t r = 0; r < row; ++r) records->moveNext();
    } else {
        records->addNew();
        if (!zone().empty()) records->setValue("ZONEUNIT", zone());
    }
    records->setValue(name, value);
    records->update();
    showRows(grid, *database().query(query));
}

std::string frmEfficiency::methodQuery() const {
    return zone().empty() ? "Select * from IRMDDef" : IrrigationDatabase::methodsOf(zone());
}

void frmEfficiency::showMethods() { showRows(dgdMethods, *database().query(methodQuery())); }

void frmEfficiency::showShares() {
    showRows(dgdShares, *database().query(IrrigationDatabase::efficienciesOf(zone())));
}

void frmEfficiency::noting(const std::function<void()>& change) {
    constexpr const char* action = "efficiency dialog";
    try {
        change();
    } catch (const PlatformError&) {
        if (changes_) changes_->note(action);
        throw;
    }
    if (changes_) changes_->note(action);
}

IrrigationDatabase& frmEfficiency::database() const {
    if (!database_) throw PlatformError("Apply an irrigation database first");
    return *database_;
}

}  // namespace velmora
