// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "gis/tables.h"
#include "platform/tables/record_values.h"

namespace velmora::platform {

// A static cursor: the rows as they were when the query ran. Engines say how a row is stored.
class StaticCursor : public IRecordset {
  public:
    int fieldCount() const override { return static_cast<int>(fields_.size()); }
    std::string fieldName(int position) const override;
    bool eof() const override { return at_ >= rowCount(); }
    void moveFirst() override;
    void moveNext() override;
    FieldValue value(const std::string& field) const override;
    void setValue(const std::string& field, const FieldValue& value) override;
    void addNew() override;
    void update() override;

  protected:
    struct Row {
        long long id = 0;  // how the engine knows the row
        std::vector<FieldValue> values;
    };
    using Changes = std::map<std::size_t, FieldValue>;  // by position of the field

    explicit StaticCursor(std::string query) : query_(std::move(query)) {}
    const std::vector<std::string>& fields() const { return fields_; }
    void addField(const std::string& name) { fields_.push_back(name); }
    void addRow(Row row) { rows_.push_back(std::move(row)); }
    // Rows that `fetch` adds when one is first asked for: a reader of the fields needs none.
    void fetchLater(std::function<void()> fetch) { fetch_ = std::move(fetch); }
    // So many rows, known as 1, 2, ..., that are not held: `read` gives a value when it is asked
    // for.
    using ReadValue = std::function<FieldValue(std::size_t row, std::size_t field)>;
    void readInPlace(std::size_t rows, ReadValue read);
    // Whether rows can be changed and added to.
    virtual bool editable() const = 0;
    virtual void insertRow(Row& row) = 0;
    virtual void updateRow(long long id, const Changes& changes) = 0;

  private:
    std::size_t indexOf(const std::string& field) const;
    std::size_t rowCount() const { return read_ ? rowsInPlace_ : rows().size(); }
    FieldValue valueAt(std::size_t index) const;
    void hold();
    void insert();
    void change();
    void changeInPlace();
    void requireEditable() const;
    const std::vector<Row>& rows() const;

    std::string query_;
    std::vector<std::string> fields_;
    mutable std::vector<Row> rows_;
    mutable std::function<void()> fetch_;
    ReadValue read_;
    std::size_t rowsInPlace_ = 0;
    // What rows in place have been changed to, by field.
    std::map<std::size_t, RecordValues> changedInPlace_;
    std::size_t at_ = 0;
    bool adding_ = false;
    Changes changes_;
};

}  // namespace velmora::platform
