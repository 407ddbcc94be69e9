// SPDX-License-Identifier: MIT
#include "tests/support/fake_connections.h"

#include <sstream>
#include <utility>

#include "gis/connection_text.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "tests/support/fake_recordset.h"

namespace velmora::test {

namespace {

std::string dataSource(const std::string& connectionString) {
    return connectionPart(connectionString, "Data Source");
}

std::string withoutBrackets(std::string name) {
    if (name.starts_with('[') && name.ends_with(']')) name = name.substr(1, name.size() - 2);
    return name;
}

[[noreturn]] void refuse(const std::string& statement) {
    throw PlatformError("The connections of the tests cannot run " + statement);
}

// "SELECT columns FROM table" taken apart.
struct Select {
    std::vector<std::string> columns;
    std::string table;

    explicit Select(const std::string& query) {
        std::istringstream words(query);
        std::string select;
        std::string list;
        std::string from;
        words >> select >> list >> from >> std::ws;
        std::getline(words, table);
        if (!sameIgnoringCase(select, "SELECT") || !sameIgnoringCase(from, "FROM")) refuse(query);
        table = withoutBrackets(table);
        std::istringstream parts(list);
        for (std::string part; std::getline(parts, part, ',');) {
            columns.push_back(withoutBrackets(part));
        }
    }
};

}  // namespace

class FakeConnection : public IConnection {
  public:
    FakeConnection(FakeConnections& all, std::string source)
        : all_(all), source_(std::move(source)) {}
    std::unique_ptr<IRecordset> open(const std::string& query) override {
        note(query);
        Select select(query);
        const std::string file = withoutEnding(select.table, ".dbf") + ".dbf";
        const ContentPtr content = all_.tables_.content(file);
        if (select.columns == std::vector<std::string>{"*"}) {
            select.columns.clear();
            for (const Field& field : content->fields) select.columns.push_back(field.name);
        }
        return std::make_unique<FakeRecordset>(file, content, select.columns);
    }
    void execute(const std::string& statement) override {
        note(statement);
        refuse(statement);
    }
    void createTable(const std::string& name, const std::vector<ColumnDefinition>&) override {
        all_.writes.pass(name);
        tables()[name] = 0;
    }
    std::vector<std::string> tableNames() override {
        std::vector<std::string> names;
        for (const auto& [name, rows] : tables()) names.push_back(name);
        return names;
    }
    std::unique_ptr<ITransaction> beginTransaction() override { refuse("a transaction"); }
    void append(const std::string& table, IRowSource& source) override {
        all_.writes.pass(table);
        tables().at(table) += source.rowCount();
    }

  private:
    void note(const std::string& statement) {
        all_.statements.push_back(statement);
        all_.queries.pass(statement);
    }
    FakeConnections::Tables& tables() { return all_.databases_.at(all_.files_.files.at(source_)); }

    FakeConnections& all_;
    std::string source_;
};

void FakeConnections::createDatabase(const std::string& connectionString) {
    const std::string path = dataSource(connectionString);
    writes.pass(path);
    if (files_.fileExists(path)) throw PlatformError("There is a file " + path + " already");
    const std::string mark = "database " + std::to_string(databases_.size());
    databases_[mark];
    files_.files[path] = mark;
}

std::unique_ptr<IConnection> FakeConnections::open(const std::string& connectionString) {
    opened.push_back(connectionString);
    opens.pass(connectionString);
    return std::make_unique<FakeConnection>(*this, dataSource(connectionString));
}

void FakeConnections::makeDatabase(const std::string& path,
                                   const std::function<void(const std::string& unfinished)>& fill) {
    const std::string unfinished = joinedPath(parentFolderName(path), kUnfinishedPrefix);
    try {
        fill(unfinished);
        files_.replaceFile(unfinished, path);
    } catch (...) {
        files_.deleteFile(unfinished);
        throw;
    }
}

std::map<std::string, std::size_t> FakeConnections::rowsOf(const std::string& database) const {
    return databases_.at(files_.files.at(database));
}

}  // namespace velmora::test
