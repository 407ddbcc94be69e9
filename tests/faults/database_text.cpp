// SPDX-License-Identifier: MIT
#include "tests/faults/database_text.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

namespace velmora::faults {

namespace {

constexpr std::array<const char*, 3> kParts = {"", "-journal", "-wal"};

struct Closer {
    void operator()(sqlite3* database) const { ::sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { ::sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, Closer>;
using Statement = std::unique_ptr<sqlite3_stmt, Closer>;
using Rows = std::vector<std::string>;

// False when a statement fails; columns are separated by |.
bool rowsOf(sqlite3* database, const std::string& sql, Rows& rows) {
    sqlite3_stmt* raw = nullptr;
    if (::sqlite3_prepare_v2(database, sql.c_str(), -1, &raw, nullptr) != SQLITE_OK) return false;
    const Statement statement(raw);
    int state = 0;
    while ((state = ::sqlite3_step(raw)) == SQLITE_ROW) {
        std::string row;
        for (int i = 0; i < ::sqlite3_column_count(raw); ++i) {
            const auto* text = ::sqlite3_column_text(raw, i);
            row += std::to_string(::sqlite3_column_type(raw, i)) + ":";
            if (text) row += reinterpret_cast<const char*>(text);
            row += '|';
        }
        rows.push_back(row);
    }
    return state == SQLITE_DONE;
}

std::string joined(Rows rows) {
    std::ranges::sort(rows);
    std::string all;
    for (const std::string& row : rows) all += row + "\n";
    return all;
}

std::string quoted(const std::string& name) {
    std::string text = "\"";
    for (const char c : name) text += c == '"' ? std::string("\"\"") : std::string(1, c);
    return text + "\"";
}

DatabaseText read(const std::string& file) {
    sqlite3* raw = nullptr;
    const int opened = ::sqlite3_open(file.c_str(), &raw);
    const Database database(raw);
    Rows verdict;
    Rows names;
    if (opened != SQLITE_OK || !rowsOf(raw, "PRAGMA integrity_check", verdict) ||
        verdict != Rows{"3:ok|"} ||
        !rowsOf(raw, "SELECT name FROM sqlite_master WHERE type = 'table'", names)) {
        return {};
    }
    DatabaseText all;
    for (const std::string& column : names) {
        const std::string name = column.substr(2, column.size() - 3);
        if (name == "IR_Changes") continue;  // tells times, and what a step did before it failed
        Rows rows;
        if (!rowsOf(raw, "SELECT * FROM " + quoted(name), rows)) return {};
        all.tables[name] = joined(rows);
    }
    all.whole = true;
    return all;
}

}  // namespace

DatabaseText databaseText(const std::string& path, const Contents& all, const std::string& folder) {
    const std::string copy = folder + "/database-copy";
    for (const char* part : kParts) {
        std::filesystem::remove(copy + part);
        const auto found = all.find(path + part);
        if (found != all.end()) std::ofstream(copy + part, std::ios::binary) << found->second;
    }
    DatabaseText text = read(copy);
    for (const char* part : kParts) std::filesystem::remove(copy + part);
    return text;
}

}  // namespace velmora::faults
