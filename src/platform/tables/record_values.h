// SPDX-License-Identifier: MIT
// New values of a field by record, of millions of records: sixteen bytes for a number.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

#include "gis/field_value.h"

namespace velmora::platform {

class RecordValues {
  public:
    // Takes the place of the value that the record has. Cheap for rising records.
    void set(std::size_t record, const FieldValue& value);
    std::optional<FieldValue> of(std::size_t record) const;  // nothing when the record has none

    // By rising record.
    std::size_t size() const { return records_.size(); }
    std::size_t record(std::size_t index) const { return records_[index]; }
    FieldValue value(std::size_t index) const;

  private:
    std::vector<std::size_t> records_;
    std::vector<double> numbers_;               // of each, where it has one
    std::map<std::size_t, FieldValue> others_;  // texts and nulls, by record
};

}  // namespace velmora::platform
