// SPDX-License-Identifier: MIT
#include "platform/tables/sqlite_statement.h"

#include "gis/errors.h"

namespace velmora::platform {

SqliteStatement::SqliteStatement(sqlite3* database, const std::string& text) : database_(database) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, text.c_str(), static_cast<int>(text.size()), &statement,
                           nullptr) != SQLITE_OK) {
        throw PlatformError(std::string(sqlite3_errmsg(database)) + " (in \"" + text + "\")");
    }
    statement_.reset(statement);
}

void SqliteStatement::bind(int parameter, const FieldValue& value) {
    if (const auto* number = std::get_if<double>(&value)) {
        sqlite3_bind_double(statement_.get(), parameter, *number);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        sqlite3_bind_text(statement_.get(), parameter, text->data(), static_cast<int>(text->size()),
                          SQLITE_TRANSIENT);
    } else {
        sqlite3_bind_null(statement_.get(), parameter);
    }
}

bool SqliteStatement::step() {
    const int status = sqlite3_step(statement_.get());
    if (status == SQLITE_ROW) return true;
    if (status != SQLITE_DONE) throw PlatformError(sqlite3_errmsg(database_));
    return false;
}

std::string SqliteStatement::columnName(int column) const {
    return sqlite3_column_name(statement_.get(), column);
}

FieldValue SqliteStatement::value(int column) const {
    switch (sqlite3_column_type(statement_.get(), column)) {
        case SQLITE_INTEGER:
        case SQLITE_FLOAT:
            return sqlite3_column_double(statement_.get(), column);
        case SQLITE_TEXT:
            return std::string(
                reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column)));
        default:
            return {};
    }
}

}  // namespace velmora::platform
