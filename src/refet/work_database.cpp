// SPDX-License-Identifier: MIT
#include "refet/work_database.h"

#include "gis/connection_text.h"
#include "refet/cell_table.h"

namespace velmora {

namespace {

std::string connectionTo(const std::string& path) {
    return "Provider = Microsoft.Jet.OLEDB.4.0;Data Source=" + connectionValue(path);
}

std::unique_ptr<IConnection> createWithTable(IPlatform& platform, const std::string& path) {
    platform.connections().createDatabase(connectionTo(path));
    auto connection = platform.connections().open(connectionTo(path));
    std::vector<ColumnDefinition> columns;
    for (int i = 0; i < kCellFields; ++i) {
        columns.push_back({cellFieldName(static_cast<CellField>(i)), FieldType::number, 0});
    }
    connection->createTable("GGG", columns);
    return connection;
}

template <class Fill>
void make(IPlatform& platform, const std::string& pathWithoutExtension, Fill fill) {
    platform.connections().makeDatabase(
        pathWithoutExtension + ".mdb",
        [&](const std::string& unfinished) { fill(*createWithTable(platform, unfinished)); });
}

}  // namespace

void createWorkDatabase(IPlatform& platform, const std::string& pathWithoutExtension) {
    make(platform, pathWithoutExtension, [](IConnection&) {});
}

void removeWorkDatabase(IPlatform& platform, const std::string& pathWithoutExtension) {
    platform.files().deleteFile(pathWithoutExtension + ".mdb");
}

void storeWorkDatabase(IPlatform& platform, const std::string& pathWithoutExtension,
                       IRowSource& records) {
    make(platform, pathWithoutExtension,
         [&](IConnection& database) { database.append("GGG", records); });
}

}  // namespace velmora
