// SPDX-License-Identifier: MIT
#include "irrigation/change_log.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <set>

#include "gis/numbers.h"

namespace velmora {

namespace {

// As the system names whoever is logged in.
std::string userName() {
    for (const char* variable : {"LOGNAME", "USER", "USERNAME"}) {
        const char* name = std::getenv(variable);
        if (name && *name != '\0') return name;
    }
    return "unknown";
}

// Local time with its zone: "2026-07-14 16:05:02 +0200".
std::string now() {
    const std::time_t seconds =
        std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::array<char, 40> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S %z", std::localtime(&seconds));
    return text.data();
}

std::string textOf(const FieldValue& value) {
    if (const auto* number = std::get_if<double>(&value)) return numberText(*number);
    return keyText(value);
}

// "Drip=0.1, Surface=0.9"
std::string allOf(const std::map<std::string, std::string>& values) {
    std::string text;
    for (const auto& [field, value] : values) {
        text += (text.empty() ? "" : ", ") + field + "=" + value;
    }
    return text;
}

}  // namespace

ChangeLog::ChangeLog(IrrigationDatabase& database) : database_(database), before_(read()) {}

void ChangeLog::note(const std::string& action) {
    Rows after = read();
    const std::vector<Change> found = changes(before_, after);
    if (!found.empty()) store(found, action);
    before_ = std::move(after);
}

ChangeLog::Rows ChangeLog::read() const {
    Rows rows;
    readTable("IRMDDef", nullptr, "IRMD", rows);
    readTable("IRMD", "ZONEUNIT", "IRMD", rows);
    readTable("IREF", "ZoneUnit", "CropType", rows);
    return rows;
}

void ChangeLog::readTable(const std::string& table, const char* zone, const char* item,
                          Rows& rows) const {
    if (!database_.hasTable(table)) return;
    const auto records = database_.query("Select * from " + table);
    if (!hasColumn(*records, item) || (zone && !hasColumn(*records, zone))) return;
    for (; !records->eof(); records->moveNext()) {
        RowKey key{table, zone ? keyText(records->value(zone)) : std::string(),
                   keyText(records->value(item)), 0};
        while (rows.contains(key)) ++key.nth;
        Values& values = rows[key];
        for (int i = 0; i < records->fieldCount(); ++i) {
            const std::string field = records->fieldName(i);
            const FieldValue value = records->value(field);
            const bool isKey = field == item || (zone && field == zone);
            if (!isKey && !isNull(value)) values[field] = textOf(value);
        }
    }
}

std::vector<ChangeLog::Change> ChangeLog::changes(const Rows& before, const Rows& after) {
    std::vector<Change> found;
    for (const auto& [key, old] : before) {
        const auto now = after.find(key);
        if (now == after.end()) {
            found.push_back({key, "row", allOf(old), {}});
            continue;
        }
        std::set<std::string> fields;
        for (const auto& [field, value] : old) fields.insert(field);
        for (const auto& [field, value] : now->second) fields.insert(field);
        for (const std::string& field : fields) {
            const auto valueIn = [&](const Values& values) {
                const auto at = values.find(field);
                return at == values.end() ? std::string() : at->second;
            };
            if (valueIn(old) == valueIn(now->second)) continue;
            found.push_back({key, field, valueIn(old), valueIn(now->second)});
        }
    }
    for (const auto& [key, values] : after) {
        if (!before.contains(key)) found.push_back({key, "row", {}, allOf(values)});
    }
    return found;
}

void ChangeLog::store(const std::vector<Change>& changes, const std::string& action) {
    if (!database_.hasTable(kChangesTable)) {
        std::vector<ColumnDefinition> columns;
        for (const char* name : {"ChangedAt", "ChangedBy", "ChangedWith", "TableName", "ZoneUnit",
                                 "Item", "Field", "OldValue", "NewValue"}) {
            columns.push_back({name, FieldType::text, 250});
        }
        database_.createTable(kChangesTable, columns);
    }
    const std::string time = now();
    const std::string user = userName();
    const auto transaction = database_.beginTransaction();
    const auto rows = database_.query(std::string("Select * from ") + kChangesTable);
    for (const Change& change : changes) {
        rows->addNew();
        rows->setValue("ChangedAt", time);
        rows->setValue("ChangedBy", user);
        rows->setValue("ChangedWith", action);
        rows->setValue("TableName", change.row.table);
        rows->setValue("ZoneUnit", change.row.zone);
        rows->setValue("Item", change.row.item);
        rows->setValue("Field", change.field);
        rows->setValue("OldValue", change.before);
        rows->setValue("NewValue", change.after);
        rows->update();
    }
    transaction->commit();
}

}  // namespace velmora
