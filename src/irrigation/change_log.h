// SPDX-License-Identifier: MIT
// The history of an irrigation database: table IR_Changes, with a row for each value that was
// changed, who did it and when.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "irrigation/irrigation_database.h"

namespace velmora {

constexpr const char* kChangesTable = "IR_Changes";

class ChangeLog {
  public:
    // Takes the methods, shares and efficiencies as they stand; the database must outlive the log.
    // Throws PlatformError.
    explicit ChangeLog(IrrigationDatabase& database);

    // Stores what has changed since, or since the last call, as changes by the one who is logged
    // in; `action` says by what: "eff set". A row that is new, or gone, is one change of all its
    // values. Makes the table when it is needed first. Throws PlatformError.
    void note(const std::string& action);

  private:
    // A row's values by their columns, without those that are null.
    using Values = std::map<std::string, std::string>;
    struct RowKey {
        std::string table;
        std::string zone;
        std::string item;     // crop type or method
        std::size_t nth = 0;  // of the rows that have the same of these
        bool operator<(const RowKey& other) const {
            return std::tie(table, zone, item, nth) <
                   std::tie(other.table, other.zone, other.item, other.nth);
        }
    };
    using Rows = std::map<RowKey, Values>;
    struct Change {
        RowKey row;
        std::string field;
        std::string before;
        std::string after;
    };

    Rows read() const;
    void readTable(const std::string& table, const char* zone, const char* item, Rows& rows) const;
    static std::vector<Change> changes(const Rows& before, const Rows& after);
    void store(const std::vector<Change>& changes, const std::string& action);

    IrrigationDatabase& database_;
    Rows before_;
};

}  // namespace velmora
