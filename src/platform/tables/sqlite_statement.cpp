// SPDX-License-Identifier: MIT
#include "platform/tables/sqlite_statement.h"

#include "gis/errors.h"
#include "platform/tables/statement_scanner.h"

namespace velmora::platform {

SqliteStatement::SqliteStatement(sqlite3* database, const std::string& text)
    : database_(database), limit_(database) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, text.c_str(), static_cast<int>(text.size()), &statement,
                           nullptr) != SQLITE_OK) {
        throw PlatformError(databaseFailure(database) + " (in \"" + shownStatement(text) + "\")");
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
    limit_.arm();
    const int status = sqlite3_step(statement_.get());
    limit_.disarm();
    if (status == SQLITE_ROW) return true;
    if (status != SQLITE_DONE) throw PlatformError(databaseFailure(database_));
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
            return text(column);
        default:
            return {};
    }
}

std::string SqliteStatement::text(int column) const {
    if (sqlite3_column_type(statement_.get(), column) != SQLITE_TEXT) return {};
    const auto* begin =
        reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
    if (!begin) throw PlatformError(databaseFailure(database_));
    return begin;
}

long long SqliteStatement::integer(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

void runStatements(sqlite3* database, const std::string& statements) {
    WorkLimit limit(database);
    limit.arm();
    if (sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw PlatformError(databaseFailure(database));
    }
}

}  // namespace velmora::platform
