// SPDX-License-Identifier: MIT
#include "platform/tables/sqlite_limits.h"

#include <array>
#include <filesystem>
#include <limits>
#include <utility>

namespace velmora::platform {

namespace {

constexpr int kStepsBetween = 10'000;  // calls that count
// Reading a value takes a step, and a value at least a byte of the file.
constexpr long long kStepsForAll = 50'000'000;
constexpr long long kStepsPerByte = 4;
constexpr std::size_t kMemoryForAll = 256UL << 20U;
constexpr std::size_t kMemoryPerByte = 100;

// "" for a database in memory.
std::string fileName(sqlite3* database) {
    const char* file = sqlite3_db_filename(database, "main");
    return file ? file : "";
}

long long fileSize(sqlite3* database) {
    std::error_code error;
    const auto size = std::filesystem::file_size(fileName(database), error);
    return error ? 0 : static_cast<long long>(size);
}

}  // namespace

void harden(sqlite3* database) {
    for (const auto& [option, on] :
         std::array<std::pair<int, int>, 4>{{{SQLITE_DBCONFIG_DEFENSIVE, 1},
                                             {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                             {SQLITE_DBCONFIG_DQS_DML, 0},
                                             {SQLITE_DBCONFIG_DQS_DDL, 0}}}) {
        sqlite3_db_config(database, option, on, nullptr);
    }
    for (const auto& [limit, most] : std::array<std::pair<int, int>, 6>{
             {{SQLITE_LIMIT_LENGTH, 64 << 20},      // bytes of a value or row
              {SQLITE_LIMIT_SQL_LENGTH, 16 << 20},  // bytes of a statement
              {SQLITE_LIMIT_EXPR_DEPTH, 200},
              {SQLITE_LIMIT_TRIGGER_DEPTH, 20},
              {SQLITE_LIMIT_COMPOUND_SELECT, 100},
              {SQLITE_LIMIT_ATTACHED, 0}}}) {
        sqlite3_limit(database, limit, most);
    }
}

void WorkLimit::arm() { sqlite3_progress_handler(database_, kStepsBetween, count, this); }

void WorkLimit::disarm() { sqlite3_progress_handler(database_, 0, nullptr, nullptr); }

int WorkLimit::count(void* given) {
    auto& limit = *static_cast<WorkLimit*>(given);
    limit.steps_ += kStepsBetween;
    if (limit.steps_ < kStepsForAll) return 0;
    if (limit.most_ == 0) {
        limit.most_ = fileName(limit.database_).empty()
                          ? std::numeric_limits<long long>::max()
                          : kStepsForAll + kStepsPerByte * fileSize(limit.database_);
    }
    return limit.steps_ > limit.most_ ? 1 : 0;
}

std::size_t mostMemory(sqlite3* database) {
    return kMemoryForAll + kMemoryPerByte * static_cast<std::size_t>(fileSize(database));
}

std::string databaseFailure(sqlite3* database) {
    const std::string file = fileName(database);
    const std::string name = file.empty() ? file : "The database " + file + ": ";
    switch (sqlite3_errcode(database)) {
        case SQLITE_INTERRUPT:
            return name +
                   "a statement has been ended, since it took too much work: does a view or "
                   "trigger "
                   "of the database run without end?";
        case SQLITE_TOOBIG:
            return name + "a text, row or statement is too long";
        case SQLITE_NOMEM:
            return name + "the memory does not suffice for its rows";
        default:
            return name + sqlite3_errmsg(database);
    }
}

}  // namespace velmora::platform
