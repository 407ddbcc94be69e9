// SPDX-License-Identifier: MIT
// What a database from elsewhere may ask of the program.
#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <string>

namespace velmora::platform {

// Takes from the database's own views, triggers and schema what they could do harm with, bounds the
// sizes of its values, and takes names in double quotes as names alone.
void harden(sqlite3* database);

// Ends a statement that takes far more steps of SQLite's machine than a pass over the whole file
// could need, such as one over a view that never ends. One at a time per connection; a database in
// memory has no limit.
class WorkLimit {
  public:
    explicit WorkLimit(sqlite3* database) : database_(database) {}
    ~WorkLimit() { disarm(); }
    WorkLimit(const WorkLimit&) = delete;
    WorkLimit& operator=(const WorkLimit&) = delete;
    void arm();  // from now on the connection's steps count
    void disarm();

  private:
    static int count(void* limit);
    sqlite3* database_;
    long long steps_ = 0;
    long long most_ = 0;  // 0 until it is asked for
};

// The most memory that the rows of one query may take, bytes.
std::size_t mostMemory(sqlite3* database);

// "The database FILE: " and what SQLite says of the last failure, in words of our own where its own
// say nothing to a user.
std::string databaseFailure(sqlite3* database);

}  // namespace velmora::platform
