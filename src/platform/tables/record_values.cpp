// SPDX-License-Identifier: MIT
#include "platform/tables/record_values.h"

#include <algorithm>

namespace velmora::platform {

void RecordValues::set(std::size_t record, const FieldValue& value) {
    const bool last = records_.empty() || record > records_.back();
    const auto place = last ? records_.end() : std::ranges::lower_bound(records_, record);
    const auto index = place - records_.begin();
    if (last || *place != record) {
        records_.insert(place, record);
        numbers_.insert(numbers_.begin() + index, 0.0);
    }
    const auto* number = std::get_if<double>(&value);
    numbers_[static_cast<std::size_t>(index)] = number ? *number : 0;
    if (number) {
        others_.erase(record);
    } else {
        others_[record] = value;
    }
}

std::optional<FieldValue> RecordValues::of(std::size_t record) const {
    const auto place = std::ranges::lower_bound(records_, record);
    if (place == records_.end() || *place != record) return std::nullopt;
    return value(static_cast<std::size_t>(place - records_.begin()));
}

FieldValue RecordValues::value(std::size_t index) const {
    const auto other = others_.find(records_[index]);
    return other != others_.end() ? other->second : FieldValue(numbers_[index]);
}

}  // namespace velmora::platform
