// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "gis/errors.h"
#include "gis/features.h"

namespace velmora {

// A table held in memory.
class MemoryTable : public ITable {
  public:
    MemoryTable(std::string name, std::vector<Field> fields)
        : name_(std::move(name)), fields_(std::move(fields)) {}
    void append(std::vector<FieldValue> record) { records_.push_back(std::move(record)); }

    std::string name() const override { return name_; }
    std::string path() const override { return name_; }
    const std::vector<Field>& fields() const override { return fields_; }
    std::size_t recordCount() const override { return records_.size(); }
    FieldValue value(std::size_t record, const std::string& field) const override {
        const int index = fieldIndex(field);
        if (index < 0)
            throw PlatformError("The table " + name_ + " has no field " + field, {.field = field});
        return records_.at(record).at(static_cast<std::size_t>(index));
    }

  private:
    std::string name_;
    std::vector<Field> fields_;
    std::vector<std::vector<FieldValue>> records_;
};

}  // namespace velmora
