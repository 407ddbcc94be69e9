// SPDX-License-Identifier: MIT
// Tables and databases behind connections and recordsets. The provider that a connection string
// names picks the engine: "MSDASQL.1" with "Data Source=dBASE Files" reads dBASE tables,
// "Microsoft.Jet.OLEDB.4.0" with "Data Source=FILE" opens a database file,
// "ESRI.GeoDB.Oledb.1" with "Data Source=FOLDER" the attributes of the folder's shapefiles.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "gis/field_value.h"

namespace velmora {

// A cursor over the rows of a query.
class IRecordset {
  public:
    virtual ~IRecordset() = default;
    virtual int fieldCount() const = 0;
    virtual std::string fieldName(int position) const = 0;
    virtual bool eof() const = 0;
    virtual void moveFirst() = 0;
    virtual void moveNext() = 0;
    // The current record's value. Throws PlatformError for an unknown field or past the end.
    virtual FieldValue value(const std::string& field) const = 0;
    virtual void setValue(const std::string& field, const FieldValue& value) = 0;
    virtual void addNew() = 0;
    virtual void update() = 0;  // stores what setValue changed
};

// Rows of doubles that are handed over in order, some at a time, column by column. Not-a-number
// stands for null.
class IRowSource {
  public:
    virtual ~IRowSource() = default;
    virtual std::size_t rowCount() const = 0;
    virtual int columnCount() const = 0;
    // Goes on to the rows from `first` on and returns how many are at hand, one at least; `first`
    // is where the rows before have ended, or 0. Throws PlatformError when they cannot be made.
    virtual std::size_t next(std::size_t first) = 0;
    // The rows at hand of a column, or an empty span for one that is null throughout; until next().
    virtual std::span<const double> column(int position) const = 0;
};

struct ColumnDefinition {
    std::string name;
    FieldType type = FieldType::number;
    int size = 0;
};

// Changes that are stored together. Undone when it is let go before commit().
class ITransaction {
  public:
    virtual ~ITransaction() = default;
    virtual void commit() = 0;  // throws PlatformError
};

class IConnection {
  public:
    virtual ~IConnection() = default;
    // Runs a query; a static cursor with optimistic locking. Throws PlatformError.
    virtual std::unique_ptr<IRecordset> open(const std::string& query) = 0;
    virtual void execute(const std::string& statement) = 0;
    virtual void createTable(const std::string& name,
                             const std::vector<ColumnDefinition>& columns) = 0;
    virtual std::vector<std::string> tableNames() = 0;  // in the order in which they were made
    // Holds back what recordsets and statements of this connection change from now on, until the
    // transaction is committed.
    virtual std::unique_ptr<ITransaction> beginTransaction() = 0;
    // Appends all rows of `source` to a table whose columns stand in the same order, in one
    // transaction.
    virtual void append(const std::string& table, IRowSource& source) = 0;
};

class IConnectionFactory {
  public:
    virtual ~IConnectionFactory() = default;
    // Creates an empty database file. Throws PlatformError when the file exists already.
    virtual void createDatabase(const std::string& connectionString) = 0;
    virtual std::unique_ptr<IConnection> open(const std::string& connectionString) = 0;
    // Makes a database file: `fill` makes it under the name that it is given, and
    // when it is whole and on the disk it takes the place of `path`. After a failure the old file
    // stays. Throws PlatformError, or what `fill` throws.
    virtual void makeDatabase(const std::string& path,
                              const std::function<void(const std::string& unfinished)>& fill) = 0;
    // What to tell the user of a database that stands for another file which has changed since, ""
    // when there is nothing to tell. Throws PlatformError.
    virtual std::string staleCopy(const std::string& path) = 0;
    // Whether open() would first make a file, a copy that stands for the database. Throws
    // PlatformError.
    virtual bool needsCopy(const std::string& path) = 0;
};

}  // namespace velmora
