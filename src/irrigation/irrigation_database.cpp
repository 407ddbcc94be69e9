// SPDX-License-Identifier: MIT
#include "irrigation/irrigation_database.h"

#include <algorithm>
#include <exception>
#include <map>

#include "gis/connection_text.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "irrigation/default_names.h"

namespace velmora {

namespace {

double numberOrZero(const FieldValue& value) {
    const auto* number = std::get_if<double>(&value);
    return number ? *number : 0;
}

// A method code as a column name of a statement.
std::string columnName(const std::string& text) {
    if (text.empty() || text.find_first_of("[]") != std::string::npos) {
        throw PlatformError("The method code \"" + text +
                            "\" of table IRMDDef is no name for a column: codes are not empty and "
                            "have no brackets");
    }
    return "[" + text + "]";
}

void requireFresh(const std::vector<std::string>& columns, const std::string& code) {
    if (std::ranges::none_of(columns, [&](const auto& c) { return sameIgnoringCase(c, code); })) {
        return;
    }
    throw PlatformError("The method code \"" + code +
                        "\" of table IRMDDef stands twice, or is the name of another column of "
                        "table IREF: give it another");
}

void copyShares(IRecordset& row, const std::vector<std::string>& methods,
                const IRecordset& defaults) {
    for (const std::string& method : methods) {
        row.setValue(method, defaults.eof() ? FieldValue(0.0) : defaults.value(method));
    }
    row.update();
}

}  // namespace

std::string irrigationConnection(const std::string& databasePath) {
    return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + connectionValue(databasePath);
}

std::vector<std::string> methodColumns(const IRecordset& efficiencies) {
    std::vector<std::string> names;
    for (int i = 0; i < efficiencies.fieldCount(); ++i) names.push_back(efficiencies.fieldName(i));
    const auto named = [](const char* name) {
        return [name](const std::string& field) { return sameIgnoringCase(field, name); };
    };
    const auto crop = std::ranges::find_if(names, named("CropType"));
    const auto end = std::ranges::find_if(names, named("FAEF"));
    if (crop == names.end() || end <= crop) {
        throw PlatformError(
            "The table IREF is none of this program's: delete it, or let it be created anew");
    }
    return {crop + 1, end};
}

bool hasColumn(const IRecordset& rows, const std::string& name) {
    for (int i = 0; i < rows.fieldCount(); ++i) {
        if (sameIgnoringCase(rows.fieldName(i), name)) return true;
    }
    return false;
}

bool isMarkedNotIrrigated(const IRecordset& efficiencies) {
    return hasColumn(efficiencies, kNotIrrigatedColumn) &&
           numberOrZero(efficiencies.value(kNotIrrigatedColumn)) != 0;
}

double GetMethodEfficiency(IRecordset& methods, const std::string& code) {
    for (methods.moveFirst(); !methods.eof(); methods.moveNext()) {
        if (keyText(methods.value("IRMD")) != code) continue;
        const FieldValue efficiency = methods.value("IRMDEF");
        if (const auto* number = std::get_if<double>(&efficiency)) return *number;
        throw PlatformError("The efficiency of method " + code + " is no number");
    }
    return 0;
}

IrrigationDatabase::IrrigationDatabase(IPlatform& platform, const std::string& path)
    : path_(path), connection_(platform.connections().open(irrigationConnection(path))) {}

std::unique_ptr<IRecordset> IrrigationDatabase::query(const std::string& text) const {
    return connection_->open(text);
}

bool IrrigationDatabase::hasTable(const std::string& name) const {
    return std::ranges::any_of(connection_->tableNames(), [&](const std::string& table) {
        return sameIgnoringCase(table, name);
    });
}

void IrrigationDatabase::createTable(const std::string& name,
                                     const std::vector<ColumnDefinition>& columns) {
    connection_->createTable(name, columns);
}

void IrrigationDatabase::ensureNotIrrigatedColumn() {
    if (hasColumn(*query("Select * from IREF"), kNotIrrigatedColumn)) return;
    connection_->execute(std::string("ALTER TABLE IREF ADD COLUMN ") + kNotIrrigatedColumn +
                         " Double");
}

void IrrigationDatabase::dropEfficiencyTable() {
    connection_->execute("DROP TABLE IREF");
    if (hasEfficiencyTable()) {
        throw PlatformError("The irrigation database " + path_ +
                                " is damaged: its table IREF stays though it was dropped",
                            {.file = path_});
    }
}

void IrrigationDatabase::copyEfficiencyTable(const std::string& name) {
    connection_->execute("CREATE TABLE [" + name + "] AS SELECT * FROM IREF");
}

void IrrigationDatabase::createEfficiencyTable() {
    connection_->execute(efficiencyTableStatement());
}

std::string IrrigationDatabase::efficiencyTableStatement() const {
    std::string statement = "CREATE TABLE IREF(ZoneUnit Char(50),CropType Char(50),";
    std::vector<std::string> names = {"ZoneUnit", "CropType", "FAEF", "CVEF", "IREF"};
    const auto methods = query("Select * from IRMDDef");
    for (; !methods->eof(); methods->moveNext()) {
        const std::string code = keyText(methods->value("IRMD"));
        statement += columnName(code) + " Double,";
        requireFresh(names, code);
        names.push_back(code);
    }
    return statement + "FAEF Double,CVEF Double,IREF Double)";
}

std::string IrrigationDatabase::methodsOf(const std::string& zone) {
    return "Select * from IRMD WHERE [ZONEUNIT] = " + quotedText(zone);
}

std::string IrrigationDatabase::efficienciesOf(const std::string& zone) {
    return "Select * from IREF WHERE [ZONEUNIT] = " + quotedText(zone);
}

void IrrigationDatabase::ensureMethods(const std::string& zone) {
    const auto methods = query(methodsOf(zone));
    if (!methods->eof()) return;
    const auto transaction = connection_->beginTransaction();
    const auto defaults = query("Select * from IRMDDef");
    for (; !defaults->eof(); defaults->moveNext()) {
        methods->addNew();
        methods->setValue("ZONEUNIT", zone);
        for (const char* field : {"IRMD", "IRMDEF", "IRMDDES"}) {
            methods->setValue(field, defaults->value(field));
        }
        methods->update();
    }
    transaction->commit();
}

void IrrigationDatabase::ensureCrops(const std::string& zone, const std::vector<std::string>& crops,
                                     double cvef) {
    const auto transaction = connection_->beginTransaction();
    const auto rows = query(efficienciesOf(zone));
    if (rows->eof()) {
        for (const std::string& crop : crops) {
            rows->addNew();
            rows->setValue("ZoneUnit", zone);
            rows->setValue("CropType", crop);
            rows->update();
        }
    }
    for (rows->moveFirst(); !rows->eof(); rows->moveNext()) {
        rows->setValue("CVEF", cvef);
        rows->update();
    }
    transaction->commit();
}

void IrrigationDatabase::addDefaultShares(const std::string& zone, DefaultShares source,
                                          const std::function<bool(const IRecordset& row)>& takes) {
    const auto transaction = connection_->beginTransaction();
    const auto rows = query(efficienciesOf(zone));
    const std::vector<std::string> methods = methodColumns(*rows);
    for (; !rows->eof(); rows->moveNext()) {
        if (takes ? !takes(*rows) : isMarkedNotIrrigated(*rows)) continue;
        if (source == DefaultShares::ofZone) {
            AddDefaultPM1(*rows, methods, zone);
        } else {
            AddDefaultPM2(*rows, methods, zone);
        }
    }
    transaction->commit();
}

void IrrigationDatabase::AddDefaultPM1(IRecordset& row, const std::vector<std::string>& methods,
                                       const std::string& zone) const {
    copyShares(row, methods,
               *query("Select * from IR_Dis_1 WHERE [ZONEUNIT] =" + quotedText(MatchCounty(zone))));
}

void IrrigationDatabase::AddDefaultPM2(IRecordset& row, const std::vector<std::string>& methods,
                                       const std::string& zone) const {
    copyShares(row, methods,
               *query("Select * from IR_Dis_2 WHERE [ZONEUNIT] =" + quotedText(MatchCounty(zone)) +
                      " AND [CropType]=" + quotedText(MatchCrop(keyText(row.value("CropType"))))));
}

void IrrigationDatabase::estimateEfficiencies(const std::string& zone,
                                              const std::function<void()>& onBadEfficiency) {
    const auto methodList = query(methodsOf(zone));
    const auto rows = query(efficienciesOf(zone));
    const std::vector<std::string> methods = methodColumns(*rows);
    std::map<std::string, double> efficiencies;
    for (const std::string& method : methods) {
        try {
            efficiencies[method] = GetMethodEfficiency(*methodList, method);
        } catch (const PlatformError&) {
            onBadEfficiency();
        }
    }
    const auto estimate = [&] {
        if (isMarkedNotIrrigated(*rows)) return;
        double shares = 0;
        double inverse = 0;
        for (const std::string& method : methods) {
            const double share = numberOrZero(rows->value(method));
            shares += share;
            if (efficiencies[method] != 0) inverse += share / efficiencies[method];
        }
        if (shares == 0) return;
        if (inverse == 0) {
            throw PlatformError("Division by zero: none of the methods of crop \"" +
                                keyText(rows->value("CropType")) + "\" in zone \"" + zone +
                                "\" has an efficiency");
        }
        const double faef = 1 / inverse;
        rows->setValue("FAEF", faef);
        rows->setValue("IREF", faef * numberOrZero(rows->value("CVEF")));
        rows->update();
    };
    const auto transaction = connection_->beginTransaction();
    std::exception_ptr failure;
    try {
        for (; !rows->eof(); rows->moveNext()) estimate();
    } catch (const PlatformError&) {
        failure = std::current_exception();
    }
    transaction->commit();
    if (failure) std::rethrow_exception(failure);
}

}  // namespace velmora
