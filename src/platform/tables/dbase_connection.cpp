// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_connection.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/run_notes.h"
#include "platform/tables/dbase_numbers.h"
#include "platform/tables/dbase_query.h"
#include "platform/tables/sqlite_connection.h"
#include "platform/tables/sqlite_statement.h"
#include "platform/tables/static_cursor.h"

namespace velmora::platform {

namespace {

[[noreturn]] void refuse() {
    throw PlatformError("The dBASE data source answers queries; it runs no other statements");
}

[[noreturn]] void refuseWithoutFields(const ITable& table) {
    throw PlatformError("The table " + table.path() + " has no fields", {.file = table.path()});
}

// The fields of a table as a database in memory: table "records", whose row numbers are the records
// counted from 1. Columns that the query does not use are left empty.
SqliteConnection::Handle loaded(const ITable& table, const std::string& query, bool all) {
    sqlite3* database = nullptr;
    sqlite3_open(":memory:", &database);
    SqliteConnection::Handle handle(database, SqliteConnection::Closer{});
    std::vector<std::pair<int, std::string>> used;
    std::string columns;
    std::string places;
    for (const Field& field : table.fields()) {
        const auto position = static_cast<std::size_t>(&field - table.fields().data());
        const std::string column = quotedName(DbaseQuery::columnName(position));
        columns += (columns.empty() ? "" : ",") + column +
                   (field.type == FieldType::text ? " TEXT" : " REAL");
        places += places.empty() ? "?" : ",?";
        if (all || query.find(column) != std::string::npos) {
            used.emplace_back(static_cast<int>(position) + 1, field.name);
        }
    }
    if (columns.empty()) refuseWithoutFields(table);
    SqliteStatement(database, "CREATE TABLE records(" + columns + ")").step();
    for (std::size_t r = 0; r < table.recordCount(); ++r) {
        SqliteStatement insert(database, "INSERT INTO records VALUES(" + places + ")");
        for (const auto& [parameter, name] : used) insert.bind(parameter, table.value(r, name));
        insert.step();
    }
    return handle;
}

// The field that a column of "records" stands for; another column keeps its name.
std::string fieldOf(const std::string& column, const std::vector<Field>& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (column == DbaseQuery::columnName(i)) return fields[i].name;
    }
    return column;
}

// Which a database would give back as they are.
bool holdsNumbersAndTexts(const ITable& table) {
    return std::ranges::none_of(table.fields(),
                                [](const Field& f) { return f.type == FieldType::other; });
}

class DbaseRecordset : public StaticCursor {
  public:
    DbaseRecordset(std::shared_ptr<DbaseConnection::Edits> edits, const std::string& folder,
                   const std::string& text)
        : StaticCursor(text), edits_(std::move(edits)) {
        const DbaseQuery query(text);
        const bool named = !folder.empty() && parentFolderName(query.table()).empty();
        path_ = named ? joinedPath(folder, query.table()) : query.table();
        wholeRows_ = query.wholeRows();
        const auto table = edits_->tables.openTable(path_);
        const std::string overRecords = query.overRecords(table->fields(), table->path());
        if (query.wholeTable()) {
            if (table->fields().empty()) refuseWithoutFields(*table);
            for (const Field& field : table->fields()) addField(field.name);
            std::vector<std::size_t> places(table->recordCount());
            for (std::size_t r = 0; r < places.size(); ++r) places[r] = table->placeInFile(r);
            requireNumbers(table->path(), places);
            if (holdsNumbersAndTexts(*table)) {
                readInPlace(table->recordCount(), [table](std::size_t row, std::size_t field) {
                    return table->value(row, table->fields()[field].name);
                });
            } else {
                fetchLater([this, table, overRecords] { fetch(*table, overRecords); });
            }
        } else {
            fetch(*table, overRecords);
        }
    }

  protected:
    bool editable() const override { return wholeRows_; }

    void insertRow(Row& row) override {
        if (edits_->held) {
            throw PlatformError("No row can be added to " + path_ + " inside a transaction",
                                {.file = path_});
        }
        const auto table = edits_->tables.openTable(path_);
        const auto session = edits_->tables.edit(table);
        std::vector<std::pair<std::string, FieldValue>> values;
        for (std::size_t i = 0; i < row.values.size(); ++i) {
            values.emplace_back(fields()[i], row.values[i]);
        }
        session->appendRecord(values);
        session->save();
        row.id = static_cast<long long>(table->recordCount()) + 1;
    }

    void updateRow(long long id, const Changes& changes) override {
        auto& session = edits_->sessions[path_];
        if (!session) session = edits_->tables.edit(edits_->tables.openTable(path_));
        for (const auto& [index, value] : changes) {
            session->setValue(static_cast<std::size_t>(id) - 1, fields()[index], value);
        }
        if (edits_->held) return;
        const auto finished = std::move(session);
        edits_->sessions.erase(path_);
        finished->save();
    }

  private:
    void fetch(const ITable& table, const std::string& overRecords) {
        const SqliteConnection::Handle database = loaded(table, overRecords, wholeRows_);
        SqliteStatement statement(database.get(), overRecords);
        const int first = wholeRows_ ? 1 : 0;
        for (int c = first;
             fields().size() < static_cast<std::size_t>(statement.columnCount() - first); ++c) {
            addField(fieldOf(statement.columnName(c), table.fields()));
        }
        while (statement.step()) {
            Row row;
            if (wholeRows_) row.id = static_cast<long long>(std::get<double>(statement.value(0)));
            for (int c = first; c < statement.columnCount(); ++c) {
                row.values.push_back(statement.value(c));
            }
            addRow(std::move(row));
        }
    }

    std::shared_ptr<DbaseConnection::Edits> edits_;
    std::string path_;
    bool wholeRows_ = false;
};

class DbaseTransaction : public ITransaction {
  public:
    explicit DbaseTransaction(std::shared_ptr<DbaseConnection::Edits> edits)
        : edits_(std::move(edits)) {
        if (edits_->held) throw PlatformError("A transaction is open already");
        edits_->held = true;
    }
    ~DbaseTransaction() override { end(); }
    DbaseTransaction(const DbaseTransaction&) = delete;
    DbaseTransaction& operator=(const DbaseTransaction&) = delete;
    void commit() override {
        const auto sessions = std::move(edits_->sessions);
        end();
        for (const auto& [path, session] : sessions) session->save();
    }

  private:
    void end() {
        edits_->sessions.clear();
        edits_->held = false;
    }
    std::shared_ptr<DbaseConnection::Edits> edits_;
};

}  // namespace

DbaseConnection::DbaseConnection(IFeatureWorkspaceFactory& tables, std::string folder)
    : folder_(std::move(folder)), edits_(std::make_shared<Edits>(Edits{tables, false, {}})) {}

std::unique_ptr<IRecordset> DbaseConnection::open(const std::string& query) {
    noteStatement(query);
    return std::make_unique<DbaseRecordset>(edits_, folder_, query);
}

std::unique_ptr<ITransaction> DbaseConnection::beginTransaction() {
    return std::make_unique<DbaseTransaction>(edits_);
}

std::vector<std::string> DbaseConnection::tableNames() { refuse(); }

void DbaseConnection::execute(const std::string&) { refuse(); }
void DbaseConnection::createTable(const std::string&, const std::vector<ColumnDefinition>&) {
    refuse();
}
void DbaseConnection::append(const std::string&, IRowSource&) { refuse(); }

}  // namespace velmora::platform
