// SPDX-License-Identifier: MIT
#include "platform/tables/sqlite_connection.h"

#include <filesystem>
#include <regex>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/tables/access_import.h"
#include "platform/tables/column_table.h"
#include "platform/tables/sqlite_recordset.h"
#include "platform/tables/sqlite_statement.h"

namespace velmora::platform {

namespace {

constexpr int kPatience = 5000;  // milliseconds to wait for another program's change to end

SqliteConnection::Handle openDatabase(const std::string& path, int flags) {
    sqlite3* database = nullptr;
    const int status = sqlite3_open_v2(path.c_str(), &database, flags, nullptr);
    SqliteConnection::Handle handle(database, SqliteConnection::Closer{});
    sqlite3_busy_timeout(database, kPatience);
    if (status != SQLITE_OK) {
        throw PlatformError("Cannot open the database " + path + ": " + sqlite3_errstr(status));
    }
    return handle;
}

void run(sqlite3* database, const std::string& statement) {
    char* message = nullptr;
    if (sqlite3_exec(database, statement.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        const std::string reason = message ? message : sqlite3_errmsg(database);
        sqlite3_free(message);
        throw PlatformError(reason);
    }
}

// Such databases compare text without regard to case, so text columns of a new table do. Names in
// brackets are not looked into.
std::string withTextComparison(const std::string& statement) {
    static const std::regex createTable(R"(\s*create\s+table\b[\s\S]*)", std::regex::icase);
    static const std::regex textColumn(R"((\[[^\]]*\])|(\b(?:var)?char\s*\(\s*\d+\s*\)))",
                                       std::regex::icase);
    if (!std::regex_match(statement, createTable)) return statement;
    std::string text;
    auto from = statement.cbegin();
    for (std::sregex_iterator match(from, statement.cend(), textColumn), end; match != end;
         ++match) {
        text.append(from, (*match)[0].second);
        from = (*match)[0].second;
        if ((*match)[2].matched) text += " COLLATE NOCASE";
    }
    return text.append(from, statement.cend());
}

class SqliteTransaction : public ITransaction {
  public:
    explicit SqliteTransaction(SqliteConnection::Handle database) : database_(std::move(database)) {
        run(database_.get(), "BEGIN IMMEDIATE");
    }
    ~SqliteTransaction() override {
        if (open_) sqlite3_exec(database_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;
    void commit() override {
        run(database_.get(), "COMMIT");
        open_ = false;
    }

  private:
    SqliteConnection::Handle database_;
    bool open_ = true;
};

}  // namespace

std::string quotedName(const std::string& name) {
    std::string quoted = "\"";
    for (const char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

void SqliteConnection::create(const std::string& path) {
    if (std::filesystem::exists(path))
        throw PlatformError("The database " + path + " exists already");
    const Handle handle = openDatabase(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    // Large pages suit whole-table passes. Vacuum makes the empty file.
    run(handle.get(),
        "PRAGMA page_size=65536; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; VACUUM;");
}

SqliteConnection::SqliteConnection(const std::string& path, IFeatureWorkspaceFactory& tables)
    : path_(path), tables_(tables) {
    if (!std::filesystem::is_regular_file(path)) {
        throw PlatformError("There is no database " + path);
    }
    if (std::filesystem::file_size(path) == 0) {
        throw PlatformError("The database " + path + " is an empty file");
    }
    if (isAccessFile(path)) path_ = importedDatabase(path);
    database_ = openDatabase(path_, SQLITE_OPEN_READWRITE);
    try {
        run(database_.get(), "SELECT count(*) FROM sqlite_master;");
    } catch (const PlatformError& e) {
        throw PlatformError("Cannot open the database " + path_ + ": " + e.what());
    }
}

std::unique_ptr<IRecordset> SqliteConnection::open(const std::string& query) {
    return std::make_unique<SqliteRecordset>(database_, query);
}

void SqliteConnection::execute(const std::string& statement) {
    static const std::regex toDbase(
        R"(\s*select\s+\*\s+into\s+\[dbase\s+[^;\]]*;database=([^\]]*)\]\.\[([^\]]*)\]\s+from\s+(\S+)\s*)",
        std::regex::icase);
    std::smatch match;
    if (std::regex_match(statement, match, toDbase)) {
        exportToDbase(match[3], joinedPath(match[1].str(), match[2].str() + ".dbf"));
    } else {
        run(database_.get(), withTextComparison(statement));
    }
}

std::vector<std::string> SqliteConnection::tableNames() {
    std::vector<std::string> names;
    SqliteStatement statement(database_.get(),
                              "SELECT name FROM sqlite_master WHERE type='table' ORDER BY rowid");
    while (statement.step()) names.push_back(std::get<std::string>(statement.value(0)));
    return names;
}

std::unique_ptr<ITransaction> SqliteConnection::beginTransaction() {
    return std::make_unique<SqliteTransaction>(database_);
}

// A table of the database as a dBASE table: texts as wide as they are declared, numbers of 20
// characters with 5 decimals.
void SqliteConnection::exportToDbase(const std::string& table, const std::string& path) {
    std::vector<Field> fields;
    SqliteStatement columns(database_.get(), "PRAGMA table_info(" + quotedName(table) + ")");
    while (columns.step()) {
        const std::string type = std::get<std::string>(columns.value(2));
        const std::string name = std::get<std::string>(columns.value(1));
        if (type.starts_with("VARCHAR(")) {
            fields.push_back({name, FieldType::text, std::stoi(type.substr(8)), 0});
        } else {
            fields.push_back({name, FieldType::number, 20, 5});
        }
    }
    if (fields.empty()) throw PlatformError("The database " + path_ + " has no table " + table);
    std::vector<std::vector<FieldValue>> records;
    SqliteStatement rows(database_.get(), "SELECT * FROM " + quotedName(table));
    while (rows.step()) {
        std::vector<FieldValue> record;
        for (int c = 0; c < rows.columnCount(); ++c) record.push_back(rows.value(c));
        records.push_back(std::move(record));
    }
    tables_.createTable(path, fields, records);
}

void SqliteConnection::createTable(const std::string& name,
                                   const std::vector<ColumnDefinition>& columns) {
    std::string text;
    for (const ColumnDefinition& column : columns) {
        text += (text.empty() ? "" : ",") + quotedName(column.name) +
                (column.type == FieldType::text ? " VARCHAR(" + std::to_string(column.size) + ")"
                                                : " REAL");
    }
    execute("CREATE TABLE " + quotedName(name) + "(" + text + ")");
}

// The file is not yet anybody's: no journal and no sync until the end, when the data are flushed.
void SqliteConnection::append(const std::string& table, const IColumnSource& source) {
    registerColumnTable(database_.get(), "velmora_columns", source);
    run(database_.get(),
        "PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;");
    try {
        run(database_.get(),
            "BEGIN; INSERT INTO " + quotedName(table) + " SELECT * FROM velmora_columns; COMMIT;");
    } catch (const PlatformError& e) {
        throw PlatformError("Cannot write the database " + path_ + ": " + e.what());
    }
}

}  // namespace velmora::platform
