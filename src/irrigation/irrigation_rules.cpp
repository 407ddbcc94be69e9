// SPDX-License-Identifier: MIT
#include "irrigation/irrigation_rules.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "irrigation/default_names.h"

namespace velmora {

namespace {

using Fields = std::initializer_list<const char*>;

void requireFields(const IRecordset& rows, const std::string& table, Fields fields) {
    for (const char* field : fields) {
        if (!hasColumn(rows, field)) {
            throw PlatformError("The table " + table + " has no field " + field +
                                ": velmora irdb create makes a database with all tables");
        }
    }
}

std::unique_ptr<IRecordset> methodRows(const IrrigationDatabase& database,
                                       const std::string& zone) {
    auto methods = database.query(IrrigationDatabase::methodsOf(zone));
    return methods->eof() ? database.query("Select * from IRMDDef") : std::move(methods);
}

// The columns of shares that rows of IREF have, or would have.
std::vector<std::string> shareColumns(const IrrigationDatabase& database) {
    if (database.hasEfficiencyTable()) return methodColumns(*database.query("Select * from IREF"));
    std::vector<std::string> codes;
    const auto methods = database.query("Select * from IRMDDef");
    for (; !methods->eof(); methods->moveNext()) codes.push_back(keyText(methods->value("IRMD")));
    return codes;
}

bool isNamed(const std::vector<std::string>& names, const std::string& name) {
    return std::ranges::any_of(names, [&](const auto& n) { return sameIgnoringCase(n, name); });
}

// The different texts of a table's field; none where the table or the field is missing.
std::vector<std::string> textsIn(const IrrigationDatabase& database, const std::string& table,
                                 const std::string& field) {
    std::vector<std::string> texts;
    try {
        const auto rows = database.query("Select DISTINCT [" + field + "] from " + table);
        for (; !rows->eof(); rows->moveNext()) texts.push_back(keyText(rows->value(field)));
    } catch (const PlatformError&) {
        texts.clear();
    }
    return texts;
}

}  // namespace

void requireTables(const IrrigationDatabase& database) {
    requireFields(*database.query("Select * from IRMDDef"), "IRMDDef",
                  {"IRMD", "IRMDEF", "IRMDDES"});
    requireFields(*database.query(IrrigationDatabase::methodsOf({})), "IRMD",
                  {"ZONEUNIT", "IRMD", "IRMDEF", "IRMDDES"});
    if (!database.hasEfficiencyTable()) {
        database.efficiencyTableStatement();
        return;
    }
    const auto rows = database.query("Select * from IREF");
    methodColumns(*rows);
    requireFields(*rows, "IREF", {"ZoneUnit", "CropType", "FAEF", "CVEF", "IREF"});
}

std::string defaultSharesFault(const IrrigationDatabase& database, DefaultShares source) {
    const bool ofZone = source == DefaultShares::ofZone;
    const std::string table = ofZone ? "IR_Dis_1" : "IR_Dis_2";
    try {
        const auto rows = database.query("Select * from " + table);
        requireFields(*rows, table, {"ZONEUNIT"});
        if (!ofZone) requireFields(*rows, table, {"CropType"});
        for (const std::string& method : shareColumns(database)) {
            requireFields(*rows, table, {method.c_str()});
        }
        return {};
    } catch (const PlatformError& e) {
        return e.what();
    }
}

std::vector<std::string> methodsWithoutEfficiency(const IrrigationDatabase& database,
                                                  const std::string& zone) {
    std::vector<std::string> codes;
    const auto methods = methodRows(database, zone);
    for (const std::string& code : shareColumns(database)) {
        try {
            GetMethodEfficiency(*methods, code);
        } catch (const PlatformError&) {
            codes.push_back(code);
        }
    }
    return codes;
}

std::vector<std::string> cropsWithoutShares(const IrrigationDatabase& database,
                                            const std::vector<std::string>& zones,
                                            const std::vector<std::string>& crops) {
    const auto ofZones = textsIn(database, "IR_Dis_1", "ZONEUNIT");
    if (std::ranges::any_of(
            zones, [&](const std::string& zone) { return isNamed(ofZones, MatchCounty(zone)); })) {
        return {};
    }
    const auto known = textsIn(database, "IREF", "CropType");
    const auto defaults = textsIn(database, "IR_Dis_2", "CropType");
    std::vector<std::string> without;
    std::ranges::copy_if(crops, std::back_inserter(without), [&](const std::string& crop) {
        return !crop.empty() && !isNamed(known, crop) && !isNamed(defaults, MatchCrop(crop));
    });
    return without;
}

}  // namespace velmora
