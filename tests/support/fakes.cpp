// SPDX-License-Identifier: MIT
#include "tests/support/fakes.h"

#include <algorithm>

#include "gis/errors.h"

namespace velmora::test {

std::string FakeBrowsers::lastBrowseLocation() {
    if (locationFails) throw PlatformError("no such value");
    return "/last";
}

std::string FakeBrowsers::next(const std::string& what) {
    asked.push_back(what);
    if (answers.empty()) return {};
    std::string answer = answers.front();
    answers.pop_front();
    return answer;
}

void FakeLayer::setStretchedRenderer(const AlgorithmicColorRamp& given) {
    if (fails_) throw PlatformError("no renderer");
    ramp = given;
}

void FakeDocument::addTable(std::shared_ptr<ITable> table) {
    if (tablesFail) throw PlatformError("no room");
    tables.push_back(std::move(table));
}

void MemoryFiles::replaceFile(const std::string& from, const std::string& to) {
    files[to] = files.at(from);
    files.erase(from);
}

std::string MemoryFiles::readBeginning(const std::string& path, std::size_t most) const {
    if (!files.contains(path)) throw PlatformError("There is no file " + path);
    return files.at(path).substr(0, most);
}

void MemoryFiles::writeOver(const std::string& path, const std::string& bytes) {
    if (writesFail) throw PlatformError("Cannot write " + path);
    std::string& content = files[path];
    content.replace(0, std::min(content.size(), bytes.size()), bytes);
}

namespace {

class RecordingConnection : public IConnection {
  public:
    RecordingConnection(std::unique_ptr<IConnection> real, std::vector<std::string>& statements)
        : real_(std::move(real)), statements_(statements) {}
    std::unique_ptr<IRecordset> open(const std::string& query) override {
        statements_.push_back(query);
        return real_->open(query);
    }
    void execute(const std::string& statement) override {
        statements_.push_back(statement);
        real_->execute(statement);
    }
    void createTable(const std::string& name,
                     const std::vector<ColumnDefinition>& columns) override {
        real_->createTable(name, columns);
    }
    std::vector<std::string> tableNames() override { return real_->tableNames(); }
    std::unique_ptr<ITransaction> beginTransaction() override { return real_->beginTransaction(); }
    void append(const std::string& table, const IColumnSource& source) override {
        real_->append(table, source);
    }

  private:
    std::unique_ptr<IConnection> real_;
    std::vector<std::string>& statements_;
};

}  // namespace

std::unique_ptr<IConnection> RecordingConnections::open(const std::string& connectionString) {
    opened.push_back(connectionString);
    return std::make_unique<RecordingConnection>(real_.open(connectionString), statements);
}

}  // namespace velmora::test
