// SPDX-License-Identifier: MIT
#include "irrigation/zone_filling.h"

#include <algorithm>

#include "gis/text.h"
#include "irrigation/default_names.h"

namespace velmora {

namespace {

// Rows for the crops that the zone lacks; a zone without any gets them as the dialog gives them.
void ensureRows(IrrigationDatabase& database, const std::string& zone,
                const std::vector<std::string>& crops, std::optional<double> cvef) {
    const auto rows = database.query(IrrigationDatabase::efficienciesOf(zone));
    if (rows->eof()) return database.ensureCrops(zone, crops, cvef.value_or(1));
    std::vector<std::string> present;
    for (; !rows->eof(); rows->moveNext()) present.push_back(keyText(rows->value("CropType")));
    const auto transaction = database.beginTransaction();
    for (const std::string& crop : crops) {
        if (std::ranges::any_of(present,
                                [&](const std::string& p) { return sameIgnoringCase(p, crop); })) {
            continue;
        }
        rows->addNew();
        rows->setValue("ZoneUnit", zone);
        rows->setValue("CropType", crop);
        rows->update();
    }
    for (rows->moveFirst(); !rows->eof(); rows->moveNext()) {
        if (!cvef && !isNull(rows->value("CVEF"))) continue;
        rows->setValue("CVEF", cvef.value_or(1));
        rows->update();
    }
    transaction->commit();
}

bool hasDefaults(const IrrigationDatabase& database, const std::string& zone,
                 const std::string& crop, DefaultShares source) {
    const std::string key = quotedText(MatchCounty(zone));
    return !database
                .query(source == DefaultShares::ofZone
                           ? "Select * from IR_Dis_1 WHERE [ZONEUNIT] =" + key
                           : "Select * from IR_Dis_2 WHERE [ZONEUNIT] =" + key +
                                 " AND [CropType]=" + quotedText(MatchCrop(crop)))
                ->eof();
}

// Rows that are to take other shares have no efficiency until these give them one, and are declared
// nothing.
void forgetEfficiencies(IrrigationDatabase& database, const std::string& zone) {
    const auto transaction = database.beginTransaction();
    const auto rows = database.query(IrrigationDatabase::efficienciesOf(zone));
    const bool marks = hasColumn(*rows, kNotIrrigatedColumn);
    for (; !rows->eof(); rows->moveNext()) {
        rows->setValue("FAEF", FieldValue{});
        rows->setValue("IREF", FieldValue{});
        if (marks) rows->setValue(kNotIrrigatedColumn, FieldValue{});
        rows->update();
    }
    transaction->commit();
}

void giveDefaults(IrrigationDatabase& database, const std::string& zone, const ZoneFilling& filling,
                  FilledZone& filled) {
    const auto rows = database.query(IrrigationDatabase::efficienciesOf(zone));
    const std::vector<std::string> methods = methodColumns(*rows);
    const bool hadRows = !rows->eof();
    if (filling.overwrite && hadRows) forgetEfficiencies(database, zone);
    database.addDefaultShares(zone, *filling.defaults, [&](const IRecordset& row) {
        const bool entered = sumOfShares(row, methods) != 0 || isDeclaredNotIrrigated(row, methods);
        if (entered && !filling.overwrite) {
            ++filled.kept;
            return false;
        }
        const std::string crop = keyText(row.value("CropType"));
        if (!hasDefaults(database, zone, crop, *filling.defaults)) {
            filled.withoutDefaults.push_back(crop);
        }
        return true;
    });
}

}  // namespace

double sumOfShares(const IRecordset& row, const std::vector<std::string>& methods) {
    double sum = 0;
    for (const std::string& method : methods) {
        const FieldValue share = row.value(method);
        if (const auto* number = std::get_if<double>(&share)) sum += *number;
    }
    return sum;
}

bool isDeclaredNotIrrigated(const IRecordset& row, const std::vector<std::string>& methods) {
    if (isMarkedNotIrrigated(row)) return true;
    const FieldValue efficiency = row.value("IREF");
    const auto* number = std::get_if<double>(&efficiency);
    return number && *number == 0 && sumOfShares(row, methods) == 0;
}

FilledZone fillZone(IrrigationDatabase& database, const std::string& zone,
                    const std::vector<std::string>& crops, const ZoneFilling& filling,
                    const std::function<void()>& onBadEfficiency) {
    FilledZone filled;
    database.ensureMethods(zone);
    ensureRows(database, zone, crops, filling.cvef);
    if (filling.defaults) giveDefaults(database, zone, filling, filled);
    database.estimateEfficiencies(zone, onBadEfficiency);
    const auto rows = database.query(IrrigationDatabase::efficienciesOf(zone));
    for (; !rows->eof(); rows->moveNext()) {
        ++filled.rows;
        const FieldValue efficiency = rows->value("IREF");
        const auto* number = std::get_if<double>(&efficiency);
        if (number && *number != 0) ++filled.withEfficiency;
    }
    return filled;
}

}  // namespace velmora
