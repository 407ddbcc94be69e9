// SPDX-License-Identifier: MIT
#include "platform/tables/sqlite_connection.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "gis/connection_text.h"
#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"
#include "platform/files/run_notes.h"
#include "platform/tables/access_import.h"
#include "platform/tables/access_state.h"
#include "platform/tables/column_table.h"
#include "platform/tables/sqlite_recordset.h"
#include "platform/tables/sqlite_statement.h"
#include "platform/tables/statement_scanner.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

constexpr int kStepsBetweenBeats = 100'000;  // some milliseconds

// Called by SQLite now and then: work goes on; other than 0 ends it.
int beat(void* given) {
    auto& feedback = *static_cast<IFeedback*>(given);
    feedback.advance(0);
    return feedback.cancelled() ? 1 : 0;
}

constexpr int kPatience = 5000;  // milliseconds to wait for another program's change to end

SqliteConnection::Handle openDatabase(const std::string& path, int flags) {
    sqlite3* database = nullptr;
    const int status = sqlite3_open_v2(path.c_str(), &database, flags, nullptr);
    SqliteConnection::Handle handle(database, SqliteConnection::Closer{});
    sqlite3_busy_timeout(database, kPatience);
    if (status != SQLITE_OK) {
        throw PlatformError("Cannot open the database " + path + ": " + sqlite3_errstr(status),
                            {.file = path});
    }
    return handle;
}

// Such databases compare text without regard to case, so text columns of a new table do.
std::string withTextComparison(const std::string& statement) {
    StatementScanner scanner(statement);
    for (const char* word : {"create", "table"}) {
        const auto token = scanner.next();
        if (!token || !token->isWord(word)) return statement;
    }
    const std::vector<Token> tokens = tokensOf(statement, scanner.position());
    std::string text;
    std::size_t from = 0;
    for (std::size_t i = 3; i < tokens.size(); ++i) {
        const bool isType = tokens[i - 3].isWord("char") || tokens[i - 3].isWord("varchar");
        const bool sized = tokens[i - 2].isSymbol('(') && tokens[i - 1].kind == TokenKind::number &&
                           tokens[i].isSymbol(')');
        if (!isType || !sized) continue;
        text += statement.substr(from, tokens[i].end - from) + " COLLATE NOCASE";
        from = tokens[i].end;
    }
    return text + statement.substr(from);
}

// "SELECT * INTO [DBASE 5.0;DATABASE=folder].[name] FROM table".
struct DbaseExport {
    std::string table;
    std::string folder;
    std::string name;
};

std::optional<DbaseExport> dbaseExportOf(const std::string& statement) {
    StatementScanner scanner(statement);
    for (const char* word : {"select", "*", "into"}) {
        const auto token = scanner.next();
        if (!token || !sameIgnoringCase(token->value, word)) return std::nullopt;
    }
    const auto target = scanner.next();
    const auto point = scanner.next();
    const auto name = scanner.next();
    const auto from = scanner.next();
    const auto table = scanner.next();
    const bool whole = target && target->kind == TokenKind::name && point && point->isSymbol('.') &&
                       name && name->kind == TokenKind::name && from && from->isWord("from") &&
                       table && !scanner.next();
    if (!whole || !sameIgnoringCase(target->value.substr(0, 5), "dbase")) return std::nullopt;
    return DbaseExport{table->value, connectionPart(target->value, "database"), name->value};
}

class SqliteTransaction : public ITransaction {
  public:
    explicit SqliteTransaction(SqliteConnection::Handle database) : database_(std::move(database)) {
        runStatements(database_.get(), "BEGIN IMMEDIATE");
    }
    ~SqliteTransaction() override {
        if (open_) sqlite3_exec(database_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;
    void commit() override {
        runStatements(database_.get(), "COMMIT");
        open_ = false;
    }

  private:
    SqliteConnection::Handle database_;
    bool open_ = true;
};

}  // namespace

void SqliteConnection::create(const std::string& path) {
    if (std::filesystem::exists(path))
        throw PlatformError("The database " + path + " exists already", {.file = path});
    const Handle handle = openDatabase(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    // Large pages suit whole-table passes. Vacuum makes the empty file.
    runStatements(
        handle.get(),
        "PRAGMA page_size=65536; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; VACUUM;");
}

SqliteConnection::SqliteConnection(const std::string& path, IFeatureWorkspaceFactory& tables)
    : path_(path), tables_(tables) {
    if (!std::filesystem::is_regular_file(path)) {
        throw PlatformError("There is no database " + path, {.file = path});
    }
    if (std::filesystem::file_size(path) == 0) {
        throw PlatformError("The database " + path + " is an empty file", {.file = path});
    }
    if (isAccessFile(path)) path_ = importedDatabase(path);
    database_ = openDatabase(path_, SQLITE_OPEN_READWRITE);
    harden(database_.get());
    try {
        runStatements(database_.get(), "SELECT count(*) FROM sqlite_master;");
        // Each edit reaches the disk before it counts as made.
        runStatements(database_.get(),
                      syncing() ? "PRAGMA synchronous=FULL;" : "PRAGMA synchronous=OFF;");
    } catch (const PlatformError& e) {
        throw PlatformError("Cannot open it. " + std::string(e.what()), {.file = path});
    }
}

std::unique_ptr<IRecordset> SqliteConnection::open(const std::string& query) {
    noteStatement(query);
    return std::make_unique<SqliteRecordset>(database_, query);
}

void SqliteConnection::execute(const std::string& statement) {
    noteStatement(statement);
    if (const auto dbase = dbaseExportOf(statement)) {
        exportToDbase(dbase->table, joinedPath(dbase->folder, dbase->name + ".dbf"));
    } else {
        runStatements(database_.get(), withTextComparison(statement));
    }
}

std::vector<std::string> SqliteConnection::tableNames() {
    std::vector<std::string> names;
    SqliteStatement statement(database_.get(),
                              "SELECT name FROM sqlite_master WHERE type='table' ORDER BY rowid");
    while (statement.step()) {
        const std::string name = statement.text(0);
        if (name != kAccessStateTable) names.push_back(name);
    }
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
        const std::string type = columns.text(2);
        const std::string name = columns.text(1);
        if (type.starts_with("VARCHAR(")) {
            const double width = lenientNumber(type.substr(8));
            fields.push_back({name, FieldType::text, static_cast<int>(std::min(width, 254.0)), 0});
        } else {
            fields.push_back({name, FieldType::number, 20, 5});
        }
    }
    if (fields.empty())
        throw PlatformError("The database " + path_ + " has no table " + table, {.file = path_});
    std::vector<std::vector<FieldValue>> records;
    SqliteStatement rows(database_.get(), "SELECT * FROM " + quotedName(table));
    while (rows.step()) {
        std::vector<FieldValue> record;
        for (int c = 0; c < rows.columnCount(); ++c) record.push_back(rows.value(c));
        records.push_back(std::move(record));
    }
    tables_.createTable(path, fields, records);
    // An older table of that name in capitals, unless capitals make no other name here.
    const std::string older = withoutExtension(path) + ".DBF";
    if (std::filesystem::exists(older) && !std::filesystem::equivalent(older, path)) {
        std::filesystem::remove(older);
    }
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
// The work is bounded by the rows that are given.
void SqliteConnection::append(const std::string& table, IRowSource& source) {
    ShownRows rows{source};
    registerRows(database_.get(), "velmora_rows", rows);
    sqlite3_db_config(database_.get(), SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);  // for journals off
    const std::string statements =
        "PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; BEGIN; "
        "INSERT INTO " +
        quotedName(table) + " SELECT * FROM velmora_rows; COMMIT;";
    IFeedback* feedback = watching();
    if (feedback != nullptr) {
        sqlite3_progress_handler(database_.get(), kStepsBetweenBeats, beat, feedback);
    }
    const int result = sqlite3_exec(database_.get(), statements.c_str(), nullptr, nullptr, nullptr);
    sqlite3_progress_handler(database_.get(), 0, nullptr, nullptr);
    if (rows.failure) std::rethrow_exception(rows.failure);
    if (result == SQLITE_INTERRUPT && feedback != nullptr) throwIfCancelled(*feedback);
    if (result != SQLITE_OK) {
        throw PlatformError("Cannot write. " + databaseFailure(database_.get()));
    }
}

}  // namespace velmora::platform
