// SPDX-License-Identifier: MIT
#include "tests/support/fake_edit_session.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora::test {

std::size_t FakeEditSession::column(const std::string& field) const {
    const auto found = std::ranges::find_if(
        content_.fields, [&](const Field& f) { return sameIgnoringCase(f.name, field); });
    if (found == content_.fields.end()) {
        throw PlatformError(file_ + " has no field \"" + field + "\"");
    }
    return static_cast<std::size_t>(found - content_.fields.begin());
}

void FakeEditSession::addNumericField(const std::string& field) {
    const bool there = std::ranges::any_of(
        content_.fields, [&](const Field& f) { return sameIgnoringCase(f.name, field); });
    if (!there) content_.fields.push_back({field, FieldType::number, 0, 0});
}

void FakeEditSession::setValue(std::size_t record, const std::string& field,
                               const FieldValue& value) {
    auto& values = content_.records.at(record);
    values.resize(content_.fields.size());
    values[column(field)] = value;
}

void FakeEditSession::appendRecord(const std::vector<std::pair<std::string, FieldValue>>& values) {
    content_.records.emplace_back(content_.fields.size());
    for (const auto& [field, value] : values) content_.records.back()[column(field)] = value;
}

void FakeEditSession::save() {
    saves_.pass(file_);
    tables_.store(file_, content_);
}

}  // namespace velmora::test
