// SPDX-License-Identifier: MIT
// Changes values in a dBASE file and appends records to it. Every byte that does not belong to a
// changed value stays as it is: other columns, deleted records, the language mark, trailing memo
// references. (A rewrite through a general library would reformat the other numbers and recode the
// texts.)
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "gis/features.h"

namespace velmora::platform {

class DbaseEdit : public IEditSession {
  public:
    // Throws PlatformError when the table is no dBASE file.
    explicit DbaseEdit(std::shared_ptr<ITable> table);
    void addNumericField(const std::string& field) override;
    void setValue(std::size_t record, const std::string& field, const FieldValue& value) override;
    void appendRecord(const std::vector<std::pair<std::string, FieldValue>>& values) override;
    void save() override;

  private:
    std::shared_ptr<ITable> table_;
    std::vector<std::string> added_;
    std::map<std::string, std::map<std::size_t, FieldValue>> changes_;
    std::vector<std::vector<std::pair<std::string, FieldValue>>> appended_;
};

// The number as a dBASE field of that width holds it: as many decimals as fit, right-aligned.
// Throws PlatformError when it does not fit at all.
std::string dbaseNumber(double value, int width);

}  // namespace velmora::platform
