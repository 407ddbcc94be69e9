// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "gis/errors.h"
#include "gis/tables.h"
#include "tests/support/fake_table.h"

namespace velmora::test {

// A cursor over columns of a table that takes no change.
class FakeRecordset : public IRecordset {
  public:
    FakeRecordset(std::string path, ContentPtr content, std::vector<std::string> columns)
        : path_(std::move(path)), content_(std::move(content)), columns_(std::move(columns)) {}
    int fieldCount() const override { return static_cast<int>(columns_.size()); }
    std::string fieldName(int position) const override {
        return columns_.at(static_cast<std::size_t>(position));
    }
    bool eof() const override { return row_ >= content_->records.size(); }
    void moveFirst() override { row_ = 0; }
    void moveNext() override { ++row_; }
    FieldValue value(const std::string& field) const override {
        if (eof()) throw PlatformError("The query has no row here");
        return valueOf(*content_, path_, row_, field);
    }
    void setValue(const std::string&, const FieldValue&) override { refuse(); }
    void addNew() override { refuse(); }
    void update() override { refuse(); }

  private:
    [[noreturn]] static void refuse() {
        throw PlatformError("The recordsets of the tests take no change");
    }
    std::string path_;
    ContentPtr content_;
    std::vector<std::string> columns_;
    std::size_t row_ = 0;
};

}  // namespace velmora::test
