// SPDX-License-Identifier: MIT
#include "platform/tables/connection_factory.h"

#include "gis/connection_text.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/run_notes.h"
#include "platform/tables/access_import.h"
#include "platform/tables/dbase_connection.h"
#include "platform/tables/sqlite_connection.h"
#include "platform/tables/unfinished_database.h"

namespace velmora::platform {

namespace {

constexpr const char* kDatabaseFiles = "Microsoft.Jet.OLEDB.4.0";
constexpr const char* kDataSources = "MSDASQL.1";
constexpr const char* kShapefileFolders = "ESRI.GeoDB.Oledb.1";

std::string databasePath(const std::string& connectionString) {
    const std::string provider = connectionPart(connectionString, "Provider");
    std::string path = connectionPart(connectionString, "Data Source");
    if (!sameIgnoringCase(provider, kDatabaseFiles) || path.empty()) {
        throw PlatformError("The connection \"" + connectionString + "\" names no database file");
    }
    return path;
}

}  // namespace

void ConnectionFactory::createDatabase(const std::string& connectionString) {
    const std::string path = databasePath(connectionString);
    SqliteConnection::create(path);
    noteWritten(path);
}

std::unique_ptr<IConnection> ConnectionFactory::open(const std::string& connectionString) {
    if (sameIgnoringCase(connectionPart(connectionString, "Provider"), kDataSources) &&
        sameIgnoringCase(connectionPart(connectionString, "Data Source"), "dBASE Files")) {
        return std::make_unique<DbaseConnection>(tables_);
    }
    if (sameIgnoringCase(connectionPart(connectionString, "Provider"), kShapefileFolders)) {
        return std::make_unique<DbaseConnection>(tables_,
                                                 connectionPart(connectionString, "Data Source"));
    }
    const std::string path = databasePath(connectionString);
    noteRead(path);
    return std::make_unique<SqliteConnection>(path, tables_);
}

void ConnectionFactory::makeDatabase(
    const std::string& path, const std::function<void(const std::string& unfinished)>& fill) {
    UnfinishedDatabase database(path);
    fill(database.path());
    database.finish();
    noteWritten(path);
}

std::string ConnectionFactory::staleCopy(const std::string& path) { return staleAccessCopy(path); }

bool ConnectionFactory::needsCopy(const std::string& path) { return needsImport(path); }

}  // namespace velmora::platform
