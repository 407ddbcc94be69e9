// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_records.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "gis/numbers.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kBlockBytes = 1 << 16;  // little enough for reading here and there
constexpr std::size_t kExactDigits = 15;      // of a whole number, that any double holds

bool isStar(char c) { return c == '*'; }
bool isPrintable(char c) { return c >= ' ' && c <= '~'; }
bool isOfInteger(char c) { return c == ' ' || c == '-' || (c >= '0' && c <= '9'); }

std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

DbaseLayout layoutOf(const ByteSource& file) {
    std::string header = file.read(0, kDbaseHeaderBytes);
    if (header.size() == kDbaseHeaderBytes) header = file.read(0, dbaseHeaderLength(header));
    return dbaseLayout(header, file.path());
}

}  // namespace

DbaseRecords::DbaseRecords(const std::string& table) : file_(table), layout_(layoutOf(file_)) {}

std::string_view DbaseRecords::record(std::size_t record) {
    const std::size_t length = layout_.recordLength;
    const auto inBlock = [&] {
        return record >= first_ && (record - first_ + 1) * length <= block_.size();
    };
    if (!inBlock()) {
        first_ = record;
        const std::size_t perBlock = std::max<std::size_t>(1, kBlockBytes / length);
        block_ = file_.read(layout_.headerLength + record * length, perBlock * length);
    }
    return inBlock() ? std::string_view(block_).substr((record - first_) * length, length)
                     : std::string_view();
}

std::vector<std::size_t> presentRecords(DbaseRecords& table) {
    std::vector<std::size_t> present;
    present.reserve(table.layout().records);
    for (std::size_t r = 0; r < table.layout().records; ++r) {
        if (!table.record(r).starts_with('*')) present.push_back(r);
    }
    return present;
}

std::optional<FieldValue> plainValue(std::string_view record, const DbaseColumn& column,
                                     FieldType type) {
    const bool alike = type == FieldType::text ? column.type == 'C' : column.numeric();
    if (!alike || record.empty()) return std::nullopt;
    const std::string_view bytes = record.substr(column.offset, column.width);
    if (!std::ranges::all_of(bytes, isPrintable)) return std::nullopt;
    const std::string_view text = withoutBlanks(bytes);
    if (text.empty()) return FieldValue();
    if (type == FieldType::text) return FieldValue(std::string(text));
    if (text.size() == bytes.size() && std::ranges::all_of(text, isStar)) {
        return FieldValue();  // as GDAL fills a number that is null
    }
    const bool whole = text.size() <= kExactDigits && std::ranges::all_of(text, isOfInteger);
    if (type != FieldType::number && !(type == FieldType::integer && whole)) return std::nullopt;
    const auto number = strictNumber(text);
    if (!number || std::fabs(*number) > std::numeric_limits<float>::max()) return std::nullopt;
    return FieldValue(*number);
}

bool isPlain(DbaseRecords& table, std::size_t column, FieldType type,
             const std::vector<std::size_t>& records) {
    if (column >= table.layout().columns.size()) return false;
    return std::ranges::all_of(records, [&](std::size_t record) {
        return plainValue(table.record(record), table.layout().columns[column], type).has_value();
    });
}

std::optional<std::vector<FieldValue>> plainColumn(DbaseRecords& table, std::size_t column,
                                                   FieldType type,
                                                   const std::vector<std::size_t>& records) {
    if (column >= table.layout().columns.size()) return std::nullopt;
    std::vector<FieldValue> values;
    values.reserve(records.size());
    for (const std::size_t record : records) {
        auto value = plainValue(table.record(record), table.layout().columns[column], type);
        if (!value) return std::nullopt;
        values.push_back(std::move(*value));
    }
    return values;
}

}  // namespace velmora::platform
