// SPDX-License-Identifier: MIT
#include "platform/tables/static_cursor.h"

#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/tables/statement_scanner.h"

namespace velmora::platform {

std::string StaticCursor::fieldName(int position) const {
    return fields_.at(static_cast<std::size_t>(position));
}

void StaticCursor::moveFirst() {
    at_ = 0;
    changes_.clear();
    adding_ = false;
}

void StaticCursor::moveNext() {
    if (!eof()) ++at_;
    changes_.clear();
}

FieldValue StaticCursor::value(const std::string& field) const {
    const std::size_t index = indexOf(field);
    if (const auto changed = changes_.find(index); changed != changes_.end())
        return changed->second;
    if (adding_) return {};
    if (eof()) throw PlatformError("Either BOF or EOF is true: there is no current record");
    return valueAt(index);
}

FieldValue StaticCursor::valueAt(std::size_t index) const {
    if (!read_) return rows()[at_].values[index];
    if (const auto column = changedInPlace_.find(index); column != changedInPlace_.end()) {
        if (auto changed = column->second.of(at_)) return *changed;
    }
    return read_(at_, index);
}

void StaticCursor::setValue(const std::string& field, const FieldValue& value) {
    const std::size_t index = indexOf(field);
    if (!adding_ && eof())
        throw PlatformError("Either BOF or EOF is true: there is no current record");
    changes_[index] = value;
}

void StaticCursor::addNew() {
    requireEditable();
    adding_ = true;
    changes_.clear();
}

void StaticCursor::update() {
    requireEditable();
    if (adding_) {
        insert();
    } else if (!changes_.empty()) {
        read_ ? changeInPlace() : change();
    }
    changes_.clear();
}

// Rows in place are held from then on, as the new one is.
void StaticCursor::insert() {
    hold();
    Row row;
    row.values.resize(fields_.size());
    for (const auto& [index, value] : changes_) row.values[index] = value;
    insertRow(row);
    rows_.push_back(std::move(row));
    at_ = rows_.size() - 1;
    adding_ = false;
}

void StaticCursor::change() {
    rows();
    Row row = rows_.at(at_);
    for (const auto& [index, value] : changes_) row.values[index] = value;
    updateRow(row.id, changes_);
    rows_[at_] = std::move(row);
}

void StaticCursor::changeInPlace() {
    updateRow(static_cast<long long>(at_) + 1, changes_);
    for (const auto& [index, value] : changes_) changedInPlace_[index].set(at_, value);
}

void StaticCursor::readInPlace(std::size_t rows, ReadValue read) {
    rowsInPlace_ = rows;
    read_ = std::move(read);
}

void StaticCursor::hold() {
    rows();
    if (!read_) return;
    const std::size_t at = at_;
    for (at_ = 0; at_ < rowsInPlace_; ++at_) {
        Row row{static_cast<long long>(at_) + 1, {}};
        for (std::size_t f = 0; f < fields_.size(); ++f) row.values.push_back(valueAt(f));
        rows_.push_back(std::move(row));
    }
    at_ = at;
    changedInPlace_.clear();
    read_ = nullptr;
}

std::size_t StaticCursor::indexOf(const std::string& field) const {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (sameIgnoringCase(fields_[i], field)) return i;
    }
    throw PlatformError("The query \"" + shownStatement(query_) + "\" gives no field " + field);
}

const std::vector<StaticCursor::Row>& StaticCursor::rows() const {
    if (!fetch_) return rows_;
    const auto fetch = std::exchange(fetch_, nullptr);
    try {
        fetch();
    } catch (...) {
        rows_.clear();
        fetch_ = fetch;
        throw;
    }
    return rows_;
}

void StaticCursor::requireEditable() const {
    if (!editable())
        throw PlatformError("The rows of \"" + shownStatement(query_) + "\" cannot be changed");
}

}  // namespace velmora::platform
