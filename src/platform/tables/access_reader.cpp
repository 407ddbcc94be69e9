// SPDX-License-Identifier: MIT
#include "platform/tables/access_reader.h"

#include <mdbtools.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/tables/sqlite_statement.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kLongestText = 4'000'000;  // bytes of a memo
constexpr int kDataPage = 1;
constexpr int kTablePage = 2;

struct HandleCloser {
    void operator()(MdbHandle* handle) const { mdb_close(handle); }
};
struct TableCloser {
    void operator()(MdbTableDef* table) const { mdb_free_tabledef(table); }
};
struct Freer {
    void operator()(void* memory) const { std::free(memory); }
};
using Handle = std::unique_ptr<MdbHandle, HandleCloser>;
using Table = std::unique_ptr<MdbTableDef, TableCloser>;

struct AccessFile {
    Handle handle;
    std::uintmax_t pages = 0;
};

[[noreturn]] void throwDamaged(const std::string& what) {
    throw PlatformError("it is damaged: " + what);
}

MdbColumn& columnOf(const MdbTableDef& table, unsigned position) {
    return *static_cast<MdbColumn*>(g_ptr_array_index(table.columns, position));
}

// Texts are as wide as their characters: one byte each in Jet 3, two in all later versions.
std::string declaredType(const MdbHandle& handle, const MdbColumn& column) {
    const int bytesPerCharacter = handle.f->jet_version == MDB_VER_JET3 ? 1 : 2;
    switch (column.col_type) {
        case MDB_BOOL:
        case MDB_BYTE:
        case MDB_INT:
        case MDB_LONGINT:
            return "INTEGER";
        case MDB_FLOAT:
        case MDB_DOUBLE:
            return "DOUBLE";
        case MDB_MONEY:
        case MDB_NUMERIC:
            return "NUMERIC";
        case MDB_TEXT:
            return "VARCHAR(" + std::to_string(column.col_size / bytesPerCharacter) +
                   ") COLLATE NOCASE";
        case MDB_BINARY:
        case MDB_OLE:
            return "BLOB";
        default:  // memos, dates, identifiers
            return "TEXT COLLATE NOCASE";
    }
}

// Every page that a table claims is there, holds rows, and names that table as its own.
void checkPages(const AccessFile& file, MdbTableDef& table, const std::string& name) {
    MdbHandle& handle = *file.handle;
    unsigned rows = 0;
    unsigned page = 0;
    while (true) {
        const int next =
            mdb_map_find_next(&handle, table.usage_map, static_cast<unsigned>(table.map_sz), page);
        if (next <= 0) break;
        page = static_cast<unsigned>(next);
        if (page >= file.pages) throwDamaged("it ends before the rows of table " + name);
        mdb_read_pg(&handle, page);
        if (handle.pg_buf[0] != kDataPage ||
            mdb_get_int32(handle.pg_buf, 4) != static_cast<long>(table.entry->table_pg)) {
            throwDamaged("page " + std::to_string(page) + " does not hold rows of table " + name);
        }
        rows += static_cast<unsigned>(mdb_get_int16(handle.pg_buf, handle.fmt->row_count_offset));
    }
    if (rows < table.num_rows) throwDamaged("rows of table " + name + " are missing");
}

// Access counts days from 30 December 1899; the fraction is the time of day, also of days before.
std::string dateText(double days) {
    using namespace std::chrono;
    const double wholeDays = std::trunc(days);
    if (!(std::fabs(wholeDays) < 4e6)) throwDamaged("there is no such date");
    const auto second = static_cast<int>(std::lround(std::fabs(days - wholeDays) * 86400));
    const sys_days day = sys_days{1899y / December / 30} +
                         std::chrono::days(static_cast<int>(wholeDays) + second / 86400);
    const year_month_day date(day);
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), second % 86400 / 3600, second % 3600 / 60,
                  second % 60);
    return text.data();
}

// One column of the rows that are being fetched.
class ColumnReader {
  public:
    ColumnReader(MdbHandle& handle, MdbTableDef& table, unsigned position)
        : handle_(handle), column_(columnOf(table, position)), text_(std::malloc(kLongestText)) {
        if (!text_) throw PlatformError("there is not enough memory");
        mdb_bind_column(&table, static_cast<int>(position) + 1, text_.get(), &length_);
    }

    void bind(sqlite3_stmt* statement, int parameter) const {
        const int type = column_.col_type;
        if (type == MDB_BOOL) {
            sqlite3_bind_int(statement, parameter, *text() == '1' ? 1 : 0);
        } else if (length_ == 0) {
            sqlite3_bind_null(statement, parameter);
        } else if (type == MDB_DOUBLE) {  // its text may lack the last digit
            sqlite3_bind_double(statement, parameter,
                                mdb_get_double(handle_.pg_buf, column_.cur_value_start));
        } else if (type == MDB_FLOAT) {
            sqlite3_bind_double(
                statement, parameter,
                static_cast<double>(mdb_get_single(handle_.pg_buf, column_.cur_value_start)));
        } else if (type == MDB_DATETIME) {
            const std::string date =
                dateText(mdb_get_double(handle_.pg_buf, column_.cur_value_start));
            sqlite3_bind_text(statement, parameter, date.c_str(), -1, SQLITE_TRANSIENT);
        } else if (type == MDB_OLE) {
            std::size_t size = 0;
            const std::unique_ptr<void, Freer> bytes(mdb_ole_read_full(&handle_, &column_, &size));
            sqlite3_bind_blob64(statement, parameter, bytes.get(), size, SQLITE_TRANSIENT);
        } else if (type == MDB_BINARY) {
            sqlite3_bind_blob64(statement, parameter, handle_.pg_buf + column_.cur_value_start,
                                static_cast<std::size_t>(column_.cur_value_len), SQLITE_TRANSIENT);
        } else {  // the column's affinity makes numbers of whole numbers and currency
            if (static_cast<std::size_t>(length_) + 1 >= kLongestText) {
                throw PlatformError("a text in column " + std::string(column_.name) +
                                    " is too long");
            }
            sqlite3_bind_text(statement, parameter, text(), length_, SQLITE_TRANSIENT);
        }
    }

  private:
    const char* text() const { return static_cast<const char*>(text_.get()); }

    MdbHandle& handle_;
    MdbColumn& column_;
    std::unique_ptr<void, Freer> text_;
    int length_ = 0;
};

void copyRows(MdbHandle& handle, MdbTableDef& table, const std::string& name, sqlite3* database) {
    std::string places;
    std::vector<std::unique_ptr<ColumnReader>> readers;
    for (unsigned c = 0; c < table.num_cols; ++c) {
        readers.push_back(std::make_unique<ColumnReader>(handle, table, c));
        places += places.empty() ? "?" : ",?";
    }
    sqlite3_stmt* statement = nullptr;
    const std::string insert = "INSERT INTO " + quotedName(name) + " VALUES(" + places + ")";
    if (sqlite3_prepare_v2(database, insert.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        throw PlatformError(sqlite3_errmsg(database));
    }
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> owner(statement, sqlite3_finalize);
    unsigned rows = 0;
    mdb_rewind_table(&table);
    while (mdb_fetch_row(&table)) {
        for (std::size_t c = 0; c < readers.size(); ++c) {
            readers[c]->bind(statement, static_cast<int>(c) + 1);
        }
        if (sqlite3_step(statement) != SQLITE_DONE) throw PlatformError(sqlite3_errmsg(database));
        sqlite3_reset(statement);
        ++rows;
    }
    if (rows != table.num_rows) {
        throwDamaged("table " + name + " counts " + std::to_string(table.num_rows) +
                     " rows, of which " + std::to_string(rows) + " can be read");
    }
}

Table opened(const AccessFile& file, MdbCatalogEntry& entry) {
    MdbHandle& handle = *file.handle;
    const std::string name = entry.object_name;
    if (entry.table_pg >= file.pages) throwDamaged("it ends before table " + name);
    mdb_read_pg(&handle, entry.table_pg);
    if (handle.pg_buf[0] != kTablePage) throwDamaged("there is no definition of table " + name);
    Table table(mdb_read_table(&entry));
    if (!table || !mdb_read_columns(table.get()) || table->columns->len != table->num_cols) {
        throwDamaged("the definition of table " + name + " cannot be read");
    }
    checkPages(file, *table, name);
    return table;
}

void copyTable(MdbHandle& handle, MdbTableDef& table, const std::string& name, sqlite3* database) {
    std::string columns;
    for (unsigned c = 0; c < table.num_cols; ++c) {
        const MdbColumn& column = columnOf(table, c);
        columns += (c ? "," : "") + quotedName(column.name) + " " + declaredType(handle, column);
    }
    SqliteStatement(database, "CREATE TABLE " + quotedName(name) + "(" + columns + ")").step();
    copyRows(handle, table, name, database);
}

}  // namespace

void copyAccessTables(const std::string& path, sqlite3* database) {
    AccessFile file{Handle(mdb_open(path.c_str(), MDB_NOFLAGS))};
    MdbHandle* handle = file.handle.get();
    if (!handle) throwDamaged("its first page cannot be read");
    const auto pageSize = static_cast<std::uintmax_t>(handle->fmt->pg_size);
    const std::uintmax_t bytes = std::filesystem::file_size(path);
    if (bytes % pageSize != 0) throwDamaged("it is cut off inside a page");
    file.pages = bytes / pageSize;
    mdb_set_bind_size(handle, kLongestText);
    mdb_set_boolean_fmt_numbers(handle);
    if (!mdb_read_catalog(handle, MDB_ANY) || handle->num_catalog == 0) {
        throwDamaged("its list of tables cannot be read");
    }
    SqliteStatement(database, "BEGIN").step();
    for (unsigned i = 0; i < handle->num_catalog; ++i) {
        auto& entry = *static_cast<MdbCatalogEntry*>(g_ptr_array_index(handle->catalog, i));
        if (entry.object_type != MDB_TABLE) continue;
        // The system's own tables are not copied, but must be whole as well.
        const Table table = opened(file, entry);
        if (mdb_is_user_table(&entry)) copyTable(*handle, *table, entry.object_name, database);
    }
    SqliteStatement(database, "COMMIT").step();
}

}  // namespace velmora::platform
