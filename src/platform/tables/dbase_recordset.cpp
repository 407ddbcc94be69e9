// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_recordset.h"

#include <sqlite3.h>

#include <regex>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/tables/sqlite_connection.h"
#include "platform/tables/sqlite_statement.h"
#include "platform/tables/static_cursor.h"

namespace velmora::platform {

namespace {

[[noreturn]] void refuse() {
    throw PlatformError("The dBASE data source answers queries; it runs no other statements");
}

// "SELECT columns FROM table rest".
struct Query {
    std::string columns;
    std::string table;
    std::string rest;

    explicit Query(const std::string& text) {
        static const std::regex form(
            R"(\s*select\s+([\s\S]*?)\s+from\s+(\[[^\]]+\]|[\s\S]+?)(\s+where\s[\s\S]*)?)",
            std::regex::icase);
        std::smatch match;
        if (!std::regex_match(text, match, form)) {
            throw PlatformError("The dBASE data source understands SELECT ... FROM table, not \"" +
                                text + "\"");
        }
        columns = match[1];
        table = match[2];
        rest = match[3];
        if (table.front() == '[' && table.back() == ']') table = table.substr(1, table.size() - 2);
    }
    bool wholeRows() const { return columns == "*"; }
    // The query over the table "records". The field of "DISTINCT field" and of "WHERE field = ..."
    // is quoted, since it may be called like a word of the language.
    std::string overRecords() const {
        static const std::regex distinct(R"((distinct\s+)(\w+))", std::regex::icase);
        static const std::regex where(R"((\s+where\s+)(\w+)(\s*=[\s\S]*))", std::regex::icase);
        const std::string what =
            wholeRows() ? "rowid, *" : std::regex_replace(columns, distinct, "$1\"$2\"");
        return "SELECT " + what + " FROM records" + std::regex_replace(rest, where, "$1\"$2\"$3");
    }
    bool uses(const std::string& field) const {
        const auto within = [&](const std::string& text) {
            for (std::size_t at = 0; at + field.size() <= text.size(); ++at) {
                if (sameIgnoringCase(std::string_view(text).substr(at, field.size()), field)) {
                    return true;
                }
            }
            return false;
        };
        return wholeRows() || within(columns) || within(rest);
    }
};

// The fields of a table that a query uses, as a database in memory: table "records", whose row
// numbers are the records counted from 1.
SqliteConnection::Handle loaded(const ITable& table, const Query& query) {
    sqlite3* database = nullptr;
    sqlite3_open(":memory:", &database);
    SqliteConnection::Handle handle(database, SqliteConnection::Closer{});
    std::vector<std::string> names;
    std::string columns;
    std::string places;
    for (const Field& field : table.fields()) {
        if (!query.uses(field.name)) continue;
        names.push_back(field.name);
        columns += (columns.empty() ? "" : ",") + quotedName(field.name) +
                   (field.type == FieldType::text ? " TEXT COLLATE NOCASE" : " REAL");
        places += places.empty() ? "?" : ",?";
    }
    if (names.empty()) {
        throw PlatformError("The table " + table.path() + " has no field of " + query.columns);
    }
    SqliteStatement(database, "CREATE TABLE records(" + columns + ")").step();
    for (std::size_t r = 0; r < table.recordCount(); ++r) {
        SqliteStatement insert(database, "INSERT INTO records VALUES(" + places + ")");
        for (std::size_t c = 0; c < names.size(); ++c) {
            insert.bind(static_cast<int>(c) + 1, table.value(r, names[c]));
        }
        insert.step();
    }
    return handle;
}

class DbaseRecordset : public StaticCursor {
  public:
    DbaseRecordset(std::shared_ptr<DbaseConnection::Edits> edits, const std::string& folder,
                   const std::string& text)
        : StaticCursor(text), edits_(std::move(edits)) {
        const Query query(text);
        const bool named = !folder.empty() && parentFolderName(query.table).empty();
        path_ = named ? joinedPath(folder, query.table) : query.table;
        wholeRows_ = query.wholeRows();
        const auto table = edits_->tables.openTable(path_);
        const SqliteConnection::Handle database = loaded(*table, query);
        SqliteStatement statement(database.get(), query.overRecords());
        const int first = wholeRows_ ? 1 : 0;
        for (int c = first; c < statement.columnCount(); ++c) addField(statement.columnName(c));
        while (statement.step()) {
            Row row;
            if (wholeRows_) row.id = static_cast<long long>(std::get<double>(statement.value(0)));
            for (int c = first; c < statement.columnCount(); ++c) {
                row.values.push_back(statement.value(c));
            }
            addRow(std::move(row));
        }
    }

  protected:
    bool editable() const override { return wholeRows_; }

    void insertRow(Row& row) override {
        if (edits_->held) {
            throw PlatformError("No row can be added to " + path_ + " inside a transaction");
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

    void updateRow(const Row& row, const Changes& changes) override {
        auto& session = edits_->sessions[path_];
        if (!session) session = edits_->tables.edit(edits_->tables.openTable(path_));
        for (const auto& [index, value] : changes) {
            session->setValue(static_cast<std::size_t>(row.id) - 1, fields()[index], value);
        }
        if (edits_->held) return;
        const auto finished = std::move(session);
        edits_->sessions.erase(path_);
        finished->save();
    }

  private:
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
void DbaseConnection::append(const std::string&, const IColumnSource&) { refuse(); }

}  // namespace velmora::platform
