// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_recordset.h"

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora::platform {

namespace {

[[noreturn]] void refuse() { throw PlatformError("The dBASE data source is read only"); }

class DbaseRecordset : public IRecordset {
  public:
    explicit DbaseRecordset(std::shared_ptr<ITable> table) : table_(std::move(table)) {}
    int fieldCount() const override { return static_cast<int>(table_->fields().size()); }
    std::string fieldName(int position) const override {
        return table_->fields().at(static_cast<std::size_t>(position)).name;
    }
    bool eof() const override { return at_ >= table_->recordCount(); }
    void moveFirst() override { at_ = 0; }
    void moveNext() override {
        if (!eof()) ++at_;
    }
    FieldValue value(const std::string& field) const override { return table_->value(at_, field); }
    void setValue(const std::string&, const FieldValue&) override { refuse(); }
    void addNew() override { refuse(); }
    void update() override { refuse(); }

  private:
    std::shared_ptr<ITable> table_;
    std::size_t at_ = 0;
};

}  // namespace

std::unique_ptr<IRecordset> DbaseConnection::open(const std::string& query) {
    constexpr std::string_view kForm = "SELECT * FROM ";
    if (!sameIgnoringCase(std::string_view(query).substr(0, kForm.size()), kForm)) {
        throw PlatformError("The dBASE data source understands SELECT * FROM table, not \"" +
                            query + "\"");
    }
    std::string path = query.substr(kForm.size());
    if (path.size() > 1 && path.front() == '[' && path.back() == ']') {
        path = path.substr(1, path.size() - 2);
    }
    return std::make_unique<DbaseRecordset>(tables_.openTable(path));
}

void DbaseConnection::execute(const std::string&) { refuse(); }
void DbaseConnection::createTable(const std::string&, const std::vector<ColumnDefinition>&) {
    refuse();
}
void DbaseConnection::append(const std::string&, const IColumnSource&) { refuse(); }

}  // namespace velmora::platform
