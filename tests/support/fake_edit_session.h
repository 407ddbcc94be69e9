// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/support/failure_point.h"
#include "tests/support/fake_tables.h"

namespace velmora::test {

// Changes a copy of what is stored, which save() puts in its place.
class FakeEditSession : public IEditSession {
  public:
    // `file` is the table's own file.
    FakeEditSession(FakeTables& tables, FailurePoint& saves, std::string file)
        : tables_(tables),
          saves_(saves),
          file_(std::move(file)),
          content_(*tables.content(file_)) {}
    void addNumericField(const std::string& field) override;
    void setValue(std::size_t record, const std::string& field, const FieldValue& value) override;
    void appendRecord(const std::vector<std::pair<std::string, FieldValue>>& values) override;
    void save() override;

  private:
    std::size_t column(const std::string& field) const;

    FakeTables& tables_;
    FailurePoint& saves_;
    std::string file_;
    TableContent content_;
};

}  // namespace velmora::test
